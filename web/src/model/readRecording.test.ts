import { describe, expect, it } from "vitest";
import { cursorAt, windowAt } from "./recording";
import { readRecording, RecordingError } from "./readRecording";

const header = `{"format":"orvanta-recording","version":1,"timeScale":1000,"videoOffset":250}`;
const lines = [
    header,
    `[0,"region",100,50,1380,850]`,
    `[0,"window",100,50,500,450]`,
    `[500,"window",100,50,500,450]`,
    `[900,"window",0,0,0,0]`,
    `[1000,"cursor",200,150]`,
    `[1500,"dirty",110,60,130,90]`,
    `[2000,"action",0]`,
    `[2300,"action",1]`,
    `[2500,"action",6]`,
    `[3000,"cursor",300,250]`,
];

function failure(text: string): RecordingError {
    try {
        readRecording(text, "bad.jsonl");
    } catch (error) {
        if (error instanceof RecordingError) return error;
    }
    throw new Error("was read");
}

describe("recording", () => {
    const recording = readRecording(lines.join("\n") + "\n", "r.jsonl");
    it("counts in seconds and local pixels", () => {
        expect(recording).toMatchObject({ width: 1280, height: 800, stop: 3, stopTick: 3000, videoOffset: 0.25 });
        expect(cursorAt(recording, 1.2)).toEqual({ x: 100, y: 100 });
        expect(cursorAt(recording, 0.9)).toBeNull();
        expect([recording.dirty.left[0], recording.dirty.top[0], recording.dirty.width[0], recording.dirty.height[0]]).toEqual([10, 10, 20, 30]);
    });
    it("pairs presses with their releases, at the cursor's place", () => {
        expect(recording.presses).toEqual([{ time: 2, release: 2.3, button: "left", x: 100, y: 100 }]);
        expect(recording.wheel).toEqual([{ time: 2.5, up: true, x: 100, y: 100 }]);
    });
    it("joins equal window samples, and knows when there was none", () => {
        expect(recording.windows).toHaveLength(2);
        expect(windowAt(recording, 0.7)).toEqual({ left: 0, top: 0, width: 400, height: 400 });
        expect(windowAt(recording, 1)).toBeNull();
    });
    it("takes a byte order mark, CRLF and blank lines", () => {
        const same = readRecording(`\ufeff${lines.join("\r\n\r\n")}\r\n`, "r.jsonl");
        expect(same.presses).toEqual(recording.presses);
        expect(same.warnings).toEqual(["10 blank lines were passed over."]);
    });
    it("leaves out a last line that is cut short, and says so", () => {
        const cut = readRecording(`${lines.join("\n")}\n[3100,"cur`, "r.jsonl");
        expect(cut.stop).toBe(3);
        expect(cut.warnings[0]).toContain("Line 12");
    });
    it("passes over streams that it does not know", () => {
        const more = readRecording(`${lines.join("\n")}\n[3100,"touch",1]\n`, "r.jsonl");
        expect(more.warnings).toEqual(["Streams passed over: touch: 1."]);
        expect(more.stop).toBe(3.1);
    });
});

describe("a broken recording", () => {
    it.each([
        ["", 1, "empty"],
        ["\u0000\u0001video", 1, "no recording"],
        ["[1,2]", 1, "header"],
        [`{"format":"other"}`, 1, "format"],
        [`{"format":"orvanta-recording","version":2,"timeScale":1}`, 1, "version"],
        [`{"format":"orvanta-recording","version":1,"timeScale":0}`, 1, "timeScale"],
        [`${header}\n[0,"cursor",1,2]`, 1, "region"],
        [`${header}\n[0,"region",0,0,9,9]\n[5,"cursor",1]\n[6,"cursor",1,2]`, 3, "4 fields"],
        [`${header}\n[0,"region",0,0,9,9]\n[5,"cursor",1.5,2]\n`, 3, "integer"],
        [`${header}\n[0,"region",0,0,9,9]\n[5,"cursor",1,3000000000]\n`, 3, "32 bits"],
        [`${header}\n[7,"region",0,0,9,9]\n[5,"cursor",1,2]\n`, 3, "before"],
        [`${header}\n[0,"region",0,0,9,9]\n{"a":1}\n`, 3, "array"],
        [`${header}\nnonsense\n[0,"region",0,0,9,9]`, 2, "no JSON"],
    ])("%j is refused with its line", (text, line, reason) => {
        const error = failure(text);
        expect(error.line).toBe(line);
        expect(error.message).toContain(`bad.jsonl, line ${line}`);
        expect(error.reason).toContain(reason);
    });
});
