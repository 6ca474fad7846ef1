// A quantity over time at every zoom: maxima over bins, and over pairs of bins, and so on, so that any stretch is drawn
// by reading a few bins a pixel.

export interface Series {
    start: number;
    /** Seconds of a bin of the lowest level. */
    bin: number;
    /** The largest value; 0 when there is none. */
    peak: number;
    levels: Float32Array[];
}

/** The finest bin, seconds. */
const kBin = 0.1;
/** Longer recordings get wider bins. */
const kMostBins = 1 << 20;

export class SeriesBuilder {
    private readonly bin: number;
    private readonly values: Float32Array;

    constructor(
        private readonly start: number,
        stop: number,
    ) {
        const length = Math.max(0, stop - start);
        this.bin = Math.max(kBin, length / kMostBins);
        this.values = new Float32Array(Math.max(1, Math.ceil(length / this.bin) + 1));
    }

    get binSeconds(): number {
        return this.bin;
    }

    private index(time: number): number {
        return Math.min(this.values.length - 1, Math.max(0, Math.floor((time - this.start) / this.bin)));
    }

    add(time: number, value: number): void {
        const index = this.index(time);
        this.values[index] = (this.values[index] as number) + value;
    }

    raise(time: number, value: number): void {
        const index = this.index(time);
        this.values[index] = Math.max(this.values[index] as number, value);
    }

    finish(scale = 1): Series {
        let level = this.values;
        if (scale !== 1) level = level.map((value) => value * scale);
        const levels = [level];
        while (level.length > 1) {
            const above: Float32Array = new Float32Array(Math.ceil(level.length / 2));
            for (let i = 0; i < above.length; ++i) above[i] = Math.max(level[2 * i] as number, level[2 * i + 1] ?? 0);
            levels.push(above);
            level = above;
        }
        return { start: this.start, bin: this.bin, peak: level[0] ?? 0, levels };
    }
}

/** The largest value from `from` to `to`, seconds; bins at the ends count whole. */
export function peakBetween(series: Series, from: number, to: number): number {
    // The level whose bins are just below the stretch: at most three of them are read.
    const want = Math.log2(Math.max(1, (to - from) / series.bin));
    const levelIndex = Math.min(series.levels.length - 1, Math.max(0, Math.floor(want)));
    const level = series.levels[levelIndex] as Float32Array;
    const width = series.bin * 2 ** levelIndex;
    const last = Math.min(level.length - 1, Math.floor((to - series.start) / width - 1e-9));
    let peak = 0;
    for (let i = Math.max(0, Math.floor((from - series.start) / width)); i <= last; ++i) {
        peak = Math.max(peak, level[i] as number);
    }
    return peak;
}
