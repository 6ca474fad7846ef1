// Details of anything that the page can point at: its fields, what it was made from, and what came of it.
import { rectText, sizeText, isEmpty, type Rect } from "../model/geometry";
import type { Item } from "../model/items";
import { rectAt } from "../model/recording";
import {
    evidenceOfKeyframe, keyframesOfShot, kDecay, kWorth, objectsOfSlice, shotOfSlice, slicesOfObject, slicesOfShot,
    type ShotCost,
} from "../model/stages";
import { wishList } from "../edit/edits";
import type { Session } from "../session";
import { lengthText, timeText } from "../time/format";
import { typeName } from "../timeline/rows";

export interface Link {
    item: Item;
    text: string;
}

export interface LinkGroup {
    title: string;
    links: Link[];
    /** How many more there are than are listed. */
    more: number;
}

export interface Details {
    title: string;
    start: number;
    stop: number;
    rect: Rect | null;
    fields: [string, string][];
    from: LinkGroup[];
    became: LinkGroup[];
}

const kMostLinks = 60;

function group(title: string, links: Link[]): LinkGroup {
    return { title, links: links.slice(0, kMostLinks), more: Math.max(0, links.length - kMostLinks) };
}

function capital(text: string): string {
    return text.charAt(0).toUpperCase() + text.slice(1);
}

function spanText(start: number, stop: number): string {
    return `${timeText(start, 2)} – ${timeText(stop, 2)} (${lengthText(stop - start)})`;
}

export function linkTo(session: Session, item: Item): Link {
    const { stages, recording } = session.model;
    const at = (seconds: number | undefined): string => timeText(seconds ?? 0, 1);
    switch (item.kind) {
        case "object": {
            const object = stages.objects[item.index];
            return { item, text: `${capital(typeName(object?.type ?? ""))} at ${at(object?.start)}` };
        }
        case "evidence": {
            const evidence = stages.evidence[item.index];
            return { item, text: `${capital(evidence?.kind ?? "")}, ${(evidence?.weight ?? 0).toFixed(1)} s of interest` };
        }
        case "slice":
            return { item, text: `Slice ${item.index} at ${at(stages.slices[item.index]?.start)}` };
        case "shot": {
            const shot = stages.shots[item.index];
            return { item, text: `Shot ${item.index + 1}${shot?.mode ? `, ${shot.mode}` : ""} at ${at(shot?.start)}` };
        }
        case "keyframe":
            return { item, text: `Keyframe ${item.index + 1} at ${at(session.keyframes.value[item.index]?.seconds)}` };
        case "press":
            return { item, text: `Press at ${at(recording.presses[item.index]?.time)}` };
        case "wheel":
            return { item, text: `Wheel step at ${at(recording.wheel[item.index]?.time)}` };
        case "window":
            return { item, text: `Window at ${at(recording.windows[item.index]?.start)}` };
        case "stroke":
            return { item, text: `Stroke at ${at(session.strokes[item.index]?.start)}` };
        case "caret":
            return { item, text: `Caret at ${at(recording.caret.time[item.index])}` };
        case "changes":
            return { item, text: `Change at ${at(recording.dirty.time[item.index])}` };
        case "wish":
            return { item, text: `Wish ${item.index + 1}` };
    }
}

function links(session: Session, kind: Item["kind"], indexes: readonly number[]): Link[] {
    return indexes.map((index) => linkTo(session, { kind, index }));
}

function plannedFrom(session: Session, engineKeyframes: readonly number[]): number[] {
    return session.keyframes.value.flatMap((keyframe, i) =>
        keyframe.engine !== null && engineKeyframes.includes(keyframe.engine) ? [i] : [],
    );
}

