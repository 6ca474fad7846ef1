// Measures a report in Chromium: how long it takes to open, and how long frames take while somebody scrubs through it and
// zooms. node bench/bench.mjs REPORT.html [SECONDS]
import { pathToFileURL } from "node:url";
import { existsSync } from "node:fs";
import { chromium } from "playwright-core";

const [report, seconds = "6"] = process.argv.slice(2);
const executablePath = ["/usr/bin/chromium", "/usr/bin/chromium-browser", "/usr/bin/google-chrome"].find((path) => existsSync(path));
const browser = await chromium.launch({ executablePath, args: ["--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-frame-rate-limit", "--disable-gpu-vsync", "--disable-background-networking", "--disable-component-update", "--disable-sync"] });
const page = await (await browser.newContext({ viewport: { width: 1280, height: 900 } })).newPage();

const began = performance.now();
await page.goto(pathToFileURL(report).href);
await page.waitForFunction(() => (document.querySelector(".viewer canvas")?.getAttribute("data-frame") ?? "") !== "" && document.querySelector(".lane-names li") !== null);
// Up to the first frame that shows it.
await page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))));
console.log(`opens in        ${((performance.now() - began) / 1000).toFixed(2)} s`);

/** Frame times while `act` is called once a frame, milliseconds: the work of the page, and the display's frames. */
const measure = (kind) =>
    page.evaluate(
        async ({ kind, milliseconds }) => {
            const slider = document.querySelector('input[aria-label="Position"]');
            const timeline = document.querySelector(".timeline canvas").parentElement;
            const box = timeline.getBoundingClientRect();
            const low = Number(slider.min);
            const high = Number(slider.max);
            const frames = [];
            const act = (i) => {
                if (kind === "scrub") {
                    // A hand that goes to and fro, over all of it in half a minute.
                    slider.value = String(low + (high - low) * (0.5 + 0.5 * Math.sin(i / 90)));
                    slider.dispatchEvent(new Event("input", { bubbles: true }));
                } else {
                    const deltaY = Math.floor(i / 60) % 2 === 0 ? -60 : 60;
                    timeline.dispatchEvent(new WheelEvent("wheel", { deltaY, clientX: box.left + box.width * 0.4, clientY: box.top + 60, bubbles: true, cancelable: true }));
                }
            };
            await new Promise((resolve) => {
                const from = performance.now();
                let last = from;
                let i = 0;
                const step = (now) => {
                    if (i > 10) frames.push(now - last); // The first ones warm up.
                    last = now;
                    if (now - from > milliseconds) return resolve();
                    act(i++);
                    requestAnimationFrame(step);
                };
                requestAnimationFrame(step);
            });
            return frames;
        },
        { kind, milliseconds: Number(seconds) * 1000 },
    );
for (const [kind, label] of [["scrub", "scrubbing"], ["zoom", "zooming"]]) {
    const session = await page.context().newCDPSession(page);
    await session.send("Performance.enable");
    const busy = async () => Object.fromEntries((await session.send("Performance.getMetrics")).metrics.map(({ name, value }) => [name, value]));
    const before = await busy();
    const frames = (await measure(kind)).sort((a, b) => a - b);
    const after = await busy();
    const at = (share) => (frames[Math.min(frames.length - 1, Math.floor(share * frames.length))] ?? 0).toFixed(1);
    const script = (1000 * (after.ScriptDuration - before.ScriptDuration)) / frames.length;
    const task = (1000 * (after.TaskDuration - before.TaskDuration)) / frames.length;
    console.log(`${label.padEnd(15)} ${String(frames.length).padStart(4)} frames, median ${at(0.5)} ms, 95 % ${at(0.95)} ms, worst ${at(1)} ms, over 50 ms: ${frames.filter((time) => time > 50).length}; main thread ${task.toFixed(1)} ms a frame, script ${script.toFixed(1)} ms`);
}
await browser.close();
