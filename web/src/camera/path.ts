// What the picture shows at every moment: the keyframes, and the moves between them. The same rules as the library's
// CameraPath (docs/camera-path.md), to the last bit: what is saved here equals what the command writes.
import type { Rect, Size } from "../model/geometry";
import { ease, kDefaultEasing, type Easing } from "./easing";
import { evenStep } from "./evenStep";

export interface Frame extends Rect {
    /** The frame is wider or higher than the recording, and stands out evenly on both sides. */
    overhangs: boolean;
}

export interface Move {
    /** Ticks. */
    startTick: number;
    /** Seconds. */
    start: number;
    /** Seconds: where the move is over, or where the next one takes over. */
    stop: number;
    from: Frame;
    to: Frame;
    cutShort: boolean;
    /** Index in the list of keyframes. */
    keyframe: number;
}

export interface PathSetup {
    recording: Size;
    target: Size;
    /** Seconds. */
    fade: number;
    /** Seconds. */
    clipStart: number;
    easing?: Easing;
    /** Ticks a second; without it, ticks are seconds. */
    timeScale?: number;
}

export interface PathKeyframe {
    seconds: number;
    /** Ticks of `timeScale`, where they are known exactly. */
    tick?: number;
    rect: Rect;
}

interface Span {
    low: number;
    size: number;
}

function clamp(value: number, low: number, high: number): number {
    return value < low ? low : value > high ? high : value;
}

/** A frame's low edge in one dimension, moved so that the frame lies inside, or stands out evenly. */
function placed(low: number, size: number, limit: number): number {
    return size > limit ? (limit - size) / 2 : clamp(low, 0, limit - size);
}

/** A moment counts as a whole tick when it is that near, as a share of itself: dividing and multiplying rounds off no more. */
const kTickRounding = 4 * Number.EPSILON;

// Sides on the way, pixels: where moves cut each other short while their easing overshoots, they would leave all numbers.
const kLeastSide = 2 ** -20;
const kMostSide = 2 ** 64;

function allowedScale(from: Size, scale: number): number {
    // 1 always, as a side at the end of its range may be rounded beyond it.
    const least = Math.min(1, kLeastSide / Math.min(from.width, from.height));
    const most = Math.max(1, kMostSide / Math.max(from.width, from.height));
    return clamp(scale, least, most);
}

function sizeBetween(from: number, to: number, scale: number, progress: number): number {
    const size = from * scale;
    return progress >= 0 && progress <= 1 ? clamp(size, Math.min(from, to), Math.max(from, to)) : size;
}

function lowBetween(from: Span, to: Span, size: number, share: number, limit: number): number {
    let low: number;
    if (from.size <= limit && to.size <= limit) {
        low = from.low + (to.low - from.low) * share;
    } else if (size < limit && (from.size < limit || to.size < limit)) {
        // From where the frame begins to fit, with its low edge at 0, the edge goes along with the size.
        const fitting = from.size < limit ? from : to;
        low = fitting.low * ((limit - size) / (limit - fitting.size));
    } else {
        low = (limit - size) / 2;
    }
    return placed(low, size, limit);
}

export class CameraPath {
    readonly moves: Move[] = [];
    readonly whole: Frame;
    private readonly easing: Easing;
    private readonly timeScale: number;
    private readonly fadeTicks: number;

