// The static page in a real browser: from an empty page to an edited path, without a network.
import { createServer, type Server } from "node:http";
import { existsSync, readFileSync, writeFileSync } from "node:fs";
import type { AddressInfo } from "node:net";
import { basename, dirname, join } from "node:path";
import { gzipSync } from "node:zlib";
import type { Browser } from "playwright-core";
import { afterAll, beforeAll, describe, expect, it } from "vitest";
import { accessibilityFaults, commandKeyframes, keyframeTable, kRecordings, kSite, open, startBrowser, temporaryFolder } from "./support";

const kEditor = kRecordings[0] as string;
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
