// What the picture shows at every moment: the keyframes, and the moves between them. The same rules as the library's
// CameraPath (docs/camera-path.md), in seconds.
import type { Rect, Size } from "../model/geometry";
import { ease, kDefaultEasing, type Easing } from "./easing";

export interface Frame extends Rect {
    /** The frame is wider or higher than the recording, and stands out evenly on both sides. */
    overhangs: boolean;
}

export interface Move {
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
}

export interface PathKeyframe {
    seconds: number;
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

/** The share of the way from `from` to `to` at which a size stands whose logarithm has come the share `progress`. */
function evenShare(from: number, to: number, progress: number): number {
    const stretch = Math.log(to / from);
    // For nearly equal sizes the quotient below would divide rounding by rounding.
    return Math.abs(stretch) < 1e-9 ? progress : Math.expm1(stretch * progress) / Math.expm1(stretch);
}

function sizeBetween(from: number, to: number, share: number): number {
    const size = from + (to - from) * share;
    return share >= 0 && share <= 1 ? clamp(size, Math.min(from, to), Math.max(from, to)) : size;
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

    /** Keyframes may come in any order; of several at one time the last one given counts. */
    constructor(
        keyframes: readonly PathKeyframe[],
        readonly setup: PathSetup,
    ) {
        this.easing = setup.easing ?? kDefaultEasing;
        this.whole = this.frameOf({ left: 0, top: 0, ...setup.recording });
        const order = keyframes.map((_, index) => index).sort((a, b) => {
            return (keyframes[a] as PathKeyframe).seconds - (keyframes[b] as PathKeyframe).seconds || a - b;
        });
        const startOf = (index: number): number =>
            Math.max((keyframes[index] as PathKeyframe).seconds, setup.clipStart);
        order.forEach((index, i) => {
            const next = order[i + 1];
            const start = startOf(index);
            if (next !== undefined && startOf(next) === start) return;
            const from = this.frameAt(start);
            const last = this.moves[this.moves.length - 1];
            if (last && last.stop > start) {
                last.stop = start;
                last.cutShort = true;
            }
            const to = this.frameOf((keyframes[index] as PathKeyframe).rect);
            this.moves.push({ start, stop: start + setup.fade, from, to, cutShort: false, keyframe: index });
        });
    }

    /** The index of the last move that has begun; -1 before the first. */
    moveAt(seconds: number): number {
        let low = 0;
        let high = this.moves.length;
        while (low < high) {
            const middle = (low + high) >>> 1;
            if ((this.moves[middle] as Move).start <= seconds) low = middle + 1;
            else high = middle;
        }
        return low - 1;
    }

    frameAt(seconds: number): Frame {
        const move = this.moves[this.moveAt(seconds)];
        return move ? this.between(move, seconds - move.start) : this.whole;
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
        const { recording, fade } = this.setup;
        // Times are tick / scale, so a move that is over may lack a rounding of it.
        if (elapsed >= fade - 1e-9) return move.to;
        const { from, to } = move;
        const share = evenShare(from.width, to.width, ease(this.easing, elapsed / fade));
        const width = sizeBetween(from.width, to.width, share);
        const height = sizeBetween(from.height, to.height, share);
        return {
            left: lowBetween({ low: from.left, size: from.width }, { low: to.left, size: to.width }, width, share, recording.width),
            top: lowBetween({ low: from.top, size: from.height }, { low: to.top, size: to.height }, height, share, recording.height),
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
