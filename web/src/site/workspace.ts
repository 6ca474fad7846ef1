// The static page's state: what was brought, how the picture is to be, and what the engine makes of it.
import { computed, effect, signal, type Signal } from "@preact/signals";
import { parseTime } from "../time/format";
import { readRecording, RecordingError } from "../model/readRecording";
import type { Recording } from "../model/recording";
import { Session, type VideoSource } from "../session";
import type { PlanRequest } from "./messages";
import { plan, stagesOf } from "./planner";
import { textOf, UnreadableFile } from "./unpack";
import { resolveSize, SizeError } from "./size";

interface Brought {
    recording: Recording;
    /** JSON Lines. */
    text: string;
}

/** A change of a field is taken up after that time without another one, milliseconds. */
const kSettle = 150;

export class Workspace {
    readonly brought: Signal<Brought | null> = signal(null);
    readonly video: Signal<VideoSource | null> = signal(null);
    readonly size = signal("16:9");
    readonly engine = signal("value");
    /** Seconds. */
    readonly fade = signal(1);
    /** The stretch to work on, as times are written; empty for the recording's own ends. */
    readonly clipStart = signal("");
    readonly clipStop = signal("");
    /** What the director is told: seconds of better sight that a move must earn, and the zoom from which text is readable. */
    readonly calm = signal(1);
    readonly readable = signal(0.75);
    readonly presses: Signal<"always" | "cheap"> = signal("always");
    /** 0 to 100 while the engine works. */
    readonly progress: Signal<number | null> = signal(null);
    readonly problem: Signal<string | null> = signal(null);
    readonly session: Signal<Session | null> = signal(null);
    /** The clip, seconds; null for all of the recording, a message where it cannot be used. */
    readonly clip = computed((): readonly [number, number] | string | null => {
        const brought = this.brought.value;
        const [first, last] = [this.clipStart.value.trim(), this.clipStop.value.trim()];
        if (!brought || (first === "" && last === "")) return null;
        const start = first === "" ? 0 : parseTime(first);
        const stop = last === "" ? brought.recording.stop : parseTime(last);
        if (start === null || stop === null) return `“${start === null ? first : last}” is no time; write seconds, or minutes as 1:30.`;
        if (start >= brought.recording.stop) return `The clip begins at ${first}, when the recording has ended.`;
        if (start >= stop) return "The clip ends before it begins.";
        return [start, Math.min(stop, brought.recording.stop)];
    });
    private running: AbortController | null = null;

    /** The output size in pixels; null while the size cannot be used. */
    readonly resolved = computed(() => {
        const brought = this.brought.value;
        if (!brought) return null;
        try {
            return resolveSize(this.size.value, brought.recording, this.engine.value);
        } catch (error) {
            if (error instanceof SizeError) return error.message;
            throw error;
        }
    });

    constructor() {
        let timer = 0;
        effect(() => {
            const brought = this.brought.value;
            const resolved = this.resolved.value;
            const engine = this.engine.value;
            const fade = this.fade.value;
            const clip = this.clip.value;
            const director = engine === "director" ? { calm: this.calm.value, readable: this.readable.value, presses: this.presses.value } : {};
            clearTimeout(timer);
            if (!brought || resolved === null) return;
            if (typeof resolved === "string" || typeof clip === "string") {
                this.problem.value = typeof resolved === "string" ? resolved : (clip as string);
                return;
            }
            const wait = this.session.peek() ? kSettle : 0;
            const options = { ...resolved, engine, fade, ...director, ...(clip && engine !== "voting" ? { clip } : {}) };
            timer = window.setTimeout(() => void this.compute(brought, options), wait);
        });
        effect(() => {
            const session = this.session.value;
            if (session) session.video.value = this.video.value;
        });
    }

    cancel(): void {
        this.running?.abort();
    }

    private async compute(brought: Brought, options: Omit<PlanRequest, "text">): Promise<void> {
        this.running?.abort();
        const running = new AbortController();
        this.running = running;
        this.progress.value = 0;
        this.problem.value = null;
        const request = { text: brought.text, ...options };
        try {
            const result = await plan(request, (percent) => (this.progress.value = percent), running.signal);
            const before = this.session.peek();
            const stages = stagesOf(result, request, brought.recording);
            const same = before?.model.recording === brought.recording ? before : null;
            const session = new Session({ recording: brought.recording, stages, source: brought.recording.name, easing: same?.easing.peek() ?? "ease-in-out" });
            if (same) session.time.value = same.time.peek();
            before?.close();
            this.session.value = session;
        } catch (error) {
            if (!(error instanceof DOMException && error.name === "AbortError")) {
                this.problem.value = error instanceof Error ? `The engine stopped: ${error.message}.` : String(error);
            } else if (this.running === running) {
                this.problem.value = "Stopped. Change a setting to compute anew.";
            }
        } finally {
            if (this.running === running) {
                this.running = null;
                this.progress.value = null;
            }
        }
    }

    /** Takes what a person brought: a recording, a video, or both at once. */
    async take(files: readonly File[]): Promise<void> {
        this.problem.value = null;
        for (const file of files) {
            if (isVideo(file)) this.takeVideo(file);
            else await this.takeRecording(file, file.name);
        }
        if (!this.brought.peek() && this.video.peek() && !this.problem.peek()) {
            this.problem.value = "The video is here. Now add its recording (.jsonl).";
        }
    }

    takeVideo(file: File): void {
        const before = this.video.peek();
        if (before) URL.revokeObjectURL(before.url);
        this.video.value = { url: URL.createObjectURL(file), name: file.name, blob: file };
    }

    async takeRecording(blob: Blob, name: string): Promise<void> {
        try {
            const text = await textOf(blob, name);
            const recording = readRecording(text, name.replace(/\.(gz|zst|zstd)$/i, ""));
            if (this.video.peek() && this.brought.peek()) this.video.value = null; // It was the other recording's.
            this.session.peek()?.close();
            this.session.value = null;
            this.clipStart.value = "";
            this.clipStop.value = "";
            this.brought.value = { recording, text };
        } catch (error) {
            this.problem.value = error instanceof RecordingError || error instanceof UnreadableFile ? `${error.message}.` : `${name} cannot be read: ${String(error)}`;
        }
    }
}

function isVideo(file: File): boolean {
    return file.type.startsWith("video/") || /\.(mp4|m4v|mov|webm|mkv)$/i.test(file.name);
}
