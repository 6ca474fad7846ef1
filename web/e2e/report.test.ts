// The page of `orvanta report` in a real browser, against what the command says.
import { execFileSync } from "node:child_process";
import { copyFileSync, readdirSync, readFileSync, statSync, writeFileSync } from "node:fs";
import { basename, join } from "node:path";
import type { Browser } from "playwright-core";
import { afterAll, beforeAll, describe, expect, it } from "vitest";
import {
    accessibilityFaults, commandKeyframes, keyframeTable, knows, knowsFormat, kProgram, kRecordings, open, openReport, orvanta, saved, seek,
    shownFrame, startBrowser, temporaryFolder,
} from "./support";

let browser: Browser;
beforeAll(async () => {
    browser = await startBrowser();
});
afterAll(() => browser.close());

const kEditor = kRecordings[0] as string;
/** It has no video: its samples lie on whole tenths of a second, where the slider can go. */
const kSample = kRecordings[2] as string;
/** Further recordings to try: ORVANTA_RECORDINGS names their folder. */
const kFolder = process.env["ORVANTA_RECORDINGS"] ?? "";
const kLanes = ["keyframes", "slices", "shots", "cursor", "strokes", "presses", "wheel", "changes", "caret", "windows"];

interface Inspection {
    objectCounts: Record<string, number>;
    clip: { stopTick: number };
    ticksPerSecond: number;
}

describe.each(kRecordings)("the report of %s", (recording) => {
    it("opens without a complaint and shows what the command says", async () => {
        const { page, complaints } = await openReport(browser, recording);
        expect(await page.title()).toContain(basename(recording));
        const inspection = JSON.parse(orvanta("inspect", recording, "--size", "640x400", "--format", "json")) as Inspection;
        const lanes = await page.locator(".lane-names li").evaluateAll((items) => items.map((item) => (item as HTMLElement).dataset["lane"] ?? ""));
        expect(lanes).toEqual(expect.arrayContaining([...kLanes, ...Object.keys(inspection.objectCounts).map((type) => `object-${type}`)]));

        const expected = commandKeyframes(recording, "--size", "640x400");
        const shown = await keyframeTable(page);
        expect(shown.map((row) => [row.place, row.size, row.reason])).toEqual(
            expected.map((keyframe) => [`${keyframe.left}, ${keyframe.top}`, `${keyframe.width}×${keyframe.height}`, keyframe.reason]),
        );

        const stop = inspection.clip.stopTick / inspection.ticksPerSecond;
        // At rest the frame is the keyframe's, to half a pixel; before the first it is the whole recording.
        for (let i = 0; i < 10; ++i) {
            const time = (stop * (i + 0.5)) / 10;
            await seek(page, time);
            const [left, top, width, height] = (await shownFrame(page)) as [number, number, number, number];
            const held = expected.findLast((keyframe) => keyframe.seconds <= time);
            if (held && time >= held.seconds + 1) {
                expect(Math.abs(left + width / 2 - held.left - held.width / 2), `at ${time}`).toBeLessThanOrEqual(0.5);
                expect(Math.abs(top + height / 2 - held.top - held.height / 2), `at ${time}`).toBeLessThanOrEqual(0.5);
                expect(width).toBeGreaterThanOrEqual(held.width);
                expect(width - held.width).toBeLessThanOrEqual(1.6);
            }
            expect(width / height).toBeCloseTo(1.6, 9);
        }
        expect(complaints).toEqual([]);
    });
});

