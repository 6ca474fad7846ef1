// The module in a page, in a real browser, under a policy that lets nothing in from elsewhere.
import assert from "node:assert/strict";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { createServer } from "node:http";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, test } from "node:test";
import { pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

const module = readFileSync(new URL("../dist/orvanta.js", import.meta.url));
const page = `<!doctype html>
<meta http-equiv="Content-Security-Policy" content="default-src 'self'; img-src data:; script-src 'self' 'wasm-unsafe-eval'">
<link rel="icon" href="data:,"><script type="module" src="/host.js"></script>`;
const host = `
  import { OrvantaError, plan, planInWorker } from "/orvanta.js";
  const recording = {
    timeScale: 1000,
    regions: { times: [0], rects: [0, 0, 1280, 800] },
    cursor: { times: [0, 9800, 39800], points: [640, 400, 200, 150, 1100, 700] },
    actions: { times: [10000, 10100, 40000, 40100], codes: [0, 1, 0, 1] },
    stop: 60000,
  };
  const options = { width: 640, height: 400, stages: true };
  const outcome = (promise) => promise.then(() => "no failure", (failure) => failure);
  let reports = 0;
  window.host = (async () => {
    const here = await plan(recording, options);
    const there = await planInWorker(recording, { ...options, onProgress: () => ++reports });
    const refused = await outcome(planInWorker(recording, { width: 1, height: 400 }));
    const stopped = await outcome(planInWorker(recording, { ...options, signal: AbortSignal.abort() }));
    return {
      keyframes: here.keyframes.length,
      same: JSON.stringify(here) === JSON.stringify(there),
      reports,
      refused: refused instanceof OrvantaError && refused.code,
      stopped: stopped.name,
    };
  })();`;

const guide = readFileSync(new URL("../../../docs/guides/first-keyframe.md", import.meta.url), "utf8");
const guidePage = /^```html\n(.*?)^```$/ms.exec(guide)[1];

const answers = {
  "/": ["text/html", page],
  "/host.js": ["text/javascript", host],
  "/orvanta.js": ["text/javascript", module],
  "/first.html": ["text/html", guidePage],
  "/node_modules/orvanta/dist/orvanta.js": ["text/javascript", module],
};
const server = createServer((request, response) => {
  const [type, body] = answers[request.url] ?? ["text/plain", ""];
  response.writeHead(type === "text/plain" ? 404 : 200, { "content-type": type }).end(body);
});
await new Promise((listening) => server.listen(0, "127.0.0.1", listening));
const args = ["--no-sandbox", "--disable-gpu", "--disable-background-networking", "--disable-component-update", "--disable-sync"];
const executablePath = process.env.CHROMIUM ?? "/usr/bin/chromium";
const browser = await chromium.launch({ executablePath, args });
after(async () => {
  await browser.close();
  server.close();
});

/** Opens a page that runs `host`, and tells its outcome and whatever was said on the console meanwhile. */
async function run(browser, url) {
  const tab = await browser.newPage();
  const said = [];
  tab.on("console", (message) => said.push(message.text()));
  tab.on("pageerror", (failure) => said.push(failure.message));
  await tab.goto(url);
  await tab.waitForFunction(() => window.host !== undefined);
  const { reports, ...rest } = await tab.evaluate(() => window.host);
  return { said, reports, rest };
}

test("a page and a worker of it plan alike, tell progress and pass on failures, without a word on the console", async () => {
  const { said, reports, rest } = await run(browser, `http://127.0.0.1:${server.address().port}/`);
  assert.deepEqual(rest, { keyframes: 2, same: true, refused: 1, stopped: "AbortError" });
  assert.ok(reports > 0);
  assert.deepEqual(said, []);
});

test("a page from a file works too where it and its workers have Node.js's globals, as the windows of desktop programs may", async () => {
  const folder = mkdtempSync(join(tmpdir(), "orvanta-window-"));
  const globals = `globalThis.process = { versions: { node: "20.0.0", chrome: "130.0.0.0" }, type: "renderer" };`;
  writeFileSync(join(folder, "orvanta.js"), `${globals}\n${module}`);
  writeFileSync(join(folder, "host.js"), host.replace('"/orvanta.js"', '"./orvanta.js"'));
  writeFileSync(join(folder, "index.html"), page.replace('"/host.js"', '"./host.js"').replaceAll("'self'", "'self' file:"));
  const windows = await chromium.launch({ executablePath, args: [...args, "--allow-file-access-from-files"] });
  try {
    const { said, reports, rest } = await run(windows, pathToFileURL(join(folder, "index.html")).href);
    assert.deepEqual(rest, { keyframes: 2, same: true, refused: 1, stopped: "AbortError" });
    assert.ok(reports > 0);
    assert.deepEqual(said, []);
  } finally {
    await windows.close();
    rmSync(folder, { recursive: true });
  }
});

test("the guide's page shows what the guide says that Node.js prints", async () => {
  const [, printed] = /^node first.mjs\n```\n\n```text\n(.*?)^```$/ms.exec(guide);
  const tab = await browser.newPage();
  await tab.goto(`http://127.0.0.1:${server.address().port}/first.html`);
  await tab.waitForFunction(() => document.querySelector("pre").textContent !== "");
  assert.equal(`${await tab.textContent("pre")}\n`, printed);
});
