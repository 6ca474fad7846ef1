// Draws the screen from a recording alone: the window in front, what changed, the cursor with its trail, presses and
// the caret. For recordings without a video, and for seeing what the engine had to go by.
import type { Rect } from "../model/geometry";
import { lastAt, lowerBound } from "../model/search";
import { cursorAt, rectAt, windowAt, type Press, type Recording } from "../model/recording";

/** Where a part of the recording is drawn: `source` in recording pixels fills `target` in canvas pixels. */
export interface View {
    source: Rect;
    target: Rect;
}

export interface ScreenColours {
    desktop: string;
    window: string;
    windowBar: string;
    windowLine: string;
    change: string;
    trail: string;
    cursor: string;
    cursorLine: string;
    press: string;
    caret: string;
}

/** How long a change stays to be seen, a trail and a ring, seconds. */
const kChangeFades = 1.6;
const kTrail = 0.9;
const kRing = 0.7;
/** A flood of changes is drawn no finer than this. */
const kMostChanges = 400;
const kMostRings = 32;
const kTitleBar = 26; // Recording pixels.

export function readScreenColours(element: Element): ScreenColours {
    const style = getComputedStyle(element);
    const read = (name: string): string => style.getPropertyValue(`--screen-${name}`).trim();
    return {
        desktop: read("desktop"),
        window: read("window"),
        windowBar: read("window-bar"),
        windowLine: read("window-line"),
        change: read("change"),
        trail: read("trail"),
        cursor: read("cursor"),
        cursorLine: read("cursor-line"),
        press: read("press"),
        caret: read("caret"),
    };
}

type Context = CanvasRenderingContext2D;

function drawWindow(ctx: Context, rect: Rect, colours: ScreenColours, scale: number): void {
    ctx.fillStyle = colours.window;
    ctx.strokeStyle = colours.windowLine;
    ctx.lineWidth = 1 / scale;
    ctx.beginPath();
    ctx.roundRect(rect.left, rect.top, rect.width, rect.height, Math.min(6, rect.width / 4, rect.height / 4));
    ctx.fill();
    if (rect.height > 4 * kTitleBar && rect.width > 3 * kTitleBar) {
        ctx.fillStyle = colours.windowBar;
        ctx.beginPath();
        ctx.roundRect(rect.left, rect.top, rect.width, kTitleBar, [6, 6, 0, 0]);
        ctx.fill();
    }
    ctx.beginPath();
    ctx.roundRect(rect.left, rect.top, rect.width, rect.height, Math.min(6, rect.width / 4, rect.height / 4));
    ctx.stroke();
}

function drawChanges(ctx: Context, recording: Recording, time: number, colours: ScreenColours): void {
    const { dirty } = recording;
    const end = lastAt(dirty.time, time) + 1;
    const begin = Math.max(lowerBound(dirty.time, time - kChangeFades), end - kMostChanges);
    ctx.fillStyle = colours.change;
    for (let i = begin; i < end; ++i) {
        const age = (time - (dirty.time[i] as number)) / kChangeFades;
        const rect = rectAt(dirty, i);
        ctx.globalAlpha = 0.34 * (1 - age) ** 2;
        ctx.fillRect(rect.left, rect.top, rect.width, rect.height);
    }
    ctx.globalAlpha = 1;
}

export function drawTrail(ctx: Context, recording: Recording, time: number, colours: ScreenColours, scale: number): void {
    const { cursor } = recording;
    const end = lastAt(cursor.time, time) + 1;
    const begin = lowerBound(cursor.time, time - kTrail);
    ctx.strokeStyle = colours.trail;
    ctx.lineCap = "round";
    for (let i = Math.max(1, begin); i < end; ++i) {
        const share = 1 - (time - (cursor.time[i] as number)) / kTrail;
        ctx.globalAlpha = 0.75 * share;
        ctx.lineWidth = (1 + 3 * share) / scale;
        ctx.beginPath();
        ctx.moveTo(cursor.x[i - 1] as number, cursor.y[i - 1] as number);
        ctx.lineTo(cursor.x[i] as number, cursor.y[i] as number);
        ctx.stroke();
    }
    ctx.globalAlpha = 1;
}

