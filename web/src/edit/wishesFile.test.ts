import { describe, expect, it } from "vitest";
import { kNoWishes, type Wishes } from "../camera/wishes";
import { readWishes, writeWishes, WishesError } from "./wishesFile";

const clock = { timeScale: 1_000_000, clip: { start: 0, stop: 60_000_000 } };
const wishes: Wishes = {
    pins: [{ start: 12_500_001, stop: 20_000_000, rect: { left: 100, top: 50, width: 640, height: 400 } }],
    whole: [{ start: 30_000_000, stop: 34_000_000 }],
    keepOut: [{ start: 40_000_000, stop: 52_250_000 }],
    leastZoom: 0.4,
    greatestZoom: 1,
    leastRest: 4_000_000,
};

describe("a file of wishes", () => {
    it("holds them to the tick", () => {
        expect(readWishes(writeWishes(wishes, clock), clock)).toEqual(wishes);
        expect(readWishes(writeWishes(kNoWishes, clock), clock)).toEqual(kNoWishes);
    });
    it("has seconds, as the command reads them", () => {
        expect(JSON.parse(writeWishes(wishes, clock))).toEqual({
            format: "orvanta-wishes",
            version: 1,
            pins: [{ from: 12.500001, to: 20, left: 100, top: 50, width: 640, height: 400 }],
            whole: [{ from: 30, to: 34 }],
            keepOut: [{ from: 40, to: 52.25 }],
            leastZoom: 0.4,
            greatestZoom: 1,
            leastRest: 4,
        });
    });
    it("may be empty, and may leave out ends", () => {
        expect(readWishes(" \n", clock)).toEqual(kNoWishes);
        const open = readWishes(`{"format":"orvanta-wishes","version":1,"whole":[{"to":2},{"from":50}]}`, clock);
        expect(open.whole).toEqual([{ start: 0, stop: 2_000_000 }, { start: 50_000_000, stop: 60_000_000 }]);
    });
    it.each([
        ["{", "no JSON"],
        ["[]", "object"],
        [`{"format":"x","version":1}`, "orvanta-wishes"],
        [`{"format":"orvanta-wishes","version":2}`, "version"],
        [`{"format":"orvanta-wishes","version":1,"pin":[]}`, `"pin"`],
        [`{"format":"orvanta-wishes","version":1,"whole":[{"from":3,"to":3}]}`, "whole[0] must end after"],
        [`{"format":"orvanta-wishes","version":1,"pins":[{"from":3,"to":4,"left":0,"top":0,"width":0,"height":1}]}`, "width"],
        [`{"format":"orvanta-wishes","version":1,"leastZoom":2,"greatestZoom":1}`, "leastZoom"],
        [`{"format":"orvanta-wishes","version":1,"leastRest":-1}`, "leastRest"],
    ])("%s is refused", (text, reason) => {
        expect(() => readWishes(text, clock)).toThrow(WishesError);
        expect(() => readWishes(text, clock)).toThrow(reason);
    });
});
