// What people do to a path, said as wishes: they then hold for any later computation too.
import type { Rect, Size } from "../model/geometry";
import type { Pin, Stretch, WishedKeyframe, Wishes } from "../camera/wishes";

export type WishKind = "pin" | "whole" | "keep-out";

/** A wish that covers a stretch, and where it stands. */
export interface WishRef extends Stretch {
    kind: WishKind;
    /** In its list of `Wishes`. */
    index: number;
    rect: Rect | null;
}

/** Every wish that covers a stretch, in the order of the lists. */
export function wishList(wishes: Wishes): WishRef[] {
    return [
        ...wishes.pins.map((pin, index): WishRef => ({ kind: "pin", index, start: pin.start, stop: pin.stop, rect: pin.rect })),
        ...wishes.whole.map((stretch, index): WishRef => ({ kind: "whole", index, ...stretch, rect: null })),
        ...wishes.keepOut.map((stretch, index): WishRef => ({ kind: "keep-out", index, ...stretch, rect: null })),
    ];
}

export function withoutWish(wishes: Wishes, ref: Pick<WishRef, "kind" | "index">): Wishes {
    const without = <T>(list: readonly T[]): T[] => list.filter((_, i) => i !== ref.index);
    switch (ref.kind) {
        case "pin":
            return { ...wishes, pins: without(wishes.pins) };
        case "whole":
            return { ...wishes, whole: without(wishes.whole) };
        case "keep-out":
            return { ...wishes, keepOut: without(wishes.keepOut) };
    }
}

export function withPin(wishes: Wishes, pin: Pin): Wishes {
    return { ...wishes, pins: [...wishes.pins, pin] };
}

export function withWhole(wishes: Wishes, stretch: Stretch): Wishes {
    return { ...wishes, whole: [...wishes.whole, stretch] };
}

export function withKeepOut(wishes: Wishes, stretch: Stretch): Wishes {
    return { ...wishes, keepOut: [...wishes.keepOut, stretch] };
}

/** The stretch from a keyframe to the next one; -1 is the time before the first. */
export function holdOf(keyframes: readonly WishedKeyframe[], index: number, clip: Stretch): Stretch {
    return {
        start: index < 0 ? clip.start : Math.max(clip.start, keyframes[index]?.tick ?? clip.start),
        stop: keyframes[index + 1]?.tick ?? clip.stop,
    };
}

/** Shows `rect` where the keyframe of that index holds. A pin that stands there already gets the new frame. */
export function reframed(wishes: Wishes, keyframes: readonly WishedKeyframe[], index: number, rect: Rect, clip: Stretch): Wishes {
    const keyframe = keyframes[index];
    if (keyframe?.origin === "pin") {
        return { ...wishes, pins: wishes.pins.map((pin, i) => (i === keyframe.index ? { ...pin, rect } : pin)) };
    }
    const hold = holdOf(keyframes, index, clip);
    return hold.stop > hold.start ? withPin(wishes, { ...hold, rect }) : wishes;
}

/** Leaves a keyframe out: the camera stays where it was until the next one. */
export function withoutKeyframe(wishes: Wishes, keyframes: readonly WishedKeyframe[], index: number, clip: Stretch): Wishes {
    const keyframe = keyframes[index];
    if (!keyframe) return wishes;
    if (keyframe.origin === "pin" || keyframe.origin === "whole") {
        return withoutWish(wishes, { kind: keyframe.origin, index: keyframe.index });
    }
    const hold = holdOf(keyframes, index, clip);
    return hold.stop > hold.start ? withKeepOut(wishes, hold) : wishes;
}

/**
 * Lets a keyframe begin at another tick, between its neighbours. A pin or stretch of that start is moved itself; one of
 * the engine's waits behind a stretch without moves, or comes earlier as a pin of its own frame.
 */
