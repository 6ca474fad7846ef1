// The video's clock, as files for other tools count.
import type { Session } from "../session";

/** The tick at which the video's time 0 lies; null when the recording does not tell. */
export function videoOffsetTicks(session: Session): number | null {
    const { videoOffset, timeScale } = session.model.recording;
    return videoOffset === null ? null : Math.round(videoOffset * timeScale);
}

/** Seconds on the video's clock; a video whose offset is not known starts at tick 0. */
export function videoSeconds(session: Session, tick: number): number {
    return (tick - (videoOffsetTicks(session) ?? 0)) / session.model.recording.timeScale;
}
