// The screen with the camera's frame on it, and beside it the picture as the viewer will see it.
import { useEffect, useRef } from "preact/hooks";
import type { JSX } from "preact";
import { useSignal } from "@preact/signals";
import type { Rect } from "../model/geometry";
import type { Frame } from "../camera/path";
import { describe } from "../explain/describe";
import { drawPresses, drawScreen, enterView, readScreenColours, type View } from "../screen/drawScreen";
import { runPlayback } from "../screen/playback";
import type { Session } from "../session";
import { useDrawing, type CanvasSize } from "./canvas";
import { byTheme } from "./theme";
import { FrameHandles, type Placement } from "./FrameHandles";

const screenColours = byTheme(() => readScreenColours(document.documentElement));
const stageStyle = byTheme(() => {
    const style = getComputedStyle(document.documentElement);
    return { camera: style.getPropertyValue("--camera"), shade: style.getPropertyValue("--shade"), accent: style.getPropertyValue("--accent-on-screen") };
});

/** The part of a video that can be shown, or nothing while there is none. */
type Picture = HTMLVideoElement | null;

/** Where a picture of the shape `width` to `height` lies in the middle of a canvas. */
export function fitted(width: number, height: number, room: CanvasSize): Rect {
    const scale = Math.min(room.width / width, room.height / height);
    return {
        left: (room.width - width * scale) / 2,
        top: (room.height - height * scale) / 2,
        width: width * scale,
        height: height * scale,
    };
}

function ready(video: Picture): video is HTMLVideoElement {
    return video !== null && video.readyState >= 2 && video.videoWidth > 0;
}

/** Draws a part of the recording, from the video where it has a picture for the moment. */
export function drawMoment(ctx: CanvasRenderingContext2D, session: Session, time: number, view: View, video: Picture): void {
    const { recording } = session.model;
    const colours = screenColours();
    const shown = ready(video) && time >= (recording.videoOffset ?? 0) - 0.5;
    if (!shown) {
        drawScreen(ctx, recording, time, view, colours);
        return;
    }
    ctx.save();
    const scale = enterView(ctx, view);
    ctx.imageSmoothingQuality = "high";
    ctx.drawImage(video, 0, 0, recording.width, recording.height);
    drawPresses(ctx, recording, time, colours, scale);
    ctx.restore();
}

function drawFrame(ctx: CanvasRenderingContext2D, frame: Frame, view: View, accent: string, shade: string): void {
    const scale = view.target.width / view.source.width;
    const { left, top, width, height } = view.target;
    const box = { left: left + frame.left * scale, top: top + frame.top * scale, width: frame.width * scale, height: frame.height * scale };
    ctx.save();
    ctx.beginPath();
    ctx.rect(left, top, width, height);
    ctx.clip();
    ctx.beginPath();
    ctx.rect(left, top, width, height);
    ctx.rect(box.left, box.top, box.width, box.height);
    ctx.fillStyle = shade;
    ctx.fill("evenodd");
    ctx.restore();
    // The line lies inside what the canvas shows even where the frame is the whole recording or stands out.
    const x = Math.max(box.left, left) + 1;
    const y = Math.max(box.top, top) + 1;
    const x2 = Math.min(box.left + box.width, left + width) - 1;
    const y2 = Math.min(box.top + box.height, top + height) - 1;
    ctx.lineJoin = "round";
    ctx.strokeStyle = "rgb(0 0 0 / 45%)";
    ctx.lineWidth = 4;
    ctx.strokeRect(x, y, x2 - x, y2 - y);
    ctx.strokeStyle = accent;
    ctx.lineWidth = 2;
    ctx.strokeRect(x, y, x2 - x, y2 - y);
}

