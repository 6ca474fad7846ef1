// Figures that tell how good a path is to watch.
import { holdsPoint, type Size } from "../model/geometry";
import type { Recording } from "../model/recording";
import { zoomOf, type CameraPath, type Frame } from "./path";

/** The zoom from which text can be read, output pixels per recording pixel. */
export const kReadable = 0.75;
/** A press is to be seen from a moment before it to a moment after it, seconds. */
const kBeforePress = 0.5;
const kAfterPress = 1.0;
/** The step at which times are summed up, seconds. */
const kStep = 0.05;
/** An hour-long recording is summed up in larger steps, so that the figures stand at once. */
const kMostSteps = 60_000;

export interface Figures {
    presses: number;
    /** Presses in the picture at their moment. */
    pressesInside: number;
    /** Share of the time around presses in which they are in the picture and readable; null without presses. */
    readable: number | null;
    /** Mean over time, output pixels per recording pixel. */
    meanZoom: number;
    movesPerMinute: number;
    /** The way of the frame's centre, in widths of the recording a minute. */
    travel: number;
    /** Seconds. */
    longestStill: number;
}

interface Stretch {
    start: number;
    stop: number;
}

/** How much of `stretch` the path shows the point readably: moves are sampled, rests are exact. */
function readableTime(path: CameraPath, point: { x: number; y: number }, stretch: Stretch): number {
    let sum = 0;
    const count = Math.max(1, Math.round((stretch.stop - stretch.start) / kStep));
    const step = (stretch.stop - stretch.start) / count;
    for (let i = 0; i < count; ++i) {
        const frame = path.frameAt(stretch.start + (i + 0.5) * step);
        if (zoomOf(frame, path.setup.target) >= kReadable - 1e-9 && holdsPoint(frame, point)) sum += step;
    }
    return sum;
}

function sameFrame(a: Frame, b: Frame): boolean {
    return a.left === b.left && a.top === b.top && a.width === b.width;
}

export function figuresOf(path: CameraPath, recording: Recording, clip: { start: number; stop: number }): Figures {
    const target: Size = path.setup.target;
    const length = Math.max(1e-9, clip.stop - clip.start);
    const presses = recording.presses.filter((press) => press.time >= clip.start && press.time <= clip.stop);
    let inside = 0;
    let readable = 0;
    let around = 0;
    for (const press of presses) {
        if (holdsPoint(path.frameAt(press.time), press)) ++inside;
        const stretch = {
            start: Math.max(clip.start, press.time - kBeforePress),
            stop: Math.min(clip.stop, press.time + kAfterPress),
        };
        around += stretch.stop - stretch.start;
        readable += readableTime(path, press, stretch);
    }

    const count = Math.min(kMostSteps, Math.max(1, Math.round(length / kStep)));
    const step = length / count;
    let zoom = 0;
    for (let i = 0; i < count; ++i) zoom += zoomOf(path.frameAt(clip.start + (i + 0.5) * step), target);

    let moves = 0;
    let travel = 0;
    let longest = 0;
    let restStart = clip.start;
    for (const move of path.moves) {
        if (move.start >= clip.stop || sameFrame(move.from, move.to)) continue;
        ++moves;
        longest = Math.max(longest, move.start - restStart);
        restStart = Math.min(move.stop, clip.stop);
        const end = move.cutShort ? path.frameAt(move.stop) : move.to;
        travel += Math.hypot(
            end.left + end.width / 2 - move.from.left - move.from.width / 2,
            end.top + end.height / 2 - move.from.top - move.from.height / 2,
        );
    }
    longest = Math.max(longest, clip.stop - restStart);
    const minutes = length / 60;
    return {
        presses: presses.length,
        pressesInside: inside,
        readable: around > 0 ? readable / around : null,
        meanZoom: zoom / count,
        movesPerMinute: moves / minutes,
        travel: travel / recording.width / minutes,
        longestStill: longest,
    };
}
