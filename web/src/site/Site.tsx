// The static page: bring a recording, see the camera, change it, take it along.
import { useSignal, type Signal } from "@preact/signals";
import { useEffect, useRef } from "preact/hooks";
import type { JSX } from "preact";
import { App, Logo, ThemeButton } from "../ui/App";
import { Icon } from "../ui/icons";
import sample from "../../../examples/recordings/files_terminal.jsonl?raw";
import { timeText } from "../time/format";
import type { Workspace } from "./workspace";

const kShapes = ["16:9", "4:3", "1:1", "4:5", "9:16", "0.5"];
const kShapeNames: Readonly<Record<string, string>> = {
    "16:9": "16:9 wide", "4:3": "4:3", "1:1": "1:1 square", "4:5": "4:5", "9:16": "9:16 portrait", "0.5": "half the screen",
};

function FileButton({ label, accept, onFiles, accent }: { label: string; accept: string; onFiles: (files: File[]) => void; accent?: boolean }): JSX.Element {
    const input = useRef<HTMLInputElement>(null);
    return (
        <>
            <button type="button" class={accent ? "plain accent" : "plain"} onClick={() => input.current?.click()}>
                <Icon name="open" />{label}
            </button>
            <input
                ref={input}
                class="visually-hidden"
                type="file"
                multiple
                accept={accept}
                aria-label={`${label}: file`}
                tabIndex={-1}
                onChange={(event) => {
                    const files = [...(event.currentTarget.files ?? [])];
                    event.currentTarget.value = "";
                    if (files.length > 0) onFiles(files);
                }}
            />
        </>
    );
}

function TimeField({ label, value, placeholder }: { label: string; value: Signal<string>; placeholder: string }): JSX.Element {
    return (
        <label class="inline field">
            <span>{label}</span>
            <input type="text" size={6} value={value.value} placeholder={placeholder} onChange={(event) => (value.value = event.currentTarget.value)} />
        </label>
    );
}

/** A number that is taken over where it lies in its bounds, and else put back. */
function NumberField({ label, value, min, max, step, unit }: { label: string; value: Signal<number>; min: number; max: number; step: number; unit: string }): JSX.Element {
    return (
        <label class="inline field">
            <span>{label}</span>
            <input
                type="number"
                min={min}
                max={max}
                step={step}
                value={value.value}
                onChange={(event) => {
                    const wanted = Number(event.currentTarget.value);
                    if (event.currentTarget.value !== "" && wanted >= min && wanted <= max) value.value = wanted;
                    else event.currentTarget.value = String(value.value);
                }}
            />
            {unit && <span>{unit}</span>}
        </label>
    );
}

function DirectorSettings({ workspace }: { workspace: Workspace }): JSX.Element {
    return (
        <>
            <NumberField label="Calm" value={workspace.calm} min={0.05} max={20} step={0.25} unit="" />
            <NumberField label="Readable from" value={workspace.readable} min={0.05} max={1} step={0.05} unit="×" />
            <label class="inline">
                <span>Presses</span>
                <select value={workspace.presses.value} onChange={(event) => (workspace.presses.value = event.currentTarget.value === "cheap" ? "cheap" : "always")}>
                    <option value="always">always shown</option>
                    <option value="cheap">where cheap</option>
                </select>
            </label>
        </>
    );
}

