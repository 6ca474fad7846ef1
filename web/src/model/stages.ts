// What the engine made of a recording, stage by stage, as `inspect` prints it.
import { fromEdges, type Edges, type Rect, type Size } from "./geometry";

export interface ValueObject {
    type: string;
    start: number;
    stop: number;
    rect: Rect;
}

/** A rectangle of a slice's map. */
export interface Space {
    rect: Rect;
    /** Value-weighted overlap per pixel. */
    density: number;
}

export interface Slice {
    start: number;
    stop: number;
    blank: boolean;
    spaces: Space[];
}

export type Mode = "tight" | "wide" | "loose" | "forced" | "off-window" | "full screen";

export interface Shot {
    /** Index of the slice that stands for the shot. */
    slice: number;
    start: number;
    stop: number;
    blank: boolean;
    mode: string | null;
    tight: boolean;
    inWindow: boolean;
    window: boolean;
    noWindow: boolean;
    windowRect: Rect;
    hotRect: Rect;
}

export interface Keyframe {
    /** Ticks of the recording's clock. */
    tick: number;
    seconds: number;
    rect: Rect;
    reason: string | null;
    /** Index of the shot that made it, in `Stages.shots`; null where there is none. */
    shot: number | null;
}

/** One kind of evidence that the director made a shot for. */
export interface Evidence {
    /** "press", "typing", "page" and so on. */
    kind: string;
    /** Index of the shot's keyframe. */
    keyframe: number;
    /** Seconds: the shot's time. */
    start: number;
    stop: number;
    /** Around all of it. */
    rect: Rect;
    /** Seconds of a viewer's interest. */
    weight: number;
    /** The share of them that the frame shows. */
    seen: number;
    /** Pieces. */
    count: number;
}

/** What the director weighed a shot with, seconds of missed sight. */
export interface ShotCost {
    cost: number;
    /** The best other frame for the shot's time. */
    other: { rect: Rect; cost: number } | null;
}

export interface Stages {
    engine: string;
    target: Size;
    /** Seconds. */
    fade: number;
    clip: { start: number; stop: number };
    /** Ticks, as the path file has them. */
    fadeTicks: number;
    clipTicks: { start: number; stop: number };
    /** The message that ended the run; null when it did not fail. */
    failure: string | null;
    objects: ValueObject[];
    slices: Slice[];
    shots: Shot[];
    /** The director's, by shot and then by weight; empty for the other engines. */
    evidence: Evidence[];
    /** The director's, one for each keyframe. */
    costs: ShotCost[];
    keyframes: Keyframe[];
}

export interface RawEvidence {
    kind: string;
    weight: number;
    seen: number;
    count: number;
    rect: Edges;
}

interface RawSpan {
    start: number;
    stop: number;
}

interface RawShotCost {
    cost?: number;
    runnerUp?: Edges | null;
    runnerUpCost?: number | null;
    evidence?: RawEvidence[];
}

/** The object that `inspect --format json` prints. */
export interface Inspection {
    engine?: string;
    ticksPerSecond: number;
    target: Size;
    fadeTicks: number;
    clip: { startTick: number; stopTick: number };
    failure?: string | null;
    valueObjects?: (RawSpan & { type: string; rect: Edges })[];
    slices?: (RawSpan & { blank: boolean; spaces: { rect: Edges; density: number }[] })[];
    shots?: (RawSpan & {
        slice: number;
        blank: boolean;
        mode: string | null;
        tight: boolean;
        inWindow: boolean;
        window: boolean;
        noWindow: boolean;
        windowRect: Edges;
        hotRect: Edges;
    })[];
    keyframes?: (Rect & { tick: number; seconds: number; reason?: string | null; slice?: number | null } & RawShotCost)[];
}

/** How far before its slice a keyframe may lie: the camera sets off with the hand. Seconds. */
const kLongestLead = 3.0;
const kRounding = 1e-6;

/** The shot of a keyframe whose slice is not told: keyframes come in the order of the shots, so look from the last one on. */
function shotOf(shots: readonly Shot[], seconds: number, reason: string | null, from: number): number | null {
    for (let i = from; i < shots.length; ++i) {
        const shot = shots[i] as Shot;
        if (shot.blank || (reason !== null && shot.mode !== reason)) continue;
        if (seconds >= shot.start - kLongestLead - kRounding && seconds <= shot.stop + kRounding) return i;
    }
    return null;
}

/** Evidence with the time of its shot: from its keyframe to the next. */
export function placedEvidence(raw: readonly (RawEvidence & { keyframe: number })[], keyframes: readonly Keyframe[], stop: number): Evidence[] {
    return raw.map(({ kind, keyframe, rect, weight, seen, count }) => ({
        kind, keyframe, weight, seen, count, rect: fromEdges(rect),
        start: keyframes[keyframe]?.seconds ?? 0, stop: keyframes[keyframe + 1]?.seconds ?? stop,
    }));
}

export function evidenceOfKeyframe(stages: Stages, keyframe: number): number[] {
    return stages.evidence.flatMap((evidence, i) => (evidence.keyframe === keyframe ? [i] : []));
}

