import { describe, expect, it } from "vitest";
import { readRecording } from "../model/readRecording";
import { followClicks } from "./clickFollowing";
import { figuresOf } from "./figures";
import { CameraPath } from "./path";

const header = `{"format":"orvanta-recording","version":1,"timeScale":1000}`;
/** A minute on 1280x800 with a press at 10 s in the upper left and one at 30 s in the lower right. */
const recording = readRecording(
    [
        header,
        `[0,"region",0,0,1280,800]`,
        `[9000,"cursor",100,100]`,
        `[10000,"action",0]`,
        `[10100,"action",1]`,
        `[29000,"cursor",1200,700]`,
        `[30000,"action",0]`,
        `[30100,"action",1]`,
        `[60000,"cursor",5,5]`,
    ].join("\n"),
    "two.jsonl",
);
const setup = { recording: { width: 1280, height: 800 }, target: { width: 640, height: 400 }, fade: 1, clipStart: 0 };
const clip = { start: 0, stop: 60 };

describe("figures", () => {
    it("of the whole recording: all inside, nothing readable, no move", () => {
        expect(figuresOf(new CameraPath([], setup), recording, clip)).toEqual({
            presses: 2, pressesInside: 2, readable: 0, meanZoom: 0.5, movesPerMinute: 0, travel: 0, longestStill: 60,
        });
    });
    it("of one close frame from 5 s on: one press of two inside and readable", () => {
        const path = new CameraPath([{ seconds: 5, rect: { left: 0, top: 0, width: 640, height: 400 } }], setup);
        const figures = figuresOf(path, recording, clip);
        expect(figures).toMatchObject({ presses: 2, pressesInside: 1, movesPerMinute: 1, longestStill: 54 });
        expect(figures.readable).toBeCloseTo(0.5, 6);
        // From (640, 400) to (320, 200), in widths of 1280.
        expect(figures.travel).toBeCloseTo(Math.hypot(320, 200) / 1280, 9);
        // 5 s at 0.5, 54 s at 1 and a second between.
        expect(figures.meanZoom).toBeGreaterThan((5 * 0.5 + 54 + 0.5) / 60);
        expect(figures.meanZoom).toBeLessThan((5 * 0.5 + 54 + 1) / 60);
    });
});

describe("following clicks", () => {
    it("goes to each press at zoom 1 ahead of it, and back 2.5 s after it", () => {
        const keyframes = followClicks(recording.presses, recording, setup.target, 1);
        expect(keyframes.map((keyframe) => keyframe.seconds)).toEqual([9.7, 12.5, 29.7, 32.5]);
        expect(keyframes[0]?.rect).toEqual({ left: 0, top: 0, width: 640, height: 400 });
        expect(keyframes[2]?.rect).toEqual({ left: 640, top: 400, width: 640, height: 400 });
        expect(keyframes[3]?.rect).toMatchObject({ width: 1280, height: 800 });
    });
    it("stays between presses that are close in time", () => {
        const press = (time: number, x: number): (typeof recording.presses)[number] => ({ time, release: time, button: "left", x, y: 100 });
        const keyframes = followClicks([press(10, 100), press(14, 1200)], recording, setup.target, 1);
        expect(keyframes.map((keyframe) => keyframe.seconds)).toEqual([9.7, 13.7, 16.5]);
    });
    it("does not move without presses", () => {
        expect(followClicks([], recording, setup.target, 1)).toEqual([]);
    });
});
