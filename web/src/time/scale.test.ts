import { describe, expect, it } from "vitest";
import { bounded, fitAll, panBy, reveal, stopOf, ticksOf, toTime, toX, zoomAt } from "./scale";

const hour = { start: 0, stop: 3600 };

describe("time scale", () => {
    it("shows all of the extent from edge to edge", () => {
        const scale = fitAll(hour, 800);
        expect(toX(scale, 0)).toBe(0);
        expect(toX(scale, 3600)).toBeCloseTo(800, 9);
        expect(toTime(scale, 400)).toBeCloseTo(1800, 9);
    });
    it("keeps the moment under the pointer when zooming", () => {
        let scale = fitAll(hour, 1000);
        const time = toTime(scale, 250);
        for (let i = 0; i < 8; ++i) scale = zoomAt(scale, hour, 250, 1.7);
        expect(toTime(scale, 250)).toBeCloseTo(time, 6);
        expect(scale.perPixel).toBeLessThan(0.1);
    });
    it("never shows what lies outside", () => {
        const close = zoomAt(fitAll(hour, 1000), hour, 500, 20);
        const left = panBy(close, hour, -1e9);
        expect(left.start).toBe(0);
        const right = panBy(close, hour, 1e9);
        expect(stopOf(right)).toBeCloseTo(3600, 6);
        const out = zoomAt(close, hour, 10, 1e-9);
        expect(out.start).toBe(0);
        expect(stopOf(out)).toBeCloseTo(3600, 6);
    });
    it("ends zooming in at half a millisecond a pixel", () => {
        const scale = zoomAt(fitAll(hour, 1000), hour, 500, 1e12);
        expect(scale.perPixel).toBe(0.0005);
    });
    it("survives a recording of no length", () => {
        const scale = fitAll({ start: 5, stop: 5 }, 500);
        expect(toX(scale, 5)).toBe(0);
        expect(Number.isFinite(toTime(scale, 500))).toBe(true);
        expect(bounded(scale, { start: 5, stop: 5 }).start).toBe(5);
    });
    it("reveals a moment with as little motion as needed", () => {
        const scale = { start: 100, perPixel: 0.1, width: 1000 };
        expect(reveal(scale, hour, 150)).toBe(scale);
        expect(toX(reveal(scale, hour, 300), 300)).toBeCloseTo(900, 6);
        expect(toX(reveal(scale, hour, 50), 50)).toBeCloseTo(100, 6);
    });
});

describe("ruler", () => {
    it("labels moments that stand far enough apart", () => {
        for (const perPixel of [0.0005, 0.01, 0.4, 3, 20, 400]) {
            const scale = { start: 12.3, perPixel, width: 900 };
            const ticks = ticksOf(scale, 80);
            expect(ticks.step / perPixel).toBeGreaterThanOrEqual(80);
            for (const time of ticks.times) {
                expect(toX(scale, time)).toBeGreaterThanOrEqual(-1e-6);
                expect(toX(scale, time)).toBeLessThanOrEqual(900 + 1e-6);
            }
        }
    });
    it("writes as many decimals as a step needs", () => {
        expect(ticksOf({ start: 0, perPixel: 0.001, width: 100 }, 80)).toMatchObject({ step: 0.1, decimals: 1 });
        expect(ticksOf({ start: 0, perPixel: 0.1, width: 100 }, 80)).toMatchObject({ step: 10, decimals: 0 });
    });
});