export function Stage({ session, onVideoLost }: { session: Session; onVideoLost: (message: string) => void }): JSX.Element {
    const video = useRef<HTMLVideoElement | null>(null);
    const arrived = useSignal(0);
    const place = useSignal<Placement | null>(null);
    const source = session.video.value;
    const { recording, stages } = session.model;

    useEffect(() => runPlayback(session, () => video.current), [session, source]);

    const screen = useDrawing((ctx, size) => {
        void arrived.value;
        ctx.clearRect(0, 0, size.width, size.height);
        const time = session.time.value;
        const view = { source: { left: 0, top: 0, width: recording.width, height: recording.height }, target: fitted(recording.width, recording.height, size) };
        const scale = view.target.width / view.source.width;
        const before = place.peek();
        if (before?.scale !== scale || before.target.left !== view.target.left || before.target.top !== view.target.top) {
            // After this drawing: what reads the place must not draw within it.
            queueMicrotask(() => (place.value = { target: view.target, scale }));
        }
        drawMoment(ctx, session, time, view, video.current);
        const style = stageStyle();
        const selection = session.selection.value;
        const details = selection ? describe(session, selection) : null;
        drawFrame(ctx, session.path.value.frameAt(time), view, style.camera, style.shade);
        if (details?.rect) {
            ctx.setLineDash([5, 4]);
            ctx.lineWidth = 1.5;
            ctx.strokeStyle = style.accent;
            ctx.strokeRect(view.target.left + details.rect.left * scale, view.target.top + details.rect.top * scale, details.rect.width * scale, details.rect.height * scale);
            ctx.setLineDash([]);
        }
    }, [session]);
    const viewer = useDrawing((ctx, size) => {
        void arrived.value;
        ctx.clearRect(0, 0, size.width, size.height);
        const target = fitted(stages.target.width, stages.target.height, size);
        const frame = session.path.value.frameAt(session.time.value);
        // For whoever drives the page from outside: the exact frame on show, recording pixels.
        viewer.current?.setAttribute("data-frame", [frame.left, frame.top, frame.width, frame.height].join(" "));
        ctx.fillStyle = "#000";
        ctx.fillRect(target.left, target.top, target.width, target.height);
        drawMoment(ctx, session, session.time.value, { source: frame, target }, video.current);
    }, [session]);

    const picture = (): void => {
        arrived.value = arrived.peek() + 1;
    };
    return (
        <div class="stage" style={{ "--screen-column": `${recording.width / recording.height}fr`, "--viewer-column": `${stages.target.width / stages.target.height}fr` }}>
            <figure class="screen">
                <figcaption>Screen</figcaption>
                <div class="canvas-box">
                    <canvas
                        ref={screen}
                        style={{ aspectRatio: `${recording.width} / ${recording.height}` }}
                        role="img"
                        aria-label="The recorded screen with the camera's frame on it"
                    />
                    <FrameHandles session={session} place={place.value} />
                </div>
            </figure>
            <figure class="viewer">
                <figcaption>
                    What the viewer sees <span class="muted">{stages.target.width}×{stages.target.height}</span>
                </figcaption>
                <canvas
                    ref={viewer}
                    style={{ aspectRatio: `${stages.target.width} / ${stages.target.height}` }}
                    role="img"
                    aria-label="The picture as the viewer will see it"
                />
            </figure>
            {source && (
                <video
                    key={source.url}
                    ref={video}
                    src={source.url}
                    class="hidden-video"
                    muted
                    playsInline
                    preload="auto"
                    aria-hidden="true"
                    tabIndex={-1}
                    onLoadedData={(event) => {
                        event.currentTarget.currentTime = Math.max(0, session.time.peek() - (recording.videoOffset ?? 0));
                        picture();
                    }}
                    onSeeked={(event) => {
                        picture();
                        const wanted = Math.max(0, session.time.peek() - (recording.videoOffset ?? 0));
                        const element = event.currentTarget;
                        if (!session.playing.peek() && Math.abs(element.currentTime - Math.min(wanted, element.duration)) > 0.008) element.currentTime = wanted;
                    }}
                    onError={() => onVideoLost(source.name)}
                />
            )}
        </div>
    );
}