/** The number of presses up to a moment. */
function lowerBoundOf(presses: readonly Press[], time: number): number {
    let low = 0;
    let high = presses.length;
    while (low < high) {
        const middle = (low + high) >>> 1;
        if ((presses[middle] as Press).time <= time) low = middle + 1;
        else high = middle;
    }
    return low;
}

export function drawPresses(ctx: Context, recording: Recording, time: number, colours: ScreenColours, scale: number): void {
    ctx.strokeStyle = colours.press;
    // Presses are sorted by time; one that is held longer than many others take is no press that needs a ring.
    let last = lowerBoundOf(recording.presses, time);
    for (let left = kMostRings; last > 0 && left > 0; --left) {
        const press = recording.presses[--last] as Press;
        const held = time <= press.release;
        const age = (time - press.release) / kRing;
        if (!held && age > 1) continue;
        const grown = held ? 0 : age;
        ctx.globalAlpha = held ? 1 : 1 - age;
        ctx.lineWidth = 2.5 / scale;
        ctx.beginPath();
        ctx.arc(press.x, press.y, (9 + 16 * grown) / scale, 0, 2 * Math.PI);
        ctx.stroke();
    }
    ctx.globalAlpha = 1;
}

/** An arrow whose tip is the cursor's position; the same size whatever the view, so that it is always found. */
export function drawCursor(ctx: Context, x: number, y: number, colours: ScreenColours, scale: number): void {
    ctx.save();
    ctx.translate(x, y);
    ctx.scale(1.15 / scale, 1.15 / scale);
    ctx.beginPath();
    ctx.moveTo(0, 0);
    ctx.lineTo(0, 15.5);
    ctx.lineTo(3.7, 12.2);
    ctx.lineTo(6.2, 18);
    ctx.lineTo(8.7, 16.9);
    ctx.lineTo(6.2, 11.3);
    ctx.lineTo(11.2, 11);
    ctx.closePath();
    ctx.fillStyle = colours.cursor;
    ctx.fill();
    ctx.strokeStyle = colours.cursorLine;
    ctx.lineWidth = 1;
    ctx.stroke();
    ctx.restore();
}

/** Sets the context up so that recording pixels can be drawn; the caller restores it. */
export function enterView(ctx: Context, view: View): number {
    const scale = view.target.width / view.source.width;
    ctx.beginPath();
    ctx.rect(view.target.left, view.target.top, view.target.width, view.target.height);
    ctx.clip();
    ctx.translate(view.target.left, view.target.top);
    ctx.scale(scale, scale);
    ctx.translate(-view.source.left, -view.source.top);
    return scale;
}

export function drawScreen(ctx: Context, recording: Recording, time: number, view: View, colours: ScreenColours): void {
    ctx.save();
    const scale = enterView(ctx, view);
    ctx.fillStyle = colours.desktop;
    ctx.fillRect(0, 0, recording.width, recording.height);
    const window = windowAt(recording, time);
    if (window) drawWindow(ctx, window, colours, scale);
    drawChanges(ctx, recording, time, colours);
    const caret = lastAt(recording.caret.time, time);
    if (caret >= 0) {
        const rect = rectAt(recording.caret, caret);
        ctx.fillStyle = colours.caret;
        ctx.fillRect(rect.left - 0.5 / scale, rect.top, Math.max(rect.width, 2 / scale), rect.height);
    }
    drawTrail(ctx, recording, time, colours, scale);
    drawPresses(ctx, recording, time, colours, scale);
    const cursor = cursorAt(recording, time);
    if (cursor) drawCursor(ctx, cursor.x, cursor.y, colours, scale);
    ctx.restore();
}
