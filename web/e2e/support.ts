// Starts the browser and the command, and opens pages that must not complain.
import { execFileSync } from "node:child_process";
import { existsSync, mkdtempSync, readFileSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import axe from "axe-core";
import { chromium, type Browser, type Page } from "playwright-core";
import { afterAll } from "vitest";

export const kRoot = fileURLToPath(new URL("../..", import.meta.url));
export const kProgram = process.env["ORVANTA_PROGRAM"] ?? join(kRoot, "build/dev/tools/orvanta/orvanta");
export const kSite = join(kRoot, "web/dist/index.html");

export const kRecordings = ["tests/golden/recordings/editor.jsonl", "examples/recordings/browser.jsonl", "examples/recordings/files_terminal.jsonl"].map((name) => join(kRoot, name));

/** Runs the command; throws with its message when it fails. */
export function orvanta(...words: string[]): string {
    return execFileSync(kProgram, words, { encoding: "utf8", maxBuffer: 1 << 28, stdio: ["ignore", "pipe", "pipe"] });
}

const folders: string[] = [];
afterAll(() => {
    for (const folder of folders.splice(0)) rmSync(folder, { recursive: true });
});

/** A new folder, removed once the tests of the file have ended. */
export function temporaryFolder(): string {
    const folder = mkdtempSync(join(tmpdir(), "orvanta-page-"));
    folders.push(folder);
    return folder;
}

/** True where the command knows an option. */
export function knows(subcommand: string, option: string): boolean {
    return orvanta(subcommand, "--help").includes(option);
}

/** True where the command writes paths in a format. */
export function knowsFormat(format: string): boolean {
    return new RegExp(`--format FORMAT[^(]*\\b${format}\\b`).test(orvanta("keyframes", "--help"));
}

export async function startBrowser(): Promise<Browser> {
    const executablePath = ["/usr/bin/chromium", "/usr/bin/chromium-browser", "/usr/bin/google-chrome"].find((path) => existsSync(path));
    if (!executablePath) throw new Error("there is no Chromium; install the package chromium");
    return chromium.launch({
        executablePath,
        args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking", "--disable-component-update", "--disable-sync"],
    });
}

/** A page that records everything that went wrong in it, and every address beyond this machine that it asked for. */
export interface Watched {
    page: Page;
    complaints: string[];
}

export async function open(browser: Browser, address: string, options: { width?: number; height?: number; dark?: boolean } = {}): Promise<Watched> {
    const context = await browser.newContext({
        viewport: { width: options.width ?? 1280, height: options.height ?? 900 },
        colorScheme: options.dark ? "dark" : "light",
        acceptDownloads: true,
    });
    const page = await context.newPage();
    const complaints: string[] = [];
    page.on("console", (message) => complaints.push(`console: ${message.text()}`));
    page.on("pageerror", (error) => complaints.push(`error: ${error.message}`));
    page.on("request", (request) => {
        if (/^https?:/.test(request.url()) && !/^http:\/\/(localhost|127\.0\.0\.1)[:/]/.test(request.url())) complaints.push(`asked for ${request.url()}`);
    });
    await page.goto(address.includes("://") ? address : pathToFileURL(address).href);
    return { page, complaints };
}

/** Writes a report and opens it. */
export async function openReport(browser: Browser, recording: string, words: string[] = ["--size", "640x400"], options: Parameters<typeof open>[2] = {}): Promise<Watched> {
    const file = join(temporaryFolder(), "report.html");
    orvanta("report", recording, ...words, "-o", file);
    const watched = await open(browser, file, options);
    await watched.page.waitForSelector(".timeline canvas");
    return watched;
}

/** What axe-core has to say against the page, a line each. */
export async function accessibilityFaults(page: Page): Promise<string[]> {
    await page.evaluate(axe.source);
    const results = await page.evaluate(async () => {
        const { axe: checker } = window as unknown as { axe: typeof axe };
        return checker.run(document, { runOnly: ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "wcag22aa", "best-practice"] });
    });
    return results.violations.flatMap((rule) => rule.nodes.map((node) => `${rule.id}: ${node.target.join(" ")}: ${node.failureSummary ?? ""}`));
}

export interface TableRow {
    time: string;
    place: string;
    size: string;
    reason: string;
}

/** The keyframes as the page's table has them. */
export async function keyframeTable(page: Page): Promise<TableRow[]> {
    return page.locator(".keyframes tbody tr").evaluateAll((rows) =>
        rows.map((row) => {
            const cells = [...row.querySelectorAll("td")].map((cell) => cell.textContent.trim());
            return { time: cells[1] ?? "", place: cells[2] ?? "", size: cells[3] ?? "", reason: cells[5] ?? "" };
        }),
    );
}

export interface CommandKeyframe {
    tick: number;
    seconds: number;
    left: number;
    top: number;
    width: number;
    height: number;
    reason: string | null;
}

/** The keyframes that the command prints. */
export function commandKeyframes(recording: string, ...words: string[]): CommandKeyframe[] {
    const document = JSON.parse(orvanta("keyframes", recording, "--format", "json", ...words)) as { keyframes: CommandKeyframe[] };
    return document.keyframes;
}

/** Moves to a moment, seconds. */
export async function seek(page: Page, seconds: number): Promise<void> {
    await page.getByRole("slider", { name: "Position" }).evaluate((input, value) => {
        (input as HTMLInputElement).value = String(value);
        input.dispatchEvent(new Event("input", { bubbles: true }));
    }, seconds);
    await page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))));
}

/** Left, top, width and height of the frame that the viewer sees. */
export async function shownFrame(page: Page): Promise<number[]> {
    const text = await page.locator(".viewer canvas").getAttribute("data-frame");
    return (text ?? "").split(" ").map(Number);
}

/** The file that a click saves. */
export async function saved(page: Page, click: () => Promise<void>): Promise<{ name: string; path: string; text: () => string }> {
    const [download] = await Promise.all([page.waitForEvent("download"), click()]);
    const path = await download.path();
    return { name: download.suggestedFilename(), path, text: () => readFileSync(path, "utf8") };
}
