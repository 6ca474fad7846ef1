// Asks the engines for the stages of a recording, with progress, and stops at once when asked to.
import type { EnginePlan } from "orvanta-engine";
import { fromEdges } from "../model/geometry";
import type { Recording } from "../model/recording";
import { placedEvidence, type Keyframe, type Shot, type ShotCost, type Stages } from "../model/stages";
import EngineWorker from "./engineWorker?worker&inline";
import type { PlanAnswer, PlanRequest } from "./messages";

export function stagesOf(plan: EnginePlan, request: PlanRequest, recording: Recording): Stages {
    const shots: Shot[] = [];
    const shotOfSlice = new Map<number, number>();
    (plan.stages?.shots ?? []).forEach((slice, index) => {
        if (slice.revision < 0) return;
        shotOfSlice.set(index, shots.length);
        shots.push({
            slice: index, start: slice.start, stop: slice.stop, blank: slice.blank, mode: slice.mode, tight: slice.tight,
            inWindow: slice.inWindow, window: slice.window, noWindow: slice.noWindow,
            windowRect: fromEdges(slice.windowRect), hotRect: fromEdges(slice.hotRect),
        });
    });
    const clip = {
        start: request.clip ? Math.round(request.clip[0] * recording.timeScale) : 0,
        stop: request.clip ? Math.round(request.clip[1] * recording.timeScale) : recording.stopTick,
    };
    const keyframes = plan.keyframes.map((keyframe): Keyframe => ({
        tick: keyframe.time, seconds: keyframe.seconds, rect: fromEdges(keyframe.rect), reason: keyframe.reason,
        shot: keyframe.shot === null ? null : (shotOfSlice.get(keyframe.shot) ?? null),
    }));
    const costs: ShotCost[] = [];
    for (const { keyframe, cost, runnerUp, runnerUpCost } of plan.evidence ?? []) {
        costs[keyframe] ??= { cost, other: runnerUp ? { rect: fromEdges(runnerUp), cost: runnerUpCost } : null };
    }
    const fadeTicks = Math.trunc(request.fade * recording.timeScale);
    return {
        engine: request.engine,
        target: { width: request.width, height: request.height },
        fade: fadeTicks / recording.timeScale,
        fadeTicks,
        clip: { start: clip.start / recording.timeScale, stop: clip.stop / recording.timeScale },
        clipTicks: clip,
        failure: null,
        objects: (plan.stages?.objects ?? []).map((object) => ({ type: object.type, start: object.start, stop: object.stop, rect: fromEdges(object.rect) })),
        slices: (plan.stages?.slices ?? []).map((slice) => ({
            start: slice.start, stop: slice.stop, blank: slice.blank,
            spaces: slice.spaces.map((space) => ({ rect: fromEdges(space.rect), density: space.density })),
        })),
        shots,
        evidence: placedEvidence(plan.evidence ?? [], keyframes, clip.stop / recording.timeScale),
        costs,
        keyframes,
    };
}

/** Plans in a worker of its own. Rejects with `Error`; an abort ends the worker whatever it is doing. */
export function plan(request: PlanRequest, onProgress: (percent: number) => void, signal: AbortSignal): Promise<EnginePlan> {
    return new Promise((resolve, reject) => {
        const worker = new EngineWorker();
        const end = (): void => {
            worker.terminate();
            signal.removeEventListener("abort", abort);
        };
        const abort = (): void => {
            end();
            reject(new DOMException("stopped", "AbortError"));
        };
        signal.addEventListener("abort", abort);
        worker.onerror = (event) => {
            end();
            reject(new Error(event.message || "The engine could not be started."));
        };
        worker.onmessage = (event: MessageEvent<PlanAnswer>) => {
            const answer = event.data;
            if (answer.kind === "progress") {
                onProgress(answer.percent);
                return;
            }
            end();
            if (answer.kind === "plan") resolve(answer.plan);
            else reject(new Error(answer.message));
        };
        worker.postMessage(request);
    });
}