/** Objects of the engine whose time touches a stretch and whose place touches a point or rectangle. */
function objectsAround(session: Session, start: number, stop: number, rect: Rect, types: RegExp): number[] {
    return session.model.stages.objects.flatMap((object, i) => {
        if (!types.test(object.type) || object.start > stop + 0.05 || object.stop < start - 0.05) return [];
        const apart =
            object.rect.left > rect.left + rect.width || object.rect.top > rect.top + rect.height ||
            rect.left > object.rect.left + object.rect.width || rect.top > object.rect.top + object.rect.height;
        return apart ? [] : [i];
    });
}

function costFields(cost: ShotCost | undefined): [string, string][] {
    if (!cost) return [];
    return [
        ["Missed sight", `${cost.cost.toFixed(1)} s, moves included`],
        ["Best other frame", cost.other ? `${rectText(cost.other.rect)}, would miss ${cost.other.cost.toFixed(1)} s` : "none to rest on for so long"],
    ];
}

/** What the page tells of an item; null when there is no such item any more. */
export function describe(session: Session, item: Item): Details | null {
    const { stages, recording } = session.model;
    const i = item.index;
    switch (item.kind) {
        case "keyframe": {
            const keyframe = session.keyframes.value[i];
            if (!keyframe) return null;
            const engine = keyframe.engine === null ? null : stages.keyframes[keyframe.engine];
            const shot = engine?.shot ?? null;
            const path = session.path.value;
            const move = path.moves.find((candidate) => candidate.keyframe === i);
            const next = session.keyframes.value[i + 1];
            const stop = next?.seconds ?? stages.clip.stop;
            const frame = path.frameOf(keyframe.rect);
            const fields: [string, string][] = [
                ["Time", timeText(keyframe.seconds)],
                ["Frame", rectText(keyframe.rect)],
                ["Zoom", (stages.target.width / frame.width).toFixed(3)],
                ["Reason", keyframe.reason ?? "–"],
                ["Move", move ? `${spanText(move.start, move.stop)}${move.cutShort ? ", cut short by the next" : ""}` : "none: another keyframe at this time replaces it"],
                ["Holds until", timeText(stop, 2)],
                ["Tick", String(keyframe.tick)],
                ...costFields(stages.costs[keyframe.engine ?? -1]),
            ];
            const wish = keyframe.origin === "pin" || keyframe.origin === "whole"
                ? wishList(session.edits.value.value).findIndex((ref) => ref.kind === keyframe.origin && ref.index === keyframe.index)
                : -1;
            const from = wish >= 0 ? [group("Change", links(session, "wish", [wish]))] : shot === null ? [
                group("Evidence", links(session, "evidence", evidenceOfKeyframe(stages, keyframe.engine ?? -1))),
            ] : [
                group("Shot", links(session, "shot", [shot])),
                group("Slices merged into it", links(session, "slice", slicesOfShot(stages, shot))),
            ];
            return { title: `Keyframe ${i + 1}`, start: keyframe.seconds, stop, rect: keyframe.rect, fields, from, became: [] };
        }
        case "shot": {
            const shot = stages.shots[i];
            if (!shot) return null;
            const slices = slicesOfShot(stages, i);
            const fields: [string, string][] = [
                ["Time", spanText(shot.start, shot.stop)],
                ["Mode", shot.blank ? "blank" : (shot.mode ?? "none")],
                ["Focus", isEmpty(shot.hotRect) ? "none" : rectText(shot.hotRect)],
                ["Window", isEmpty(shot.windowRect) ? "none" : rectText(shot.windowRect)],
                ["Classified as", [shot.tight ? "close-up fits" : "too large for a close-up", shot.window ? "steady window" : "", shot.inWindow ? "focus in the window" : "", shot.noWindow ? "the whole screen changed" : ""].filter(Boolean).join(", ")],
            ];
            return {
                title: `Shot ${i + 1}`, start: shot.start, stop: shot.stop,
                rect: isEmpty(shot.hotRect) ? null : shot.hotRect, fields,
                from: [group("Slices merged into it", links(session, "slice", slices))],
                became: [group("Keyframe", links(session, "keyframe", plannedFrom(session, keyframesOfShot(stages, i))))],
            };
        }
        case "slice": {
            const slice = stages.slices[i];
            if (!slice) return null;
            const shot = shotOfSlice(stages, i);
            const fields: [string, string][] = [["Time", spanText(slice.start, slice.stop)]];
            if (slice.blank) fields.push(["Focus", "blank: nothing to see here"]);
            slice.spaces.forEach((space, k) => {
                fields.push([k === 0 ? "Places, most worth first" : "", `${rectText(space.rect)}, density ${space.density.toPrecision(3)}`]);
            });
            return {
                title: `Slice ${i}`, start: slice.start, stop: slice.stop, rect: slice.spaces[0]?.rect ?? null, fields,
                from: [group("Objects that give it value", links(session, "object", objectsOfSlice(stages, i)))],
                became: [group("Shot", shot < 0 ? [] : links(session, "shot", [shot]))],
            };
        }
        case "object": {
            const object = stages.objects[i];
            if (!object) return null;
            const fields: [string, string][] = [
                ["Time", spanText(object.start, object.stop)],
                ["Rectangle", rectText(object.rect)],
                ["Worth", `${kWorth[object.type] ?? 0} a second, and fades over ${kDecay[object.type] ?? 0} s`],
            ];
            const presses = /Click|Drag/.test(object.type)
                ? recording.presses.flatMap((press, k) => (press.time <= object.stop + 0.01 && press.release >= object.start - 0.01 ? [k] : []))
                : [];
            const strokes = /Move|Hover|Drag/.test(object.type)
                ? session.strokes.flatMap((stroke, k) => (stroke.start <= object.stop && stroke.stop >= object.start ? [k] : []))
                : [];
            const windows = /Window|Fore|Menu/.test(object.type)
                ? recording.windows.flatMap((window, k) => (window.start < object.stop && window.stop > object.start && window.rect.width > 0 ? [k] : []))
                : [];
            return {
                title: capital(typeName(object.type)), start: object.start, stop: object.stop, rect: object.rect, fields,
                from: [
                    group("Presses", links(session, "press", presses)),
                    group("Strokes", links(session, "stroke", strokes)),
                    group("Windows", links(session, "window", windows)),
                ],
                became: [group("Slices that it gives value", links(session, "slice", slicesOfObject(stages, i)))],
            };
        }
        case "evidence": {
            const evidence = stages.evidence[i];
            if (!evidence) return null;
            const within = <T extends { time: number }>(list: readonly T[]): number[] =>
                list.flatMap(({ time }, k) => (time >= evidence.start && time < evidence.stop ? [k] : []));
            return {
                title: `Evidence: ${evidence.kind}`, start: evidence.start, stop: evidence.stop, rect: evidence.rect,
                fields: [
                    ["Time", spanText(evidence.start, evidence.stop)],
                    ["Interest", `${evidence.weight.toFixed(2)} s of a viewer’s`],
                    ["In the frame", `${Math.round(100 * evidence.seen)} % of it`],
                    ["Pieces", String(evidence.count)],
                    ["Around all of them", rectText(evidence.rect)],
                ],
                from: evidence.kind === "press" || evidence.kind === "drag" ? [group("Presses", links(session, "press", within(recording.presses)))] : [],
                became: [group("Keyframe", links(session, "keyframe", plannedFrom(session, [evidence.keyframe])))],
            };
        }
        case "press": {
            const press = recording.presses[i];
            if (!press) return null;
            const rect = { left: press.x - 8, top: press.y - 8, width: 16, height: 16 };
            const frame = session.path.value.frameAt(press.time);
            const inside = press.x >= frame.left && press.x < frame.left + frame.width && press.y >= frame.top && press.y < frame.top + frame.height;
            return {
                title: `Press of the ${press.button} button`, start: press.time, stop: press.release, rect,
                fields: [
                    ["Time", `${timeText(press.time)}, held for ${lengthText(press.release - press.time)}`],
                    ["Place", `${press.x}, ${press.y}`],
                    ["In the picture", inside ? "yes" : "no"],
                ],
                from: [],
                became: [group("Objects", links(session, "object", objectsAround(session, press.time, press.release, rect, /Click$|Drag|DoubleClick/)))],
            };
        }
        case "wheel": {
            const step = recording.wheel[i];
            if (!step) return null;
            return {
                title: `Wheel, one step ${step.up ? "up" : "down"}`, start: step.time, stop: step.time, rect: { left: step.x - 8, top: step.y - 8, width: 16, height: 16 },
                fields: [["Time", timeText(step.time)], ["Place", `${step.x}, ${step.y}`]], from: [], became: [],
            };
        }
        case "window": {
            const window = recording.windows[i];
            if (!window) return null;
            return {
                title: "Window in front", start: window.start, stop: window.stop, rect: window.rect,
                fields: [["Time", spanText(window.start, window.stop)], ["Rectangle", rectText(window.rect)], ["Share of the screen", `${Math.round((100 * window.rect.width * window.rect.height) / (recording.width * recording.height))} %`]],
                from: [],
                became: [group("Objects", links(session, "object", objectsAround(session, window.start, window.stop, window.rect, /Window|Fore|Menu|Pane/)))],
            };
        }
        case "stroke": {
            const stroke = session.strokes[i];
            if (!stroke) return null;
            let left = Infinity, top = Infinity, right = -Infinity, bottom = -Infinity;
            for (let k = stroke.first; k < stroke.end; ++k) {
                const x = recording.cursor.x[k] as number;
                const y = recording.cursor.y[k] as number;
                left = Math.min(left, x);
                right = Math.max(right, x);
                top = Math.min(top, y);
                bottom = Math.max(bottom, y);
            }
            const rect = { left, top, width: right - left, height: bottom - top };
            return {
                title: "Stroke of the hand", start: stroke.start, stop: stroke.stop, rect,
                fields: [["Time", spanText(stroke.start, stroke.stop)], ["Way", `${Math.round(stroke.length)} pixels`], ["Extent", sizeText(rect)]],
                from: [],
                became: [group("Objects", links(session, "object", objectsAround(session, stroke.start, stroke.stop, rect, /Move|Hover/)))],
            };
        }
        case "caret": {
            const time = recording.caret.time[i];
            if (time === undefined) return null;
            const rect = rectAt(recording.caret, i);
            return { title: "Text caret", start: time, stop: time, rect, fields: [["Time", timeText(time)], ["Place", rectText(rect)]], from: [], became: [] };
        }
        case "changes": {
            const time = recording.dirty.time[i];
            if (time === undefined) return null;
            const rect = rectAt(recording.dirty, i);
            return {
                title: "Changed area", start: time, stop: time, rect,
                fields: [["Time", timeText(time)], ["Rectangle", rectText(rect)]],
                from: [],
                became: [group("Objects", links(session, "object", objectsAround(session, time, time, rect, /Dirty|Hover/)))],
            };
        }
        case "wish": {
            const wish = wishList(session.edits.value.value)[i];
            if (!wish) return null;
            const start = wish.start / recording.timeScale;
            const stop = wish.stop / recording.timeScale;
            const names = { pin: "Pinned frame", whole: "On the whole screen", "keep-out": "No move" } as const;
            const made = session.keyframes.value.flatMap((keyframe, k) => (keyframe.origin === wish.kind && keyframe.index === wish.index ? [k] : []));
            return {
                title: names[wish.kind], start, stop, rect: wish.rect,
                fields: [["Time", spanText(start, stop)], ...(wish.rect ? [["Frame", rectText(wish.rect)] as [string, string]] : [])],
                from: [],
                became: [group("Keyframes", links(session, "keyframe", made))],
            };
        }
    }
}
