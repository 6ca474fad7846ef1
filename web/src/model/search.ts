// Looking up moments in sorted lists.

type Sorted = ArrayLike<number>;

/** The first index whose value is not below `value`; the length when there is none. */
export function lowerBound(sorted: Sorted, value: number): number {
    let low = 0;
    let high = sorted.length;
    while (low < high) {
        const middle = (low + high) >>> 1;
        if ((sorted[middle] as number) < value) low = middle + 1;
        else high = middle;
    }
    return low;
}

/** The first index whose value is above `value`; the length when there is none. */
export function upperBound(sorted: Sorted, value: number): number {
    let low = 0;
    let high = sorted.length;
    while (low < high) {
        const middle = (low + high) >>> 1;
        if ((sorted[middle] as number) <= value) low = middle + 1;
        else high = middle;
    }
    return low;
}

/** The last index whose value is not above `value`; -1 when there is none. */
export function lastAt(sorted: Sorted, value: number): number {
    return upperBound(sorted, value) - 1;
}
