// The table of keyframes. Arrow keys go from row to row, Enter goes to the moment.
import { useEffect, useRef } from "preact/hooks";
import type { JSX } from "preact";
import { withoutKeyframe } from "../edit/edits";
import type { Session } from "../session";
import { timeText } from "../time/format";
import { modeInk } from "../timeline/rows";

export function Keyframes({ session }: { session: Session }): JSX.Element {
    const body = useRef<HTMLTableSectionElement | null>(null);
    const keyframes = session.keyframes.value;
    const path = session.path.value;
    const selection = session.selection.value;
    const selected = selection?.kind === "keyframe" ? selection.index : -1;
    const focusable = selected >= 0 && selected < keyframes.length ? selected : 0;

    // The row of the moment on show is marked without laying out the others: a long recording has thousands.
    useEffect(() => {
        let marked: Element | null = null;
        const stop = session.current.subscribe((current) => {
            marked?.classList.remove("current");
            marked = body.current?.children[current] ?? null;
            marked?.classList.add("current");
        });
        return () => {
            stop();
            marked?.classList.remove("current");
        };
    }, [session, keyframes]);
    useEffect(() => {
        const row = body.current?.children[selected];
        // Only the table scrolls; the page stays where the person is.
        const box = row?.closest(".scroller");
        if (row instanceof HTMLElement && box instanceof HTMLElement) {
            if (row.offsetTop < box.scrollTop + 28) box.scrollTop = row.offsetTop - 28;
            else if (row.offsetTop + row.offsetHeight > box.scrollTop + box.clientHeight) box.scrollTop = row.offsetTop + row.offsetHeight - box.clientHeight;
        }
    }, [selected]);

    const choose = (index: number): void => {
        const keyframe = keyframes[index];
        if (!keyframe) return;
        session.select({ kind: "keyframe", index });
        const row = body.current?.children[index];
        if (row instanceof HTMLElement) row.focus({ preventScroll: true });
    };
    const { edits } = session;
    const { clipTicks } = session.model.stages;
    const remove = (index: number): void => {
        session.select(null);
        edits.set(withoutKeyframe(edits.value.peek(), keyframes, index, clipTicks));
    };
    const onKeyDown = (event: KeyboardEvent, index: number): void => {
        const last = keyframes.length - 1;
        const targets: Record<string, number> = { ArrowDown: Math.min(last, index + 1), ArrowUp: Math.max(0, index - 1), Home: 0, End: last };
        const target = targets[event.key];
        if (target !== undefined) choose(target);
        else if (event.key === "Delete" || event.key === "Backspace") remove(index);
        else if (event.key === "Enter" || event.key === " ") session.seek(keyframes[index]?.seconds ?? 0);
        else return;
        event.preventDefault();
        event.stopPropagation();
    };
    return (
        <section class="keyframes panel" aria-labelledby="keyframes-title">
            <h2 id="keyframes-title">Keyframes <span class="muted">{keyframes.length}</span></h2>
            {keyframes.length === 0 && <p class="muted">None: the whole recording stays on show.</p>}
            {keyframes.length > 0 && (
                <div class="scroller">
                    <table aria-describedby="keyframes-hint">
                        <thead>
                            <tr>
                                <th scope="col" class="number">#</th>
                                <th scope="col" class="number">Time</th>
                                <th scope="col" class="number">Left, top</th>
                                <th scope="col" class="number">Size</th>
                                <th scope="col" class="number">Zoom</th>
                                <th scope="col">Reason</th>
                                <th scope="col"><span class="visually-hidden">Delete</span></th>
                            </tr>
                        </thead>
                        <tbody ref={body}>
                            {keyframes.map((keyframe, i) => (
                                <tr
                                    key={`${keyframe.tick}-${i}`}
                                    tabIndex={i === focusable ? 0 : -1}
                                    aria-selected={i === selected}
                                    onClick={() => {
                                        choose(i);
                                        session.seek(keyframe.seconds);
                                    }}
                                    onKeyDown={(event) => onKeyDown(event, i)}
                                >
                                    <td class="number muted">{i + 1}</td>
                                    <td class="number">{timeText(keyframe.seconds)}</td>
                                    <td class="number">{keyframe.rect.left}, {keyframe.rect.top}</td>
                                    <td class="number">{keyframe.rect.width}×{keyframe.rect.height}</td>
                                    <td class="number">{(session.model.stages.target.width / path.frameOf(keyframe.rect).width).toFixed(2)}</td>
                                    <td><i class="swatch" style={{ background: `var(--ink-${modeInk(keyframe.reason)}, var(--ink-mode-none))` }} />{keyframe.reason ?? "–"}</td>
                                    <td class="row-action">
                                        <button
                                            type="button"
                                            class="round"
                                            tabIndex={i === focusable ? 0 : -1}
                                            aria-label={`Delete keyframe ${i + 1}`}
                                            title="Delete (Delete key)"
                                            onKeyDown={(event) => event.stopPropagation()}
                                            onClick={(event) => {
                                                event.stopPropagation();
                                                remove(i);
                                            }}
                                        >
                                            <span class="cross" aria-hidden="true" />
                                        </button>
                                    </td>
                                </tr>
                            ))}
                        </tbody>
                    </table>
                </div>
            )}
            <p id="keyframes-hint" class="hint">Arrow keys choose, Enter goes to the moment, Delete leaves a keyframe out.</p>
        </section>
    );
}
