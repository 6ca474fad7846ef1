// One opened recording: what it holds, where the person looks, and what they changed.
import { computed, effect, signal, type ReadonlySignal, type Signal } from "@preact/signals";
import { followClicks } from "./camera/clickFollowing";
import { kEasings, type EasingName } from "./camera/easing";
import { figuresOf, type Figures } from "./camera/figures";
import { CameraPath, type PathKeyframe } from "./camera/path";
import { applyWishes, kNoWishes, type WishedKeyframe, type Wishes, type WishSetup } from "./camera/wishes";
import { History } from "./edit/history";
import { storedWishes, storeWishes } from "./edit/storage";
import type { Item } from "./model/items";
import type { Recording } from "./model/recording";
import type { Stages } from "./model/stages";
import { strokesOf, type Stroke } from "./model/strokes";

/** What the page is asked to show. */
export interface Model {
    recording: Recording;
    stages: Stages;
    /** File that the recording was read from, as the command was told. */
    source: string;
    easing: EasingName;
}

/** A video of the recording. */
export interface VideoSource {
    /** Address that a video element can load: a relative name or an object address. */
    url: string;
    name: string;
    /** Where the page has the content itself, its pixels may be read: for stills and the finished video. */
    blob: Blob | null;
}

export interface PlannedKeyframe extends PathKeyframe, WishedKeyframe {
    tick: number;
    reason: string | null;
    /** Index in the engine's keyframes; null for one that a wish made. */
    engine: number | null;
}

/** What the command calls keyframes that wishes made. */
const kOriginReasons: Readonly<Record<WishedKeyframe["origin"], string | null>> = {
    keyframe: null,
    pin: "pinned",
    whole: "whole",
    start: null,
};

export class Session {
    readonly time = signal(0);
    readonly playing = signal(false);
    readonly rate = signal(1);
    readonly selection: Signal<Item | null> = signal(null);
    readonly easing: Signal<EasingName>;
    readonly video: Signal<VideoSource | null> = signal(null);
    readonly strokes: Stroke[];
    /** Ends what the session keeps up: nothing is stored any more. */
    readonly close: () => void;
    readonly edits: History<Wishes>;
    readonly wishSetup: WishSetup;
    /** What the page has to tell about the last thing that a person did; null when there is nothing. */
    readonly notice: Signal<string | null> = signal(null);
    readonly keyframes: ReadonlySignal<PlannedKeyframe[]>;
    readonly path: ReadonlySignal<CameraPath>;
    /** Index of the keyframe at the moment on show; -1 before the first. Changes far less often than the time. */
    readonly current: ReadonlySignal<number>;
    readonly figures: ReadonlySignal<Figures>;
    readonly clickFigures: ReadonlySignal<Figures>;

    constructor(readonly model: Model) {
        const { recording, stages } = model;
        this.easing = signal(model.easing);
        this.time.value = stages.clip.start;
        this.strokes = strokesOf(recording.cursor);
        this.wishSetup = {
            recording: { width: recording.width, height: recording.height },
            target: stages.target,
            fade: stages.fadeTicks,
            clip: stages.clipTicks,
        };
        this.edits = new History<Wishes>(storedWishes(recording, this.clock) ?? kNoWishes);
        this.keyframes = computed(() =>
            applyWishes(stages.keyframes, this.wishSetup, this.edits.value.value).map((keyframe): PlannedKeyframe => {
                const engine = keyframe.origin === "keyframe" ? keyframe.index : null;
                return {
                    ...keyframe,
                    seconds: keyframe.tick / recording.timeScale,
                    engine,
                    reason: engine === null ? kOriginReasons[keyframe.origin] : (stages.keyframes[engine]?.reason ?? null),
                };
            }),
        );
        this.close = effect(() => storeWishes(recording, this.clock, this.edits.value.value));
        const pathOf = (keyframes: readonly PathKeyframe[]): CameraPath =>
            new CameraPath(keyframes, {
                recording: { width: recording.width, height: recording.height },
                target: stages.target,
                fade: stages.fade,
                clipStart: stages.clip.start,
                easing: kEasings[this.easing.value],
                timeScale: recording.timeScale,
            });
        this.path = computed(() => pathOf(this.keyframes.value));
        this.current = computed(() => this.keyframeAt(this.time.value));
        this.figures = computed(() => figuresOf(this.path.value, recording, stages.clip));
        this.clickFigures = computed(() => {
            const keyframes = followClicks(recording.presses, recording, stages.target, stages.fade);
            return figuresOf(pathOf(keyframes), recording, stages.clip);
        });
    }

    get clock(): { timeScale: number; clip: { start: number; stop: number } } {
        return { timeScale: this.model.recording.timeScale, clip: this.model.stages.clipTicks };
    }

    seek(time: number): void {
        const { start, stop } = this.model.stages.clip;
        this.time.value = Math.min(Math.max(time, start), stop);
    }

    select(item: Item | null): void {
        this.selection.value = item;
    }

    /** Index of the keyframe whose frame is on show or on its way; -1 before the first. */
    keyframeAt(time: number): number {
        const path = this.path.value;
        return path.moves[path.moveAt(time)]?.keyframe ?? -1;
    }

    toTick(seconds: number): number {
        return Math.round(seconds * this.model.recording.timeScale);
    }
}
