// Wishes and what they make of the engine's keyframes: the same rules as the library's applyWishes
// (docs/camera-path.md), on ticks. Whole numbers up to 2^53 are exact here, which is far beyond any recording.
import { sameRect, type Rect, type Size } from "../model/geometry";
import { CameraPath } from "./path";

/** A stretch of time, ticks: from `start` on, up to but not including `stop`. */
export interface Stretch {
    start: number;
    stop: number;
}

/** A frame of one's own for a stretch. */
export interface Pin extends Stretch {
    rect: Rect;
}

export interface Wishes {
    /** Of two that overlap, the one later in the list counts. */
    pins: Pin[];
    whole: Stretch[];
    keepOut: Stretch[];
    leastZoom: number | null;
    greatestZoom: number | null;
    /** Ticks. */
    leastRest: number | null;
}

export const kNoWishes: Wishes = { pins: [], whole: [], keepOut: [], leastZoom: null, greatestZoom: null, leastRest: null };

export function isEmptyWishes(wishes: Wishes): boolean {
    return (
        wishes.pins.length === 0 && wishes.whole.length === 0 && wishes.keepOut.length === 0 &&
        wishes.leastZoom === null && wishes.greatestZoom === null && wishes.leastRest === null
    );
}

export type Origin = "keyframe" | "pin" | "whole" | "start";

export interface WishedKeyframe {
    tick: number;
    rect: Rect;
    origin: Origin;
    /** Of the keyframe, the pin or the stretch in the list given; 0 for `start`. */
    index: number;
}

export interface WishSetup {
    recording: Size;
    target: Size;
    /** Ticks. */
    fade: number;
    /** Ticks. */
    clip: Stretch;
}

export interface EngineKeyframe {
    tick: number;
    rect: Rect;
}

/** What was asked for by name stays; a general wish may move or drop the rest. */
function isFree(keyframe: WishedKeyframe): boolean {
    return keyframe.origin === "keyframe" || keyframe.origin === "start";
}

function wholeOf(setup: WishSetup): Rect {
    return { left: 0, top: 0, width: setup.recording.width, height: setup.recording.height };
}

/** Low edge of a stretch of `pixels` around the middle of another, inside `limit` where it fits. */
function centred(low: number, size: number, pixels: number, limit: number): number {
    const edge = Math.floor((2 * low + size - pixels) / 2);
    return pixels <= limit ? Math.min(Math.max(edge, 0), limit - pixels) : 0;
}

function limitedBy(setup: WishSetup, wishes: Wishes): (rect: Rect) => Rect {
    const path = new CameraPath([], { recording: setup.recording, target: setup.target, fade: 0, clipStart: 0 });
    const { target, recording } = setup;
    const resized = (rect: Rect, width: number, height: number): Rect => {
        if (width >= path.whole.width) return wholeOf(setup);
        return {
            left: centred(rect.left, rect.width, width, recording.width),
            top: centred(rect.top, rect.height, height, recording.height),
            width,
            height,
        };
    };
    return (rect) => {
        const { width } = path.frameOf(rect);
        const { leastZoom, greatestZoom } = wishes;
        if (greatestZoom !== null && width < target.width / greatestZoom) {
            return resized(rect, Math.ceil(target.width / greatestZoom), Math.ceil(target.height / greatestZoom));
        }
        if (leastZoom !== null && width > target.width / leastZoom) {
            return resized(rect, Math.max(1, Math.floor(target.width / leastZoom)), Math.max(1, Math.floor(target.height / leastZoom)));
        }
        return rect;
    };
}

/** Leaves out what comes no earlier than a keyframe that stands behind it in the list. */
function withoutOvertaken(keyframes: readonly WishedKeyframe[]): WishedKeyframe[] {
    const kept: WishedKeyframe[] = [];
    let next = Infinity;
    for (const keyframe of [...keyframes].reverse()) {
        if (keyframe.tick < next) {
            kept.push(keyframe);
            next = keyframe.tick;
        }
    }
    return kept.reverse();
}

