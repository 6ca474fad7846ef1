import { describe, expect, it } from "vitest";
import { applyWishes, kNoWishes, type WishedKeyframe, type Wishes } from "../camera/wishes";
import { pulled, reframed, withKeyframeAt, withoutKeyframe, withoutWish, wishList } from "./edits";
import { History } from "./history";

const clip = { start: 0, stop: 1000 };
const recording = { width: 1000, height: 1000 };
const target = { width: 100, height: 100 };
const A = { left: 100, top: 100, width: 200, height: 200 };
const B = { left: 500, top: 500, width: 200, height: 200 };
const P = { left: 300, top: 0, width: 100, height: 100 };
const engine = [{ tick: 100, rect: A }, { tick: 400, rect: B }];

function apply(wishes: Wishes): WishedKeyframe[] {
    return applyWishes(engine, { recording, target, fade: 10, clip }, wishes);
}

function shown(wishes: Wishes): [number, unknown][] {
    return apply(wishes).map(({ tick, rect }) => [tick, rect]);
}

describe("edits", () => {
    it("another frame for a keyframe holds until the next one", () => {
        const wishes = reframed(kNoWishes, apply(kNoWishes), 0, P, clip);
        expect(shown(wishes)).toEqual([[100, P], [400, B]]);
    });
    it("another frame before the first keyframe holds from the clip's start", () => {
        expect(shown(reframed(kNoWishes, apply(kNoWishes), -1, P, clip))).toEqual([[0, P], [100, A], [400, B]]);
    });
    it("a frame changed twice is one pin", () => {
        const once = reframed(kNoWishes, apply(kNoWishes), 1, P, clip);
        const twice = reframed(once, apply(once), 1, A, clip);
        expect(twice.pins).toEqual([{ start: 400, stop: 1000, rect: A }]);
    });
    it("a deleted keyframe leaves the camera where it was", () => {
        expect(shown(withoutKeyframe(kNoWishes, apply(kNoWishes), 0, clip))).toEqual([[400, B]]);
        expect(shown(withoutKeyframe(kNoWishes, apply(kNoWishes), 1, clip))).toEqual([[100, A]]);
    });
    it("a deleted pin gives back what was there", () => {
        const pinned = reframed(kNoWishes, apply(kNoWishes), 0, P, clip);
        expect(withoutKeyframe(pinned, apply(pinned), 0, clip)).toEqual(kNoWishes);
    });
    it.each([150, 399, 60, 1])("a keyframe moved to %d begins there", (tick) => {
        const wishes = withKeyframeAt(kNoWishes, apply(kNoWishes), 0, tick, clip);
        expect(shown(wishes)).toEqual([[tick, A], [400, B]]);
    });
    it("a keyframe is not moved over its neighbours or out of the clip", () => {
        expect(shown(withKeyframeAt(kNoWishes, apply(kNoWishes), 0, 5000, clip))).toEqual([[399, A], [400, B]]);
        expect(shown(withKeyframeAt(kNoWishes, apply(kNoWishes), 1, 5000, clip))).toEqual([[100, A], [999, B]]);
        expect(shown(withKeyframeAt(kNoWishes, apply(kNoWishes), 1, 7, clip))).toEqual([[100, A], [101, B]]);
    });
    it("moved again, a keyframe goes on from where it is, both ways", () => {
        let wishes = withKeyframeAt(kNoWishes, apply(kNoWishes), 0, 150, clip);
        wishes = withKeyframeAt(wishes, apply(wishes), 0, 200, clip);
        expect(shown(wishes)).toEqual([[200, A], [400, B]]);
        expect(wishes.keepOut).toHaveLength(1);
        wishes = withKeyframeAt(wishes, apply(wishes), 0, 50, clip);
        expect(shown(wishes)).toEqual([[50, A], [400, B]]);
        wishes = withKeyframeAt(wishes, apply(wishes), 0, 80, clip);
        expect(shown(wishes)).toEqual([[80, A], [400, B]]);
    });
    it("wishes are listed in one row and taken away by their place in it", () => {
        const wishes: Wishes = { ...kNoWishes, pins: [{ start: 1, stop: 2, rect: P }], whole: [{ start: 3, stop: 4 }], keepOut: [{ start: 5, stop: 6 }] };
        expect(wishList(wishes).map((wish) => wish.kind)).toEqual(["pin", "whole", "keep-out"]);
        expect(wishList(wishes).reduce((left, wish) => withoutWish(left, { kind: wish.kind, index: 0 }), wishes)).toEqual(kNoWishes);
    });
});

describe("a frame pulled by hand", () => {
    const screen = { width: 1280, height: 800 };
    const shape = { width: 640, height: 400 };
    const frame = { left: 100, top: 100, width: 640, height: 400 };
    it("moves, and stops at the edges", () => {
        expect(pulled(frame, "move", 10.4, -5.2, shape, screen)).toEqual({ left: 110, top: 95, width: 640, height: 400 });
        expect(pulled(frame, "move", -500, 5000, shape, screen)).toEqual({ left: 0, top: 400, width: 640, height: 400 });
    });
    it("keeps the opposite corner and the shape when a corner is pulled", () => {
        const larger = pulled(frame, "se", 160, 100, shape, screen);
        expect(larger).toEqual({ left: 100, top: 100, width: 800, height: 500 });
        const smaller = pulled(frame, "nw", 160, 100, shape, screen);
        expect(smaller).toEqual({ left: 260, top: 200, width: 480, height: 300 });
    });
    it("never grows beyond the whole nor shrinks to nothing", () => {
        expect(pulled(frame, "se", 9000, 9000, shape, screen)).toMatchObject({ left: 0, top: 0, width: 1280, height: 800 });
        expect(pulled(frame, "nw", 9000, 9000, shape, screen).width).toBe(64);
    });
});

describe("history", () => {
    it("goes back and forth, and forgets what was undone at a new step", () => {
        const history = new History(0);
        history.set(1);
        history.set(2);
        history.undo();
        expect(history.value.value).toBe(1);
        history.redo();
        expect(history.value.value).toBe(2);
        history.undo();
        history.undo();
        history.undo();
        expect(history.value.value).toBe(0);
        expect(history.canUndo.value).toBe(false);
        history.set(7);
        expect(history.canRedo.value).toBe(false);
    });
});