describe("a report", () => {
    it.runIf(knows("keyframes", "--sample"))("moves as the command does, to half a pixel at every tenth of a second", async () => {
        const { page } = await openReport(browser, kSample);
        const samples = JSON.parse(orvanta("keyframes", kSample, "--size", "640x400", "--format", "json", "--sample", "10")) as {
            frames: { seconds: number; left: number; top: number; width: number; height: number }[];
        };
        expect(samples.frames.length).toBeGreaterThan(1000);
        const moving = samples.frames.filter((frame, i) => i % 97 === 0 || samples.frames[i - 1]?.width !== frame.width);
        for (const frame of moving.slice(0, 60)) {
            await seek(page, frame.seconds);
            const shown = await shownFrame(page);
            [frame.left, frame.top, frame.width, frame.height].forEach((value, k) => expect(Math.abs((shown[k] as number) - value), `at ${frame.seconds}`).toBeLessThanOrEqual(0.5));
        }
    });

    it("follows links from a keyframe to its shot, slices and objects, and back", async () => {
        const { page, complaints } = await openReport(browser, kEditor);
        await page.locator(".keyframes tbody tr").nth(2).click();
        const details = page.locator(".details");
        await details.getByRole("button", { name: /^Shot / }).click();
        await expect.poll(() => details.locator("h2").textContent()).toMatch(/^Shot/);
        await details.getByRole("button", { name: /^Slice / }).first().click();
        await expect.poll(() => details.locator("h2").textContent()).toMatch(/^Slice/);
        const slice = await details.locator("h2").textContent();
        await details.getByRole("button", { name: /^Click at/ }).first().click();
        await expect.poll(() => details.locator("h2").textContent()).toMatch(/^Click/);
        await details.getByRole("button", { name: new RegExp(`^${slice ?? ""} at`) }).click();
        await details.getByRole("button", { name: /^Shot / }).click();
        await details.getByRole("button", { name: /^Keyframe 3/ }).click();
        await expect.poll(() => details.locator("h2").textContent()).toBe("Keyframe 3");
        expect(complaints).toEqual([]);
    });

    it("of the director shows its evidence and what it weighed", async () => {
        const { page, complaints } = await openReport(browser, kSample, ["--size", "640x400", "--engine", "director"]);
        const lanes = await page.locator(".lane-names li").evaluateAll((items) => items.map((item) => (item as HTMLElement).dataset["lane"] ?? ""));
        expect(lanes).toEqual(expect.arrayContaining(["keyframes", "cursor", "evidence-press", "evidence-change", "evidence-whole"]));
        const shown = await keyframeTable(page);
        expect(shown.map((row) => row.reason)).toEqual(commandKeyframes(kSample, "--size", "640x400", "--engine", "director").map(({ reason }) => reason));
        await page.locator(".keyframes tbody tr").nth(1).click();
        await expect.poll(() => page.locator(".details").textContent()).toContain("Missed sight");
        expect(complaints).toEqual([]);
    });

    // All recordings of a folder that is not the project's own.
    it.runIf(kFolder)("opens for every recording of the folder, shows every lane and scrubs", async () => {
        for (const name of readdirSync(kFolder).filter((file) => file.endsWith(".jsonl"))) {
            const { page, complaints } = await openReport(browser, join(kFolder, name));
            const inspection = JSON.parse(orvanta("inspect", join(kFolder, name), "--size", "640x400", "--format", "json")) as Inspection;
            const lanes = await page.locator(".lane-names li").evaluateAll((items) => items.map((item) => (item as HTMLElement).dataset["lane"] ?? ""));
            expect(lanes, name).toEqual(expect.arrayContaining([...kLanes, ...Object.keys(inspection.objectCounts).map((type) => `object-${type}`)]));
            const expected = commandKeyframes(join(kFolder, name), "--size", "640x400");
            expect((await keyframeTable(page)).map((row) => [row.place, row.reason]), name).toEqual(expected.map((keyframe) => [`${keyframe.left}, ${keyframe.top}`, keyframe.reason]));
            const stop = inspection.clip.stopTick / inspection.ticksPerSecond;
            for (let i = 0; i < 10; ++i) {
                await seek(page, (stop * (i + 0.5)) / 10);
                expect((await shownFrame(page)).every(Number.isFinite), name).toBe(true);
            }
            expect(complaints, name).toEqual([]);
            await page.context().close();
        }
    }, 600_000);

    it("says why the camera is where it is", async () => {
        const { page } = await openReport(browser, kEditor);
        await seek(page, 0);
        expect(await page.locator(".why").textContent()).toContain("whole recording is on show");
        await seek(page, 76);
        const why = await page.locator(".why").textContent();
        expect(why).toContain("Tight on");
        expect(why).toContain("presses");
    });

    it("is driven by the keyboard alone", async () => {
        const { page } = await openReport(browser, kEditor);
        await page.locator(".keyframes tbody tr").first().focus();
        await page.keyboard.press("ArrowDown");
        await page.keyboard.press("Enter");
        expect(await page.locator(".transport output").textContent()).toBe("1:03.18");
        await page.keyboard.press("End");
        await page.keyboard.press("Delete");
        expect(await keyframeTable(page)).toHaveLength(4);
        await page.keyboard.press("Control+z");
        expect(await keyframeTable(page)).toHaveLength(5);
        await page.getByRole("slider", { name: "Timeline" }).focus();
        for (const key of ["+", "+", "ArrowRight", "PageDown", "0", "Home", "-"]) await page.keyboard.press(key);
        expect(await page.locator(".transport output").textContent()).toBe("0:00.00");
        await page.keyboard.press(" ");
        await expect.poll(() => page.locator(".transport output").textContent()).not.toBe("0:00.00");
    });

    it("draws the screen itself where the video beside it cannot be shown, and says so", async () => {
        const folder = temporaryFolder();
        writeFileSync(join(folder, "broken.mp4"), "no video at all");
        copyFileSync(kEditor, join(folder, "broken.jsonl"));
        orvanta("report", join(folder, "broken.jsonl"), "--size", "640x400", "-o", join(folder, "broken.html"));
        const { page } = await open(browser, join(folder, "broken.html"));
        await page.getByText("could not be shown").waitFor();
        expect(await keyframeTable(page)).toHaveLength(5);
    });

    it.each([
        [1280, false],
        [1280, true],
        [390, false],
        [390, true],
    ])("has no accessibility fault at %d pixels, dark: %s, and does not scroll sideways", async (width, dark) => {
        const { page } = await openReport(browser, kEditor, undefined, { width, dark });
        await page.locator(".keyframes tbody tr").nth(1).click();
        expect(await accessibilityFaults(page)).toEqual([]);
        expect(await page.evaluate(() => document.documentElement.scrollWidth)).toBeLessThanOrEqual(width);
        await page.getByRole("button", { name: "Take along" }).click();
        expect(await accessibilityFaults(page)).toEqual([]);
    });
});

