// "Why here?": the camera's place at a moment, in sentences.
import { area, intersection, isEmpty, sizeText, type Rect } from "../model/geometry";
import { evidenceOfKeyframe, slicesOfShot, type Stages, type Shot, type ShotCost, type ValueObject } from "../model/stages";
import type { PlannedKeyframe, Session } from "../session";
import { lengthText, timeText } from "../time/format";
import { kReadable } from "../camera/figures";

const kNumbers = ["no", "one", "two", "three", "four", "five", "six", "seven", "eight", "nine", "ten", "eleven", "twelve"];

function countText(count: number, one: string, many = `${one}s`): string {
    return `${kNumbers[count] ?? count} ${count === 1 ? one : many}`;
}

/** "in the upper left", "in the middle" */
export function placeText(rect: Rect, screen: { width: number; height: number }): string {
    const x = (rect.left + rect.width / 2) / screen.width;
    const y = (rect.top + rect.height / 2) / screen.height;
    const across = x < 0.37 ? "left" : x > 0.63 ? "right" : "";
    const down = y < 0.37 ? "upper" : y > 0.63 ? "lower" : "";
    if (!across && !down) return "in the middle";
    if (!down) return `on the ${across}`;
    if (!across) return down === "upper" ? "at the top" : "at the bottom";
    return `at the ${down} ${across}`;
}

interface Kind {
    types: readonly string[];
    say: (objects: readonly ValueObject[]) => string;
}

/** The time that at least one of the objects covers, seconds. Objects ascend by start. */
export function coveredTime(objects: readonly ValueObject[]): number {
    let sum = 0;
    let until = -Infinity;
    for (const object of objects) {
        sum += Math.max(0, object.stop - Math.max(object.start, until));
        until = Math.max(until, object.stop);
    }
    return sum;
}

/** What people call the evidence, what says most first. */
const kKinds: readonly Kind[] = [
    { types: ["Click"], say: (objects) => countText(objects.length, "press", "presses") },
    { types: ["DoubleClick"], say: (objects) => countText(objects.length, "double click") },
    { types: ["Drag"], say: (objects) => countText(objects.length, "drag") },
    { types: ["Menu", "Pane", "MenuResult"], say: (objects) => countText(objects.length, "menu") },
    { types: ["ForeOpen", "ClickWindow"], say: (objects) => `${countText(objects.length, "window")} that opened` },
    { types: ["ForeAnimate"], say: (objects) => `${lengthText(coveredTime(objects))} of a window in motion` },
    { types: ["ClickDirty", "IdleDirty"], say: (objects) => `${lengthText(coveredTime(objects))} of changes` },
    { types: ["Hover", "HoverPopup"], say: (objects) => countText(objects.length, "hover") },
    { types: ["FullScreenDirty"], say: (objects) => countText(objects.length, "change of the whole screen", "changes of the whole screen") },
    { types: ["Move", "MoveIntoWindow", "MoveOutOfWindow"], say: (objects) => countText(objects.length, "move of the cursor", "moves of the cursor") },
];

/** An object counts for a shot when that share of it lies in the shot's focus. */
const kShareInside = 0.5;
const kMostKinds = 3;

function evidenceOf(stages: Stages, shot: Shot, focus: Rect): string {
    const inside = stages.objects.filter((object) => {
        if (object.start >= shot.stop || object.stop < shot.start) return false;
        return area(intersection(object.rect, focus)) >= kShareInside * Math.max(1, area(object.rect));
    });
    const parts = kKinds.flatMap((kind) => {
        const objects = inside.filter((object) => kind.types.includes(object.type));
        return objects.length > 0 ? [kind.say(objects)] : [];
    }).slice(0, kMostKinds);
    if (parts.length === 0) return "";
    return parts.length === 1 ? (parts[0] as string) : `${parts.slice(0, -1).join(", ")} and ${parts[parts.length - 1] as string}`;
}

