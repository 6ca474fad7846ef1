// The rows of the timeline, made once from a model.
import { changedArea, type Recording } from "../model/recording";
import type { ItemKind } from "../model/items";
import type { Stages } from "../model/stages";
import type { Stroke } from "../model/strokes";
import { lowerBound } from "../model/search";
import { SeriesBuilder, type Series } from "./series";

/** Names of colours in the palette. */
export type Ink = string;

interface RowBase {
    id: string;
    label: string;
    /** Pixels. */
    height: number;
    /** Sentence for people who ask what the row shows. */
    title: string;
    /** Rows of one group stand close together. */
    group: "streams" | "engine" | "objects" | "camera";
}

export interface SpanRow extends RowBase {
    kind: "spans";
    item: ItemKind;
    /** Ascending. */
    start: Float64Array;
    stop: Float64Array;
    /** The largest `stop` up to each index, for looking up what reaches into a stretch. */
    reach: Float64Array;
    /** Into the item's list. */
    index: Int32Array;
    ink: (i: number) => Ink;
    text?: (i: number) => string;
    /** Drawn as an outline: there, but nothing to see. */
    hollow?: (i: number) => boolean;
}

export interface EventRow extends RowBase {
    kind: "events";
    item: ItemKind;
    time: Float64Array;
    index: Int32Array;
    ink: (i: number) => Ink;
    mark: "dot" | "up-down" | "tick";
    up?: (i: number) => boolean;
}

export interface SeriesRow extends RowBase {
    kind: "series";
    item: ItemKind | null;
    series: Series;
    ink: Ink;
    unit: (value: number) => string;
}

export type Row = SpanRow | EventRow | SeriesRow;

interface SpanLike {
    start: number;
    stop: number;
}

type RowText = Pick<RowBase, "id" | "label" | "height" | "title" | "group">;

export function spanRow(
    text: RowText,
    item: ItemKind,
    spans: readonly SpanLike[],
    options: {
        ink: (index: number) => Ink;
        keep?: (index: number) => boolean;
        text?: (index: number) => string;
        hollow?: (index: number) => boolean;
    },
): SpanRow {
    const kept = spans.map((_, i) => i).filter((i) => options.keep?.(i) ?? true);
    kept.sort((a, b) => (spans[a] as SpanLike).start - (spans[b] as SpanLike).start || a - b);
    const start = Float64Array.from(kept, (i) => (spans[i] as SpanLike).start);
    const stop = Float64Array.from(kept, (i) => (spans[i] as SpanLike).stop);
    const reach = new Float64Array(stop.length);
    stop.forEach((value, i) => {
        reach[i] = Math.max(value, i > 0 ? (reach[i - 1] as number) : -Infinity);
    });
    const index = Int32Array.from(kept);
    const row: SpanRow = { kind: "spans", item, start, stop, reach, index, ink: (i) => options.ink(index[i] as number), ...text };
    const { text: label, hollow } = options;
    if (label) row.text = (i) => label(index[i] as number);
    if (hollow) row.hollow = (i) => hollow(index[i] as number);
    return row;
}

/** The first span that may reach into what comes after `time`. */
export function firstReaching(row: SpanRow, time: number): number {
    return lowerBound(row.reach, time);
}

function eventRow(text: RowText, item: ItemKind, times: ArrayLike<number>, mark: EventRow["mark"], ink: (i: number) => Ink): EventRow {
    const time = Float64Array.from(times);
    return { kind: "events", item, time, index: Int32Array.from(time, (_, i) => i), ink, mark, ...text };
}

/** Jumps beyond this are the pointer being put somewhere, not moved; they would hide every real speed. Pixels a second. */
const kFastest = 12_000;

function cursorSpeed(recording: Recording): Series {
    const builder = new SeriesBuilder(0, recording.stop);
    const { time, x, y } = recording.cursor;
    for (let i = 1; i < time.length; ++i) {
        const span = (time[i] as number) - (time[i - 1] as number);
        const way = Math.hypot((x[i] as number) - (x[i - 1] as number), (y[i] as number) - (y[i - 1] as number));
        if (span > 0 && span < 0.5) builder.raise(time[i] as number, Math.min(kFastest, way / span));
    }
    return builder.finish();
}

