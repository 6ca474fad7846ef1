// A recording handed over to the engines.
import { badArgument } from "./error.js";
import type { Address, Machine } from "./machine.js";
import type { EngineName, Options, Recording, Ticks } from "./types.js";

// The records of the C interface: their sizes, and where their fields lie.
const OPTIONS_SIZE = 80;
const ENGINES: Record<EngineName, number> = { value: 0, voting: 1, director: 2 };
// Ticks leave 53 bits, so that a double holds each.
const MAX_TICK = Number.MAX_SAFE_INTEGER;

interface Stream {
  name: keyof Recording & string;
  setter: string;
  /** Numbers for each moment. */
  width: number;
  /** Bytes of a sample: its time, its numbers, padding to a multiple of 8. */
  size: number;
  times: Ticks;
  numbers: ArrayLike<number>;
}

function streamsOf(recording: Recording): Stream[] {
  const streams: Stream[] = [];
  const addRects = (name: "regions" | "windows" | "dirtyRects" | "carets", setter: string): void => {
    const stream = recording[name];
    if (stream !== undefined) {
      streams.push({ name, setter, width: 4, size: 24, times: stream.times, numbers: stream.rects });
    }
  };
  addRects("regions", "orvanta_request_set_regions");
  addRects("windows", "orvanta_request_set_windows");
  addRects("dirtyRects", "orvanta_request_set_dirty_rects");
  addRects("carets", "orvanta_request_set_carets");
  if (recording.cursor !== undefined) {
    const { times, points } = recording.cursor;
    streams.push({ name: "cursor", setter: "orvanta_request_set_cursor", width: 2, size: 16, times, numbers: points });
  }
  if (recording.actions !== undefined) {
    const { times, codes } = recording.actions;
    streams.push({ name: "actions", setter: "orvanta_request_set_actions", width: 1, size: 16, times, numbers: codes });
  }
  return streams;
}

function checkTick(tick: number, parameter: string, index = -1): number {
  if (!Number.isSafeInteger(tick)) {
    throw badArgument(`${parameter}: ${tick} is not a whole number of ticks`, parameter, index);
  }
  return tick;
}

function writeStream(machine: Machine, at: Address, stream: Stream): void {
  const count = stream.times.length;
  const out = new Int32Array(machine.memory, at, (count * stream.size) / 4);
  const step = stream.size / 4;
  const exact = stream.numbers instanceof Int32Array;
  for (let i = 0; i < count; ++i) {
    const row = i * step;
    const time = stream.times[i] as number | bigint;
    if (typeof time === "bigint") {
      out[row] = Number(BigInt.asIntN(32, time));
      out[row + 1] = Number(BigInt.asIntN(32, time >> 32n));
    } else {
      checkTick(time, stream.name, i);
      out[row] = time % 4294967296 | 0;
      out[row + 1] = Math.floor(time / 4294967296);
    }
    for (let k = 0; k < stream.width; ++k) {
      const value = stream.numbers[i * stream.width + k] as number;
      if (!exact && (value | 0) !== value) {
        throw badArgument(`${stream.name}: ${value} of sample ${i} is not a whole 32-bit number`, stream.name, i);
      }
      out[row + 2 + k] = value;
    }
    if (stream.width % 2 === 1) {
      out[row + 2 + stream.width] = 0;
    }
  }
}

/** Ticks of a moment in seconds, on a recording's clock: the nearest. */
export function ticksOf(seconds: number, timeScale: number, parameter: string): number {
  const ticks = Math.round(seconds * timeScale);
  if (!(Math.abs(ticks) <= MAX_TICK)) {
    throw badArgument(`${parameter}: ${seconds} s is no moment on a clock of ${timeScale} ticks a second`, parameter);
  }
  return ticks;
}

function lastTick(recording: Recording): number {
  if (recording.stop !== undefined) {
    return checkTick(recording.stop, "stop");
  }
  let last = 0;
  for (const { times } of streamsOf(recording)) {
    if (times.length > 0) {
      last = Math.max(last, Number(times[times.length - 1]));
    }
  }
  return last;
}

function checkSize(size: number, parameter: "width" | "height"): number {
  if ((size | 0) !== size) {
    throw badArgument(`${parameter}: ${size} is not a whole number of pixels`, parameter);
  }
  return size;
}

function writeOptions(machine: Machine, at: Address, recording: Recording, options: Options): void {
  const engine = ENGINES[options.engine ?? "value"];
  if (engine === undefined) {
    throw badArgument(`engine: there is none of the name ${JSON.stringify(options.engine)}`, "engine");
  }
  const scale = recording.timeScale;
  const fade = ticksOf(options.fade ?? 1, scale, "fade");
  const start = options.clip === undefined ? 0 : ticksOf(options.clip[0], scale, "clip");
  const stop = options.clip === undefined ? lastTick(recording) : ticksOf(options.clip[1], scale, "clip");
  machine.callPlain("orvanta_options_init", at, OPTIONS_SIZE);
  const view = machine.view();
  view.setInt32(at + 4, engine, true);
  view.setInt32(at + 8, checkSize(options.width, "width"), true);
  view.setInt32(at + 12, checkSize(options.height, "height"), true);
  view.setFloat64(at + 16, scale, true);
  view.setBigInt64(at + 24, BigInt(fade), true);
  view.setBigInt64(at + 32, BigInt(start), true);
  view.setBigInt64(at + 40, BigInt(stop), true);
  view.setInt32(at + 48, recording.windowsFlag === true ? 1 : 0, true);
  view.setInt32(at + 52, options.presses === "cheap" ? 1 : 0, true);
  view.setFloat64(at + 56, options.calm ?? 1, true);
  view.setFloat64(at + 64, options.readable ?? 0.75, true);
  view.setInt32(at + 72, options.overhang === true ? 1 : 0, true);
}

/** Runs `work` with a request for a recording; the request lives no longer. */
export function withRequest<T>(
  machine: Machine,
  recording: Recording,
  options: Options,
  work: (request: Address) => T,
): T {
  return machine.using((allocate) => {
    const record = allocate(OPTIONS_SIZE);
    writeOptions(machine, record, recording, options);
    const handle = allocate(4);
    machine.call("orvanta_request_create", [record, handle]);
    const request = machine.view().getUint32(handle, true);
    try {
      for (const stream of streamsOf(recording)) {
        const count = stream.times.length;
        if (stream.numbers.length !== count * stream.width) {
          throw badArgument(
            `${stream.name}: ${count} moments go with ${count * stream.width} numbers, not ${stream.numbers.length}`,
            stream.name,
          );
        }
        machine.using((take) => {
          const samples = take(count * stream.size);
          writeStream(machine, samples, stream);
          machine.call(stream.setter, [request, samples, count, stream.size]);
        });
      }
      return work(request);
    } finally {
      machine.callPlain("orvanta_request_free", request);
    }
  });
}
