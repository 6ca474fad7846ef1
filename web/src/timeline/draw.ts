// Draws the timeline's rows: only what is seen, and no more marks than there are pixels.
import { lowerBound } from "../model/search";
import { timeText } from "../time/format";
import { stopOf, ticksOf, toTime, toX, type TimeScale } from "../time/scale";
import type { Palette } from "./palette";
import { firstReaching, type EventRow, type Row, type SeriesRow, type SpanRow } from "./rows";
import { peakBetween } from "./series";

/** Height of the ruler above the rows, pixels. */
export const kRuler = 22;
/** Space between rows of one group, and between groups, pixels. */
const kRowGap = 2;
const kGroupGap = 8;

export interface PlacedRow {
    row: Row;
    top: number;
    bottom: number;
}

export function placeRows(rows: readonly Row[]): { placed: PlacedRow[]; height: number } {
    let y = kRuler;
    let group = "";
    const placed = rows.map((row) => {
        y += row.group === group ? kRowGap : kGroupGap;
        group = row.group;
        const place = { row, top: y, bottom: y + row.height };
        y += row.height;
        return place;
    });
    return { placed, height: y + kGroupGap };
}

type Context = CanvasRenderingContext2D;

function drawRuler(ctx: Context, scale: TimeScale, palette: Palette, height: number): void {
    const ticks = ticksOf(scale, 84);
    ctx.font = palette.font;
    ctx.textBaseline = "middle";
    for (const time of ticks.times) {
        const x = Math.round(toX(scale, time)) + 0.5;
        ctx.fillStyle = palette.line;
        ctx.fillRect(x - 0.5, kRuler - 4, 1, height);
        ctx.fillStyle = palette.muted;
        ctx.fillText(timeText(time, ticks.decimals), x + 4, kRuler / 2);
    }
}

function drawSeries(ctx: Context, place: PlacedRow, row: SeriesRow, scale: TimeScale, palette: Palette): void {
    const { series } = row;
    if (series.peak <= 0) return;
    const height = place.bottom - place.top - 2;
    ctx.fillStyle = palette.ink(row.ink);
    ctx.beginPath();
    ctx.moveTo(0, place.bottom);
    for (let x = 0; x < scale.width; ++x) {
        const peak = peakBetween(series, toTime(scale, x), toTime(scale, x + 1));
        // The root lets a slow hand and a small change be seen beside a fast one and a whole screen.
        const y = place.bottom - height * Math.sqrt(peak / series.peak);
        ctx.lineTo(x, y);
        ctx.lineTo(x + 1, y);
    }
    ctx.lineTo(scale.width, place.bottom);
    ctx.fill();
}

function drawEvents(ctx: Context, place: PlacedRow, row: EventRow, scale: TimeScale, palette: Palette): void {
    const middle = (place.top + place.bottom) / 2;
    const half = (place.bottom - place.top) / 2 - 2;
    const end = stopOf(scale);
    let i = lowerBound(row.time, toTime(scale, -4));
    while (i < row.time.length && (row.time[i] as number) <= end + 4 * scale.perPixel) {
        const x = toX(scale, row.time[i] as number);
        ctx.fillStyle = palette.ink(row.ink(i));
        if (row.mark === "up-down") {
            const up = row.up?.(i) ?? false;
            ctx.fillRect(x - 0.75, up ? middle - half : middle + 1, 1.5, half - 1);
            // Steps the other way within the same pixel must not vanish behind this one.
            const next = i + 1;
            if (next < row.time.length && (row.up?.(next) ?? false) !== up) {
                i = next;
                continue;
            }
        } else if (row.mark === "tick") {
            ctx.fillRect(x - 0.75, place.top + 2, 1.5, place.bottom - place.top - 4);
        } else {
            ctx.beginPath();
            ctx.arc(x, middle, 3, 0, 2 * Math.PI);
            ctx.fill();
        }
        // The next mark that stands a pixel further.
        i = Math.max(i + 1, lowerBound(row.time, toTime(scale, x + 1)));
    }
}