function changedShare(recording: Recording): Series {
    const builder = new SeriesBuilder(0, recording.stop);
    const screen = Math.max(1, recording.width * recording.height);
    for (let i = 0; i < recording.dirty.time.length; ++i) {
        builder.add(recording.dirty.time[i] as number, changedArea(recording, i) / screen);
    }
    return builder.finish(1 / builder.binSeconds);
}

const kButtonInk: Readonly<Record<string, Ink>> = { left: "press", right: "press-right", middle: "press-middle" };

export function streamRows(recording: Recording, strokes: readonly Stroke[]): Row[] {
    const speed: SeriesRow = {
        id: "cursor", label: "Cursor speed", height: 30, group: "streams", title: "How fast the cursor moves",
        kind: "series", item: "stroke", series: cursorSpeed(recording), ink: "cursor",
        unit: (value) => `${Math.round(value)} pixels a second`,
    };
    const presses = spanRow(
        { id: "presses", label: "Presses", height: 22, group: "streams", title: "Buttons, from press to release" },
        "press",
        recording.presses.map((press) => ({ start: press.time, stop: press.release })),
        { ink: (i) => kButtonInk[recording.presses[i]?.button ?? "left"] ?? "press" },
    );
    const wheel = eventRow(
        { id: "wheel", label: "Wheel", height: 20, group: "streams", title: "Steps of the wheel, up and down" },
        "wheel", recording.wheel.map((step) => step.time), "up-down", () => "wheel",
    );
    wheel.up = (i) => recording.wheel[i]?.up ?? false;
    const changes: SeriesRow = {
        id: "changes", label: "Changed area", height: 30, group: "streams", title: "How much of the screen is drawn anew, screens a second",
        kind: "series", item: "changes", series: changedShare(recording), ink: "changes",
        unit: (value) => `${value < 0.1 ? value.toFixed(2) : value.toFixed(1)} screens a second`,
    };
    const caret = eventRow(
        { id: "caret", label: "Caret", height: 16, group: "streams", title: "Moments at which the text caret moved" },
        "caret", recording.caret.time, "tick", () => "caret",
    );
    const windows = spanRow(
        { id: "windows", label: "Windows", height: 20, group: "streams", title: "The window in front" },
        "window", recording.windows,
        {
            ink: (i) => (i % 2 === 0 ? "window" : "window-alt"),
            keep: (i) => (recording.windows[i]?.rect.width ?? 0) > 0,
            text: (i) => {
                const rect = recording.windows[i]?.rect;
                return rect ? `${rect.width}\u00d7${rect.height}` : "";
            },
        },
    );
    const strokeRow = spanRow(
        { id: "strokes", label: "Strokes", height: 16, group: "streams", title: "Runs of cursor motion without a rest" },
        "stroke", strokes, { ink: () => "stroke" },
    );
    return [speed, strokeRow, presses, wheel, changes, caret, windows];
}

/** The order in which types of value objects stand, what people did first. */
const kTypeOrder = [
    "Click", "DoubleClick", "Drag", "Move", "MoveIntoWindow", "MoveOutOfWindow", "Hover", "HoverPopup", "Menu", "Pane",
    "MenuResult", "ClickDirty", "ClickWindow", "IdleDirty", "FullScreenDirty", "ForeOpen", "ForeAnimate", "ActiveWindow",
];

const kFamilies: Readonly<Record<string, Ink>> = {
    Click: "press", DoubleClick: "press", Drag: "press", Move: "cursor", MoveIntoWindow: "cursor",
    MoveOutOfWindow: "cursor", Hover: "hover", HoverPopup: "hover", Menu: "menu", Pane: "menu", MenuResult: "menu",
    ClickDirty: "changes", IdleDirty: "changes", FullScreenDirty: "changes", ClickWindow: "window", ForeOpen: "window",
    ForeAnimate: "window", ActiveWindow: "window",
};

export function typeInk(type: string): Ink {
    return kFamilies[type] ?? "other";
}