describe("changes", () => {
    it("drag the frame, undo, redo, and stay for the next visit", async () => {
        const { page, complaints } = await openReport(browser, kEditor);
        await seek(page, 76);
        const frame = page.locator(".handle-move");
        const box = await frame.boundingBox();
        if (!box) throw new Error("no frame");
        await page.mouse.move(box.x + box.width / 2, box.y + box.height / 2);
        await page.mouse.down();
        await page.mouse.move(box.x + box.width / 2 - 60, box.y + box.height / 2 + 40, { steps: 4 });
        await page.mouse.up();
        const moved = (await keyframeTable(page))[2];
        expect(moved?.reason).toBe("pinned");
        await page.keyboard.press("Control+z");
        expect((await keyframeTable(page))[2]?.reason).toBe("tight");
        await page.keyboard.press("Control+Shift+z");
        expect((await keyframeTable(page))[2]).toEqual(moved);
        await page.reload();
        await page.waitForSelector(".keyframes tbody tr");
        expect((await keyframeTable(page))[2]).toEqual(moved);
        expect(complaints).toEqual([]);
    });

    it("are saved, and opened again elsewhere", async () => {
        const { page } = await openReport(browser, kEditor);
        await page.getByRole("textbox", { name: "From" }).fill("30");
        await page.getByRole("textbox", { name: "To" }).fill("0:40.5");
        await page.getByRole("button", { name: "Whole screen" }).click();
        await page.getByLabel("Rest between moves").fill("6");
        await page.keyboard.press("Tab");
        const table = await keyframeTable(page);
        const file = await saved(page, () => page.getByRole("button", { name: "Save changes" }).click());
        expect(file.name).toBe("editor.wishes.json");
        expect(JSON.parse(file.text())).toEqual({ format: "orvanta-wishes", version: 1, whole: [{ from: 30, to: 40.5 }], leastRest: 6 });

        await page.getByRole("button", { name: "Take all back" }).click();
        expect(await keyframeTable(page)).not.toEqual(table);
        await page.setInputFiles('input[aria-label="File with changes"]', file.path);
        await expect.poll(() => keyframeTable(page)).toEqual(table);
    });

    it.runIf(knows("keyframes", "--wishes"))("given to the command, yield the same path", async () => {
        const { page } = await openReport(browser, kEditor);
        await seek(page, 76);
        await page.getByRole("button", { name: "Corner of the frame, lower right" }).focus();
        for (let i = 0; i < 4; ++i) await page.keyboard.press("Shift+ArrowLeft");
        await page.locator(".keyframes tbody tr").nth(3).focus();
        await page.keyboard.press("Delete");
        await page.getByRole("textbox", { name: "From" }).fill("30");
        await page.getByRole("textbox", { name: "To" }).fill("40");
        await page.getByRole("button", { name: "Whole screen" }).click();
        await page.getByLabel("Zoom at least").fill("0.6");
        await page.keyboard.press("Tab");
        const wishes = await saved(page, () => page.getByRole("button", { name: "Save changes" }).click());
        await page.getByRole("button", { name: "Take along" }).click();
        const path = await saved(page, () => page.getByRole("button", { name: "JSON", exact: true }).click());
        const expected = commandKeyframes(kEditor, "--size", "640x400", "--wishes", wishes.path);
        const shown = (JSON.parse(path.text()) as { keyframes: typeof expected }).keyframes;
        const facts = (keyframe: (typeof expected)[number]): unknown[] => [keyframe.tick, keyframe.left, keyframe.top, keyframe.width, keyframe.height, keyframe.reason];
        expect(expected.length).toBeGreaterThan(4);
        expect(shown.map(facts)).toEqual(expected.map(facts));
    });

    it("that make no sense are refused in words", async () => {
        const { page } = await openReport(browser, kEditor);
        await page.getByRole("textbox", { name: "From" }).fill("soon");
        await page.getByRole("button", { name: "No move" }).click();
        expect(await page.getByRole("alert").textContent()).toContain("seconds");
        await page.setInputFiles('input[aria-label="File with changes"]', { name: "x.json", mimeType: "application/json", buffer: Buffer.from("{}") });
        await expect.poll(() => page.getByRole("alert").textContent()).toContain("x.json: these are no wishes");
    });
});