export function withKeyframeAt(wishes: Wishes, keyframes: readonly WishedKeyframe[], index: number, tick: number, clip: Stretch): Wishes {
    const keyframe = keyframes[index];
    if (!keyframe) return wishes;
    const earliest = (keyframes[index - 1]?.tick ?? clip.start - 1) + 1;
    const latest = (keyframes[index + 1]?.tick ?? clip.stop) - 1;
    const to = Math.min(Math.max(tick, earliest), latest);
    if (to === keyframe.tick || latest < earliest) return wishes;
    const moveStart = <T extends Stretch>(list: readonly T[]): T[] =>
        list.map((entry, i) => (i === keyframe.index ? { ...entry, start: Math.min(to, entry.stop - 1) } : entry));
    if (keyframe.origin === "pin") return { ...wishes, pins: moveStart(wishes.pins) };
    if (keyframe.origin === "whole") return { ...wishes, whole: moveStart(wishes.whole) };
    // Where a pin or stretch ends, its end is what moves.
    const moveStop = <T extends Stretch>(list: readonly T[]): T[] =>
        list.map((entry) => (entry.stop === keyframe.tick && to > entry.start ? { ...entry, stop: to } : entry));
    if ([...wishes.pins, ...wishes.whole].some((entry) => entry.stop === keyframe.tick)) {
        return { ...wishes, pins: moveStop(wishes.pins), whole: moveStop(wishes.whole) };
    }
    const waited = wishes.keepOut.findIndex((entry) => entry.stop === keyframe.tick);
    if (waited >= 0) {
        const entry = wishes.keepOut[waited] as Stretch;
        if (to > entry.start) {
            return { ...wishes, keepOut: wishes.keepOut.map((other, i) => (i === waited ? { ...other, stop: to } : other)) };
        }
        return withKeyframeEarlier(withoutWish(wishes, { kind: "keep-out", index: waited }), keyframe, to, latest + 1);
    }
    if (to > keyframe.tick) return withKeepOut(wishes, { start: keyframe.tick, stop: to });
    return withKeyframeEarlier(wishes, keyframe, to, latest + 1);
}

function withKeyframeEarlier(wishes: Wishes, keyframe: WishedKeyframe, tick: number, stop: number): Wishes {
    return withPin(wishes, { start: tick, stop, rect: keyframe.rect });
}

/** The corner or the side of a frame that a hand holds; `move` is the whole frame. */
export type Grip = "move" | "nw" | "ne" | "sw" | "se";

/** The smallest frame that a hand can draw, recording pixels: below it the pixels themselves fill the picture. */
const kSmallestWidth = 64;

/** A frame after a hand has pulled it by `dx`, `dy` recording pixels: of the target's shape, inside where it fits, whole pixels. */
export function pulled(frame: Rect, grip: Grip, dx: number, dy: number, target: Size, recording: Size): Rect {
    const shape = target.width / target.height;
    let { left, top, width } = frame;
    if (grip === "move") {
        left += dx;
        top += dy;
    } else {
        const west = grip === "nw" || grip === "sw";
        const north = grip === "nw" || grip === "ne";
        // The way along the diagonal counts, so that the corner follows the hand whichever way it goes.
        const wider = ((west ? -dx : dx) + (north ? -dy : dy) * shape) / 2;
        const whole = Math.max(recording.width, recording.height * shape);
        const changed = Math.min(Math.max(width + wider, Math.min(kSmallestWidth, whole)), whole);
        if (west) left += width - changed;
        if (north) top += (width - changed) / shape;
        width = changed;
    }
    const height = width / shape;
    const inside = (low: number, size: number, limit: number): number =>
        size >= limit ? (limit - size) / 2 : Math.min(Math.max(low, 0), limit - size);
    const rect = {
        left: Math.round(inside(left, width, recording.width)),
        top: Math.round(inside(top, height, recording.height)),
        width: Math.max(1, Math.round(width)),
        height: Math.max(1, Math.round(height)),
    };
    return rect;
}
