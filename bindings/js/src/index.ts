// Orvanta: a virtual camera operator for screen recordings.
import { serve } from "./worker.js";

export { Orvanta, load, plan } from "./engine.js";
export { ErrorCode, OrvantaError } from "./error.js";
export { CameraPath } from "./path.js";
export { parseRecording } from "./recording.js";
export { planInWorker } from "./worker.js";
export type { WorkerOptions } from "./worker.js";
export type * from "./types.js";

void serve();