describe("take along", () => {
    it.runIf(knows("keyframes", "--path"))("a path that the command reads back to the same path", async () => {
        const { page } = await openReport(browser, kEditor);
        await page.getByRole("button", { name: "Take along" }).click();
        const file = await saved(page, () => page.getByRole("button", { name: "JSON", exact: true }).click());
        const again = JSON.parse(orvanta("keyframes", "--path", file.path, "--format", "json")) as object;
        const direct = JSON.parse(orvanta("keyframes", kEditor, "--size", "640x400", "--format", "json")) as object;
        expect({ ...again, recording: null }).toEqual({ ...direct, recording: null });
        const csv = await saved(page, () => page.getByRole("button", { name: "CSV" }).click());
        expect(csv.text()).toBe(orvanta("keyframes", kEditor, "--size", "640x400", "--format", "csv"));
    });

    it.each([
        ["640x400", "ease-in-out"],
        ["360x640", "smooth"], // with black beside the whole screen
        ["1280x640", "linear"], // nearly the whole screen
    ])("the ffmpeg script and the MLT project that the command writes, at %s", async (size, easing) => {
        const { page, complaints } = await openReport(browser, kEditor, ["--size", size]);
        await page.getByLabel("Easing").selectOption(easing);
        await seek(page, 76);
        await page.getByRole("textbox", { name: "From" }).fill("30");
        await page.getByRole("textbox", { name: "To" }).fill("33.4");
        await page.getByRole("button", { name: "Pin this frame" }).click();
        const wishes = await saved(page, () => page.getByRole("button", { name: "Save changes" }).click());
        await page.getByRole("button", { name: "Take along" }).click();
        const command = (format: string): string => orvanta("keyframes", kEditor, "--size", size, "--easing", easing, "--wishes", wishes.path, "--format", format);
        const script = await saved(page, () => page.getByRole("button", { name: "ffmpeg script" }).click());
        expect(script.name).toBe("editor.ffmpeg");
        expect(script.text()).toBe(command("ffmpeg"));
        expect(await page.locator(".command code").textContent()).toMatch(/^ffmpeg -i editor.mp4 -filter_script:v editor.ffmpeg .*-c:a copy editor.camera.mp4$/);
        const project = await saved(page, () => page.getByRole("button", { name: "MLT project" }).click());
        expect(project.text()).toContain('<property name="resource">editor.mp4</property>');
        expect(await page.locator(".command code").textContent()).toBe("melt editor.mlt -consumer avformat:editor.camera.mp4 rescale=bicubic");
        if (knowsFormat("mlt")) {
            // The video's name counts from the project's folder, the recording's is as it was told.
            const folder = temporaryFolder();
            copyFileSync(kEditor, join(folder, "editor.jsonl"));
            execFileSync(kProgram, ["keyframes", "editor.jsonl", "--size", size, "--easing", easing, "--wishes", wishes.path, "-o", "editor.mlt"], { cwd: folder, stdio: "ignore" });
            expect(project.text()).toBe(readFileSync(join(folder, "editor.mlt"), "utf8"));
        }
        expect(complaints).toEqual([]);
    });

    it("a finished video, of the drawn screen and then of that video", async () => {
        // Two seconds around the second move of the recording, which become the video of a second recording.
        const [header = "", ...rest] = readFileSync(kEditor, "utf8").split("\n");
        const first = await openReport(browser, kEditor, ["--size", "320x200", "--clip", "0:14"]);
        await first.page.getByRole("button", { name: "Take along" }).click();
        const drawn = await saved(first.page, () => first.page.getByRole("button", { name: "Video of the drawn screen" }).click());
        expect(drawn.name).toMatch(/^editor\.camera\.(mp4|webm)$/);

        const folder = temporaryFolder();
        const ending = drawn.name.split(".").pop() ?? "";
        copyFileSync(drawn.path, join(folder, `second.${ending}`));
        const offset = { ...(JSON.parse(header) as object), videoOffset: 500_000 };
        writeFileSync(join(folder, "second.jsonl"), [JSON.stringify(offset), ...rest].join("\n"));
        const { page, complaints } = await openReport(browser, join(folder, "second.jsonl"), ["--size", "320x200", "--clip", "0:14", "--embed-video"]);
        await expect.poll(() => page.locator("video").evaluate((video) => (video as HTMLVideoElement).readyState)).toBeGreaterThanOrEqual(2);
        expect(await page.locator("video").evaluate((video) => (video as HTMLVideoElement).duration)).toBeCloseTo(14, 0);
        // The video's own time is that of the recording less the offset.
        await seek(page, 5);
        await expect.poll(() => page.locator("video").evaluate((video) => (video as HTMLVideoElement).currentTime)).toBeCloseTo(4.5, 1);
        await page.getByRole("button", { name: "Take along" }).click();
        const finished = await saved(page, () => page.getByRole("button", { name: "Finished video" }).click());
        expect(finished.name).toBe(`second.camera.${ending}`);
        expect(statSync(finished.path).size).toBeGreaterThan(10_000);
        expect(complaints).toEqual([]);
    });

    it("a still in the picture's size", async () => {
        const { page } = await openReport(browser, kEditor);
        await page.getByRole("button", { name: "Take along" }).click();
        const file = await saved(page, () => page.getByRole("button", { name: /^Still/ }).click());
        expect(file.name).toMatch(/^editor\..*\.png$/);
        const bytes = readFileSync(file.path);
        expect(bytes.subarray(1, 4).toString()).toBe("PNG");
        expect([bytes.readUInt32BE(16), bytes.readUInt32BE(20)]).toEqual([1280, 800]);
    });
});