function Settings({ workspace }: { workspace: Workspace }): JSX.Element {
    const other = useSignal(!kShapes.includes(workspace.size.value));
    const resolved = workspace.resolved.value;
    return (
        <div class="settings" role="group" aria-label="Picture">
            <label class="inline">
                <span>Shape</span>
                <select
                    value={other.value ? "other" : workspace.size.value}
                    onChange={(event) => {
                        const { value } = event.currentTarget;
                        other.value = value === "other";
                        if (value !== "other") workspace.size.value = value;
                        else if (resolved && typeof resolved !== "string") workspace.size.value = `${resolved.width}x${resolved.height}`;
                    }}
                >
                    {kShapes.map((shape) => <option key={shape} value={shape}>{kShapeNames[shape]}</option>)}
                    <option value="other">other…</option>
                </select>
            </label>
            {other.value && (
                <label class="inline field">
                    <span>Size</span>
                    <input type="text" value={workspace.size.value} onChange={(event) => (workspace.size.value = event.currentTarget.value)} />
                </label>
            )}
            <NumberField label="Fade" value={workspace.fade} min={0} max={10} step={0.1} unit="s" />
            <label class="inline">
                <span>Engine</span>
                <select value={workspace.engine.value} onChange={(event) => (workspace.engine.value = event.currentTarget.value)}>
                    <option value="value">value</option>
                    <option value="voting">voting</option>
                    <option value="director">director</option>
                </select>
            </label>
            {workspace.engine.value === "director" && <DirectorSettings workspace={workspace} />}
            {workspace.engine.value !== "voting" && (
                <>
                    <TimeField label="Clip start" value={workspace.clipStart} placeholder="0:00" />
                    <TimeField label="Clip end" value={workspace.clipStop} placeholder={timeText(workspace.brought.value?.recording.stop ?? 0, 0)} />
                </>
            )}
        </div>
    );
}

function Working({ workspace }: { workspace: Workspace }): JSX.Element | null {
    const progress = workspace.progress.value;
    if (progress === null) return null;
    return (
        <div class="working" role="status">
            <label>
                <span>Finding the camera’s way</span>
                <progress max={100} value={Math.min(100, Math.max(0, progress))} />
            </label>
            <button type="button" class="small" onClick={() => workspace.cancel()}>Stop</button>
        </div>
    );
}

export function Site({ workspace }: { workspace: Workspace }): JSX.Element {
    const over = useSignal(false);
    useEffect(() => {
        const hold = (event: DragEvent): void => {
            if (!event.dataTransfer?.types.includes("Files")) return;
            event.preventDefault();
            over.value = event.type === "dragover";
        };
        const drop = (event: DragEvent): void => {
            event.preventDefault();
            over.value = false;
            const files = [...(event.dataTransfer?.files ?? [])];
            if (files.length > 0) void workspace.take(files);
        };
        window.addEventListener("dragover", hold);
        window.addEventListener("dragleave", hold);
        window.addEventListener("drop", drop);
        return () => {
            window.removeEventListener("dragover", hold);
            window.removeEventListener("dragleave", hold);
            window.removeEventListener("drop", drop);
        };
    }, [workspace]);
    const session = workspace.session.value;
    const take = (files: File[]): void => void workspace.take(files);
    const accept = ".jsonl,.gz,.zst,.zstd,.mp4,.webm,.mov,.mkv,video/*";
    const notices = (
        <>
            {workspace.problem.value && <p class="notice" role="alert">{workspace.problem.value}</p>}
            <Working workspace={workspace} />
        </>
    );
    if (session) {
        return (
            <div class={over.value ? "dropping" : undefined}>
                <App
                    key={session.model.recording.name}
                    session={session}
                    notices={notices}
                    controls={
                        <>
                            <Settings workspace={workspace} />
                            <FileButton label={workspace.video.value ? "Open" : "Add video"} accept={accept} onFiles={take} />
                        </>
                    }
                />
            </div>
        );
    }
    return (
        <div class={over.value ? "welcome dropping" : "welcome"}>
            <header class="top">
                <Logo />
                <div class="heading"><h1>Orvanta</h1></div>
                <ThemeButton />
            </header>
            <main>
                {notices}
                <section class="drop panel" aria-labelledby="drop-title">
                    <h2 id="drop-title">A camera for your screen recording</h2>
                    <p>Drop a recording (<code>.jsonl</code>, <code>.jsonl.gz</code>, <code>.jsonl.zst</code>) here, and its video if there is one.</p>
                    <div class="button-row">
                        <FileButton label="Choose files" accept={accept} onFiles={take} accent />
                        <button type="button" class="plain" onClick={() => void workspace.takeRecording(new Blob([sample]), "files_terminal.jsonl")}>Try the example</button>
                    </div>
                    <p class="muted">Everything is computed in this page. Nothing leaves your machine.</p>
                </section>
            </main>
        </div>
    );
}
