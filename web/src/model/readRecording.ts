// Reads a recording from JSON Lines. The rules of the command hold: what the format does not have is refused with its
// line, streams and header fields that it does not know are passed over with a warning.
import type { Press, Recording, RectColumn, WheelStep, WindowSpan } from "./recording";

/** A recording that cannot be used. `line` counts from 1. */
export class RecordingError extends Error {
    constructor(
        readonly file: string,
        readonly line: number,
        readonly reason: string,
    ) {
        super(`${file}, line ${line}: ${reason}`);
        this.name = "RecordingError";
    }
}

const kIntegerFields: Readonly<Record<string, number>> = {
    region: 4,
    window: 4,
    dirty: 4,
    caret: 4,
    cursor: 2,
    action: 1,
};
const kHeaderFields = new Set([
    "format",
    "version",
    "timeScale",
    "windowsFlag",
    "description",
    "videoOffset",
    "video",
]);
const kLargestInteger = 2 ** 31 - 1;
const kSmallestInteger = -(2 ** 31);
const kExcerpt = 60; // Characters of a faulty line that a message shows.

/** Numbers in a row that grow as needed: a million samples as boxed arrays would take ten times the memory. */
class Growing {
    private values = new Float64Array(1024);
    length = 0;
    push(value: number): void {
        if (this.length === this.values.length) {
            const larger = new Float64Array(this.length * 2);
            larger.set(this.values);
            this.values = larger;
        }
        this.values[this.length++] = value;
    }
    doubles(scale = 1): Float64Array {
        const result = this.values.slice(0, this.length);
        if (scale !== 1) for (let i = 0; i < result.length; ++i) result[i] = (result[i] as number) / scale;
        return result;
    }
    floats(shift = 0): Float32Array {
        const result = new Float32Array(this.length);
        for (let i = 0; i < this.length; ++i) result[i] = (this.values[i] as number) - shift;
        return result;
    }
}

class Rects {
    time = new Growing();
    private left = new Growing();
    private top = new Growing();
    private right = new Growing();
    private bottom = new Growing();
    push(row: readonly number[]): void {
        this.time.push(row[0] as number);
        this.left.push(row[2] as number);
        this.top.push(row[3] as number);
        this.right.push(row[4] as number);
        this.bottom.push(row[5] as number);
    }
    column(scale: number, x: number, y: number): RectColumn {
        const left = this.left.floats(x);
        const top = this.top.floats(y);
        const width = this.right.floats(x);
        const height = this.bottom.floats(y);
        for (let i = 0; i < left.length; ++i) {
            width[i] = (width[i] as number) - (left[i] as number);
            height[i] = (height[i] as number) - (top[i] as number);
        }
        return { time: this.time.doubles(scale), left, top, width, height };
    }
}

interface Header {
    timeScale: number;
    windowsFlag: boolean;
    description: string;
    videoOffset: number | null;
    video: string | null;
}

function excerpt(line: string): string {
    const shown = line.length > kExcerpt ? `${line.slice(0, kExcerpt)}…` : line;
    // eslint-disable-next-line no-control-regex -- control characters are what must not be shown
    return shown.replace(/[\u0000-\u001f\u007f-\u009f]/g, "\ufffd");
}

