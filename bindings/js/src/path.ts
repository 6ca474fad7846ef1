// The camera's path: what the picture shows at every moment.
import { badArgument } from "./error.js";
import type { Address, Machine } from "./machine.js";
import { withRequest } from "./request.js";
import { readFrame, readMoves } from "./tables.js";
import type { Easing, Frame, Keyframe, Move, Options, Recording } from "./types.js";

// Records of the C interface.
const KEYFRAME_SIZE = 24;
const EASING_SIZE = 32;
const FRAME_SIZE = 40;

/** The camera's path through a recording: at rest on the whole of it, moving to each keyframe's rectangle in its turn. */
export class CameraPath {
  readonly #machine: Machine;
  readonly #recording: Recording;
  readonly #options: Options;
  readonly #keyframes: readonly Pick<Keyframe, "time" | "rect">[];
  readonly #easing: Easing;

  /** Use `Orvanta.path`. */
  constructor(
    machine: Machine,
    recording: Recording,
    options: Options,
    keyframes: readonly Pick<Keyframe, "time" | "rect">[],
    easing: Easing,
  ) {
    this.#machine = machine;
    // A path asks for the regions alone, and for the clip, which the last moment of all streams may end.
    this.#recording = {
      timeScale: recording.timeScale,
      regions: { times: [0], rects: Array.from({ length: 4 }, (_, i) => recording.regions.rects[i] ?? 0) },
      stop: recording.stop ?? 0,
    };
    this.#options = { ...options };
    this.#keyframes = keyframes.map(({ time, rect }) => ({ time, rect: { ...rect } }));
    this.#easing = easing;
    this.framesAt([]); // What a path cannot be made from is refused here.
  }

  /** The frame on show at a moment, in seconds. */
  frameAt(seconds: number): Frame {
    return this.#ask([seconds], readFrame)[0] as Frame;
  }

  /** The frames on show at many moments, in seconds and in any order: left, top, width and height of each, in a row. */
  framesAt(seconds: ArrayLike<number>): Float64Array {
    const frames = new Float64Array(4 * seconds.length);
    this.#ask(seconds, (view, at, i) => {
      for (let k = 0; k < 4; ++k) {
        frames[4 * i + k] = view.getFloat64(at + 8 * k, true);
      }
    });
    return frames;
  }

  /** The moves by time: one for each keyframe but those that another one at the same time replaces. */
  moves(): Move[] {
    return this.#withPath((path) => readMoves(this.#machine, path));
  }

  #ask<T>(seconds: ArrayLike<number>, read: (view: DataView, at: Address, i: number) => T): T[] {
    const machine = this.#machine;
    const count = seconds.length;
    return this.#withPath((path, allocate) => {
      const moments = allocate(8 * count);
      const frames = allocate(FRAME_SIZE * count);
      new Float64Array(machine.memory, moments, count).set(seconds);
      machine.call("orvanta_path_frames_at_seconds", [path, moments, count, frames]);
      const view = machine.view();
      return Array.from({ length: count }, (_, i) => read(view, frames + FRAME_SIZE * i, i));
    });
  }

  #withPath<T>(work: (path: Address, allocate: (size: number) => Address) => T): T {
    const machine = this.#machine;
    return withRequest(machine, this.#recording, this.#options, (request) =>
      machine.using((allocate) => {
        const handle = allocate(4);
        const easing = allocate(EASING_SIZE);
        this.#writeEasing(easing, allocate);
        const rows = allocate(this.#keyframes.length * KEYFRAME_SIZE);
        this.#writeKeyframes(rows);
        machine.call("orvanta_path_create", [request, rows, this.#keyframes.length, KEYFRAME_SIZE, easing, handle]);
        const path = machine.view().getUint32(handle, true);
        try {
          return work(path, allocate);
        } finally {
          machine.callPlain("orvanta_path_free", path);
        }
      }),
    );
  }

  #writeEasing(at: Address, allocate: (size: number) => Address): void {
    if (typeof this.#easing === "string") {
      const name = new TextEncoder().encode(`${this.#easing}\0`);
      const text = allocate(name.length);
      new Uint8Array(this.#machine.memory, text, name.length).set(name);
      this.#machine.call("orvanta_easing_named", [text, at]);
    } else {
      new Float64Array(this.#machine.memory, at, 4).set(this.#easing);
    }
  }

  #writeKeyframes(at: Address): void {
    const view = this.#machine.view();
    this.#keyframes.forEach(({ time, rect }, i) => {
      if (!Number.isSafeInteger(time)) {
        throw badArgument(`keyframes: ${time} is not a whole number of ticks`, "keyframes", i);
      }
      const row = at + KEYFRAME_SIZE * i;
      view.setBigInt64(row, BigInt(time), true);
      view.setInt32(row + 8, rect.left, true);
      view.setInt32(row + 12, rect.top, true);
      view.setInt32(row + 16, rect.right, true);
      view.setInt32(row + 20, rect.bottom, true);
    });
  }
}
