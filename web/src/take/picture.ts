// The viewer's picture at a moment, drawn into a canvas of its own.
import type { Frame } from "../camera/path";
import type { Size } from "../model/geometry";
import { drawScreen, readScreenColours } from "../screen/drawScreen";
import type { Session } from "../session";

/** Something with the recording's picture at one moment. */
export interface Source {
    /** Draws the part of the recording that `frame` names so that it fills the canvas. */
    draw: (ctx: OffscreenCanvasRenderingContext2D | CanvasRenderingContext2D, frame: Frame, size: Size) => void;
}

/** The screen drawn from the recording. */
export function drawnSource(session: Session, time: number): Source {
    return {
        draw: (ctx, frame, size) => {
            ctx.fillStyle = "#000";
            ctx.fillRect(0, 0, size.width, size.height);
            const view = { source: frame, target: { left: 0, top: 0, ...size } };
            drawScreen(ctx as CanvasRenderingContext2D, session.model.recording, time, view, readScreenColours(document.documentElement));
        },
    };
}

/** A picture of the video, which shows the whole recording whatever its own size. */
export function imageSource(session: Session, image: CanvasImageSource): Source {
    return {
        draw: (ctx, frame, size) => {
            const { recording } = session.model;
            const scale = size.width / frame.width;
            ctx.fillStyle = "#000";
            ctx.fillRect(0, 0, size.width, size.height);
            ctx.imageSmoothingQuality = "high";
            ctx.drawImage(image, -frame.left * scale, -frame.top * scale, recording.width * scale, recording.height * scale);
        },
    };
}

/** The size of stills and videos: every recorded pixel may be enlarged up to twice, and encoders want even sides. */
export function pictureSize(session: Session): Size {
    const { target } = session.model.stages;
    return { width: 2 * target.width, height: 2 * target.height };
}

/** A frame of the video as an image. Rejects where the video cannot be read. */
function videoImage(url: string, time: number): Promise<HTMLVideoElement> {
    return new Promise((resolve, reject) => {
        const video = document.createElement("video");
        video.muted = true;
        video.preload = "auto";
        video.onloadeddata = () => {
            video.onseeked = () => resolve(video);
            video.currentTime = Math.min(Math.max(0, time), video.duration || 0);
        };
        video.onerror = () => reject(new Error("the video cannot be read"));
        video.src = url;
    });
}

/** The picture at the moment on show, as PNG. Throws `Error` with what to do where the browser keeps the video's pixels. */
export async function still(session: Session): Promise<Blob> {
    const size = pictureSize(session);
    const time = session.time.peek();
    const canvas = document.createElement("canvas");
    canvas.width = size.width;
    canvas.height = size.height;
    const ctx = canvas.getContext("2d");
    if (!ctx) throw new Error("this browser has no canvas");
    const video = session.video.peek();
    const source = video
        ? imageSource(session, await videoImage(video.url, time - (session.model.recording.videoOffset ?? 0)))
        : drawnSource(session, time);
    source.draw(ctx, session.path.peek().frameAt(time), size);
    const blob = await new Promise<Blob | null>((resolve, reject) => {
        try {
            canvas.toBlob(resolve, "image/png");
        } catch {
            reject(new Error("the browser does not let a page read a linked video; choose the video's file once"));
        }
    });
    if (!blob) throw new Error("the picture could not be written");
    return blob;
}
