// What can be taken along: the path for other tools, the command line, a still, the finished video.
import { useSignal } from "@preact/signals";
import { useRef } from "preact/hooks";
import type { JSX } from "preact";
import type { Session } from "../session";
import { ffmpegCommand, pathFfmpeg } from "../take/ffmpegScript";
import { meltCommand, pathMlt } from "../take/mltProject";
import { baseName, pathCsv, pathJson, renderCommand, shellWord, videoName } from "../take/pathFiles";
import { still } from "../take/picture";
import { saveBlob, saveText } from "../take/save";
import { canMakeVideo, makeVideo, type VideoProgress } from "../take/video";
import { timeText } from "../time/format";
import { Icon } from "./icons";

/** A command line that can be copied, and what it is for. */
function Command({ words, label, attempt }: { words: string; label: string; attempt: (work: () => Promise<void>) => Promise<void> }): JSX.Element {
    const copied = useSignal(false);
    const copy = (): Promise<void> =>
        attempt(async () => {
            await navigator.clipboard.writeText(words);
            copied.value = true;
            setTimeout(() => (copied.value = false), 2000);
        });
    return (
        <div class="command">
            <code tabIndex={0} role="group" aria-label={label}>{words}</code>
            <button type="button" class="small" aria-label="Copy the command" onClick={() => void copy()}>{copied.value ? "Copied" : "Copy"}</button>
        </div>
    );
}

export function TakeAlong({ session }: { session: Session }): JSX.Element {
    const dialog = useRef<HTMLDialogElement>(null);
    const file = useRef<HTMLInputElement>(null);
    const problem = useSignal<string | null>(null);
    const progress = useSignal<VideoProgress | null>(null);
    const running = useRef<AbortController | null>(null);
    const name = baseName(session);
    const video = session.video.value;
    /** The saved path that stands beside the commands: the last one that was taken. */
    const taken = useSignal<"json" | "ffmpeg" | "mlt">("json");
    const rendered = shellWord(`${name}.camera.mp4`);
    const commands = {
        json: { label: "Renders the saved JSON", words: renderCommand(session) },
        ffmpeg: { label: "Renders the saved ffmpeg script", words: ffmpegCommand(session, shellWord(videoName(session)), shellWord(`${name}.ffmpeg`), rendered) },
        mlt: { label: "Renders the saved MLT project, which video editors open too", words: meltCommand(shellWord(`${name}.mlt`), rendered) },
    };
    const command = commands[taken.value];

    const attempt = async (work: () => Promise<void>): Promise<void> => {
        problem.value = null;
        try {
            await work();
        } catch (error) {
            if (error instanceof DOMException && error.name === "AbortError") return;
            const message = error instanceof Error ? error.message : String(error);
            problem.value = `${message.charAt(0).toUpperCase()}${message.slice(1)}.`;
        }
    };
    const render = (): Promise<void> =>
        attempt(async () => {
            running.current = new AbortController();
            progress.value = { share: 0, rate: 0 };
            try {
                const { blob, ending } = await makeVideo(session, (now) => (progress.value = now), running.current.signal);
                saveBlob(`${name}.camera.${ending}`, blob);
            } finally {
                progress.value = null;
                running.current = null;
            }
        });
    const take = (kind: keyof typeof commands, ending: string, type: string, text: () => string): Promise<void> =>
        attempt(async () => {
            saveText(`${name}.${ending}`, text(), type);
            taken.value = kind;
            return Promise.resolve();
        });
    return (
        <>
            <button type="button" class="plain" onClick={() => dialog.current?.showModal()}><Icon name="save" />Take along</button>
            <dialog ref={dialog} class="take panel" aria-labelledby="take-title" onClick={(event) => event.target === dialog.current && dialog.current?.close()}>
                <div class="take-content">
                    <div class="title-row">
                        <h2 id="take-title">Take along</h2>
                        <span class="spacer" />
                        <button type="button" class="round" aria-label="Close" onClick={() => dialog.current?.close()}><Icon name="cross" /></button>
                    </div>
                    <h3>The path, for other tools</h3>
                    <div class="button-row">
                        <button type="button" class="plain" onClick={() => void take("json", "path.json", "application/json", () => pathJson(session))}>JSON</button>
                        <button type="button" class="plain" onClick={() => saveText(`${name}.path.csv`, pathCsv(session), "text/csv")}>CSV</button>
                        <button type="button" class="plain" onClick={() => void take("ffmpeg", "ffmpeg", "text/plain", () => pathFfmpeg(session))}>ffmpeg script</button>
                        <button type="button" class="plain" onClick={() => void take("mlt", "mlt", "application/xml", () => pathMlt(session, videoName(session)))}>MLT project</button>
                    </div>
                    <h3>{command.label}</h3>
                    <Command key={taken.value} attempt={attempt} {...command} />
                    <h3>Pictures</h3>
                    <div class="button-row">
                        <button type="button" class="plain" onClick={() => void attempt(async () => saveBlob(`${name}.${timeText(session.time.peek(), 2).replaceAll(":", "-")}.png`, await still(session)))}>Still at {timeText(session.time.value, 2)}</button>
                        {canMakeVideo() && (
                            <button type="button" class="plain" disabled={progress.value !== null} onClick={() => void render()}>{video ? "Finished video" : "Video of the drawn screen"}</button>
                        )}
                        {!video?.blob && (
                            <button type="button" class="plain" onClick={() => file.current?.click()}>{video ? "Choose the video’s file" : "Add the video"}</button>
                        )}
                        <input
                            ref={file}
                            class="visually-hidden"
                            type="file"
                            accept="video/*,.mkv"
                            aria-label="Video file"
                            tabIndex={-1}
                            onChange={(event) => {
                                const chosen = event.currentTarget.files?.[0];
                                event.currentTarget.value = "";
                                if (chosen) session.video.value = { url: URL.createObjectURL(chosen), name: chosen.name, blob: chosen };
                            }}
                        />
                    </div>
                    {!canMakeVideo() && <p class="muted">This browser cannot make videos; the command above does.</p>}
                    {progress.value && (
                        <div class="working" role="status">
                            <label><span>Rendering</span><progress max={1} value={progress.value.share} /></label>
                            <span class="muted">{Math.round(progress.value.share * 100)} %, {Math.round(progress.value.rate)} pictures a second</span>
                            <button type="button" class="small" onClick={() => running.current?.abort()}>Stop</button>
                        </div>
                    )}
                    {problem.value && <p class="problem" role="alert">{problem.value}</p>}
                </div>
            </dialog>
        </>
    );
}
