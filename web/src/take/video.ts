// The finished video, made in the page: decoded and encoded by the browser (WebCodecs), cut by the path.
import {
    BlobSource, BufferTarget, CanvasSource, EncodedAudioPacketSource, EncodedPacketSink,
    getFirstEncodableVideoCodec, Input, MATROSKA, MP4, Mp4OutputFormat, Output, QTFF, QUALITY_HIGH, VideoSampleSink, WEBM, WebMOutputFormat,
} from "mediabunny";
import type { Session } from "../session";
import { drawnSource, imageSource, pictureSize, type Source } from "./picture";

export interface VideoProgress {
    /** 0 to 1. */
    share: number;
    /** Pictures a second. */
    rate: number;
}

/** What screen recorders write. */
const kFormats = [MP4, QTFF, WEBM, MATROSKA];
/** Pictures a second of a video that is drawn from the recording. */
const kDrawnRate = 30;

interface Picture {
    /** Seconds on the recording's clock. */
    time: number;
    duration: number;
    source: Source;
    close: () => void;
}

/** True where the browser can make videos at all. */
export function canMakeVideo(): boolean {
    return "VideoEncoder" in window && "OffscreenCanvas" in window;
}

async function* drawnPictures(session: Session): AsyncGenerator<Picture> {
    const { start, stop } = session.model.stages.clip;
    for (let i = 0; start + i / kDrawnRate < stop; ++i) {
        const time = start + i / kDrawnRate;
        yield { time, duration: 1 / kDrawnRate, source: drawnSource(session, time), close: () => undefined };
        if (i % 15 === 0) await new Promise((resolve) => setTimeout(resolve)); // The page stays alive.
    }
}

async function* videoPictures(session: Session, sink: VideoSampleSink): AsyncGenerator<Picture> {
    const offset = session.model.recording.videoOffset ?? 0;
    const { start, stop } = session.model.stages.clip;
    for await (const sample of sink.samples(Math.max(0, start - offset), stop - offset)) {
        const image = sample.toVideoFrame();
        yield {
            time: sample.timestamp + offset,
            duration: sample.duration,
            source: imageSource(session, image),
            close: () => {
                image.close();
                sample.close();
            },
        };
    }
}

/** Renders the video. Rejects with an `AbortError` when stopped, and with `Error` that says what is missing. */
export async function makeVideo(session: Session, onProgress: (progress: VideoProgress) => void, signal: AbortSignal): Promise<{ blob: Blob; ending: string }> {
    const size = pictureSize(session);
    const codec = await getFirstEncodableVideoCodec(["avc", "vp9", "av1", "vp8"], { ...size, bitrate: QUALITY_HIGH });
    if (!codec) throw new Error("this browser has no encoder for a video of this size");
    const blob = session.video.peek()?.blob ?? null;
    if (session.video.peek() && !blob) throw new Error("the browser does not let a page read a linked video; choose the video's file once");
    const input = blob ? new Input({ source: new BlobSource(blob), formats: kFormats }) : null;
    const track = (await input?.getPrimaryVideoTrack()) ?? null;
    if (input && !track) throw new Error("the file holds no picture that this browser can read");
    if (track && !(await track.canDecode())) throw new Error("this browser cannot decode the video");

    const mp4 = codec === "avc";
    const target = new BufferTarget();
    const output = new Output({ format: mp4 ? new Mp4OutputFormat({ fastStart: "in-memory" }) : new WebMOutputFormat(), target });
    const canvas = new OffscreenCanvas(size.width, size.height);
    const ctx = canvas.getContext("2d");
    if (!ctx) throw new Error("this browser has no canvas");
    const pictures = new CanvasSource(canvas, { codec, bitrate: QUALITY_HIGH });
    output.addVideoTrack(pictures);

    // The sound goes over as it is, where the container takes it.
    const sound = (await input?.getPrimaryAudioTrack()) ?? null;
    const soundCodec = (await sound?.getCodec()) ?? null;
    const takesSound = soundCodec !== null && output.format.getSupportedAudioCodecs().includes(soundCodec);
    const soundSource = takesSound ? new EncodedAudioPacketSource(soundCodec) : null;
    if (soundSource) output.addAudioTrack(soundSource);
    await output.start();

    const path = session.path.peek();
    const { start, stop } = session.model.stages.clip;
    const began = performance.now();
    let first: number | null = null;
    let count = 0;
    try {
        for await (const picture of track ? videoPictures(session, new VideoSampleSink(track)) : drawnPictures(session)) {
            try {
                signal.throwIfAborted();
                first ??= picture.time;
                picture.source.draw(ctx, path.frameAt(picture.time), size);
                await pictures.add(picture.time - first, picture.duration);
            } finally {
                picture.close();
            }
            ++count;
            if (count % 5 === 0) {
                onProgress({ share: (picture.time - start) / (stop - start), rate: (1000 * count) / (performance.now() - began) });
            }
        }
        if (sound && soundSource) {
            const config = await sound.getDecoderConfig();
            const offset = session.model.recording.videoOffset ?? 0;
            const from = (first ?? start) - offset;
            for await (const packet of new EncodedPacketSink(sound).packets()) {
                signal.throwIfAborted();
                if (packet.timestamp < from || packet.timestamp + offset > stop) continue;
                await soundSource.add(packet.clone({ timestamp: packet.timestamp - from }), config ? { decoderConfig: config } : undefined);
            }
        }
        if (count === 0) throw new Error("the video has no picture in the clip");
        await output.finalize();
    } catch (error) {
        await output.cancel().catch(() => undefined);
        throw error;
    }
    if (!target.buffer) throw new Error("nothing was written");
    return { blob: new Blob([target.buffer], { type: mp4 ? "video/mp4" : "video/webm" }), ending: mp4 ? "mp4" : "webm" };
}
