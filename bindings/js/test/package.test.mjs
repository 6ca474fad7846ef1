// The package as npm packs it, installed into an empty folder: it runs there, and its types are those of its values.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, test } from "node:test";
import { fileURLToPath } from "node:url";

const here = fileURLToPath(new URL("..", import.meta.url));
const folder = mkdtempSync(join(tmpdir(), "orvanta-package-"));
after(() => rmSync(folder, { recursive: true }));
const run = (program, ...args) => execFileSync(program, args, { cwd: folder, encoding: "utf8", stdio: ["ignore", "pipe", "pipe"] });

test("npm pack gives a package that installs and runs in an empty folder", () => {
  const [{ filename, files }] = JSON.parse(execFileSync("npm", ["pack", "--json", "--pack-destination", folder], { cwd: here, encoding: "utf8" }));
  const names = files.map((file) => file.path);
  for (const name of ["dist/orvanta.js", "dist/index.d.ts", "README.md", "LICENSE", "package.json"]) {
    assert.ok(names.includes(name), `${name} is not in the package`);
  }
  run("npm", "init", "-y");
  run("npm", "install", "--offline", "--no-audit", "--no-fund", filename);
  writeFileSync(
    join(folder, "host.mjs"),
    `import { plan, planInWorker } from "orvanta";
     const recording = {
       timeScale: 1000,
       regions: { times: [0], rects: [0, 0, 1280, 800] },
       cursor: { times: [0, 9800], points: [640, 400, 200, 150] },
       actions: { times: [10000, 10100], codes: [0, 1] },
       stop: 60000,
     };
     const { keyframes } = await plan(recording, { width: 640, height: 400 });
     const again = await planInWorker(recording, { width: 640, height: 400 });
     console.log(keyframes.length > 0 && JSON.stringify(again.keyframes) === JSON.stringify(keyframes));`,
  );
  assert.equal(run("node", "host.mjs"), "true\n");

  // The declarations, as a strict project sees them.
  writeFileSync(
    join(folder, "host.mts"),
    `import { plan, type Keyframe, type Recording } from "orvanta";
     const recording: Recording = { timeScale: 1000, regions: { times: [0], rects: [0, 0, 1280, 800] } };
     const keyframes: Keyframe[] = (await plan(recording, { width: 640, height: 400, engine: "voting" })).keyframes;
     const reason: string | null | undefined = keyframes[0]?.reason;
     console.log(reason);
     // @ts-expect-error: there is no such engine
     await plan(recording, { width: 640, height: 400, engine: "none" });`,
  );
  const compilerOptions = { noEmit: true, strict: true, module: "nodenext", target: "es2022", lib: ["es2022", "dom"], types: [] };
  writeFileSync(join(folder, "tsconfig.json"), JSON.stringify({ compilerOptions, files: ["host.mts"] }));
  run(join(here, "node_modules/.bin/tsc"), "--project", folder);
});