/** Leaves out what shows the same as the keyframe before it; while keyframes may still move, only free ones. */
function withoutRepeats(keyframes: readonly WishedKeyframe[], which: "free" | "all"): WishedKeyframe[] {
    const kept: WishedKeyframe[] = [];
    for (const keyframe of keyframes) {
        const last = kept[kept.length - 1];
        const repeats = last !== undefined && sameRect(last.rect, keyframe.rect);
        if (!repeats || (which === "free" && !isFree(keyframe))) kept.push(keyframe);
    }
    return kept;
}

/** Puts `laid` in the place of what begins within the stretch, and goes back at its stop. */
function lay(keyframes: readonly WishedKeyframe[], stretch: Stretch, laid: WishedKeyframe, whole: Rect): WishedKeyframe[] {
    const before = keyframes.filter((keyframe) => keyframe.tick < stretch.start);
    const until = keyframes.filter((keyframe) => keyframe.tick < stretch.stop);
    const after = keyframes.slice(until.length);
    const result = [...before, laid];
    if (after[0]?.tick !== stretch.stop) {
        const back = until[until.length - 1];
        result.push(back ? { ...back, tick: stretch.stop } : { tick: stretch.stop, rect: whole, origin: "start", index: 0 });
    }
    result.push(...after);
    return result;
}

/** Where a move that would touch a stretch without moves has to wait. */
function waiting(stretches: readonly Stretch[], fade: number): (tick: number) => number {
    // In the order of their starts: what one stretch moves to its stop may fall into the next.
    const sorted = [...stretches].sort((a, b) => a.start - b.start);
    return (tick) => {
        let time = tick;
        for (const stretch of sorted) {
            const reaches = fade > 0 ? time > stretch.start - fade : time >= stretch.start;
            if (reaches && time < stretch.stop) time = stretch.stop;
        }
        return time;
    };
}

function withRests(keyframes: readonly WishedKeyframe[], apart: number, outOf: (tick: number) => number): WishedKeyframe[] {
    const kept: WishedKeyframe[] = [];
    keyframes.forEach((keyframe, i) => {
        if (!isFree(keyframe)) {
            kept.push(keyframe);
            return;
        }
        const last = kept[kept.length - 1];
        const tick = last ? outOf(Math.max(keyframe.tick, last.tick + apart)) : keyframe.tick;
        const next = keyframes[i + 1];
        const named = keyframes.find((other, k) => k > i && !isFree(other));
        const overtaken = next !== undefined && next.tick <= tick;
        const tooClose = named !== undefined && named.tick < tick + apart;
        if (!overtaken && !tooClose) kept.push({ ...keyframe, tick });
    });
    return kept;
}

/** The keyframes that the wishes make of the engine's. Without wishes they are those given, in their order. */
export function applyWishes(keyframes: readonly EngineKeyframe[], setup: WishSetup, wishes: Wishes): WishedKeyframe[] {
    const given = keyframes.map((keyframe, index): WishedKeyframe => ({ ...keyframe, origin: "keyframe", index }));
    if (isEmptyWishes(wishes)) return given;
    const whole = wholeOf(setup);
    const limited = limitedBy(setup, wishes);
    let wished = withoutOvertaken(given.sort((a, b) => a.tick - b.tick || a.index - b.index));
    wished = wished.map((keyframe) => ({ ...keyframe, rect: limited(keyframe.rect) }));
    wishes.whole.forEach((stretch, index) => {
        wished = lay(wished, stretch, { tick: stretch.start, rect: whole, origin: "whole", index }, whole);
    });
    wishes.pins.forEach((pin, index) => {
        wished = lay(wished, pin, { tick: pin.start, rect: pin.rect, origin: "pin", index }, whole);
    });
    wished = withoutRepeats(wished, "free");
    const outOf = waiting(wishes.keepOut, setup.fade);
    wished = withoutOvertaken(wished.map((keyframe) => (isFree(keyframe) ? { ...keyframe, tick: outOf(keyframe.tick) } : keyframe)));
    wished = withoutRepeats(wished, "free");
    if (wishes.leastRest !== null) wished = withRests(wished, setup.fade + wishes.leastRest, outOf);
    wished = withoutRepeats(wished, "all");
    if (setup.clip.stop > setup.clip.start) wished = wished.filter((keyframe) => keyframe.tick < setup.clip.stop);
    return wished;
}
