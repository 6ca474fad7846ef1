// The module as a host meets it, in Node.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { gzipSync } from "node:zlib";
import { ErrorCode, OrvantaError, load, parseRecording, plan, planInWorker } from "orvanta";

const folders = { editor: "tests/golden/recordings", browser: "examples/recordings" };
const golden = (name) =>
  parseRecording(readFileSync(new URL(`../../../${folders[name]}/${name}.jsonl`, import.meta.url), "utf8"));
const size = { width: 640, height: 400 };

// Two clicks on a screen of 1280x800, in milliseconds.
const clicks = () => ({
  timeScale: 1000,
  regions: { times: [0], rects: [0, 0, 1280, 800] },
  cursor: { times: [0, 9800, 39800], points: [640, 400, 200, 150, 1100, 700] },
  actions: { times: [10000, 10100, 40000, 40100], codes: [0, 1, 0, 1] },
  stop: 60000,
});

const errorOf = (work) => {
  try {
    work();
  } catch (failure) {
    assert.ok(failure instanceof OrvantaError, String(failure));
    return failure;
  }
  assert.fail("nothing was thrown");
};

test("plain arrays and typed arrays of either kind of times give the same plan", async () => {
  const plain = clicks();
  const typed = {
    ...plain,
    regions: { times: BigInt64Array.of(0n), rects: Int32Array.from(plain.regions.rects) },
    cursor: { times: Float64Array.from(plain.cursor.times), points: Int16Array.from(plain.cursor.points) },
    actions: { times: BigInt64Array.from(plain.actions.times, BigInt), codes: Uint8Array.from(plain.actions.codes) },
  };
  const first = await plan(plain, { ...size, stages: true });
  assert.ok(first.keyframes.length > 0);
  assert.deepEqual(await plan(typed, { ...size, stages: true }), first);
});

const moved = (recording, shift, convert = (time) => time) => {
  const copy = structuredClone(recording);
  for (const stream of [copy.regions, copy.cursor, copy.actions]) {
    stream.times = convert(stream.times.map((time) => time + shift));
  }
  return copy;
};

test("times far beyond 32 bits keep all of theirs", async () => {
  const orvanta = await load();
  const { keyframes } = orvanta.plan(clicks(), size);
  for (const shift of [5_000_000_000, 2 ** 40 - 7]) {
    const clip = [shift / 1000, (shift + 60000) / 1000];
    const again = orvanta.plan(moved(clicks(), shift), { ...size, clip }).keyframes;
    assert.deepEqual(again.map((k) => [k.time - shift, k.rect]), keyframes.map((k) => [k.time, k.rect]));
  }
});

test("times below zero are the same as numbers and as 64-bit numbers", async () => {
  const orvanta = await load();
  for (const shift of [-1, -20000, -(2 ** 32), -5_000_000_000]) {
    const options = { ...size, stages: true, clip: [shift / 1000, (shift + 60000) / 1000] };
    const wide = moved(clicks(), shift, (times) => BigInt64Array.from(times, BigInt));
    assert.deepEqual(orvanta.plan(moved(clicks(), shift), options), orvanta.plan(wide, options));
  }
});

test("a keyframe names its shot, which the stages hold", async () => {
  const { keyframes, stages } = await plan(golden("editor"), { ...size, stages: true });
  for (const keyframe of keyframes) {
    const shot = stages.shots[keyframe.shot];
    assert.equal(shot.mode, keyframe.mode);
    assert.ok(shot.revision >= 0);
  }
  assert.equal(stages.slices.length, stages.shots.length);
});

test("nothing worth a move leaves the whole recording on show", async () => {
  const orvanta = await load();
  const recording = { timeScale: 1000, regions: { times: [0], rects: [0, 0, 1280, 800] }, stop: 5000 };
  const { keyframes } = orvanta.plan(recording, size);
  assert.deepEqual(keyframes, []);
  assert.deepEqual(orvanta.path(recording, size, keyframes).frameAt(3), {
    left: 0,
    top: 0,
    width: 1280,
    height: 800,
    overhangs: false,
  });
});

