import { describe, expect, it } from "vitest";
import { resolveSize, SizeError } from "./size";

const screen = { width: 1920, height: 1080 };

describe("sizes", () => {
    it.each([
        ["640x400", 640, 400],
        ["640×400", 640, 400],
        ["0.5", 960, 540],
        // As large as the recording: half of it.
        ["16:9", 960, 540],
        // 608x1080 is less than three quarters of the screen.
        ["9:16", 606, 1080],
        ["1:1", 1080, 1080],
        // 1440x1080 is exactly three quarters.
        ["4:3", 1440, 1080],
        // 1620x1080 is more.
        ["3:2", 810, 540],
    ])("%s of a full screen", (text, width, height) => {
        expect(resolveSize(text, screen, "value")).toEqual({ width, height });
    });
    it.each(["", "big", "640x", "0:9", "1.5", "0", "1:2:3", "32x32", "63x400", "1920x1080", "4000x4000"])("%s is refused", (text) => {
        expect(() => resolveSize(text, screen, "value")).toThrow(SizeError);
    });
    it("leaves the voting engine a row and a column", () => {
        expect(resolveSize("1920x400", screen, "value")).toEqual({ width: 1920, height: 400 });
        expect(() => resolveSize("1920x400", screen, "voting")).toThrow("nowhere to go");
    });
});
