// Prints the plans of a file's requests as the native program print_plans does, so that the two can be compared.
//
//   node print-plans.mjs FILE
import { readFileSync } from "node:fs";
import { OrvantaError, load } from "orvanta";

const MOMENTS = 41;
const out = [];
const double = new Float64Array(1);
const bits = new BigUint64Array(double.buffer);
const text = (value) => {
  double[0] = value;
  return ` ${bits[0]}`;
};
const rectText = (r) => ` ${r.left} ${r.top} ${r.right} ${r.bottom}`;
const modeText = (mode) => `[${mode ?? ""}]`;

function sliceText(name, s) {
  const flags =
    s.blank + 2 * s.keyframe + 4 * s.blocked + 8 * s.identified + 16 * s.tight + 32 * s.inWindow + 64 * s.window + 128 * s.noWindow;
  const spaces = s.spaces.map((space) => ` (${rectText(space.rect)}${text(space.density)})`).join("");
  return `${name} ${s.revision} ${modeText(s.mode)} ${flags}${text(s.start)}${text(s.stop)}${text(s.span)}${rectText(s.windowRect)}${rectText(s.hotRect)}${spaces}`;
}

function printPlan(orvanta, { recording, options, clip }, engine) {
  const asked = { ...options, engine };
  out.push(`engine ${["value", "voting", "director"].indexOf(engine)}`);
  let plan;
  try {
    plan = orvanta.plan(recording, { ...asked, stages: true });
  } catch (failure) {
    if (!(failure instanceof OrvantaError)) throw failure;
    out.push(`failure ${failure.code}`);
    return;
  }
  for (const zone of plan.stages.zones) out.push(`zone${text(zone.start)}${text(zone.stop)}${rectText(zone.rect)}`);
  for (const o of plan.stages.objects) {
    out.push(`object ${o.type}${text(o.start)}${text(o.stop)}${text(o.value)}${rectText(o.rect)}`);
  }
  for (const slice of plan.stages.slices) out.push(sliceText("slice", slice));
  for (const shot of plan.stages.shots) out.push(sliceText("shot", shot));
  for (const k of plan.keyframes) {
    out.push(
      `keyframe ${k.time}${text(k.seconds)}${rectText(k.rect)} ${modeText(k.reason)} ${modeText(k.mode)} ${k.shot ?? -1}`,
    );
  }
  let path;
  try {
    path = orvanta.path(recording, asked, plan.keyframes);
  } catch (failure) {
    if (!(failure instanceof OrvantaError)) throw failure;
    out.push(`path ${failure.code}`);
    return;
  }
  out.push("path 0");
  const [start, stop] = clip.map((tick) => tick / recording.timeScale);
  const moments = Array.from({ length: MOMENTS }, (_, i) => start + ((stop - start) * (i - 1)) / (MOMENTS - 3));
  const frames = path.framesAt(moments);
  for (let i = 0; i < MOMENTS; ++i) {
    out.push(`frame${text(frames[4 * i])}${text(frames[4 * i + 1])}${text(frames[4 * i + 2])}${text(frames[4 * i + 3])}`);
  }
}

// The numbers as the native programs write them: a head, four streams of rectangles with right before top, two of others.
function* requestsOf(file) {
  const numbers = readFileSync(file, "latin1").split(/\s+/).filter(Boolean).map(Number);
  let at = 0;
  const next = () => numbers[at++];
  const rects = () => {
    const count = next();
    const stream = { times: new Float64Array(count), rects: new Int32Array(4 * count) };
    for (let i = 0; i < count; ++i) {
      const [time, left, right, top, bottom] = numbers.slice(at, (at += 5));
      stream.times[i] = time;
      stream.rects.set([left, top, right, bottom], 4 * i);
    }
    return stream;
  };
  const others = (width) => {
    const count = next();
    const times = new BigInt64Array(count); // The other kind of times.
    const values = new Int32Array(width * count);
    for (let i = 0; i < count; ++i) {
      times[i] = BigInt(next());
      for (let k = 0; k < width; ++k) values[width * i + k] = next();
    }
    return [times, values];
  };
  while (at < numbers.length) {
    const [width, height, timeScale, fade, start, stop, windows] = numbers.slice(at, (at += 7));
    const recording = { timeScale, windowsFlag: windows !== 0, windows: rects(), dirtyRects: rects(), carets: rects(), regions: rects() };
    const [actionTimes, codes] = others(1);
    recording.actions = { times: actionTimes, codes };
    const [cursorTimes, points] = others(2);
    recording.cursor = { times: cursorTimes, points };
    const options = { width, height, fade: fade / timeScale, clip: [start / timeScale, stop / timeScale] };
    yield { recording, options, clip: [start, stop] };
  }
}

const orvanta = await load();
let count = 0;
for (const request of requestsOf(process.argv[2])) {
  out.push(`request ${count++}`);
  printPlan(orvanta, request, "value");
  printPlan(orvanta, request, "voting");
  printPlan(orvanta, request, "director");
  process.stdout.write(`${out.splice(0).join("\n")}\n`);
}