test("a path holds each keyframe's frame once its move is over", async () => {
  const orvanta = await load();
  const keyframes = [{ time: 10000, rect: { left: 100, top: 100, right: 740, bottom: 500 } }];
  for (const easing of ["linear", "ease-in-out", "ease-out", "smooth", [0.1, 0.2, 0.3, 0.9]]) {
    const path = orvanta.path(clicks(), { ...size, fade: 2 }, keyframes, easing);
    assert.deepEqual([...path.framesAt([10, 12, 60])], [0, 0, 1280, 800, 100, 100, 640, 400, 100, 100, 640, 400]);
    const middle = path.frameAt(11);
    assert.ok(middle.width > 640 && middle.width < 1280);
  }
});

test("the moves of a path, by time", async () => {
  const orvanta = await load();
  const whole = { left: 0, top: 0, width: 1280, height: 800, overhangs: false };
  const first = { left: 0, top: 0, width: 640, height: 400, overhangs: false };
  const keyframes = [
    { time: 20500, rect: { left: 640, top: 400, right: 1280, bottom: 800 } },
    { time: 20000, rect: { left: 0, top: 0, right: 640, bottom: 400 } },
    { time: 10000, rect: { left: 0, top: 0, right: 640, bottom: 400 } },
  ];
  const moves = orvanta.path(clicks(), { ...size, fade: 2 }, keyframes).moves();
  assert.deepEqual(moves.slice(0, 2), [
    { start: 10000, stop: 12000, startSeconds: 10, stopSeconds: 12, from: whole, to: first, cutShort: false, keyframe: 2 },
    { start: 20000, stop: 20500, startSeconds: 20, stopSeconds: 20.5, from: first, to: first, cutShort: true, keyframe: 1 },
  ]);
  assert.deepEqual([moves.length, moves[2].stop, moves[2].keyframe], [3, 22500, 0]);
  assert.deepEqual(orvanta.path(clicks(), size, []).moves(), []);
});

test("one moment and one window", async () => {
  const orvanta = await load();
  const recording = { ...clicks(), windows: { times: [0], rects: [320, 200, 960, 600] } };
  assert.deepEqual(orvanta.frameAtWindow(recording, size), { left: 320, top: 200, right: 960, bottom: 600 });
  const { left, right } = orvanta.frameAt(clicks(), size, 10);
  assert.ok(left <= 200 && 200 < right);
});

test("progress is told, and a plan can be cancelled", async () => {
  const orvanta = await load();
  const percents = [];
  orvanta.plan(golden("editor"), { ...size, onProgress: (percent) => percents.push(percent) });
  assert.ok(percents.length > 10 && percents.at(-1) > 90);
  let questions = 0;
  const failure = errorOf(() => orvanta.plan(golden("editor"), { ...size, isCancelled: () => ++questions > 5 }));
  assert.equal(failure.code, ErrorCode.cancelled);
  assert.equal(questions, 6);
});

test("what a callback throws comes through, and the engines go on working", async () => {
  const orvanta = await load();
  const own = new Error("the host's own");
  const fail = () => {
    throw own;
  };
  for (const callbacks of [{ onProgress: fail }, { isCancelled: fail }]) {
    assert.throws(() => orvanta.plan(clicks(), { ...size, ...callbacks }), own);
  }
  assert.ok(orvanta.plan(clicks(), size).keyframes.length > 0);
});

test("a plan inside a callback of another is a plan of its own", async () => {
  const orvanta = await load();
  const alone = orvanta.plan(clicks(), size);
  let inner;
  const outer = orvanta.plan(golden("browser"), { ...size, onProgress: () => (inner ??= orvanta.plan(clicks(), size)) });
  assert.deepEqual(inner, alone);
  assert.deepEqual(outer, orvanta.plan(golden("browser"), size));
});

