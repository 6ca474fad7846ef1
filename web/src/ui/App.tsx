// The page around one opened recording.
import { useSignal } from "@preact/signals";
import { useEffect } from "preact/hooks";
import type { ComponentChildren, JSX } from "preact";
import { withoutKeyframe } from "../edit/edits";
import type { Session } from "../session";
import { lengthText } from "../time/format";
import { sizeText } from "../model/geometry";
import { Details } from "./Details";
import { Edits } from "./Edits";
import { Figures } from "./Figures";
import { Icon } from "./icons";
import { Keyframes } from "./Keyframes";
import { Stage } from "./Stage";
import { TakeAlong } from "./TakeAlong";
import { appearance, toggleTheme } from "./theme";
import { Timeline } from "./Timeline";
import { stepKeyframe, Transport } from "./Transport";
import { Why } from "./Why";

export function ThemeButton(): JSX.Element {
    const dark = appearance.value === "dark";
    const label = dark ? "Light colours" : "Dark colours";
    return (
        <button type="button" class="round" aria-label={label} title={label} onClick={toggleTheme}>
            <Icon name={dark ? "sun" : "moon"} />
        </button>
    );
}

export function Logo(): JSX.Element {
    return (
        <svg class="logo" viewBox="0 0 28 20" width="28" height="20" aria-hidden="true">
            <rect x="1" y="1" width="26" height="18" rx="3.5" fill="none" stroke="currentColor" stroke-width="1.6" opacity=".45" />
            <rect x="11" y="7" width="12" height="8.300" rx="2" fill="none" stroke="var(--camera)" stroke-width="2.200" />
        </svg>
    );
}

function deleteSelected(session: Session): void {
    const selection = session.selection.peek();
    if (selection?.kind !== "keyframe") return;
    session.edits.set(withoutKeyframe(session.edits.value.peek(), session.keyframes.peek(), selection.index, session.model.stages.clipTicks));
    session.select(null);
}

/** Keys that work wherever the focus is, but for fields that take them. */
function useKeys(session: Session): void {
    useEffect(() => {
        const onKey = (event: KeyboardEvent): void => {
            const target = event.target as HTMLElement;
            if ((event.ctrlKey || event.metaKey) && !event.altKey && /^[zy]$/i.test(event.key) && !/^(INPUT|TEXTAREA)$/.test(target.tagName)) {
                if (event.key.toLowerCase() === "y" || event.shiftKey) session.edits.redo();
                else session.edits.undo();
                event.preventDefault();
                return;
            }
            if (event.defaultPrevented || event.ctrlKey || event.metaKey || event.altKey) return;
            if (/^(INPUT|SELECT|TEXTAREA)$/.test(target.tagName)) return;
            if (event.key === " " && target.tagName !== "BUTTON") session.playing.value = !session.playing.peek();
            else if (event.key === ",") stepKeyframe(session, -1);
            else if (event.key === ".") stepKeyframe(session, 1);
            else if (event.key === "Delete" || event.key === "Backspace") deleteSelected(session);
            else return;
            event.preventDefault();
        };
        window.addEventListener("keydown", onKey);
        return () => window.removeEventListener("keydown", onKey);
    }, [session]);
}

export function App({ session, controls, notices }: { session: Session; controls?: ComponentChildren; notices?: ComponentChildren }): JSX.Element {
    const { recording, stages } = session.model;
    const notice = useSignal<string | null>(null);
    useKeys(session);
    useEffect(() => {
        document.title = `${recording.name} – Orvanta`;
    }, [session]);
    const videoLost = (name: string): void => {
        session.video.value = null;
        notice.value = `The video ${name} could not be shown; the screen is drawn from the recording. Choose the video to show it.`;
    };
    return (
        <>
            <header class="top">
                <Logo />
                <div class="heading">
                    <h1>{recording.name}</h1>
                    <p class="muted">
                        {lengthText(recording.stop)} of {sizeText(recording)} for a picture of {sizeText(stages.target)}, {stages.engine} engine
                    </p>
                </div>
                {controls}
                <TakeAlong session={session} />
                <ThemeButton />
            </header>
            <main>
                {notices}
                {recording.description && <p class="description">{recording.description}</p>}
                {stages.failure && <p class="notice" role="alert">The engine stopped: {stages.failure}. What it found before is shown.</p>}
                {notice.value && (
                    <p class="notice" role="status">
                        {notice.value} <button type="button" class="link" onClick={() => (notice.value = null)}>Close</button>
                    </p>
                )}
                <Stage session={session} onVideoLost={videoLost} />
                <Transport session={session} />
                <div class="side">
                    <Why session={session} />
                    <Figures session={session} />
                </div>
                <Timeline session={session} />
                <div class="lower">
                    <Keyframes session={session} />
                    <div class="column">
                        <Details session={session} />
                        <Edits session={session} />
                    </div>
                </div>
                {recording.warnings.length > 0 && (
                    <section class="panel"><h2>Remarks on the recording</h2><ul>{recording.warnings.map((warning) => <li key={warning}>{warning}</li>)}</ul></section>
                )}
            </main>
            <footer class="muted">Made by Orvanta from {recording.name}. Nothing on this page leaves your machine.</footer>
        </>
    );
}
