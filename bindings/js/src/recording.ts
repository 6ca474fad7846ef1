// Recordings as text: JSON Lines, a header and then one line an event.
import { OrvantaError, ErrorCode } from "./error.js";
import type { Recording } from "./types.js";

const STREAMS = ["region", "window", "dirty", "caret", "cursor", "action"] as const;
type StreamName = (typeof STREAMS)[number];
const WIDTHS: Record<StreamName, number> = { region: 4, window: 4, dirty: 4, caret: 4, cursor: 2, action: 1 };

function fail(line: number, message: string): never {
  throw new OrvantaError(`line ${line + 1}: ${message}`, ErrorCode.badArgument, "recording", 0, 0, line);
}

function isInt32(value: unknown): value is number {
  return typeof value === "number" && (value | 0) === value;
}

function readHeader(text: string): Record<string, unknown> {
  let header: unknown;
  try {
    header = JSON.parse(text);
  } catch {
    header = undefined;
  }
  if (typeof header !== "object" || header === null || Array.isArray(header)) {
    fail(0, "a recording begins with a line that is a JSON object, such as {\"format\":\"orvanta-recording\", ...}");
  }
  const fields = header as Record<string, unknown>;
  if (fields["format"] !== "orvanta-recording" || fields["version"] !== 1) {
    fail(0, "this is not an orvanta-recording of version 1");
  }
  if (!(typeof fields["timeScale"] === "number" && fields["timeScale"] > 0)) {
    fail(0, "timeScale is missing: it says how many ticks there are in a second");
  }
  return fields;
}

/**
 * Reads a recording in the form that recorders write and the command reads. Unknown streams and header fields are passed
 * over. Throws an OrvantaError whose `index` is the line at fault, from 0.
 */
export function parseRecording(text: string): Recording {
  const lines = text.replace(/^\uFEFF/, "").split(/\r?\n/);
  const header = readHeader(lines[0] ?? "");
  const times = Object.fromEntries(STREAMS.map((name) => [name, [] as number[]])) as Record<StreamName, number[]>;
  const numbers = Object.fromEntries(STREAMS.map((name) => [name, [] as number[]])) as Record<StreamName, number[]>;
  let stop = 0;
  for (let i = 1; i < lines.length; ++i) {
    const line = lines[i] as string;
    if (line === "") {
      continue;
    }
    let event: unknown;
    try {
      event = JSON.parse(line);
    } catch {
      fail(i, "this is not JSON");
    }
    if (!Array.isArray(event) || !Number.isSafeInteger(event[0]) || typeof event[1] !== "string") {
      fail(i, "an event is an array of a time in whole ticks, a stream's name and its numbers");
    }
    const [time, name] = event as [number, StreamName];
    if (time < stop) {
      fail(i, `the time ${time} lies before ${stop}, the time of the line before`);
    }
    stop = time;
    const width = WIDTHS[name] as number | undefined;
    if (width === undefined) {
      continue;
    }
    if (event.length < 2 + width) {
      fail(i, `a line of the stream ${name} has ${width} numbers after its name`);
    }
    times[name].push(time);
    for (let k = 0; k < width; ++k) {
      const value: unknown = event[2 + k];
      if (!isInt32(value)) {
        fail(i, `${JSON.stringify(value)} is not a whole 32-bit number`);
      }
      numbers[name].push(value);
    }
  }
  const ticks = (name: StreamName): Float64Array => Float64Array.from(times[name]);
  const values = (name: StreamName): Int32Array => Int32Array.from(numbers[name]);
  return {
    timeScale: header["timeScale"] as number,
    windowsFlag: header["windowsFlag"] === true,
    regions: { times: ticks("region"), rects: values("region") },
    windows: { times: ticks("window"), rects: values("window") },
    dirtyRects: { times: ticks("dirty"), rects: values("dirty") },
    carets: { times: ticks("caret"), rects: values("caret") },
    cursor: { times: ticks("cursor"), points: values("cursor") },
    actions: { times: ticks("action"), codes: values("action") },
    stop,
  };
}
