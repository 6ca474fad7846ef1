// The engines, ready to be asked.
import { Machine, compile } from "./machine.js";
import { CameraPath } from "./path.js";
import { ticksOf, withRequest } from "./request.js";
import { readEvidence, readKeyframes, readRect, readStages } from "./tables.js";
import type { Easing, Keyframe, Options, Plan, PlanOptions, Recording, Rect } from "./types.js";

const NO_KEYFRAMES = 7;
const RECT_SIZE = 16;

/** The engines. Every call does its work at once, on the caller's thread. */
export class Orvanta {
  readonly #machine: Machine;

  /** Use `load`. */
  constructor(machine: Machine) {
    this.#machine = machine;
  }

  /** The version of the library, such as "0.1.0". */
  get version(): string {
    return this.#machine.text(this.#machine.callPlain("orvanta_version"));
  }

  /** Plans the camera for a whole recording. Throws an OrvantaError, and whatever a callback throws. */
  plan(recording: Recording, options: PlanOptions): Plan {
    const machine = this.#machine;
    const { onProgress, isCancelled, stages = false } = options;
    const listens = onProgress !== undefined || isCancelled !== undefined;
    return withRequest(machine, recording, options, (request) =>
      machine.using((allocate) => {
        const handle = allocate(4);
        machine.listen({ onProgress, isCancelled }, () =>
          machine.call("orvanta_js_plan", [request, stages ? 1 : 0, listens ? 1 : 0, handle], [0, NO_KEYFRAMES]),
        );
        const result = machine.view().getUint32(handle, true);
        try {
          const plan: Plan = { keyframes: readKeyframes(machine, result) };
          if (stages) {
            plan.stages = readStages(machine, result);
            if (options.engine === "director") {
              plan.evidence = readEvidence(machine, result, plan.keyframes.length);
            }
          }
          return plan;
        } finally {
          machine.callPlain("orvanta_result_free", result);
        }
      }),
    );
  }

  /** The one frame that is best at a moment, in seconds, from what lies around it. Throws an OrvantaError. */
  frameAt(recording: Recording, options: Options, seconds: number): Rect {
    const tick = ticksOf(seconds, recording.timeScale, "times");
    return this.#askRect(recording, options, "orvanta_frame_at", [BigInt(tick)]);
  }

  /** The frame for the first entry of the windows, without a timeline. Throws an OrvantaError. */
  frameAtWindow(recording: Recording, options: Options): Rect {
    return this.#askRect(recording, options, "orvanta_frame_at_window", []);
  }

  /** The camera's path through a recording by these keyframes: a plan's, or others. Throws an OrvantaError. */
  path(
    recording: Recording,
    options: Options,
    keyframes: readonly Pick<Keyframe, "time" | "rect">[],
    easing: Easing = "ease-in-out",
  ): CameraPath {
    return new CameraPath(this.#machine, recording, options, keyframes, easing);
  }

  #askRect(recording: Recording, options: Options, question: string, args: bigint[]): Rect {
    const machine = this.#machine;
    return withRequest(machine, recording, options, (request) =>
      machine.using((allocate) => {
        const rect = allocate(RECT_SIZE);
        machine.call(question, [request, ...args, rect]);
        return readRect(machine.view(), rect);
      }),
    );
  }
}

let loaded: Promise<Orvanta> | undefined;

/** Gets the engines ready: compiles them on the first call, and gives the same ones from then on. */
export function load(): Promise<Orvanta> {
  loaded ??= compile().then(
    (module) => new Orvanta(new Machine(module)),
    (failure: unknown) => {
      loaded = undefined;
      throw failure;
    },
  );
  return loaded;
}

/** `load`, then `Orvanta.plan`. */
export async function plan(recording: Recording, options: PlanOptions): Promise<Plan> {
  return (await load()).plan(recording, options);
}

