// The timeline: a canvas of rows, their names beside it, and a line that tells where the picture is.
import { useSignal, type ReadonlySignal } from "@preact/signals";
import { useEffect, useMemo, useRef } from "preact/hooks";
import type { JSX } from "preact";
import { describe } from "../explain/describe";
import { withKeyframeAt, wishList } from "../edit/edits";
import { sameItem, type Item } from "../model/items";
import { lowerBound } from "../model/search";
import type { Session } from "../session";
import { timeText } from "../time/format";
import { bounded, fitAll, panBy, reveal, toTime, toX, zoomAt, type TimeScale } from "../time/scale";
import { drawRows, kRuler, placeRows } from "../timeline/draw";
import { itemAt, rowAt } from "../timeline/hit";
import { readPalette, type Palette } from "../timeline/palette";
import { byTheme } from "./theme";
import { modeInk, objectRows, spanRow, stageRows, streamRows, type Row } from "../timeline/rows";
import { peakBetween } from "../timeline/series";
import { useDrawing } from "./canvas";
import { Icon } from "./icons";

/** How much one notch of the wheel and one press of a key zoom, and the share of the width that a key pans. */
const kWheelZoom = 0.0022;
const kKeyZoom = 1.5;
const kKeyPan = 0.15;
/** How near the beginning of a keyframe a hand takes it, pixels. */
const kGrab = 6;
/** A pointer that moves less is a click, pixels. */
const kClickSlop = 4;

/** A keyframe that a hand takes along. */
interface Dragged {
    index: number;
    /** Seconds between the pointer and the keyframe as it was taken. */
    offset: number;
}

const currentPalette = byTheme((): Palette => readPalette(document.documentElement));

interface Gesture {
    keyframe: Dragged | null;
    /** Pointer positions by id, canvas pixels. */
    points: Map<number, { x: number; y: number }>;
    scrubbing: boolean;
    panning: boolean;
    downX: number;
    downY: number;
    moved: boolean;
}

