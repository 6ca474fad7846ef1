// The arithmetic of an even zoom: how far a frame is when the logarithm of its size has come a given way. The same steps
// as the library's, in the same order: additions, multiplications and divisions alone, so that both come to the same last
// bit. Math.log and Math.expm1 differ from browser to browser.

const kLn2 = 0.6931471805599453;
/** The series of atanh is taken to this power, and that of e^x - 1 to the other. */
const kLastAtanhPower = 33;
const kLastGrowthPower = 13;
const kGrowthSeriesReach = 0.25;

/** ln(to / from), both above 0. */
function logRatio(first: number, last: number): number {
    let from = first;
    let to = last;
    let doublings = 0;
    while (to > 2 * from) {
        to /= 2;
        doublings += 1;
    }
    while (from > 2 * to) {
        from /= 2;
        doublings -= 1;
    }
    const z = (to - from) / (to + from);
    let sum = 0;
    for (let power = kLastAtanhPower; power >= 1; power -= 2) sum = sum * z * z + 1 / power;
    return doublings * kLn2 + 2 * z * sum;
}

/** e^x - 1. */
function growth(exponent: number): number {
    let x = exponent;
    let doublings = 0;
    while (Math.abs(x) > kGrowthSeriesReach) {
        x /= 2;
        ++doublings;
    }
    let sum = 1;
    for (let power = kLastGrowthPower; power >= 2; --power) sum = 1 + (sum * x) / power;
    let result = sum * x;
    for (; doublings > 0; --doublings) result *= result + 2;
    return result;
}

export interface EvenStep {
    /** The frame's size by the first size. */
    scale: number;
    /** The share of the way that the edges have come. */
    share: number;
}

/** Sizes above 0; `progress` 0 to 1, and beyond where an easing overshoots. */
export function evenStep(from: number, to: number, progress: number): EvenStep {
    const way = logRatio(from, to);
    if (way === 0) return { scale: 1, share: progress };
    const done = progress * way;
    const scale = done < 0 ? 1 / (1 + growth(-done)) : 1 + growth(done);
    return { scale, share: growth(done) / growth(way) };
}