function readHeader(file: string, line: number, text: string, warnings: string[]): Header {
    const fail = (reason: string): never => {
        throw new RecordingError(file, line, reason);
    };
    let value: unknown;
    try {
        value = JSON.parse(text);
    } catch {
        fail(`this is no recording: the first line is no JSON object (${excerpt(text)})`);
    }
    if (typeof value !== "object" || value === null || Array.isArray(value)) {
        fail("the first line is not the header object; a recording begins with {\"format\":\"orvanta-recording\", …}");
    }
    const header = value as Record<string, unknown>;
    if (header["format"] !== "orvanta-recording") fail("the header's \"format\" is not \"orvanta-recording\"");
    if (header["version"] !== 1) fail("the header's \"version\" is not 1, the only one that this page reads");
    const timeScale = header["timeScale"];
    if (typeof timeScale !== "number" || !(timeScale > 0) || !Number.isFinite(timeScale)) {
        fail("the header's \"timeScale\" must be a number above 0, in ticks per second");
    }
    const offset = header["videoOffset"];
    if (offset !== undefined && !Number.isInteger(offset)) fail("the header's \"videoOffset\" must be an integer, in ticks");
    const flag = header["windowsFlag"];
    if (flag !== undefined && typeof flag !== "boolean") fail("the header's \"windowsFlag\" must be true or false");
    const unknown = Object.keys(header).filter((name) => !kHeaderFields.has(name));
    if (unknown.length > 0) warnings.push(`Header fields passed over: ${unknown.slice(0, 8).join(", ")}.`);
    return {
        timeScale: timeScale as number,
        windowsFlag: flag === true,
        description: typeof header["description"] === "string" ? header["description"] : "",
        videoOffset: offset === undefined ? null : (offset as number),
        video: typeof header["video"] === "string" ? header["video"] : null,
    };
}

function checkRow(file: string, line: number, text: string, row: unknown): asserts row is [number, string, ...number[]] {
    const fail = (reason: string): never => {
        throw new RecordingError(file, line, `${reason} (${excerpt(text)})`);
    };
    if (!Array.isArray(row)) fail("a line after the header must be an array");
    const fields = row as unknown[];
    if (!Number.isInteger(fields[0])) fail("the time must be an integer, in ticks");
    if (typeof fields[1] !== "string") fail("the second field must be the name of a stream");
    const count = kIntegerFields[fields[1] as string];
    if (count === undefined) return;
    if (fields.length !== count + 2) {
        fail(`a "${fields[1] as string}" line has ${count + 2} fields, not ${fields.length}`);
    }
    for (let i = 2; i < fields.length; ++i) {
        const value = fields[i];
        if (!Number.isInteger(value)) fail(`field ${i + 1} must be an integer`);
        if ((value as number) > kLargestInteger || (value as number) < kSmallestInteger) {
            fail(`field ${i + 1} does not fit 32 bits`);
        }
    }
}

function windowSpans(column: RectColumn, stop: number): WindowSpan[] {
    const spans: WindowSpan[] = [];
    for (let i = 0; i < column.time.length; ++i) {
        const width = column.width[i] as number;
        const height = column.height[i] as number;
        const none = width <= 0 || height <= 0;
        const rect = none
            ? { left: 0, top: 0, width: 0, height: 0 }
            : { left: column.left[i] as number, top: column.top[i] as number, width, height };
        const time = column.time[i] as number;
        const last = spans[spans.length - 1];
        if (last) {
            const same =
                last.rect.left === rect.left &&
                last.rect.top === rect.top &&
                last.rect.width === rect.width &&
                last.rect.height === rect.height;
            if (same) continue;
            last.stop = time;
        }
        spans.push({ start: time, stop, rect });
    }
    return spans;
}

interface Actions {
    time: Float64Array;
    code: Float64Array;
}

const kButtons = ["left", "right", "middle"] as const;

function pairPresses(actions: Actions, stop: number, at: (time: number) => { x: number; y: number }): Press[] {
    const presses: Press[] = [];
    const open: (Press | undefined)[] = [undefined, undefined, undefined];
    for (let i = 0; i < actions.time.length; ++i) {
        const code = actions.code[i] as number;
        if (code < 0 || code > 5) continue;
        const button = code >> 1;
        const time = actions.time[i] as number;
        if ((code & 1) === 0) {
            const press: Press = { time, release: stop, button: kButtons[button] as Press["button"], ...at(time) };
            presses.push(press);
            open[button] = press;
        } else {
            const press = open[button];
            if (press) press.release = time;
            open[button] = undefined;
        }
    }
    return presses;
}

