// The engines, in a worker: they compute without holding up the page.
import { load, parseRecording } from "orvanta-engine";
import type { PlanAnswer, PlanRequest } from "./messages";

/** Progress is told at most that often, milliseconds: every step would only fill the queue. */
const kTell = 50;

self.onmessage = (event: MessageEvent<PlanRequest>): void => {
    const answer = (message: PlanAnswer): void => self.postMessage(message);
    const { text, ...options } = event.data;
    let told = 0;
    load()
        .then((engines) => {
            const onProgress = (percent: number): void => {
                const now = performance.now();
                if (now - told < kTell) return;
                told = now;
                answer({ kind: "progress", percent });
            };
            answer({ kind: "plan", plan: engines.plan(parseRecording(text), { ...options, stages: true, onProgress }) });
        })
        .catch((failure: unknown) => {
            answer({ kind: "failure", message: failure instanceof Error ? failure.message : String(failure) });
        });
};