export function Timeline({ session }: { session: Session }): JSX.Element {
    const { recording, stages } = session.model;
    const extent = stages.clip;
    const narrow = window.matchMedia("(max-width: 640px)").matches;
    const together = useSignal(narrow);
    const scale = useSignal<TimeScale>({ ...fitAll(extent, 1), width: 0 });
    const hover = useSignal<{ x: number; y: number } | null>(null);
    const dragged = useSignal<{ index: number; seconds: number } | null>(null);
    const box = useRef<HTMLDivElement | null>(null);

    const fixedRows = useMemo(() => ({ streams: streamRows(recording, session.strokes), stages: stageRows(stages) }), [session]);
    const keyframes = session.keyframes.value;
    const moves = session.path.value.moves;
    const wishes = session.edits.value.value;
    const placed = useMemo(() => {
        const camera: Row[] = [
            spanRow(
                { id: "keyframes", label: "Camera", height: 26, group: "camera", title: "Keyframes: each from its move to the next; the hatched part is the move" },
                "keyframe",
                keyframes.map((keyframe, i) => ({ start: keyframe.seconds, stop: keyframes[i + 1]?.seconds ?? extent.stop })),
                { ink: (i) => modeInk(keyframes[i]?.reason ?? null), text: (i) => `${i + 1}` },
            ),
        ];
        const asked = wishList(wishes);
        if (asked.length > 0) {
            camera.push(
                spanRow(
                    { id: "wishes", label: "Changes", height: 14, group: "camera", title: "What was asked for by hand" },
                    "wish",
                    asked.map((wish) => ({ start: wish.start / recording.timeScale, stop: wish.stop / recording.timeScale })),
                    { ink: (i) => `wish-${asked[i]?.kind ?? "pin"}` },
                ),
            );
        }
        const rows = [...camera, ...fixedRows.stages, ...fixedRows.streams, ...objectRows(stages, together.value)];
        return placeRows(rows);
    }, [session, keyframes, wishes, together.value]);

    const setWidth = (width: number): TimeScale => {
        const old = scale.peek();
        if (old.width === width) return old;
        const next = old.width === 0 ? fitAll(extent, width) : bounded({ ...old, perPixel: (old.perPixel * old.width) / width, width }, extent);
        scale.value = next;
        return next;
    };

    const base = useDrawing((ctx, size) => {
        const now = setWidth(size.width);
        void scale.value;
        const palette = currentPalette();
        drawRows(ctx, placed.placed, now, palette, size.height);
        const camera = placed.placed[0];
        if (camera) {
            // The part of a keyframe's time that its move takes.
            for (const move of moves) {
                const left = toX(now, move.start);
                const right = toX(now, move.stop);
                if (right < 0 || left > size.width || right - left < 1) continue;
                ctx.save();
                ctx.beginPath();
                ctx.rect(left, camera.top, right - left, camera.bottom - camera.top);
                ctx.clip();
                ctx.strokeStyle = palette.surface;
                ctx.globalAlpha = 0.55;
                ctx.lineWidth = 2;
                ctx.beginPath();
                for (let x = left - 30; x < right + 4; x += 6) {
                    ctx.moveTo(x, camera.bottom);
                    ctx.lineTo(x + 26, camera.top);
                }
                ctx.stroke();
                ctx.restore();
            }
        }
    }, [placed, moves]);

    const overlay = useDrawing((ctx, size) => {
        const now = scale.value;
        ctx.clearRect(0, 0, size.width, size.height);
        const palette = currentPalette();
        const selection = session.selection.value;
        const details = selection ? describe(session, selection) : null;
        if (selection && details) {
            const row = placed.placed.find((place) => place.row.kind !== "series" && place.row.item === selection.kind
                && Array.prototype.includes.call(place.row.index, selection.index));
            const left = toX(now, details.start);
            const right = Math.max(toX(now, details.stop), left + 3);
            ctx.fillStyle = palette.accent;
            ctx.globalAlpha = 0.08;
            ctx.fillRect(left, kRuler, right - left, size.height);
            ctx.globalAlpha = 1;
            if (row) {
                ctx.strokeStyle = palette.text;
                ctx.lineWidth = 2;
                ctx.strokeRect(left - 1, row.top - 1, right - left + 2, row.bottom - row.top + 2);
            }
        }
        const point = hover.value;
        if (point) {
            ctx.fillStyle = palette.muted;
            ctx.globalAlpha = 0.5;
            ctx.fillRect(Math.round(point.x), 0, 1, size.height);
            ctx.globalAlpha = 1;
        }
        const drag = dragged.value;
        const cameraRow = placed.placed[0];
        if (drag && cameraRow) {
            const at = toX(now, drag.seconds);
            ctx.fillStyle = palette.accent;
            ctx.fillRect(at - 1.5, cameraRow.top - 5, 3, cameraRow.bottom - cameraRow.top + 10);
            ctx.font = palette.font;
            ctx.textBaseline = "middle";
            ctx.fillText(timeText(drag.seconds, 2), at + 7, kRuler / 2);
        }
        const x = toX(now, session.time.value);
        ctx.fillStyle = palette.playhead;
        ctx.fillRect(x - 1, 4, 2, size.height);
        ctx.beginPath();
        ctx.arc(x, 6, 5, 0, 2 * Math.PI);
        ctx.fill();
    }, [placed]);

    // Told to the element itself: the timeline has much to lay out, and nothing else of it depends on the time.
    useEffect(() => session.time.subscribe((time) => {
        box.current?.setAttribute("aria-valuenow", String(time));
        box.current?.setAttribute("aria-valuetext", timeText(time, 1));
    }), [session]);
    // While playing, the timeline goes along; a person who looks elsewhere in it is left there.
    useEffect(() => session.time.subscribe((time) => {
        if (!session.playing.peek() || gesture.current.points.size > 0) return;
        const now = scale.peek();
        const last = toX(now, time);
        if (now.width > 0 && last > now.width * 0.9 && last < now.width * 1.1) scale.value = reveal(now, extent, time, 0.1);
    }), [session]);
    useEffect(() => session.selection.subscribe((selection) => {
        const details = selection ? describe(session, selection) : null;
        const now = scale.peek();
        if (!details || now.width === 0) return;
        if (toX(now, details.stop) < 0 || toX(now, details.start) > now.width) scale.value = reveal(now, extent, details.start, 0.2);
    }), [session]);

    const gesture = useRef<Gesture>({ keyframe: null, points: new Map(), scrubbing: false, panning: false, downX: 0, downY: 0, moved: false });
    const pointOf = (event: PointerEvent | WheelEvent): { x: number; y: number } => {
        const rect = (box.current as HTMLDivElement).getBoundingClientRect();
        return { x: event.clientX - rect.left, y: event.clientY - rect.top };
    };
    const hit = (x: number, y: number): Item | null => {
        const row = rowAt(placed.placed, y);
        if (!row) return null;
        const item = itemAt(row, scale.peek(), x);
        if (item) return item;
        const time = toTime(scale.peek(), x);
        if (row.kind === "series" && row.item === "changes") {
            const i = lowerBound(recording.dirty.time, time - 3 * scale.peek().perPixel);
            const found = recording.dirty.time[i];
            return found !== undefined && found <= time + 3 * scale.peek().perPixel ? { kind: "changes", index: i } : null;
        }
        if (row.kind === "series" && row.item === "stroke") {
            const i = session.strokes.findIndex((stroke) => stroke.start <= time && stroke.stop >= time);
            return i < 0 ? null : { kind: "stroke", index: i };
        }
        return null;
    };

    /** The keyframe whose beginning is under the pointer. */
    const keyframeEdge = (point: { x: number; y: number }): Dragged | null => {
        const row = placed.placed[0];
        if (!row || point.y < row.top - 2 || point.y > row.bottom + 2) return null;
        let best: Dragged | null = null;
        let away = kGrab;
        keyframes.forEach((keyframe, index) => {
            const distance = Math.abs(toX(scale.peek(), keyframe.seconds) - point.x);
            if (distance <= away) {
                away = distance;
                best = { index, offset: keyframe.seconds - toTime(scale.peek(), point.x) };
            }
        });
        return best;
    };
    const onPointerDown = (event: PointerEvent): void => {
        if (event.button !== 0 && event.button !== 1) return;
        const g = gesture.current;
        const point = pointOf(event);
        (event.currentTarget as HTMLElement).setPointerCapture(event.pointerId);
        g.points.set(event.pointerId, point);
        g.downX = point.x;
        g.downY = point.y;
        g.moved = false;
        g.scrubbing = g.points.size === 1 && event.button === 0 && (point.y < kRuler || Math.abs(point.x - toX(scale.peek(), session.time.peek())) < 6);
        g.keyframe = g.scrubbing || g.points.size > 1 || event.button !== 0 ? null : keyframeEdge(point);
        g.panning = !g.scrubbing && !g.keyframe;
        if (g.scrubbing) session.seek(toTime(scale.peek(), point.x));
    };
    const onPointerMove = (event: PointerEvent): void => {
        const g = gesture.current;
        const point = pointOf(event);
        hover.value = event.pointerType === "mouse" ? point : null;
        const before = g.points.get(event.pointerId);
        if (!before) return;
        if (Math.hypot(point.x - g.downX, point.y - g.downY) > kClickSlop) g.moved = true;
        if (g.points.size === 2) {
            // Two fingers: the moments under them stay under them.
            const other = [...g.points].find(([id]) => id !== event.pointerId)?.[1];
            if (other) {
                const wide = Math.max(20, Math.abs(before.x - other.x));
                const wider = Math.max(20, Math.abs(point.x - other.x));
                scale.value = panBy(zoomAt(scale.peek(), extent, (before.x + other.x) / 2, wider / wide), extent, (before.x - point.x) / 2);
            }
        } else if (g.scrubbing) {
            session.seek(toTime(scale.peek(), point.x));
        } else if (g.keyframe && g.moved) {
            dragged.value = { index: g.keyframe.index, seconds: toTime(scale.peek(), point.x) + g.keyframe.offset };
        } else if (g.moved && g.panning) {
            scale.value = panBy(scale.peek(), extent, before.x - point.x);
        }
        g.points.set(event.pointerId, point);
    };
    const onPointerUp = (event: PointerEvent): void => {
        const g = gesture.current;
        if (!g.points.delete(event.pointerId)) return;
        const drag = dragged.peek();
        dragged.value = null;
        if (drag && event.type === "pointerup") {
            const { edits } = session;
            edits.set(withKeyframeAt(edits.value.peek(), keyframes, drag.index, session.toTick(drag.seconds), stages.clipTicks));
            session.select(null);
            return;
        }
        if (!g.moved && !g.scrubbing && g.points.size === 0 && event.type === "pointerup") {
            const point = pointOf(event);
            const item = hit(point.x, point.y);
            session.select(sameItem(item, session.selection.peek()) ? null : item);
            session.seek(toTime(scale.peek(), point.x));
        }
    };
    useEffect(() => {
        const element = box.current;
        if (!element) return;
        const onWheel = (event: WheelEvent): void => {
            const sideways = Math.abs(event.deltaX) > Math.abs(event.deltaY) || event.shiftKey;
            // A plain wheel over the timeline zooms; with nothing left to zoom out, the page scrolls on.
            const unit = event.deltaMode === 1 ? 30 : 1;
            const now = scale.peek();
            const next = sideways
                ? panBy(now, extent, (event.deltaX || event.deltaY) * unit)
                : zoomAt(now, extent, pointOf(event).x, Math.exp(-event.deltaY * unit * kWheelZoom));
            if (next.start === now.start && next.perPixel === now.perPixel && !event.ctrlKey) return;
            event.preventDefault();
            scale.value = next;
        };
        element.addEventListener("wheel", onWheel, { passive: false });
        return () => element.removeEventListener("wheel", onWheel);
    }, [session]);

    const zoomBy = (factor: number): void => {
        const now = scale.peek();
        const x = toX(now, session.time.peek());
        scale.value = zoomAt(now, extent, x >= 0 && x <= now.width ? x : now.width / 2, factor);
    };
    const onKeyDown = (event: KeyboardEvent): void => {
        const now = scale.peek();
        const span = now.width * now.perPixel;
        switch (event.key) {
            case "+": case "=": zoomBy(kKeyZoom); break;
            case "-": zoomBy(1 / kKeyZoom); break;
            case "0": scale.value = fitAll(extent, now.width); break;
            case "ArrowLeft": case "ArrowRight": {
                const sign = event.key === "ArrowLeft" ? -1 : 1;
                if (event.altKey) scale.value = panBy(now, extent, sign * now.width * kKeyPan);
                else {
                    session.seek(session.time.peek() + sign * (event.shiftKey ? 1 : Math.max(now.perPixel, 0.1)));
                    scale.value = reveal(now, extent, session.time.peek(), 0.05);
                }
                break;
            }
            case "PageUp": scale.value = panBy(now, extent, -span / now.perPixel); break;
            case "PageDown": scale.value = panBy(now, extent, span / now.perPixel); break;
            case "Home": session.seek(extent.start); scale.value = reveal(now, extent, extent.start); break;
            case "End": session.seek(extent.stop); scale.value = reveal(now, extent, extent.stop); break;
            case "Escape": session.select(null); break;
            default: return;
        }
        event.preventDefault();
    };

    return (
        <section class="timeline panel" aria-labelledby="timeline-title">
            <div class="title-row">
                <h2 id="timeline-title">Timeline</h2>
                <span class="hint wide-only">Wheel or + and − zoom, drag pans, a click shows details.</span>
                <span class="spacer" />
                <label class="inline check"><input type="checkbox" checked={!together.value} onChange={(event) => (together.value = !event.currentTarget.checked)} /> Objects by type</label>
                <button type="button" class="round" aria-label="Zoom out" title="Zoom out (−)" onClick={() => zoomBy(1 / kKeyZoom)}><Icon name="minus" /></button>
                <button type="button" class="round" aria-label="Zoom in" title="Zoom in (+)" onClick={() => zoomBy(kKeyZoom)}><Icon name="plus" /></button>
                <button type="button" class="round" aria-label="Show all" title="Show all (0)" onClick={() => (scale.value = fitAll(extent, scale.peek().width))}><Icon name="fit" /></button>
            </div>
            <div class="lanes" style={{ height: `${placed.height}px` }}>
                <ul class="lane-names" aria-label="Lanes">
                    {placed.placed.map(({ row, top, bottom }) => (
                        <li key={row.id} data-lane={row.id} title={row.title} class={row.height < 14 ? "small-lane" : undefined} style={{ top: `${top}px`, height: `${bottom - top}px` }}>{row.label}</li>
                    ))}
                </ul>
                <div
                    class="tracks"
                    ref={box}
                    tabIndex={0}
                    role="slider"
                    aria-label="Timeline"
                    aria-orientation="horizontal"
                    aria-valuemin={extent.start}
                    aria-valuemax={extent.stop}
                    aria-valuenow={session.time.peek()}
                    aria-valuetext={timeText(session.time.peek(), 1)}
                    onPointerDown={onPointerDown}
                    onPointerMove={onPointerMove}
                    onPointerUp={onPointerUp}
                    onPointerCancel={onPointerUp}
                    onPointerLeave={() => (hover.value = null)}
                    onKeyDown={onKeyDown}
                >
                    <canvas ref={base} />
                    <canvas ref={overlay} />
                    <Tip hover={hover} scale={scale} text={(point) => tip(session, placed.placed, scale.value, point, hit)} />
                </div>
            </div>
        </section>
    );
}

