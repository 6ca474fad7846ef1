// What the page and its worker say to each other.
import type { EnginePlan } from "orvanta-engine";

export interface PlanRequest {
    /** The recording as JSON Lines. */
    text: string;
    width: number;
    height: number;
    engine: string;
    /** Seconds. */
    fade: number;
    /** Seconds: from and to; all of it without. */
    clip?: readonly [number, number];
    /** For the director. */
    calm?: number;
    readable?: number;
    presses?: "always" | "cheap";
}

export type PlanAnswer =
    | { kind: "progress"; percent: number }
    | { kind: "plan"; plan: EnginePlan }
    | { kind: "failure"; message: string };
