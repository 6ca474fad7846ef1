import { readFileSync } from "node:fs";
import { describe, expect, it } from "vitest";
import type { Rect } from "../model/geometry";
import { applyWishes, kNoWishes, type EngineKeyframe, type Stretch, type Wishes } from "./wishes";

/** Worked examples that every implementation of the rules is held to. */
interface Examples {
    setup: { region: [number, number]; target: [number, number]; fade: number; clip: [number, number] };
    rectangles: Record<string, [number, number, number, number]>;
    cases: {
        claim: string;
        keyframes: [number, RectText][];
        wishes: {
            pins?: [number, number, RectText][];
            whole?: [number, number][];
            keepOut?: [number, number][];
            leastZoom?: number;
            greatestZoom?: number;
            leastRest?: number;
        };
        expected: [number, RectText, string, number][];
    }[];
}
/** A name, or a rectangle itself. */
type RectText = string | [number, number, number, number];

const examples = JSON.parse(readFileSync(new URL("../../../tests/data/wishes.json", import.meta.url), "utf8")) as Examples;

function rectOf(text: RectText): Rect {
    const numbers = typeof text === "string" ? examples.rectangles[text] : text;
    if (!numbers) throw new Error(`no rectangle ${String(text)}`);
    const [left, top, width, height] = numbers;
    return { left, top, width, height };
}

function stretchOf([start, stop]: [number, number]): Stretch {
    return { start, stop };
}

const { setup } = examples;
const wishSetup = {
    recording: { width: setup.region[0], height: setup.region[1] },
    target: { width: setup.target[0], height: setup.target[1] },
    fade: setup.fade,
    clip: stretchOf(setup.clip),
};

describe("wishes", () => {
    it.each(examples.cases.map((example) => [example.claim, example] as const))("%s", (_claim, example) => {
        const keyframes = example.keyframes.map(([tick, rect]): EngineKeyframe => ({ tick, rect: rectOf(rect) }));
        const given = example.wishes;
        const wishes: Wishes = {
            ...kNoWishes,
            ...given,
            pins: (given.pins ?? []).map(([start, stop, rect]) => ({ start, stop, rect: rectOf(rect) })),
            whole: (given.whole ?? []).map(stretchOf),
            keepOut: (given.keepOut ?? []).map(stretchOf),
        };
        expect(applyWishes(keyframes, wishSetup, wishes)).toEqual(
            example.expected.map(([tick, rect, origin, index]) => ({ tick, rect: rectOf(rect), origin, index })),
        );
    });
});