interface TipProps {
    hover: ReadonlySignal<{ x: number; y: number } | null>;
    scale: ReadonlySignal<TimeScale>;
    text: (point: { x: number; y: number }) => string | null;
}

/** What lies under the pointer. A component of its own, so that a moving pointer lays out nothing else anew. */
function Tip({ hover, scale, text }: TipProps): JSX.Element | null {
    const point = hover.value;
    const content = point ? text(point) : null;
    if (!point || !content) return null;
    return <div class="tip" style={{ left: `${Math.min(point.x + 12, Math.max(0, scale.value.width - 190))}px`, top: `${point.y + 16}px` }}>{content}</div>;
}

function tip(
    session: Session,
    placed: ReturnType<typeof placeRows>["placed"],
    scale: TimeScale,
    point: { x: number; y: number },
    hit: (x: number, y: number) => Item | null,
): string | null {
    const time = toTime(scale, point.x);
    const row = rowAt(placed, point.y);
    if (!row) return timeText(time, 2);
    if (row.kind === "series") {
        return `${timeText(time, 2)} · ${row.unit(peakBetween(row.series, time, time + scale.perPixel))}`;
    }
    const item = hit(point.x, point.y);
    const details = item ? describe(session, item) : null;
    return details ? `${details.title} · ${timeText(details.start, 2)}` : timeText(time, 2);
}
