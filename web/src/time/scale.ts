// The timeline's scale: which stretch of time the width of the canvas shows.

export interface TimeScale {
    /** Seconds at the left edge. */
    start: number;
    /** Seconds a pixel. */
    perPixel: number;
    /** Pixels. */
    width: number;
}

/** What can be seen at all. */
export interface Extent {
    start: number;
    stop: number;
}

/** The closest zoom: a hundred pixels are a twentieth of a second. */
const kSmallestPerPixel = 0.0005;

export function toX(scale: TimeScale, time: number): number {
    return (time - scale.start) / scale.perPixel;
}

export function toTime(scale: TimeScale, x: number): number {
    return scale.start + x * scale.perPixel;
}

export function stopOf(scale: TimeScale): number {
    return toTime(scale, scale.width);
}

export function fitAll(extent: Extent, width: number): TimeScale {
    const length = Math.max(extent.stop - extent.start, kSmallestPerPixel * width);
    return { start: extent.start, perPixel: length / Math.max(1, width), width };
}

/** Brings a scale back to where there is something to see. */
export function bounded(scale: TimeScale, extent: Extent): TimeScale {
    const all = fitAll(extent, scale.width);
    const perPixel = Math.min(Math.max(scale.perPixel, kSmallestPerPixel), all.perPixel);
    const latest = extent.stop - perPixel * scale.width;
    return { ...scale, perPixel, start: Math.max(extent.start, Math.min(scale.start, latest)) };
}

/** Zooms by `factor` (above 1 is closer) around the moment at `x`, which keeps its place. */
export function zoomAt(scale: TimeScale, extent: Extent, x: number, factor: number): TimeScale {
    const time = toTime(scale, x);
    const all = fitAll(extent, scale.width);
    const perPixel = Math.min(Math.max(scale.perPixel / factor, kSmallestPerPixel), all.perPixel);
    return bounded({ ...scale, perPixel, start: time - x * perPixel }, extent);
}

export function panBy(scale: TimeScale, extent: Extent, pixels: number): TimeScale {
    return bounded({ ...scale, start: scale.start + pixels * scale.perPixel }, extent);
}

/** Moves as little as needed for `time` to be seen with a margin, a share of the width. */
export function reveal(scale: TimeScale, extent: Extent, time: number, margin = 0.1): TimeScale {
    const span = scale.width * scale.perPixel;
    if (time < scale.start + span * margin) return bounded({ ...scale, start: time - span * margin }, extent);
    if (time > scale.start + span * (1 - margin)) {
        return bounded({ ...scale, start: time - span * (1 - margin) }, extent);
    }
    return scale;
}

/** Steps that people count time in, seconds. */
const kSteps = [
    0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200,
    14400, 36000, 86400,
];

export interface Ticks {
    step: number;
    decimals: number;
    times: number[];
}

/** Moments to label, at least `apart` pixels from each other. */
export function ticksOf(scale: TimeScale, apart: number): Ticks {
    const least = apart * scale.perPixel;
    const step = kSteps.find((candidate) => candidate >= least) ?? Math.ceil(least / 86400) * 86400;
    const decimals = step < 0.01 ? 3 : step < 0.1 ? 2 : step < 1 ? 1 : 0;
    const times: number[] = [];
    const stop = stopOf(scale);
    for (let i = Math.ceil(scale.start / step - 1e-9); i * step <= stop + step * 1e-9; ++i) times.push(i * step);
    return { step, decimals, times };
}
