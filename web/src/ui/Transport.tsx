// Play, step and time.
import type { JSX } from "preact";
import { kEasings, type EasingName } from "../camera/easing";
import type { Session } from "../session";
import { timeText } from "../time/format";
import { Icon } from "./icons";

const kRates = [0.25, 0.5, 1, 2, 4, 8];

export function stepKeyframe(session: Session, direction: 1 | -1): void {
    const times = session.path.value.moves.map((move) => move.start);
    const now = session.time.value;
    const target = direction > 0 ? times.find((time) => time > now + 1e-6) : times.findLast((time) => time < now - 1e-6);
    session.seek(target ?? (direction > 0 ? session.model.stages.clip.stop : session.model.stages.clip.start));
}

export function Transport({ session }: { session: Session }): JSX.Element {
    const playing = session.playing.value;
    const { clip } = session.model.stages;
    return (
        <div class="transport" role="group" aria-label="Playback">
            <button type="button" class="round" title="Previous keyframe (,)" aria-label="Previous keyframe" onClick={() => stepKeyframe(session, -1)}>
                <Icon name="back" />
            </button>
            <button type="button" class="round primary" title="Play or pause (space)" aria-label={playing ? "Pause" : "Play"} onClick={() => (session.playing.value = !playing)}>
                <Icon name={playing ? "pause" : "play"} />
            </button>
            <button type="button" class="round" title="Next keyframe (.)" aria-label="Next keyframe" onClick={() => stepKeyframe(session, 1)}>
                <Icon name="next" />
            </button>
            <output class="clock" aria-label="Time">{timeText(session.time.value, 2)}</output>
            <input
                class="scrub"
                type="range"
                min={clip.start}
                max={clip.stop}
                step={0.01}
                value={session.time.value}
                aria-label="Position"
                aria-valuetext={timeText(session.time.value, 2)}
                onInput={(event) => session.seek(Number(event.currentTarget.value))}
            />
            <span class="clock muted">{timeText(clip.stop, 2)}</span>
            <label class="inline">
                <span>Speed</span>
                <select value={String(session.rate.value)} onChange={(event) => (session.rate.value = Number(event.currentTarget.value))}>
                    {kRates.map((rate) => <option key={rate} value={String(rate)}>{rate}×</option>)}
                </select>
            </label>
            <label class="inline">
                <span>Easing</span>
                <select value={session.easing.value} onChange={(event) => (session.easing.value = event.currentTarget.value as EasingName)}>
                    {Object.keys(kEasings).map((name) => <option key={name} value={name}>{name}</option>)}
                </select>
            </label>
        </div>
    );
}
