// Runs the session's clock: by the video where there is one, else by the display's frames.
import { effect } from "@preact/signals";
import type { Session } from "../session";

/** A paused video is sought when it is further off than that, seconds: half a frame at 60 a second. */
const kSeekTolerance = 0.008;
/** A playing video that drifts further is brought back. */
const kDrift = 0.25;

/** The video's own time for a moment of the recording. */
export function videoTime(session: Session, time: number): number {
    return time - (session.model.recording.videoOffset ?? 0);
}

/** Couples a session with a video element, or with the clock where there is none. Returns what ends it. */
export function runPlayback(session: Session, video: () => HTMLVideoElement | null): () => void {
    let frame = 0;
    let last = 0;
    const { stop } = session.model.stages.clip;

    const step = (now: number): void => {
        const element = video();
        const passed = ((now - last) / 1000) * session.rate.value;
        last = now;
        const byClock = session.time.value + passed;
        let time = byClock;
        if (element && !element.paused && !element.seeking && element.readyState >= 2) {
            const shown = element.currentTime + (session.model.recording.videoOffset ?? 0);
            // A video element's time goes in steps; the clock smooths it while the two are close.
            time = Math.abs(shown - byClock) < kDrift ? byClock + (shown - byClock) * 0.1 : shown;
        }
        session.time.value = Math.min(time, stop);
        if (session.time.value >= stop) {
            session.playing.value = false;
            return;
        }
        frame = requestAnimationFrame(step);
    };

    const stopPlaying = effect(() => {
        cancelAnimationFrame(frame);
        const element = video();
        if (session.playing.value) {
            if (session.time.peek() >= stop - 0.01) session.time.value = session.model.stages.clip.start;
            last = performance.now();
            frame = requestAnimationFrame(step);
            if (element) {
                element.currentTime = Math.max(0, videoTime(session, session.time.peek()));
                element.play().catch(() => undefined);
            }
        } else {
            element?.pause();
        }
    });
    const stopRate = effect(() => {
        const element = video();
        if (element) element.playbackRate = session.rate.value;
    });
    const stopSeeking = effect(() => {
        const wanted = Math.max(0, videoTime(session, session.time.value));
        const element = video();
        if (!element || element.readyState < 1) return;
        const off = Math.abs(element.currentTime - wanted);
        if (session.playing.peek() ? off > 4 * kDrift : off > kSeekTolerance) {
            // A seek in flight is left to end; its end seeks on to where the hand is by then.
            if (!element.seeking) element.currentTime = wanted;
        }
    });
    return () => {
        cancelAnimationFrame(frame);
        stopPlaying();
        stopRate();
        stopSeeking();
    };
}
