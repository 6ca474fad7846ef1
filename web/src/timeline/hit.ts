// What lies under a pointer on the timeline.
import type { Item } from "../model/items";
import { lowerBound } from "../model/search";
import { toTime, toX, type TimeScale } from "../time/scale";
import type { PlacedRow } from "./draw";
import { firstReaching, type EventRow, type Row, type SpanRow } from "./rows";

/** A pointer that is no further away hits, pixels. */
const kReach = 5;

function hitSpan(row: SpanRow, scale: TimeScale, x: number): number {
    const low = toTime(scale, x - kReach);
    const high = toTime(scale, x + kReach);
    let best = -1;
    let bestScore = Infinity;
    for (let i = firstReaching(row, low); i < row.start.length && (row.start[i] as number) <= high; ++i) {
        const left = toX(scale, row.start[i] as number);
        const right = toX(scale, row.stop[i] as number);
        const away = Math.max(left - x, x - right, 0);
        if (away > kReach) continue;
        // Nearer first; of those under the pointer the shortest, which a longer one would hide.
        const score = away * 1e6 + (right - left);
        if (score < bestScore) {
            best = i;
            bestScore = score;
        }
    }
    return best;
}

function hitEvent(row: EventRow, scale: TimeScale, x: number): number {
    const next = lowerBound(row.time, toTime(scale, x));
    let best = -1;
    let bestAway = kReach;
    for (const i of [next - 1, next]) {
        if (i < 0 || i >= row.time.length) continue;
        const away = Math.abs(toX(scale, row.time[i] as number) - x);
        if (away <= bestAway) {
            best = i;
            bestAway = away;
        }
    }
    return best;
}

export function rowAt(placed: readonly PlacedRow[], y: number): Row | null {
    for (const place of placed) if (y >= place.top - 1 && y < place.bottom + 1) return place.row;
    return null;
}

export function itemAt(row: Row, scale: TimeScale, x: number): Item | null {
    if (row.kind === "series") return null;
    const i = row.kind === "spans" ? hitSpan(row, scale, x) : hitEvent(row, scale, x);
    return i < 0 ? null : { kind: row.item, index: row.index[i] as number };
}
