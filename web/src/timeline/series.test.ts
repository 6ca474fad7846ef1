import { describe, expect, it } from "vitest";
import { peakBetween, SeriesBuilder } from "./series";

/** A generator of numbers from 0 to 1 that starts anew with the same seed. */
function numbers(seed: number): () => number {
    let state = seed >>> 0;
    return () => {
        state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
        return state / 2 ** 32;
    };
}

describe("series", () => {
    it("sums within a bin and keeps peaks", () => {
        const builder = new SeriesBuilder(0, 10);
        builder.add(1.01, 2);
        builder.add(1.09, 3);
        builder.raise(5, 4);
        builder.raise(5.01, 1);
        const series = builder.finish();
        expect(series.peak).toBe(5);
        expect(peakBetween(series, 1, 1.1)).toBe(5);
        expect(peakBetween(series, 4.95, 5.2)).toBe(4);
        expect(peakBetween(series, 8, 10)).toBe(0);
    });
    it("never misses a peak and never sees one that is far away", () => {
        const seed = 20240613;
        const next = numbers(seed);
        const values: [number, number][] = Array.from({ length: 400 }, () => [next() * 1000, next()]);
        const builder = new SeriesBuilder(0, 1000);
        for (const [time, value] of values) builder.raise(time, value);
        const series = builder.finish();
        for (let i = 0; i < 500; ++i) {
            const from = next() * 900;
            const width = 0.1 + next() ** 3 * 100;
            const inside = values.filter(([time]) => time >= from && time < from + width);
            const near = values.filter(([time]) => time >= from - width - 0.2 && time < from + 2 * width + 0.2);
            const peak = peakBetween(series, from, from + width);
            const most = (list: [number, number][]): number => Math.fround(Math.max(0, ...list.map(([, value]) => value)));
            expect(peak, `seed ${seed}, ${from} + ${width}`).toBeGreaterThanOrEqual(most(inside));
            expect(peak, `seed ${seed}, ${from} + ${width}`).toBeLessThanOrEqual(most(near));
        }
    });
});
