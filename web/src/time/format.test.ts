import { describe, expect, it } from "vitest";
import { lengthText, parseTime, timeText } from "./format";

describe("times", () => {
    it.each([
        [0, 3, "0:00.000"],
        [75.5, 2, "1:15.50"],
        [59.9996, 3, "1:00.000"],
        [3599.9, 0, "1:00:00"],
        [3661.25, 1, "1:01:01.3"],
        [-1.5, 1, "\u22120:01.5"],
        [-0.0001, 2, "0:00.00"],
    ])("%d with %d decimals is %s", (seconds, decimals, text) => {
        expect(timeText(seconds, decimals)).toBe(text);
    });
    it.each([
        [0.44, "0.4 s"],
        [9.96, "10 s"],
        [59.6, "1 min"],
        [200, "3 min 20 s"],
        [7500, "2 h 5 min"],
    ])("%d seconds are %s", (seconds, text) => {
        expect(lengthText(seconds)).toBe(text);
    });
    it.each([
        ["90.5", 90.5],
        ["1:30", 90],
        ["1:02:03.25", 3723.25],
        ["1:60", null],
        ["1.5:30", null],
        ["", null],
        ["-3", null],
        ["1:2:3:4", null],
    ])("reads %s", (text, seconds) => {
        expect(parseTime(text)).toBe(seconds);
    });
});