function fillsWindow(focus: Rect | null, window: Rect | null): string {
    if (!focus) return "what matters is spread over it";
    if (window && area(intersection(focus, window)) > 0.9 * area(window)) return "what matters fills it";
    return `what matters in it takes ${sizeText(focus)}`;
}

function modeSentence(stages: Stages, shot: Shot, frame: Rect, screen: { width: number; height: number }): string {
    const focus = isEmpty(shot.hotRect) ? null : shot.hotRect;
    const evidence = evidenceOf(stages, shot, focus ?? frame);
    const because = evidence ? `: ${evidence}` : "";
    const what = focus ? `${sizeText(focus)} ${placeText(focus, screen)}` : placeText(frame, screen);
    const window = shot.window && !isEmpty(shot.windowRect) ? shot.windowRect : null;
    switch (shot.mode) {
        case "tight": {
            const fits = window && window.width <= frame.width + 1 && window.height <= frame.height + 1;
            const tail = window ? (fits ? "; the whole window fits too" : `; the window, ${sizeText(window)}, did not fit`) : "";
            return `Tight on ${what}${because}${tail}.`;
        }
        case "wide":
            return `Wide on the window${window ? `, ${sizeText(window)}` : ""}: ${fillsWindow(focus, window)}, too much for a close-up${evidence ? ` (${evidence})` : ""}.`;
        case "off-window":
            return `Close on ${what}, outside the window in front${because}.`;
        case "full screen":
            return `On the whole screen: all of it changes at once${evidence ? ` (${evidence})` : ""}.`;
        case "forced":
            return `On ${what}${because}. The shot took in a neighbour that was too short to stand alone.`;
        case "loose":
            return `Loosely on ${what}${because}; ${stages.shots.length > 0 && !window ? "no steady window to hold on to" : "it does not lie in the window"}.`;
        case null:
        default:
            return `On ${what}${because}.`;
    }
}

/** What people call the director's evidence; what is always there a little says nothing. */
const kEvidenceWords: Readonly<Record<string, string>> = {
    press: "presses", drag: "dragging", typing: "typing", change: "changes", "small window": "a small window",
    "window opens": "a window that opened", page: "a page that changed", linger: "what was of interest last",
};

function directorSentences(stages: Stages, keyframe: PlannedKeyframe, screen: { width: number; height: number }): string[] {
    const engine = keyframe.engine as number;
    const where = `${sizeText(keyframe.rect)} ${placeText(keyframe.rect, screen)}`;
    const told = evidenceOfKeyframe(stages, engine)
        .flatMap((i) => {
            const evidence = stages.evidence[i];
            const words = kEvidenceWords[evidence?.kind ?? ""];
            return evidence && words ? [{ ...evidence, words }] : [];
        })
        .slice(0, kMostKinds);
    const parts = told.map(({ weight, words }) => `${lengthText(weight)} of ${words}`);
    const list = parts.length > 1 ? `${parts.slice(0, -1).join(", ")} and ${parts[parts.length - 1] as string}` : (parts[0] ?? keyframe.reason ?? "");
    const sentences = [`On ${where}${list ? ` for ${list}` : ""}.`];
    const weight = told.reduce((sum, evidence) => sum + evidence.weight, 0);
    if (weight > 0) {
        const seen = told.reduce((sum, evidence) => sum + evidence.weight * evidence.seen, 0) / weight;
        sentences.push(seen > 0.985 ? "The frame shows all of it." : `The frame shows ${Math.round(100 * seen)} % of it.`);
    }
    const { cost, other } = stages.costs[engine] as ShotCost;
    if (other) {
        const smaller = other.rect.width < keyframe.rect.width - 1;
        const kind = smaller ? "closer" : other.rect.width > keyframe.rect.width + 1 ? "wider" : "moved";
        sentences.push(`The best other frame, ${kind} with ${sizeText(other.rect)}, would miss ${other.cost.toFixed(1)} s of what matters; this one misses ${cost.toFixed(1)} s.`);
    }
    return sentences;
}

/** Why the camera stands where a keyframe puts it; asked for at every moment, worked out once. */
const known = new WeakMap<PlannedKeyframe, string[]>();

