// The static page in a real browser: from an empty page to an edited path, without a network.
import { execFileSync, spawnSync } from "node:child_process";
import { createServer, type Server } from "node:http";
import { existsSync, readFileSync, writeFileSync } from "node:fs";
import type { AddressInfo } from "node:net";
import { basename, dirname, join } from "node:path";
import { gzipSync } from "node:zlib";
import type { Browser } from "playwright-core";
import { afterAll, beforeAll, describe, expect, it } from "vitest";
import { accessibilityFaults, commandKeyframes, keyframeTable, kRecordings, kSite, open, orvanta, startBrowser, temporaryFolder } from "./support";

const kEditor = kRecordings[0] as string;
const hasZstd = spawnSync("zstd", ["--version"]).status === 0;
const kAnyFile = 'input[type="file"][multiple]';

describe.runIf(existsSync(kSite))("the static page", () => {
    let browser: Browser;
    let server: Server;
    let address: string;
    beforeAll(async () => {
        browser = await startBrowser();
        server = createServer((request, response) => {
            const name = request.url === "/" ? "index.html" : basename(request.url ?? "");
            const path = join(dirname(kSite), name);
            if (!existsSync(path)) {
                response.writeHead(404).end();
                return;
            }
            response.writeHead(200, { "content-type": name.endsWith(".js") ? "text/javascript" : "text/html" }).end(readFileSync(path));
        });
        await new Promise<void>((resolve) => server.listen(0, "localhost", resolve));
        address = `http://localhost:${(server.address() as AddressInfo).port}/`;
    });
    afterAll(async () => {
        await browser.close();
        server.close();
    });

    it.each(kRecordings)("computes what the command computes for %s", async (recording) => {
        const { page, complaints } = await open(browser, kSite);
        await page.setInputFiles(kAnyFile, recording);
        await page.waitForSelector(".keyframes");
        await page.getByLabel("Shape").selectOption("other");
        await page.getByLabel("Size", { exact: true }).fill("640x400");
        await page.keyboard.press("Tab");
        const expected = commandKeyframes(recording, "--size", "640x400").map((keyframe) => [`${keyframe.left}, ${keyframe.top}`, `${keyframe.width}×${keyframe.height}`, keyframe.reason]);
        await expect.poll(async () => (await keyframeTable(page)).map((row) => [row.place, row.size, row.reason]), { timeout: 20_000 }).toEqual(expected);
        await page.getByLabel("Engine").selectOption("voting");
        const votes = commandKeyframes(recording, "--size", "640x400", "--engine", "voting").map((keyframe) => [`${keyframe.left}, ${keyframe.top}`, `${keyframe.width}×${keyframe.height}`]);
        await expect.poll(async () => (await keyframeTable(page)).map((row) => [row.place, row.size]), { timeout: 20_000 }).toEqual(votes);
        expect(complaints).toEqual([]);
    });

    it("takes a compressed recording, and keeps a change when the shape changes", async () => {
        const file = join(temporaryFolder(), "editor.jsonl.gz");
        writeFileSync(file, gzipSync(readFileSync(kEditor)));
        const { page } = await open(browser, kSite);
        await page.setInputFiles(kAnyFile, file);
        await page.getByRole("textbox", { name: "From" }).fill("30");
        await page.getByRole("textbox", { name: "To" }).fill("40");
        await page.getByRole("button", { name: "Whole screen" }).click();
        await page.getByLabel("Shape").selectOption("9:16");
        await expect.poll(() => page.locator(".viewer figcaption").textContent(), { timeout: 20_000 }).toContain("450×800");
        expect((await keyframeTable(page)).map((row) => row.reason)).toContain("whole");
    });

    it("asks the director, with what it can be told, and shows its evidence", async () => {
        const { page, complaints } = await open(browser, kSite);
        await page.setInputFiles(kAnyFile, kEditor);
        await page.waitForSelector(".keyframes");
        await page.getByLabel("Shape").selectOption("0.5");
        await page.getByLabel("Engine").selectOption("director");
        const facts = async (): Promise<string[][]> => (await keyframeTable(page)).map((row) => [row.place, row.size, row.reason]);
        const command = (...words: string[]): (string | null)[][] =>
            commandKeyframes(kEditor, "--size", "0.5", "--engine", "director", ...words).map((keyframe) => [`${keyframe.left}, ${keyframe.top}`, `${keyframe.width}×${keyframe.height}`, keyframe.reason]);
        await expect.poll(facts, { timeout: 20_000 }).toEqual(command());
        const plan = JSON.parse(orvanta("inspect", kEditor, "--size", "0.5", "--engine", "director", "--format", "json")) as { shots: { evidence: { kind: string; weight: number }[] }[] };
        const kinds = new Set(plan.shots.flatMap(({ evidence }) => evidence.map(({ kind }) => `evidence-${kind.replaceAll(" ", "-")}`)));
        const lanes = await page.locator(".lane-names li").evaluateAll((items) => items.map((item) => (item as HTMLElement).dataset["lane"] ?? ""));
        expect(new Set(lanes.filter((lane) => lane.startsWith("evidence-")))).toEqual(kinds);
        await page.locator(".keyframes tbody tr").nth(1).click();
        const most = plan.shots[1]?.evidence[0];
        await page.locator(".details").getByRole("button", { name: new RegExp(`^${most?.kind ?? ""}, ${most?.weight.toFixed(1) ?? ""} s`, "i") }).click();
        await expect.poll(() => page.locator(".details h2").textContent()).toBe(`Evidence: ${most?.kind ?? ""}`);
        expect(await page.locator(".why").textContent()).toContain("The best other frame");
        expect(await accessibilityFaults(page)).toEqual([]);

        await page.getByLabel("Calm").fill("3");
        await page.getByLabel("Readable from").fill("0.9");
        await page.getByRole("combobox", { name: "Presses" }).selectOption("cheap");
        await page.getByLabel("Clip start").fill("20");
        await page.getByLabel("Clip end").fill("1:30");
        await page.keyboard.press("Tab");
        const expected = command("--calm", "3", "--readable", "0.9", "--presses", "cheap", "--clip", "20:90");
        expect(expected).not.toEqual(command());
        await expect.poll(facts, { timeout: 20_000 }).toEqual(expected);
        await page.getByLabel("Clip end").fill("soon");
        await page.keyboard.press("Tab");
        await expect.poll(() => page.getByRole("alert").textContent()).toContain("“soon” is no time");
        expect(complaints).toEqual([]);
    });

    it.runIf(hasZstd)("takes a recording packed with zstd", async () => {
        const file = join(temporaryFolder(), "editor.jsonl.zst");
        execFileSync("zstd", ["-q", kEditor, "-o", file]);
        const { page } = await open(browser, kSite);
        await page.setInputFiles(kAnyFile, file);
        await page.waitForSelector(".keyframes tbody tr");
        expect(await page.title()).toContain("editor.jsonl");
    });

    it("tells of what is no recording what it is, and what to do", async () => {
        const { page } = await open(browser, kSite);
        const bring = (name: string, content: Buffer): Promise<void> => page.setInputFiles(kAnyFile, { name, mimeType: "application/octet-stream", buffer: content });
        await bring("request.txt", Buffer.from("640 400 10000000\n1\n"));
        await expect.poll(() => page.getByRole("alert").textContent()).toContain("captured request, which this page does not read; make a page of it with: orvanta report request.txt");
        await bring("all.jsonl", Buffer.from("PK\x03\x04rest"));
        await expect.poll(() => page.getByRole("alert").textContent()).toContain("all.jsonl is a zip archive");
        await bring("cut.jsonl.zst", Buffer.from([0x28, 0xb5, 0x2f, 0xfd, 0x24, 0xff, 0x01]));
        await expect.poll(() => page.getByRole("alert").textContent()).toContain("cannot be unpacked");
        await bring("cut.jsonl.gz", gzipSync(readFileSync(kEditor)).subarray(0, 999));
        await expect.poll(() => page.getByRole("alert").textContent()).toContain("cut.jsonl.gz cannot be unpacked");
    });

    it("tells of a broken file which line is wrong, and stays usable", async () => {
        const file = join(temporaryFolder(), "bad.jsonl");
        writeFileSync(file, readFileSync(kEditor, "utf8").replace('[0,"cursor"', '[0,"cursor",1'));
        const line = readFileSync(file, "utf8").split("\n").findIndex((text) => text.startsWith('[0,"cursor",1')) + 1;
        const { page, complaints } = await open(browser, kSite);
        await page.setInputFiles(kAnyFile, file);
        await expect.poll(() => page.getByRole("alert").textContent()).toContain(`bad.jsonl, line ${line}`);
        await page.getByRole("button", { name: "Try the example" }).click();
        await page.waitForSelector(".keyframes tbody tr");
        expect(complaints).toEqual([]);
    });

    it("says what is wrong with a size", async () => {
        const { page } = await open(browser, kSite);
        await page.getByRole("button", { name: "Try the example" }).click();
        await page.waitForSelector(".keyframes");
        await page.getByLabel("Shape").selectOption("other");
        await page.getByLabel("Size", { exact: true }).fill("5000x5000");
        await page.keyboard.press("Tab");
        await expect.poll(() => page.getByRole("alert").textContent()).toContain("nowhere to go");
    });

    it("works without a network after the first load, and asks for nothing else", async () => {
        const { page, complaints } = await open(browser, address);
        await page.evaluate(async () => {
            await navigator.serviceWorker.ready;
        });
        await page.context().setOffline(true);
        server.closeAllConnections();
        await page.reload();
        await page.getByRole("button", { name: "Try the example" }).click();
        await page.waitForSelector(".keyframes tbody tr");
        await page.context().setOffline(false);
        expect(complaints.filter((complaint) => !complaint.includes("ERR_INTERNET_DISCONNECTED"))).toEqual([]);
    });

    it.each([
        [1280, false],
        [390, true],
    ])("has no accessibility fault at %d pixels, dark: %s", async (width, dark) => {
        const { page } = await open(browser, kSite, { width, dark });
        expect(await accessibilityFaults(page)).toEqual([]);
        await page.getByRole("button", { name: "Try the example" }).click();
        await page.waitForSelector(".keyframes tbody tr");
        expect(await accessibilityFaults(page)).toEqual([]);
        expect(await page.evaluate(() => document.documentElement.scrollWidth)).toBeLessThanOrEqual(width);
    });
});
