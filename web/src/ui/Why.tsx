import type { JSX } from "preact";
import { whyHere } from "../explain/why";
import type { Session } from "../session";
import { timeText } from "../time/format";

/** "Why here?" at the moment on show. */
export function Why({ session }: { session: Session }): JSX.Element {
    const [first, ...rest] = whyHere(session, session.time.value);
    const keyframe = session.keyframeAt(session.time.value);
    return (
        <section class="why panel" aria-labelledby="why-title">
            <h2 id="why-title">Why here? <span class="muted">at {timeText(session.time.value, 1)}</span></h2>
            <p class="lead">{first}</p>
            <p class="muted">{rest.join(" ")}</p>
            {keyframe >= 0 && (
                <button type="button" class="link" onClick={() => session.select({ kind: "keyframe", index: keyframe })}>
                    Show what this keyframe was made from
                </button>
            )}
        </section>
    );
}
