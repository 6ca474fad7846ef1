// The static page's state: what was brought, how the picture is to be, and what the engine makes of it.
import { computed, effect, signal, type Signal } from "@preact/signals";
import { inflate } from "../model/embedded";
import { readRecording, RecordingError } from "../model/readRecording";
import type { Recording } from "../model/recording";
import { Session, type VideoSource } from "../session";
import { plan, stagesOf } from "./planner";
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
    /** 0 to 100 while the engine works. */
    readonly progress: Signal<number | null> = signal(null);
    readonly problem: Signal<string | null> = signal(null);
    readonly session: Signal<Session | null> = signal(null);
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
            clearTimeout(timer);
            if (!brought || resolved === null) return;
            if (typeof resolved === "string") {
                this.problem.value = resolved;
                return;
            }
            const wait = this.session.peek() ? kSettle : 0;
            timer = window.setTimeout(() => void this.compute(brought, { ...resolved, engine, fade }), wait);
        });
        effect(() => {
            const session = this.session.value;
            if (session) session.video.value = this.video.value;
        });
    }

    cancel(): void {
        this.running?.abort();
    }

    private async compute(brought: Brought, options: { width: number; height: number; engine: string; fade: number }): Promise<void> {
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
            const text = await inflate(blob);
            const recording = readRecording(text, name.replace(/\.gz$/i, ""));
            if (this.video.peek() && this.brought.peek()) this.video.value = null; // It was the other recording's.
            this.session.peek()?.close();
            this.session.value = null;
            this.brought.value = { recording, text };
        } catch (error) {
            this.problem.value = error instanceof RecordingError ? `${error.message}.` : `${name} cannot be read: ${String(error)}`;
        }
    }
}

function isVideo(file: File): boolean {
    return file.type.startsWith("video/") || /\.(mp4|m4v|mov|webm|mkv)$/i.test(file.name);
}
