// The camera's frame on the screen, to be taken by hand: the whole of it, or a corner.
import { useSignal } from "@preact/signals";
import { useRef } from "preact/hooks";
import type { JSX } from "preact";
import { pulled, reframed, type Grip } from "../edit/edits";
import type { Rect } from "../model/geometry";
import { rectText } from "../model/geometry";
import type { Session } from "../session";

/** Where the recording lies on the canvas, in CSS pixels. */
export interface Placement {
    target: Rect;
    scale: number;
}

interface Pull {
    grip: Grip;
    x: number;
    y: number;
    frame: Rect;
    keyframe: number;
}

interface Handlers {
    onPointerDown: (event: PointerEvent) => void;
    onPointerMove: (event: PointerEvent) => void;
    onPointerUp: (event: PointerEvent) => void;
    onPointerCancel: (event: PointerEvent) => void;
    onKeyDown: (event: KeyboardEvent) => void;
}

const kCorners: readonly Grip[] = ["nw", "ne", "sw", "se"];
const kCornerNames: Readonly<Record<Grip, string>> = { move: "Frame", nw: "upper left", ne: "upper right", sw: "lower left", se: "lower right" };
/** How far arrow keys pull, recording pixels. */
const kKeyStep = 8;

export function FrameHandles({ session, place }: { session: Session; place: Placement | null }): JSX.Element | null {
    const draft = useSignal<Rect | null>(null);
    const pull = useRef<Pull | null>(null);
    if (!place) return null;
    const { recording, stages } = session.model;
    const path = session.path.value;
    const keyframe = session.keyframeAt(session.time.value);
    const frame = draft.value ?? path.frameAt(session.time.value);
    /** The frame that an edit starts from: where the camera rests, not where it is on its way. */
    const resting = (): Rect => {
        const held = session.keyframes.peek()[keyframe];
        const rest = held ? path.frameOf(held.rect) : path.whole;
        return { left: rest.left, top: rest.top, width: rest.width, height: rest.height };
    };
    const commit = (rect: Rect, index: number): void => {
        const { edits } = session;
        edits.set(reframed(edits.value.peek(), session.keyframes.peek(), index, rect, stages.clipTicks));
    };
    const onDown = (event: PointerEvent, grip: Grip): void => {
        if (event.button !== 0) return;
        session.playing.value = false;
        (event.currentTarget as HTMLElement).setPointerCapture(event.pointerId);
        pull.current = { grip, x: event.clientX, y: event.clientY, frame: resting(), keyframe };
        event.preventDefault();
    };
    const rectOf = (event: PointerEvent): Rect | null => {
        const now = pull.current;
        if (!now) return null;
        const dx = (event.clientX - now.x) / place.scale;
        const dy = (event.clientY - now.y) / place.scale;
        return Math.hypot(dx, dy) * place.scale < 3 && !draft.peek() ? null : pulled(now.frame, now.grip, dx, dy, stages.target, recording);
    };
    const onMove = (event: PointerEvent): void => {
        const rect = rectOf(event);
        if (rect) draft.value = rect;
    };
    const onUp = (event: PointerEvent): void => {
        const rect = event.type === "pointerup" ? rectOf(event) : null;
        const now = pull.current;
        pull.current = null;
        draft.value = null;
        if (rect && now) commit(rect, now.keyframe);
    };
    const onKey = (event: KeyboardEvent, grip: Grip): void => {
        const steps: Record<string, [number, number]> = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };
        const step = steps[event.key];
        if (!step) return;
        const size = kKeyStep * (event.shiftKey ? 8 : 1) * (grip === "move" ? 1 : 2);
        commit(pulled(resting(), grip, step[0] * size, step[1] * size, stages.target, recording), keyframe);
        event.preventDefault();
        event.stopPropagation();
    };
    const handlers = (grip: Grip): Handlers => ({
        onPointerDown: (event) => onDown(event, grip),
        onPointerMove: onMove,
        onPointerUp: onUp,
        onPointerCancel: onUp,
        onKeyDown: (event) => onKey(event, grip),
    });
    const left = place.target.left + Math.max(0, frame.left) * place.scale;
    const top = place.target.top + Math.max(0, frame.top) * place.scale;
    const width = Math.min(frame.width, recording.width) * place.scale;
    const height = Math.min(frame.height, recording.height) * place.scale;
    return (
        <div class={draft.value ? "handles drafting" : "handles"} style={{ left: `${left}px`, top: `${top}px`, width: `${width}px`, height: `${height}px` }}>
            <button type="button" class="handle-move" aria-label={`Frame, ${rectText(frame)}; arrow keys move it`} title="Drag to move the frame" {...handlers("move")} />
            {kCorners.map((corner) => (
                <button key={corner} type="button" class={`handle handle-${corner}`} aria-label={`Corner of the frame, ${kCornerNames[corner]}; arrow keys pull it`} {...handlers(corner)} />
            ))}
            {draft.value && <output class="draft-size">{rectText(draft.value)}</output>}
        </div>
    );
}