test("errors have a code, a parameter, its value and its limit", async () => {
  const orvanta = await load();
  const about = (change, options = size) => {
    const { code, parameter, value, limit, index } = errorOf(() => orvanta.plan({ ...clicks(), ...change }, options));
    return { code, parameter, value, limit, index };
  };
  assert.deepEqual(about({}, { width: 63, height: 400 }), {
    code: ErrorCode.badTargetSize,
    parameter: "width",
    value: 63,
    limit: 64,
    index: -1,
  });
  assert.equal(about({}, { width: 1280, height: 800 }).code, ErrorCode.targetTooLarge);
  assert.equal(about({}, { width: 640.5, height: 400 }).parameter, "width");
  assert.equal(about({}, { ...size, engine: "none" }).parameter, "engine");
  assert.equal(about({}, { ...size, clip: [0, Infinity] }).parameter, "clip");
  assert.equal(about({ timeScale: 0 }).code, ErrorCode.badTimeScale);
  assert.equal(about({ regions: { times: [], rects: [] } }).parameter, "regions");
  assert.equal(about({ cursor: { times: [0, 1], points: [1, 2, 3] } }).parameter, "cursor");
  assert.equal(about({ cursor: { times: [0], points: [1.5, 2] } }).parameter, "cursor");
  assert.deepEqual(about({ cursor: { times: [5, 4], points: [1, 2, 3, 4] } }), {
    code: ErrorCode.notSorted,
    parameter: "cursor",
    value: 4,
    limit: 5,
    index: 1,
  });
  assert.equal(about({ actions: { times: [0.5], codes: [0] } }).parameter, "actions");
  assert.equal(errorOf(() => orvanta.path(clicks(), size, [], "bouncy")).parameter, "easing");
  assert.equal(
    errorOf(() => orvanta.frameAtWindow(clicks(), { ...size, engine: "voting" })).code,
    ErrorCode.noAnswer,
  );
});

test("memory does not grow with the number of plans", async () => {
  const orvanta = await load();
  const recording = golden("browser");
  const used = () => orvanta.plan(recording, { ...size, stages: true }) && process.memoryUsage().arrayBuffers;
  for (let i = 0; i < 5; ++i) used();
  const before = used();
  for (let i = 0; i < 40; ++i) used();
  assert.ok(used() <= before + 2 ** 20);
});

test("a worker gives the same plan, tells progress, passes on errors and is ended by its signal", async () => {
  const recording = golden("editor");
  let reports = 0;
  const there = await planInWorker(recording, { ...size, stages: true, onProgress: () => ++reports });
  assert.deepEqual(there, await plan(recording, { ...size, stages: true }));
  assert.ok(reports > 10);
  await assert.rejects(planInWorker(recording, { width: 1, height: 400 }), (failure) => {
    assert.ok(failure instanceof OrvantaError);
    assert.deepEqual([failure.code, failure.parameter, failure.value], [1, "width", 1]);
    return true;
  });
  await assert.rejects(planInWorker(recording, { ...size, signal: AbortSignal.abort() }), { name: "AbortError" });
  const stop = new AbortController();
  const options = { ...size, signal: stop.signal, onProgress: () => stop.abort() };
  await assert.rejects(planInWorker(recording, options), { name: "AbortError" });
});

test("a broken recording is refused with its line", () => {
  const head = '{"format":"orvanta-recording","version":1,"timeScale":1000}';
  const line = (text) => errorOf(() => parseRecording(text));
  assert.match(line("").message, /^line 1: /);
  assert.match(line('{"format":"other"}').message, /orvanta-recording/);
  assert.match(line('{"format":"orvanta-recording","version":1}').message, /timeScale/);
  assert.match(line(`${head}\n[0,"cursor",1,2]\n[1,"cursor",1`).message, /^line 3: this is not JSON/);
  assert.match(line(`${head}\n[5,"cursor",1,2]\n[4,"cursor",1,2]`).message, /^line 3: the time 4 lies before 5/);
  assert.match(line(`${head}\n[0,"cursor",1]`).message, /2 numbers/);
  assert.match(line(`${head}\n[0,"cursor",1,2.5]`).message, /2.5 is not a whole/);
  const read = parseRecording(`\uFEFF${head}\r\n\r\n[0,"region",0,0,1280,800]\r\n[7,"touch",1]\r\n`);
  assert.deepEqual([...read.regions.rects], [0, 0, 1280, 800]);
  assert.equal(read.stop, 7);
});

test("everything together is small", () => {
  const bytes = gzipSync(readFileSync(new URL("../dist/orvanta.js", import.meta.url)), { level: 9 }).length;
  assert.ok(bytes < 400_000, `${bytes} bytes`);
});