export function readStages(raw: Inspection): Stages {
    const scale = raw.ticksPerSecond;
    const shots: Shot[] = (raw.shots ?? []).map((shot) => ({
        ...shot,
        windowRect: fromEdges(shot.windowRect),
        hotRect: fromEdges(shot.hotRect),
    }));
    let next = 0;
    const keyframes = (raw.keyframes ?? []).map((keyframe): Keyframe => {
        const reason = keyframe.reason ?? null;
        let shot: number | null;
        if (keyframe.slice !== undefined) {
            const index = shots.findIndex((candidate) => candidate.slice === keyframe.slice);
            shot = index < 0 ? null : index;
        } else {
            shot = shotOf(shots, keyframe.seconds, reason, next);
            if (shot !== null) next = shot + 1;
        }
        const { left, top, width, height } = keyframe;
        return { tick: keyframe.tick, seconds: keyframe.seconds, rect: { left, top, width, height }, reason, shot };
    });
    return {
        engine: raw.engine ?? "value",
        target: raw.target,
        fade: raw.fadeTicks / scale,
        fadeTicks: raw.fadeTicks,
        clip: { start: raw.clip.startTick / scale, stop: raw.clip.stopTick / scale },
        clipTicks: { start: raw.clip.startTick, stop: raw.clip.stopTick },
        failure: raw.failure ?? null,
        objects: (raw.valueObjects ?? []).map((object) => ({ ...object, rect: fromEdges(object.rect) })),
        slices: (raw.slices ?? []).map((slice) => ({
            ...slice,
            spaces: slice.spaces.map((space) => ({ rect: fromEdges(space.rect), density: space.density })),
        })),
        shots,
        evidence: placedEvidence(
            (raw.keyframes ?? []).flatMap((keyframe, i) => (keyframe.evidence ?? []).map((evidence) => ({ ...evidence, keyframe: i }))),
            keyframes, raw.clip.stopTick / scale,
        ),
        costs: (raw.keyframes ?? []).flatMap(({ cost, runnerUp, runnerUpCost }) =>
            cost === undefined ? [] : [{ cost, other: runnerUp ? { rect: fromEdges(runnerUp), cost: runnerUpCost ?? 0 } : null }],
        ),
        keyframes,
    };
}

/** The shot whose time holds the slice's: merging folds the slices of its time into it. -1 when there is none. */
export function shotOfSlice(stages: Stages, slice: number): number {
    let found = -1;
    for (let i = 0; i < stages.shots.length; ++i) {
        if ((stages.shots[i] as Shot).slice > slice) break;
        found = i;
    }
    const shot = stages.shots[found];
    const span = stages.slices[slice];
    return shot && span && span.start < shot.stop + kRounding ? found : -1;
}

/** The slices that were merged into a shot, its own first. */
export function slicesOfShot(stages: Stages, shot: number): number[] {
    const first = stages.shots[shot];
    if (!first) return [];
    const end = stages.shots[shot + 1]?.slice ?? stages.slices.length;
    const result: number[] = [];
    for (let i = first.slice; i < end; ++i) {
        if ((stages.slices[i]?.start ?? Infinity) < first.stop - kRounding) result.push(i);
    }
    return result;
}

/** How long objects of a type still count after their end, seconds. */
export const kDecay: Readonly<Record<string, number>> = {
    Move: 1, MouseIdle: 0.1, Click: 4, Drag: 2, DoubleClick: 4, Caret: 3, TextFocus: 4, FollowText: 3, ForeOpen: 3,
    ForeAnimate: 1.5, ActiveWindow: 0.1, Hover: 0.5, IdleDirty: 0.5, Menu: 2, Pane: 0.5, MenuResult: 1, OffScreen: 0.1,
    Scroll: 0.1, Dead: 0.1, FullScreenDirty: 1, MoveOutOfWindow: 1, MoveIntoWindow: 1, HoverPopup: 2, ClickDirty: 0.5,
    ClickWindow: 0.5,
};

/** What objects of a type are worth a second while they last. */
export const kWorth: Readonly<Record<string, number>> = {
    Move: 5, MouseIdle: 0, Click: 7, Drag: 10, DoubleClick: 7, Caret: 1, TextFocus: 1, FollowText: 1, ForeOpen: 8,
    ForeAnimate: 7, ActiveWindow: 2, Hover: 6, IdleDirty: 5, Menu: 10, Pane: 10, MenuResult: 15, OffScreen: 1,
    Scroll: 1, Dead: 0, FullScreenDirty: 6, MoveOutOfWindow: 6, MoveIntoWindow: 6, HoverPopup: 10, ClickDirty: 3,
    ClickWindow: 3,
};

/** The objects that give a slice its value: those that last or still count in its time. */
export function objectsOfSlice(stages: Stages, slice: number): number[] {
    const span = stages.slices[slice];
    if (!span) return [];
    const result: number[] = [];
    for (let i = 0; i < stages.objects.length; ++i) {
        const object = stages.objects[i] as ValueObject;
        if (object.start >= span.stop) break;
        if (object.stop + (kDecay[object.type] ?? 0) > span.start) result.push(i);
    }
    return result;
}

/** The slices whose value an object adds to. */
export function slicesOfObject(stages: Stages, object: number): number[] {
    const span = stages.objects[object];
    if (!span) return [];
    const end = span.stop + (kDecay[span.type] ?? 0);
    const result: number[] = [];
    stages.slices.forEach((slice, i) => {
        if (slice.start < end && slice.stop > span.start) result.push(i);
    });
    return result;
}

export function keyframesOfShot(stages: Stages, shot: number): number[] {
    return stages.keyframes.flatMap((keyframe, i) => (keyframe.shot === shot ? [i] : []));
}
