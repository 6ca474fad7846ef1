import { describe, expect, it } from "vitest";
import { keyframesOfShot, objectsOfSlice, readStages, shotOfSlice, slicesOfObject, slicesOfShot } from "./stages";

const rect = { left: 0, top: 0, right: 10, bottom: 10 };
const slice = (start: number, stop: number): { start: number; stop: number; blank: boolean; spaces: [] } => ({ start, stop, blank: false, spaces: [] });
const shot = (index: number, start: number, stop: number, mode: string): object => ({
    slice: index, start, stop, blank: false, mode, keyframe: true, tight: false, inWindow: false, window: false, noWindow: false, windowRect: rect, hotRect: rect,
});

/** Four slices of ten seconds; the first three were merged into one shot. */
const stages = readStages({
    ticksPerSecond: 100,
    target: { width: 10, height: 10 },
    fadeTicks: 50,
    clip: { startTick: 0, stopTick: 4000 },
    valueObjects: [
        { type: "Click", start: 4, stop: 5, rect },
        { type: "Hover", start: 18, stop: 19.8, rect },
        { type: "Move", start: 35, stop: 36, rect },
    ],
    slices: [slice(0, 10), slice(10, 20), slice(20, 30), slice(30, 40)],
    shots: [shot(0, 0, 30, "wide"), shot(3, 30, 40, "tight")] as never,
    keyframes: [
        { tick: 150, seconds: 1.5, left: 0, top: 0, width: 10, height: 10, reason: "wide" },
        { tick: 2800, seconds: 28, left: 0, top: 0, width: 5, height: 5, reason: "tight" },
    ],
});

describe("stages", () => {
    it("count in seconds", () => {
        expect(stages).toMatchObject({ fade: 0.5, clip: { start: 0, stop: 40 } });
    });
    it("link slices and shots both ways", () => {
        expect(slicesOfShot(stages, 0)).toEqual([0, 1, 2]);
        expect(slicesOfShot(stages, 1)).toEqual([3]);
        expect([0, 1, 2, 3].map((i) => shotOfSlice(stages, i))).toEqual([0, 0, 0, 1]);
    });
    it("link objects to the slices in which they count, their decay included", () => {
        // A click counts for four seconds after its end, a hover for half a second.
        expect(slicesOfObject(stages, 0)).toEqual([0]);
        expect(slicesOfObject(stages, 1)).toEqual([1, 2]);
        expect(objectsOfSlice(stages, 2)).toEqual([1]);
        expect(objectsOfSlice(stages, 3)).toEqual([2]);
    });
    it("link keyframes to their shots, though they set off before them", () => {
        expect(stages.keyframes.map((keyframe) => keyframe.shot)).toEqual([0, 1]);
        expect(keyframesOfShot(stages, 1)).toEqual([1]);
    });
});