    /** Keyframes may come in any order; of several at one time the last one given counts. */
    constructor(
        keyframes: readonly PathKeyframe[],
        readonly setup: PathSetup,
    ) {
        this.easing = setup.easing ?? kDefaultEasing;
        this.timeScale = setup.timeScale ?? 1;
        // Whole on a clock of ticks: the fade in seconds was made of them.
        this.fadeTicks = setup.timeScale === undefined ? setup.fade : Math.round(setup.fade * setup.timeScale);
        const clipStart = this.toTicks(setup.clipStart);
        this.whole = this.frameOf({ left: 0, top: 0, ...setup.recording });
        const order = keyframes.map((_, index) => index).sort((a, b) => {
            return (keyframes[a] as PathKeyframe).seconds - (keyframes[b] as PathKeyframe).seconds || a - b;
        });
        const startOf = (index: number): number => {
            const { tick, seconds } = keyframes[index] as PathKeyframe;
            return Math.max(tick ?? this.toTicks(seconds), clipStart);
        };
        order.forEach((index, i) => {
            const next = order[i + 1];
            const startTick = startOf(index);
            if (next !== undefined && startOf(next) === startTick) return;
            const from = this.frameAtTick(startTick);
            const start = startTick / this.timeScale;
            const last = this.moves[this.moves.length - 1];
            if (last && last.stop > start) {
                last.stop = start;
                last.cutShort = true;
            }
            const to = this.frameOf((keyframes[index] as PathKeyframe).rect);
            const stop = (startTick + this.fadeTicks) / this.timeScale;
            this.moves.push({ startTick, start, stop, from, to, cutShort: false, keyframe: index });
        });
    }

    /** The index of the last move that has begun; -1 before the first. */
    moveAt(seconds: number): number {
        return this.moveAtTick(this.toTicks(seconds));
    }

    frameAt(seconds: number): Frame {
        return this.frameAtTick(this.toTicks(seconds));
    }

    private toTicks(seconds: number): number {
        const ticks = seconds * this.timeScale;
        if (this.timeScale === 1) return ticks;
        const nearest = Math.round(ticks);
        return Math.abs(ticks - nearest) <= Math.abs(ticks) * kTickRounding ? nearest : ticks;
    }

    private moveAtTick(tick: number): number {
        let low = 0;
        let high = this.moves.length;
        while (low < high) {
            const middle = (low + high) >>> 1;
            if ((this.moves[middle] as Move).startTick <= tick) low = middle + 1;
            else high = middle;
        }
        return low - 1;
    }

    private frameAtTick(tick: number): Frame {
        const move = this.moves[this.moveAtTick(tick)];
        return move ? this.between(move, tick - move.startTick) : this.whole;
    }

    isMoving(seconds: number): boolean {
        const move = this.moves[this.moveAt(seconds)];
        return move !== undefined && seconds > move.start && seconds < move.stop;
    }

    /** The frame that the path shows for a rectangle once the move to it is over. */
    frameOf(rect: Rect): Frame {
        const { recording, target } = this.setup;
        let { width, height } = rect;
        if (rect.width * target.height >= rect.height * target.width) height = (rect.width * target.height) / target.width;
        else width = (rect.height * target.width) / target.height;
        return {
            left: placed(rect.left + rect.width / 2 - width / 2, width, recording.width),
            top: placed(rect.top + rect.height / 2 - height / 2, height, recording.height),
            width,
            height,
            overhangs: width > recording.width || height > recording.height,
        };
    }

    private between(move: Move, elapsed: number): Frame {
        const { recording } = this.setup;
        if (elapsed >= this.fadeTicks) return move.to;
        const { from, to } = move;
        const progress = ease(this.easing, elapsed / this.fadeTicks);
        const step = evenStep(from.width, to.width, progress);
        const scale = allowedScale(from, step.scale);
        const width = sizeBetween(from.width, to.width, scale, progress);
        const height = sizeBetween(from.height, to.height, scale, progress);
        return {
            left: lowBetween({ low: from.left, size: from.width }, { low: to.left, size: to.width }, width, step.share, recording.width),
            top: lowBetween({ low: from.top, size: from.height }, { low: to.top, size: to.height }, height, step.share, recording.height),
            width,
            height,
            overhangs: width > recording.width || height > recording.height,
        };
    }
}

/** Output pixels per recording pixel. */
export function zoomOf(frame: Rect, target: Size): number {
    return target.width / frame.width;
}
