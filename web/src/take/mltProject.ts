// The path as a project of the video editors that are built on MLT, the same text as the command's (docs/formats.md): one
// producer, the video, under a filter that holds the rectangle of the whole recording in the output picture.
import type { Frame } from "../camera/path";
import type { Session } from "../session";
import { threeDecimals } from "./numbers";
import { videoOffsetTicks, videoSeconds } from "./videoClock";

/** Pictures a second. */
const kRate = 30;
/** What lies on an end but for the rounding of a double lies on it. */
const kRounding = 1e-9;
const kMostSamples = 10_000_000;

function xmlText(text: string): string {
    const marks: Readonly<Record<string, string>> = { "&": "&amp;", "<": "&lt;", ">": "&gt;", '"': "&quot;" };
    // eslint-disable-next-line no-control-regex -- XML has no form for control characters
    return text.replace(/[&<>"]/g, (mark) => marks[mark] ?? mark).replace(/[\u0000-\u001f]/g, "?");
}

function greatestDivisor(a: number, b: number): number {
    return b === 0 ? a : greatestDivisor(b, a % b);
}

function sameFrame(a: Frame | undefined, b: Frame): boolean {
    return a !== undefined && a.left === b.left && a.top === b.top && a.width === b.width && a.height === b.height;
}

/** Throws `Error` when there is nothing that a project could show. `video` is the file as the project shall name it. */
export function pathMlt(session: Session, video: string): string {
    const { recording, stages: { target, clipTicks } } = session.model;
    const path = session.path.peek();
    const offsetTicks = videoOffsetTicks(session);
    const offset = (offsetTicks ?? 0) / recording.timeScale;
    const clipStart = videoSeconds(session, clipTicks.start);
    const first = Math.ceil((offsetTicks === null ? clipStart : Math.max(clipStart, 0)) * kRate - kRounding) + 0;
    const last = Math.floor(videoSeconds(session, clipTicks.stop) * kRate + kRounding);
    if (last < first) throw new Error("no picture of the video lies in the clip");
    if (last - first >= kMostSamples) throw new Error("the clip has more than ten million pictures");
    if (first < 0) throw new Error("the clip begins before the video does");

    const frames: Frame[] = [];
    for (let picture = first; picture <= last; ++picture) frames.push(path.frameAt(picture / kRate + offset));
    const rectangle = (frame: Frame): string => {
        const across = target.width / frame.width;
        const down = target.height / frame.height;
        return [0 - frame.left * across, 0 - frame.top * down, recording.width * across, recording.height * down].map(threeDecimals).join(" ") + " 1";
    };
    // A key stands at the ends, and wherever a frame is not that of both its neighbours: between keys MLT goes evenly.
    const keys = frames.flatMap((frame, i) => {
        const resting = i > 0 && i + 1 < frames.length && sameFrame(frames[i - 1], frame) && sameFrame(frames[i + 1], frame);
        return resting ? [] : [`${first + i}=${rectangle(frame)}`];
    });
    const divisor = greatestDivisor(target.width, target.height);
    return `<?xml version="1.0" encoding="utf-8"?>
<mlt LC_NUMERIC="C" title="${xmlText(recording.name)}">
  <profile description="orvanta" width="${target.width}" height="${target.height}" progressive="1" sample_aspect_num="1" sample_aspect_den="1" display_aspect_num="${target.width / divisor}" display_aspect_den="${target.height / divisor}" frame_rate_num="${kRate}" frame_rate_den="1" colorspace="709"/>
  <producer id="video">
    <property name="mlt_service">avformat</property>
    <property name="resource">${xmlText(video)}</property>
    <filter id="camera">
      <property name="mlt_service">affine</property>
      <property name="background">colour:black</property>
      <property name="transition.distort">1</property>
      <property name="transition.fill">1</property>
      <property name="transition.rect">${keys.join(";")}</property>
    </filter>
  </producer>
  <playlist id="clip">
    <entry producer="video" in="${first}" out="${last}"/>
  </playlist>
</mlt>
`;
}

/** The command line that plays a project into a video. */
export function meltCommand(file: string, out: string): string {
    return `melt ${file} -consumer avformat:${out} rescale=bicubic`;
}