/** Reads a recording. Throws `RecordingError`. */
export function readRecording(text: string, file: string): Recording {
    const warnings: string[] = [];
    const clean = text.charCodeAt(0) === 0xfeff ? text.slice(1) : text;
    const lines = clean.split("\n");
    let header: Header | null = null;
    const regions = new Rects();
    const windows = new Rects();
    const dirty = new Rects();
    const carets = new Rects();
    const cursorTime = new Growing();
    const cursorX = new Growing();
    const cursorY = new Growing();
    const actionTime = new Growing();
    const actionCode = new Growing();
    const unknown = new Map<string, number>();
    let previous = -Infinity;
    let blank = 0;

    for (let i = 0; i < lines.length; ++i) {
        const line = lines[i] as string;
        const content = line.endsWith("\r") ? line.slice(0, -1) : line;
        if (content.trim() === "") {
            if (i !== lines.length - 1) ++blank;
            continue;
        }
        if (!header) {
            header = readHeader(file, i + 1, content, warnings);
            continue;
        }
        let row: unknown;
        try {
            row = JSON.parse(content);
        } catch {
            // The last line of a recorder that crashed ends where its buffer ended.
            if (i === lines.length - 1) {
                warnings.push(`Line ${i + 1}, the last one, is cut short and was left out.`);
                break;
            }
            throw new RecordingError(file, i + 1, `this is no JSON (${excerpt(content)})`);
        }
        checkRow(file, i + 1, content, row);
        const time = row[0];
        if (time < previous) {
            throw new RecordingError(file, i + 1, `the time ${time} lies before that of the line before, ${previous}`);
        }
        previous = time;
        const values = row as unknown as number[];
        switch (row[1]) {
            case "region":
                regions.push(values);
                break;
            case "window":
                windows.push(values);
                break;
            case "dirty":
                dirty.push(values);
                break;
            case "caret":
                carets.push(values);
                break;
            case "cursor":
                cursorTime.push(time);
                cursorX.push(values[2] as number);
                cursorY.push(values[3] as number);
                break;
            case "action":
                actionTime.push(time);
                actionCode.push(values[2] as number);
                break;
            default:
                unknown.set(row[1], (unknown.get(row[1]) ?? 0) + 1);
        }
    }
    if (!header) throw new RecordingError(file, 1, "the file is empty");
    if (blank > 0) warnings.push(`${blank} blank lines were passed over.`);
    if (unknown.size > 0) {
        const names = [...unknown].slice(0, 8).map(([name, count]) => `${name}: ${count}`);
        warnings.push(`Streams passed over: ${names.join(", ")}.`);
    }

    const scale = header.timeScale;
    const screen = regions.column(scale, 0, 0);
    if (screen.time.length === 0) throw new RecordingError(file, 1, "there is no \"region\" line, so nothing says how large the screen is");
    const x = screen.left[0] as number;
    const y = screen.top[0] as number;
    const stopTick = Math.max(0, previous);
    const stop = stopTick / scale;
    const cursor = { time: cursorTime.doubles(scale), x: cursorX.floats(x), y: cursorY.floats(y) };
    let cursorIndex = -1;
    const at = (time: number): { x: number; y: number } => {
        while (cursorIndex + 1 < cursor.time.length && (cursor.time[cursorIndex + 1] as number) <= time) ++cursorIndex;
        const index = Math.max(0, cursorIndex);
        return { x: cursor.x[index] ?? 0, y: cursor.y[index] ?? 0 };
    };
    const actions = { time: actionTime.doubles(scale), code: actionCode.doubles() };
    const presses = pairPresses(actions, stop, at);
    cursorIndex = -1;
    const wheel: WheelStep[] = [];
    for (let i = 0; i < actions.time.length; ++i) {
        const code = actions.code[i] as number;
        const time = actions.time[i] as number;
        if (code === 6 || code === 7) wheel.push({ time, up: code === 6, ...at(time) });
    }
    return {
        name: file,
        description: header.description,
        timeScale: scale,
        windowsFlag: header.windowsFlag,
        videoOffset: header.videoOffset === null ? null : header.videoOffset / scale,
        video: header.video,
        stopTick,
        stop,
        width: screen.width[0] as number,
        height: screen.height[0] as number,
        regions: regions.column(scale, x, y),
        cursor,
        dirty: dirty.column(scale, x, y),
        caret: carets.column(scale, x, y),
        windows: windowSpans(windows.column(scale, x, y), stop),
        presses,
        wheel,
        warnings,
    };
}
