// A plan in a worker of its own, so that a page or a main process stays responsive and can stop it at once.
import { load } from "./engine.js";
import { ErrorCode, OrvantaError } from "./error.js";
import type { Plan, PlanOptions, Recording } from "./types.js";

/** What a plan in a worker takes: `isCancelled` cannot cross threads, a signal can. */
export interface WorkerOptions extends Omit<PlanOptions, "isCancelled"> {
  /** Ends the plan, whatever it is doing. */
  signal?: AbortSignal;
}

interface Job {
  recording: Recording;
  options: PlanOptions;
  reports: boolean;
}

// An OrvantaError's fields: code, parameter, value, limit, index.
type Fields = [number, string | null, number, number, number];

type Answer =
  | { kind: "progress"; percent: number }
  | { kind: "plan"; plan: Plan }
  | { kind: "failure"; message: string; fields: Fields };

// What a worker of this module is called, so that it knows itself.
const WORKER_NAME = "orvanta-plan";

/** The two kinds of workers, as far as they are needed. */
interface Line {
  post(message: unknown): void;
  stop(): void;
}

interface NodeWorkers {
  isMainThread: boolean;
  workerData: unknown;
  parentPort: { postMessage(message: unknown): void; once(event: "message", hear: (job: Job) => void): void } | null;
  Worker: new (
    url: URL,
    options: object,
  ) => {
    postMessage(message: unknown): void;
    terminate(): unknown;
    on(event: string, hear: (value: never) => void): void;
  };
}

// Windows of desktop programs, and their workers, may have Node.js's globals, but a browser's workers.
function isNode(): boolean {
  const isBrowser = "window" in globalThis || "WorkerGlobalScope" in globalThis;
  return typeof process === "object" && typeof process?.versions?.node === "string" && !isBrowser;
}

async function nodeWorkers(): Promise<NodeWorkers> {
  // The name is made here so that a page's bundler leaves it alone.
  return (await import(/* @vite-ignore */ /* webpackIgnore: true */ `node:${"worker_threads"}`)) as NodeWorkers;
}

declare const process: { versions?: { node?: string } } | undefined;

async function open(hear: (answer: Answer) => void, fail: (failure: Error) => void): Promise<Line> {
  const url = new URL(import.meta.url);
  if (isNode()) {
    const { Worker: NodeWorker } = await nodeWorkers();
    const worker = new NodeWorker(url, { workerData: WORKER_NAME });
    worker.on("message", hear as (value: never) => void);
    worker.on("error", fail as (value: never) => void);
    return { post: (message) => worker.postMessage(message), stop: () => void worker.terminate() };
  }
  const worker = new Worker(url, { type: "module", name: WORKER_NAME });
  worker.onmessage = (event: MessageEvent<Answer>) => hear(event.data);
  worker.onerror = (event) => fail(new Error(event.message || "the worker cannot be started"));
  return { post: (message) => worker.postMessage(message), stop: () => worker.terminate() };
}

/**
 * Plans in a worker: this module starts itself there, so it must be a file of its own (a bundle that it was merged into
 * cannot start itself: call `plan` in a worker of the bundle's instead). Rejects with an OrvantaError, or with the signal's
 * reason.
 */
export async function planInWorker(recording: Recording, options: WorkerOptions): Promise<Plan> {
  const { signal, onProgress, ...rest } = options;
  signal?.throwIfAborted();
  let line: Line | undefined;
  let abort: (() => void) | undefined;
  try {
    return await new Promise<Plan>((resolve, reject) => {
      abort = () => reject(signal?.reason as Error);
      signal?.addEventListener("abort", abort);
      const hear = (answer: Answer): void => {
        if (answer.kind === "progress") {
          onProgress?.(answer.percent);
        } else if (answer.kind === "plan") {
          resolve(answer.plan);
        } else {
          reject(new OrvantaError(answer.message, ...answer.fields));
        }
      };
      open(hear, reject).then((opened) => {
        line = opened;
        const job: Job = { recording, options: rest, reports: onProgress !== undefined };
        line.post(job);
      }, reject);
    });
  } finally {
    if (abort !== undefined) {
      signal?.removeEventListener("abort", abort);
    }
    line?.stop();
  }
}

async function work({ recording, options, reports }: Job, post: (answer: Answer) => void): Promise<void> {
  try {
    const engines = await load();
    const onProgress = (percent: number): void => post({ kind: "progress", percent });
    post({ kind: "plan", plan: engines.plan(recording, reports ? { ...options, onProgress } : options) });
  } catch (failure) {
    const fields: Fields =
      failure instanceof OrvantaError
        ? [failure.code, failure.parameter, failure.value, failure.limit, failure.index]
        : [ErrorCode.internal, null, 0, 0, -1];
    post({ kind: "failure", message: failure instanceof Error ? failure.message : String(failure), fields });
  }
}

/** Takes up work when this module was started as a worker by `planInWorker`; else does nothing. */
export async function serve(): Promise<void> {
  if (isNode()) {
    const { isMainThread, workerData, parentPort } = await nodeWorkers();
    if (!isMainThread && workerData === WORKER_NAME && parentPort !== null) {
      parentPort.once("message", (job) => void work(job, (answer) => parentPort.postMessage(answer)));
    }
  } else if ((globalThis as { name?: unknown }).name === WORKER_NAME && !("document" in globalThis)) {
    globalThis.onmessage = (event: MessageEvent<Job>) => void work(event.data, (answer) => globalThis.postMessage(answer));
  }
}
