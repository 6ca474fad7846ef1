// A recording in the page: its streams as columns, in seconds and local pixels.
import { area, intersection, type Point, type Rect } from "./geometry";
import { lastAt } from "./search";

/** Rectangles over time. Times ascend; equal times keep the file's order. */
export interface RectColumn {
    time: Float64Array;
    left: Float32Array;
    top: Float32Array;
    width: Float32Array;
    height: Float32Array;
}

export interface CursorColumn {
    time: Float64Array;
    x: Float32Array;
    y: Float32Array;
}

/** One press of a button, and where the cursor was. */
export interface Press extends Point {
    time: number;
    /** Seconds; the end of the recording when nothing released it. */
    release: number;
    button: "left" | "right" | "middle";
}

export interface WheelStep extends Point {
    time: number;
    up: boolean;
}

/** The window in front from `start` to `stop`. Empty where there was none. */
export interface WindowSpan {
    start: number;
    stop: number;
    rect: Rect;
}

export interface Recording {
    /** File name without folders. */
    name: string;
    description: string;
    /** Ticks a second. */
    timeScale: number;
    windowsFlag: boolean;
    /** Seconds of the recording at which the video's time 0 lies; null when the file does not tell. */
    videoOffset: number | null;
    /** The video's file name, where the header names one. */
    video: string | null;
    /** The tick of the last line. */
    stopTick: number;
    /** Seconds. */
    stop: number;
    /** The part of the screen that is recorded first; its corner is (0, 0) of everything else. */
    width: number;
    height: number;
    /** The later regions, in local pixels. */
    regions: RectColumn;
    cursor: CursorColumn;
    dirty: RectColumn;
    caret: RectColumn;
    windows: WindowSpan[];
    presses: Press[];
    wheel: WheelStep[];
    /** What was passed over or mended, a sentence each. */
    warnings: string[];
}

export function frameOf(recording: Recording): Rect {
    return { left: 0, top: 0, width: recording.width, height: recording.height };
}

export function rectAt(column: RectColumn, index: number): Rect {
    return {
        left: column.left[index] ?? 0,
        top: column.top[index] ?? 0,
        width: column.width[index] ?? 0,
        height: column.height[index] ?? 0,
    };
}

/** Where the cursor was at a moment; null before its first sample. */
export function cursorAt(recording: Recording, time: number): Point | null {
    const index = lastAt(recording.cursor.time, time);
    return index < 0 ? null : { x: recording.cursor.x[index] ?? 0, y: recording.cursor.y[index] ?? 0 };
}

/** The window in front at a moment; null when there was none. */
export function windowAt(recording: Recording, time: number): Rect | null {
    let low = 0;
    let high = recording.windows.length;
    while (low < high) {
        const middle = (low + high) >>> 1;
        if ((recording.windows[middle] as WindowSpan).start <= time) low = middle + 1;
        else high = middle;
    }
    const span = recording.windows[low - 1];
    return span && span.rect.width > 0 && span.rect.height > 0 ? span.rect : null;
}

/** Pixels of the screen that a change covers. */
export function changedArea(recording: Recording, index: number): number {
    return area(intersection(rectAt(recording.dirty, index), frameOf(recording)));
}
