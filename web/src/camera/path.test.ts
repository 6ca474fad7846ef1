import { describe, expect, it } from "vitest";
import { ease, kEasings } from "./easing";
import { CameraPath, type Frame } from "./path";

const setup = { recording: { width: 1280, height: 800 }, target: { width: 640, height: 400 }, fade: 1, clipStart: 0 };
const close = { seconds: 10, rect: { left: 640, top: 0, width: 640, height: 400 } };
const back = { seconds: 20, rect: { left: 0, top: 0, width: 1280, height: 800 } };

describe("easing", () => {
    it("begins at 0, ends at 1 and is half done half way where it is even on both sides", () => {
        for (const easing of [kEasings["ease-in-out"], kEasings.linear, kEasings.smooth]) {
            expect(ease(easing, 0)).toBe(0);
            expect(ease(easing, 1)).toBe(1);
            expect(ease(easing, 0.5)).toBeCloseTo(0.5, 9);
        }
    });
    it("agrees with the curve solved by hand", () => {
        // s = 1/4 on (0.42, 0), (0.58, 1): x = 3 * 9/16 * 1/4 * 0.42 + 3 * 3/4 * 1/16 * 0.58 + 1/64
        const x = (3 * 9 * 0.42) / 64 + (3 * 3 * 0.58) / 64 + 1 / 64;
        const y = (3 * 3) / 64 + 1 / 64;
        expect(ease(kEasings["ease-in-out"], x)).toBeCloseTo(y, 9);
    });
});

describe("camera path", () => {
    const path = new CameraPath([close, back], setup);
    it("shows the whole recording until the first move", () => {
        expect(path.frameAt(-5)).toMatchObject({ left: 0, top: 0, width: 1280, height: 800, overhangs: false });
        expect(path.frameAt(10)).toMatchObject({ width: 1280 });
    });
    it("shows the keyframe from the end of its move on", () => {
        expect(path.frameAt(11)).toMatchObject({ left: 640, top: 0, width: 640, height: 400 });
        expect(path.frameAt(19.999)).toMatchObject({ left: 640, top: 0, width: 640, height: 400 });
    });
    it("closes in evenly, around the point that both frames share", () => {
        const half = path.frameAt(10.5);
        expect(half.width).toBeCloseTo(1280 / Math.SQRT2, 6);
        // The right and upper edges are shared.
        expect(half.left + half.width).toBeCloseTo(1280, 6);
        expect(half.top).toBeCloseTo(0, 6);
    });
    it("grows a frame of another shape on its short side, and moves it inside", () => {
        const frame = path.frameOf({ left: 1180, top: 0, width: 100, height: 100 });
        expect(frame).toEqual({ left: 1120, top: 0, width: 160, height: 100, overhangs: false });
    });
    it("stands out evenly where the shape does not fit", () => {
        const portrait = new CameraPath([], { ...setup, target: { width: 360, height: 640 } });
        const { whole } = portrait;
        expect(whole.overhangs).toBe(true);
        expect(whole.width).toBe(1280);
        expect(whole.top).toBeCloseTo((800 - (1280 * 640) / 360) / 2, 9);
    });
    it("starts from where the camera is when a move comes before the last one ended", () => {
        const early = new CameraPath([close, { ...back, seconds: 10.5 }], setup);
        const at = early.frameAt(10.5);
        expect(at.width).toBeCloseTo(1280 / Math.SQRT2, 6);
        expect(early.moves[0]?.cutShort).toBe(true);
        expect(early.frameAt(11.5)).toMatchObject({ width: 1280 });
    });
    it("keeps frames of a size where an easing overshoots again and again", () => {
        // Left alone, the sides would come to 1e-12, 1e86 and nothing at all.
        const small = { left: 640, top: 400, width: 16, height: 10 };
        const keyframes = [1, 1.5, 2, 2.5, 3].map((seconds, i) => ({ seconds, rect: i % 2 === 0 ? small : back.rect }));
        const wild = new CameraPath(keyframes, { ...setup, easing: { x1: 0.5, y1: 10, x2: 0.5, y2: 10 } });
        for (let time = 1; time < 4; time += 0.01) {
            const frame = wild.frameAt(time);
            expect(frame.height).toBeGreaterThanOrEqual(2 ** -20);
            expect(frame.width).toBeLessThanOrEqual(2 ** 64);
            expect(frame.width / frame.height).toBeCloseTo(1.6, 9);
            expect(Number.isFinite(frame.left) && Number.isFinite(frame.top)).toBe(true);
        }
    });
    it("takes keyframes in any order, of several at one time the last", () => {
        const other = { seconds: 10, rect: { left: 0, top: 0, width: 640, height: 400 } };
        const shuffled = new CameraPath([back, close, other], setup);
        expect(shuffled.moves).toHaveLength(2);
        expect(shuffled.frameAt(15)).toMatchObject({ left: 0, top: 0, width: 640 });
    });
    it("is continuous and of the exact shape at every moment", () => {
        let last: Frame = path.frameAt(9.9);
        for (let time = 9.9; time < 21.2; time += 0.001) {
            const frame = path.frameAt(time);
            expect(Math.abs(frame.width - last.width)).toBeLessThan(3);
            expect(Math.abs(frame.left - last.left)).toBeLessThan(3);
            expect(frame.width / frame.height).toBeCloseTo(1.6, 9);
            expect(frame.left).toBeGreaterThanOrEqual(0);
            expect(frame.left + frame.width).toBeLessThanOrEqual(1280 + 1e-9);
            last = frame;
        }
    });
});