function placeSentences(session: Session, keyframe: PlannedKeyframe, frame: Rect): string[] {
    let sentences = known.get(keyframe);
    if (!sentences) {
        sentences = explain(session, keyframe, frame);
        known.set(keyframe, sentences);
    }
    return sentences;
}

function explain(session: Session, keyframe: PlannedKeyframe, frame: Rect): string[] {
    const { stages, recording } = session.model;
    const engine = keyframe.engine === null ? null : stages.keyframes[keyframe.engine];
    const shot = engine && engine.shot !== null ? stages.shots[engine.shot] : undefined;
    const sentences: string[] = [];
    if (shot && engine) {
        sentences.push(modeSentence(stages, shot, frame, recording));
        const slices = slicesOfShot(stages, engine.shot as number).filter((slice) => !stages.slices[slice]?.blank);
        if (slices.length > 1) {
            sentences.push(`One position serves ${countText(slices.length, "slice")} of time, ${lengthText(shot.stop - shot.start)} in all.`);
        }
    } else if (keyframe.origin === "pin") {
        sentences.push(`Pinned by hand on ${sizeText(keyframe.rect)} ${placeText(keyframe.rect, recording)}.`);
    } else if (keyframe.origin === "whole") {
        sentences.push("On the whole screen, as asked for by hand.");
    } else if (keyframe.engine !== null && stages.costs[keyframe.engine]) {
        sentences.push(...directorSentences(stages, keyframe, recording));
    } else if (keyframe.reason) {
        sentences.push(`${keyframe.reason.charAt(0).toUpperCase()}${keyframe.reason.slice(1)}: ${sizeText(keyframe.rect)} ${placeText(keyframe.rect, recording)}.`);
    } else {
        sentences.push(`On ${sizeText(keyframe.rect)} ${placeText(keyframe.rect, recording)}.`);
    }

    return sentences;
}

/** The camera's place at a moment in a few sentences, the reason first. */
export function whyHere(session: Session, time: number): string[] {
    const { stages } = session.model;
    const path = session.path.value;
    const keyframes = session.keyframes.value;
    const index = session.keyframeAt(time);
    const next = path.moves[path.moveAt(time) + 1];
    const until = next ? `until the move at ${timeText(next.start, 1)}` : "until the end";
    const sentences: string[] = [];

    const keyframe = keyframes[index];
    if (!keyframe) {
        const reason = keyframes.length === 0
            ? "The whole recording is on show all the time: nothing called for a closer look, or the clip is too short for a move and a rest."
            : "The whole recording is on show, so that the viewer sees where things are before the first move.";
        return [reason, `It stays ${until}.`];
    }

    const frame = path.frameOf(keyframe.rect);
    const engine = keyframe.engine === null ? null : stages.keyframes[keyframe.engine];
    const shot = engine && engine.shot !== null ? stages.shots[engine.shot] : undefined;
    sentences.push(...placeSentences(session, keyframe, frame));

    const move = path.moves[path.moveAt(time)];
    if (move && time < move.stop) {
        const lead = shot ? shot.start - move.start : 0;
        const handed = lead > 0.35 ? `; it set off with the hand, ${lengthText(lead)} ahead` : "";
        sentences.push(`The camera is on its way, ${Math.round(((time - move.start) / Math.max(1e-9, stages.fade)) * 100)} % of the move's time gone${handed}.`);
    } else {
        sentences.push(`It stays ${until}.`);
    }
    const zoom = stages.target.width / frame.width;
    sentences.push(
        zoom >= kReadable - 1e-9
            ? `Text is readable: ${zoom >= 0.9995 ? "pixel for pixel" : `zoom ${zoom.toFixed(2)}`}.`
            : `Text is small: zoom ${zoom.toFixed(2)}, below the ${kReadable} from which it reads well.`,
    );
    if (frame.overhangs) sentences.push("The frame is larger than the recording in one direction and stands out evenly on both sides.");
    return sentences;
}
