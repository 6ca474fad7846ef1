// The path as files for other tools, as the command writes them: JSON (orvanta-path, version 1) and CSV.
import { kEasings } from "../camera/easing";
import type { Session } from "../session";
import { version } from "../../package.json";
import { shortest, sixDigits } from "./numbers";
import { videoOffsetTicks, videoSeconds } from "./videoClock";

export function pathJson(session: Session): string {
    const { recording, stages } = session.model;
    const name = session.easing.peek();
    const offset = videoOffsetTicks(session);
    const document = {
        format: "orvanta-path",
        version: 1,
        tool: `orvanta ${version}`,
        recording: recording.name,
        engine: stages.engine,
        ticksPerSecond: recording.timeScale,
        videoOffsetTicks: offset,
        region: { width: recording.width, height: recording.height },
        target: stages.target,
        fadeTicks: stages.fadeTicks,
        easing: { ...kEasings[name], name },
        clip: { startTick: stages.clipTicks.start, stopTick: stages.clipTicks.stop },
        keyframes: session.keyframes.peek().map((keyframe) => ({
            tick: keyframe.tick,
            seconds: keyframe.seconds,
            videoSeconds: offset === null ? null : videoSeconds(session, keyframe.tick),
            ...keyframe.rect,
            zoom: stages.target.width / keyframe.rect.width,
            reason: keyframe.reason,
        })),
    };
    return `${JSON.stringify(document, null, 2)}\n`;
}

export function pathCsv(session: Session): string {
    const { target } = session.model.stages;
    const lines = session.keyframes.peek().map(({ tick, seconds, rect, reason }) =>
        [tick, shortest(seconds), rect.left, rect.top, rect.width, rect.height, sixDigits(target.width / rect.width), reason ?? "", shortest(videoSeconds(session, tick))].join(","),
    );
    return `${["tick,seconds,left,top,width,height,zoom,reason,videoSeconds", ...lines].join("\n")}\n`;
}

/** The recording's name without its endings. */
export function baseName(session: Session): string {
    return session.model.recording.name.replace(/\.(gz|zst|zstd)$/i, "").replace(/\.jsonl?$/i, "");
}

/** The video's file, as far as anybody knows: the one on show, the one that the recording names, or one of its name. */
export function videoName(session: Session): string {
    return session.video.value?.name ?? session.model.recording.video ?? `${baseName(session)}.mp4`;
}

/** A word as a shell takes it. */
export function shellWord(text: string): string {
    return /^[\w./:=+@%-]+$/.test(text) && !text.startsWith("-") ? text : `'${text.replaceAll("'", "'\\''")}'`;
}

/** How much larger than the planned frame the rendered picture is: a recorded pixel is enlarged up to twice. */
const kEnlarged = 2;

/** The command line that renders the saved path. */
export function renderCommand(session: Session): string {
    const { source, stages } = session.model;
    const video = session.video.value;
    const words = ["orvanta", "render", shellWord(source.startsWith("-") ? `./${source}` : source)];
    if (video) words.push(shellWord(video.name));
    const size = `${stages.target.width * kEnlarged}x${stages.target.height * kEnlarged}`;
    words.push("--path", shellWord(`${baseName(session)}.path.json`), "--size", size, "-o", shellWord(`${baseName(session)}.camera.mp4`));
    return words.join(" ");
}
