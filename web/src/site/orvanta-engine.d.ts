// What the page asks of the engines' module (bindings/js); the build names the file.
declare module "orvanta-engine" {
    interface Edges {
        left: number;
        top: number;
        right: number;
        bottom: number;
    }
    interface EngineSpan {
        start: number;
        stop: number;
    }
    interface EngineSlice extends EngineSpan {
        spaces: { rect: Edges; density: number }[];
        blank: boolean;
        keyframe: boolean;
        tight: boolean;
        inWindow: boolean;
        window: boolean;
        noWindow: boolean;
        windowRect: Edges;
        hotRect: Edges;
        mode: string | null;
        revision: number;
    }
    export interface EnginePlan {
        keyframes: { time: number; seconds: number; rect: Edges; reason: string | null; shot: number | null }[];
        evidence?: { keyframe: number; kind: string; weight: number; seen: number; count: number; rect: Edges; cost: number; runnerUp: Edges | null; runnerUpCost: number }[];
        stages?: { objects: (EngineSpan & { type: string; rect: Edges })[]; slices: EngineSlice[]; shots: EngineSlice[] };
    }
    export interface EngineOptions {
        width: number;
        height: number;
        engine: string;
        /** Seconds. */
        fade: number;
        /** Seconds: from and to. */
        clip?: readonly [number, number];
        calm?: number;
        readable?: number;
        presses?: "always" | "cheap";
        stages: boolean;
        onProgress?: (percent: number) => void;
    }
    export interface EngineRecording {
        timeScale: number;
        stop?: number;
    }
    export function parseRecording(text: string): EngineRecording;
    export function load(): Promise<{ plan(recording: EngineRecording, options: EngineOptions): EnginePlan }>;
}
