// Strokes of the hand: runs of cursor samples without a rest in them.
import type { CursorColumn } from "./recording";

export interface Stroke {
    start: number;
    stop: number;
    /** Indexes of its samples, the last one excluded. */
    first: number;
    end: number;
    /** Pixels along the way. */
    length: number;
}

/** A longer pause than that between two samples is a rest, seconds. */
const kRest = 0.2;

export function strokesOf(cursor: CursorColumn): Stroke[] {
    const strokes: Stroke[] = [];
    let open: Stroke | null = null;
    for (let i = 1; i < cursor.time.length; ++i) {
        const before = cursor.time[i - 1] as number;
        const now = cursor.time[i] as number;
        const dx = (cursor.x[i] as number) - (cursor.x[i - 1] as number);
        const dy = (cursor.y[i] as number) - (cursor.y[i - 1] as number);
        if (now - before > kRest || (dx === 0 && dy === 0)) {
            open = null;
            continue;
        }
        if (!open) {
            open = { start: before, stop: now, first: i - 1, end: i + 1, length: 0 };
            strokes.push(open);
        }
        open.stop = now;
        open.end = i + 1;
        open.length += Math.hypot(dx, dy);
    }
    return strokes;
}
