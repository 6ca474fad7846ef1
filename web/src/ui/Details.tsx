// What is known of the thing that was clicked, with links to what it was made from and what came of it.
import type { JSX } from "preact";
import { describe, type LinkGroup } from "../explain/describe";
import type { Session } from "../session";
import { Icon } from "./icons";

function Links({ session, groups, title }: { session: Session; groups: readonly LinkGroup[]; title: string }): JSX.Element | null {
    const present = groups.filter((group) => group.links.length > 0);
    if (present.length === 0) return null;
    return (
        <div class="links">
            <h3>{title}</h3>
            {present.map((group) => (
                <div key={group.title}>
                    <h4>{group.title} <span class="muted">{group.links.length + group.more}</span></h4>
                    <ul>
                        {group.links.map((link) => (
                            <li key={`${link.item.kind}-${link.item.index}`}>
                                <button type="button" class="chip" onClick={() => session.select(link.item)}>{link.text}</button>
                            </li>
                        ))}
                        {group.more > 0 && <li class="muted">and {group.more} more</li>}
                    </ul>
                </div>
            ))}
        </div>
    );
}

export function Details({ session }: { session: Session }): JSX.Element {
    const selection = session.selection.value;
    const details = selection ? describe(session, selection) : null;
    return (
        <section class="details panel" aria-labelledby="details-title" aria-live="polite">
            {!details && (
                <>
                    <h2 id="details-title">Details</h2>
                    <p class="muted">Click anything on the timeline to see what it is, what it was made from and what came of it.</p>
                </>
            )}
            {details && (
                <>
                    <div class="title-row">
                        <h2 id="details-title">{details.title}</h2>
                        <button type="button" class="small" onClick={() => session.seek(details.start)}>Go there</button>
                        <button type="button" class="round" aria-label="Close details" onClick={() => session.select(null)}><Icon name="cross" /></button>
                    </div>
                    <dl>
                        {details.fields.map(([name, value], i) => (
                            <div key={`${name}${i}`}><dt>{name}</dt><dd>{value}</dd></div>
                        ))}
                    </dl>
                    <Links session={session} groups={details.from} title="Made from" />
                    <Links session={session} groups={details.became} title="What came of it" />
                </>
            )}
        </section>
    );
}
