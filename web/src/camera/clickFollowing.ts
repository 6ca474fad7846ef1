// The yardstick: a camera that follows clicks at a fixed zoom and knows nothing else.
import type { Press } from "../model/recording";
import type { Size } from "../model/geometry";
import type { PathKeyframe } from "./path";

/** The hand must be seen arriving: the move begins that long before the press. Seconds. */
const kLead = 0.3;
/** How long the camera stays after a press, and how near two presses must be for it to stay between them. Seconds. */
const kStay = 2.5;

/**
 * Keyframes of a camera that goes to each press at one output pixel per recording pixel, stays for 2.5 s, goes on to
 * the next press if there is one by then, and else back to the whole. It starts no move before the last one is over.
 */
export function followClicks(presses: readonly Press[], recording: Size, target: Size, fade: number): PathKeyframe[] {
    const shrink = Math.min(1, recording.width / target.width, recording.height / target.height);
    const width = target.width * shrink;
    const height = target.height * shrink;
    const whole = { left: 0, top: 0, ...recording };
    const around = (press: Press): PathKeyframe["rect"] => ({
        left: Math.min(Math.max(press.x - width / 2, 0), recording.width - width),
        top: Math.min(Math.max(press.y - height / 2, 0), recording.height - height),
        width,
        height,
    });
    const keyframes: PathKeyframe[] = [];
    let leave = -Infinity;
    for (const press of presses) {
        const arrive = Math.max(0, press.time - kLead);
        const last = keyframes[keyframes.length - 1];
        if (arrive > leave + kStay) {
            if (last) keyframes.push({ seconds: leave, rect: whole });
            keyframes.push({ seconds: arrive, rect: around(press) });
        } else if (last && arrive > last.seconds + fade) {
            keyframes.push({ seconds: arrive, rect: around(press) });
        }
        leave = press.time + kStay;
    }
    if (keyframes.length > 0) keyframes.push({ seconds: leave, rect: whole });
    return keyframes;
}