/** "MoveIntoWindow" as words: "move into window" */
export function typeName(type: string): string {
    return type.replace(/(?<=[a-z])(?=[A-Z])/g, " ").toLowerCase();
}

export function typesIn(stages: Stages): string[] {
    const present = [...new Set(stages.objects.map((object) => object.type))];
    const rank = (type: string): number => {
        const place = kTypeOrder.indexOf(type);
        return place < 0 ? kTypeOrder.length : place;
    };
    return present.sort((a, b) => rank(a) - rank(b) || (a < b ? -1 : 1));
}

/** The director's evidence, what people did first. */
const kEvidenceInk: Readonly<Record<string, Ink>> = {
    press: "press", drag: "press", typing: "caret", change: "changes", "small window": "menu", "window opens": "window",
    page: "window", linger: "hover", context: "window", cursor: "cursor", whole: "other",
};
/** A frame that shows less of it made the shot in spite of it. */
const kMostlySeen = 0.5;

export function evidenceRows(stages: Stages): Row[] {
    const order = Object.keys(kEvidenceInk);
    const rank = (kind: string): number => (order.includes(kind) ? order.indexOf(kind) : order.length);
    const kinds = [...new Set(stages.evidence.map(({ kind }) => kind))].sort((a, b) => rank(a) - rank(b) || (a < b ? -1 : 1));
    return kinds.map((kind) => {
        const label = kind.charAt(0).toUpperCase() + kind.slice(1);
        return spanRow(
            { id: `evidence-${kind.replaceAll(" ", "-")}`, label, height: 14, group: "objects", title: `Evidence: ${kind}; seconds of interest in each shot. Hollow where the frame shows less than half of it` },
            "evidence", stages.evidence,
            {
                ink: () => kEvidenceInk[kind] ?? "other",
                keep: (i) => stages.evidence[i]?.kind === kind,
                hollow: (i) => (stages.evidence[i]?.seen ?? 1) < kMostlySeen,
                text: (i) => `${(stages.evidence[i]?.weight ?? 0).toFixed(1)} s`,
            },
        );
    });
}

export function objectRows(stages: Stages, together: boolean): Row[] {
    if (stages.engine === "director") return evidenceRows(stages);
    if (together) {
        const text = { id: "objects", label: "Value objects", height: 18, group: "objects", title: "What the engine found worth seeing" } as const;
        return [spanRow(text, "object", stages.objects, { ink: (i) => typeInk(stages.objects[i]?.type ?? "") })];
    }
    return typesIn(stages).map((type) => {
        const name = typeName(type);
        const label = name.charAt(0).toUpperCase() + name.slice(1);
        return spanRow(
            { id: `object-${type}`, label, height: 12, group: "objects", title: `Value objects: ${name}` },
            "object", stages.objects,
            { ink: () => typeInk(type), keep: (i) => stages.objects[i]?.type === type },
        );
    });
}

const kModes = new Set(["tight", "wide", "loose", "forced", "off-window", "full screen", "pinned", "whole"]);

/** A reason may be any words; those of the value engine and of changes have colours of their own. */
export function modeInk(mode: string | null): Ink {
    return mode !== null && kModes.has(mode) ? `mode-${mode.replace(" ", "-")}` : "mode-none";
}

export function stageRows(stages: Stages): Row[] {
    if (stages.engine === "director") return []; // Its shots are its keyframes.
    const slices = spanRow(
        { id: "slices", label: "Slices", height: 20, group: "engine", title: "Stretches with one focus; hollow ones are blank" },
        "slice", stages.slices,
        { ink: (i) => (i % 2 === 0 ? "slice" : "slice-alt"), hollow: (i) => stages.slices[i]?.blank ?? false, text: (i) => String(i) },
    );
    const shots = spanRow(
        { id: "shots", label: "Shots", height: 26, group: "engine", title: "Slices merged to one camera position, by mode" },
        "shot", stages.shots,
        {
            ink: (i) => modeInk(stages.shots[i]?.mode ?? null),
            hollow: (i) => stages.shots[i]?.blank ?? false,
            text: (i) => (stages.shots[i]?.blank ? "blank" : (stages.shots[i]?.mode ?? "")),
        },
    );
    return [slices, shots];
}
