// What a person wants otherwise: the list of wishes, ways to add some, undo and redo, the file.
import { useComputed, useSignal } from "@preact/signals";
import { useRef } from "preact/hooks";
import type { JSX } from "preact";
import { isEmptyWishes, kNoWishes, type Wishes } from "../camera/wishes";
import { holdOf, wishList, withKeepOut, withPin, withWhole, withoutWish, type WishRef } from "../edit/edits";
import { readWishes, writeWishes, WishesError } from "../edit/wishesFile";
import { rectText } from "../model/geometry";
import type { Session } from "../session";
import { parseTime, timeText } from "../time/format";
import { saveText } from "../take/save";
import { Icon } from "./icons";

const kKindNames: Readonly<Record<WishRef["kind"], string>> = { pin: "Pinned", whole: "Whole screen", "keep-out": "No move" };

/** A field for a limit; empty means none. */
function Limit({ label, value, unit, onSet }: { label: string; value: number | null; unit: string; onSet: (value: number | null) => void }): JSX.Element {
    return (
        <label class="limit">
            <span>{label}</span>
            <input
                type="number"
                min={0}
                step="any"
                inputMode="decimal"
                value={value ?? ""}
                placeholder="any"
                onChange={(event) => {
                    const number = Number(event.currentTarget.value);
                    onSet(event.currentTarget.value === "" || !(number >= 0) ? null : number);
                }}
            />
            <span class="muted">{unit}</span>
        </label>
    );
}

export function Edits({ session }: { session: Session }): JSX.Element {
    const { stages, recording } = session.model;
    const scale = recording.timeScale;
    const wishes = session.edits.value.value;
    const error = useSignal<string | null>(null);
    const from = useSignal("");
    const to = useSignal("");
    const file = useRef<HTMLInputElement>(null);
    const hold = useComputed(() => holdOf(session.keyframes.value, session.current.value, stages.clipTicks));

    const change = (next: Wishes): void => {
        error.value = null;
        session.edits.set(next);
    };
    /** The stretch that the fields name; what is left empty is the stretch around the moment on show. */
    const stretch = (): { start: number; stop: number } | null => {
        const read = (text: string, otherwise: number): number | null => {
            if (text.trim() === "") return otherwise;
            const seconds = parseTime(text);
            return seconds === null ? null : Math.round(seconds * scale);
        };
        const start = read(from.value, hold.value.start);
        const stop = read(to.value, hold.value.stop);
        if (start === null || stop === null) error.value = "Times are seconds or minutes and seconds, such as 75.5 or 1:15.5.";
        else if (stop <= start) error.value = "The stretch must end after it begins.";
        else return { start, stop };
        return null;
    };
    const add = (make: (stretch: { start: number; stop: number }) => Wishes): void => {
        const found = stretch();
        if (!found) return;
        change(make(found));
        from.value = "";
        to.value = "";
    };
    const pinNow = (): void => {
        const frame = session.path.value.frameAt(session.time.value);
        const rect = { left: Math.round(frame.left), top: Math.round(frame.top), width: Math.round(frame.width), height: Math.round(frame.height) };
        add((found) => withPin(wishes, { ...found, rect }));
    };
    const load = async (chosen: File): Promise<void> => {
        try {
            change(readWishes(await chosen.text(), session.clock));
        } catch (problem) {
            error.value = problem instanceof WishesError ? `${chosen.name}: ${problem.message}.` : String(problem);
        }
    };
    const seconds = (ticks: number): string => timeText(ticks / scale, 2);
    const limit = (name: "leastZoom" | "greatestZoom", value: number | null): void => {
        const next = { ...wishes, [name]: value === 0 ? null : value };
        if (next.leastZoom !== null && next.greatestZoom !== null && next.leastZoom > next.greatestZoom) {
            error.value = "The least zoom must not be above the greatest.";
            return;
        }
        change(next);
    };
    return (
        <section class="edits panel" aria-labelledby="edits-title">
            <div class="title-row">
                <h2 id="edits-title">Changes</h2>
                <span class="spacer" />
                <button type="button" class="round" aria-label="Undo" title="Undo (Ctrl+Z)" disabled={!session.edits.canUndo.value} onClick={() => session.edits.undo()}><Icon name="undo" /></button>
                <button type="button" class="round" aria-label="Redo" title="Redo (Ctrl+Shift+Z)" disabled={!session.edits.canRedo.value} onClick={() => session.edits.redo()}><Icon name="redo" /></button>
            </div>
            <p class="hint">
                Drag the frame on the screen, or its corners; drag a keyframe along the timeline; delete it with the Delete key.
            </p>
            <div class="add-wish" role="group" aria-label="Ask for something in a stretch">
                <label>
                    <span>From</span>
                    <input type="text" value={from.value} placeholder={seconds(hold.value.start)} onInput={(event) => (from.value = event.currentTarget.value)} />
                </label>
                <label>
                    <span>To</span>
                    <input type="text" value={to.value} placeholder={seconds(hold.value.stop)} onInput={(event) => (to.value = event.currentTarget.value)} />
                </label>
                <button type="button" class="small" onClick={pinNow}>Pin this frame</button>
                <button type="button" class="small" onClick={() => add((found) => withWhole(wishes, found))}>Whole screen</button>
                <button type="button" class="small" onClick={() => add((found) => withKeepOut(wishes, found))}>No move</button>
            </div>
            {error.value && <p class="problem" role="alert">{error.value}</p>}
            {wishList(wishes).length > 0 && (
                <ul class="wishes">
                    {wishList(wishes).map((wish) => (
                        <li key={`${wish.kind}-${wish.index}`}>
                            <button type="button" class="link" onClick={() => session.seek(wish.start / scale)}>
                                {kKindNames[wish.kind]} {seconds(wish.start)} – {seconds(wish.stop)}
                            </button>
                            <span class="muted">{wish.rect ? rectText(wish.rect) : ""}</span>
                            <button type="button" class="round" aria-label={`Take back: ${kKindNames[wish.kind]} ${seconds(wish.start)}`} onClick={() => change(withoutWish(wishes, wish))}><Icon name="cross" /></button>
                        </li>
                    ))}
                </ul>
            )}
            <div class="limits" role="group" aria-label="Limits">
                <Limit label="Zoom at least" unit="×" value={wishes.leastZoom} onSet={(value) => limit("leastZoom", value)} />
                <Limit label="Zoom at most" unit="×" value={wishes.greatestZoom} onSet={(value) => limit("greatestZoom", value)} />
                <Limit label="Rest between moves" unit="s" value={wishes.leastRest === null ? null : wishes.leastRest / scale} onSet={(value) => change({ ...wishes, leastRest: value === null ? null : Math.round(value * scale) })} />
            </div>
            <div class="button-row">
                <button type="button" class="small" onClick={() => saveText(`${recording.name.replace(/\.jsonl(\.gz)?$/, "")}.wishes.json`, writeWishes(wishes, session.clock), "application/json")}>Save changes</button>
                <button type="button" class="small" onClick={() => file.current?.click()}>Open changes</button>
                <button type="button" class="small" disabled={isEmptyWishes(wishes)} onClick={() => change(kNoWishes)}>Take all back</button>
                <input
                    ref={file}
                    class="visually-hidden"
                    type="file"
                    accept=".json,application/json"
                    aria-label="File with changes"
                    tabIndex={-1}
                    onChange={(event) => {
                        const chosen = event.currentTarget.files?.[0];
                        event.currentTarget.value = "";
                        if (chosen) void load(chosen);
                    }}
                />
            </div>
        </section>
    );
}