const kLeastWidth = 2;
const kRound = 3;

function box(ctx: Context, x: number, y: number, width: number, height: number): void {
    if (width > 2 * kRound && height > 2 * kRound) ctx.roundRect(x, y, width, height, kRound);
    else ctx.rect(x, y, width, height);
}

function drawLabel(ctx: Context, text: string, left: number, right: number, y: number, colour: string): void {
    const from = Math.max(left, 0) + 6;
    const room = right - from - 4;
    if (room < 12) return;
    const width = ctx.measureText(text).width;
    if (width > room) return;
    ctx.fillStyle = colour;
    ctx.fillText(text, from, y);
}

/**
 * The runs of a row that stand as one block at a scale: spans that overlap or are less than a pixel apart, and of one
 * look, count as one where they are small; large ones stand alone.
 */
export function forEachRun(row: SpanRow, scale: TimeScale, visit: (from: number, to: number, i: number, count: number) => void): void {
    const end = stopOf(scale);
    let from = 0;
    let to = 0;
    let first = -1;
    let count = 0;
    const flush = (): void => {
        if (count > 0) visit(from, to, first, count);
        count = 0;
    };
    for (let i = firstReaching(row, scale.start); i < row.start.length && (row.start[i] as number) <= end; ++i) {
        const stop = row.stop[i] as number;
        if (stop < scale.start) continue;
        const left = toX(scale, row.start[i] as number);
        const right = Math.max(toX(scale, stop), left + kLeastWidth);
        const small = right - left < 6;
        if (count > 0 && small && to - from < 6 * count + 6 && left < to + 0.5 && row.ink(i) === row.ink(first)) {
            to = Math.max(to, right);
            ++count;
            continue;
        }
        flush();
        from = left;
        to = right;
        first = i;
        count = 1;
    }
    flush();
}

function drawSpans(ctx: Context, place: PlacedRow, row: SpanRow, scale: TimeScale, palette: Palette): void {
    const height = place.bottom - place.top;
    ctx.font = palette.font;
    ctx.textBaseline = "middle";
    forEachRun(row, scale, (from, to, i, count) => {
        const left = Math.max(from, -10);
        const right = Math.min(to, scale.width + 10);
        const width = Math.max(kLeastWidth, right - left - (count === 1 && right - left > 5 ? 1 : 0));
        const ink = palette.ink(row.ink(i));
        ctx.beginPath();
        if (row.hollow?.(i)) {
            ctx.strokeStyle = palette.line;
            ctx.lineWidth = 1;
            box(ctx, left + 0.5, place.top + 0.5, Math.max(1, width - 1), height - 1);
            ctx.stroke();
        } else {
            ctx.fillStyle = ink;
            box(ctx, left, place.top, width, height);
            ctx.fill();
        }
        if (row.text && count === 1 && height >= 14) {
            const colour = row.hollow?.(i) ? palette.muted : palette.ink(row.item === "evidence" ? "on-evidence" : `on-${row.id}`);
            drawLabel(ctx, row.text(i), left, right, (place.top + place.bottom) / 2 + 0.5, colour);
        }
    });
}

export function drawRows(ctx: Context, placed: readonly PlacedRow[], scale: TimeScale, palette: Palette, height: number): void {
    ctx.clearRect(0, 0, scale.width, height);
    drawRuler(ctx, scale, palette, height);
    for (const place of placed) {
        ctx.fillStyle = palette.band;
        ctx.fillRect(0, place.top, scale.width, place.bottom - place.top);
        switch (place.row.kind) {
            case "series":
                drawSeries(ctx, place, place.row, scale, palette);
                break;
            case "events":
                drawEvents(ctx, place, place.row, scale, palette);
                break;
            case "spans":
                drawSpans(ctx, place, place.row, scale, palette);
                break;
        }
    }
}
