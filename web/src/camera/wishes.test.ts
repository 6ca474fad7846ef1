import { describe, expect, it } from "vitest";
import { applyWishes, kNoWishes, type WishedKeyframe, type Wishes } from "./wishes";

const setup = { recording: { width: 1000, height: 1000 }, target: { width: 100, height: 100 }, fade: 10, clip: { start: 0, stop: 1000 } };
const A = { left: 100, top: 100, width: 200, height: 200 };
const B = { left: 500, top: 500, width: 200, height: 200 };
const P = { left: 300, top: 0, width: 100, height: 100 };

function wished(wishes: Partial<Wishes>): WishedKeyframe[] {
    return applyWishes([{ tick: 100, rect: A }, { tick: 200, rect: B }], setup, { ...kNoWishes, ...wishes });
}

describe("wishes", () => {
    it("change nothing where there are none, not even the order", () => {
        const keyframes = [{ tick: 300, rect: B }, { tick: 100, rect: A }];
        expect(applyWishes(keyframes, setup, kNoWishes).map(({ tick, rect }) => ({ tick, rect }))).toEqual(keyframes);
    });
    it("a pin takes the place of what begins within it, and goes back at its stop", () => {
        expect(wished({ pins: [{ start: 150, stop: 240, rect: P }] })).toEqual([
            { tick: 100, rect: A, origin: "keyframe", index: 0 },
            { tick: 150, rect: P, origin: "pin", index: 0 },
            { tick: 240, rect: B, origin: "keyframe", index: 1 },
        ]);
    });
    it("a stretch without moves leaves out a keyframe whose whole time it covers", () => {
        expect(wished({ keepOut: [{ start: 100, stop: 200 }] })).toEqual([{ tick: 200, rect: B, origin: "keyframe", index: 1 }]);
    });
});
