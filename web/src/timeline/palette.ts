// The timeline's colours, read from the style sheet so that both themes have one home.

export interface Palette {
    ink: (name: string) => string;
    text: string;
    muted: string;
    line: string;
    band: string;
    accent: string;
    playhead: string;
    surface: string;
    font: string;
}

export function readPalette(element: Element): Palette {
    const style = getComputedStyle(element);
    const read = (name: string): string => style.getPropertyValue(name).trim();
    const known = new Map<string, string>();
    const fallback = read("--ink-other");
    return {
        ink: (name) => {
            let colour = known.get(name);
            if (colour === undefined) {
                colour = read(`--ink-${name}`) || fallback;
                known.set(name, colour);
            }
            return colour;
        },
        text: read("--text"),
        muted: read("--muted"),
        line: read("--line"),
        band: read("--band"),
        accent: read("--accent"),
        playhead: read("--playhead"),
        surface: read("--surface"),
        font: read("--font-small") || "11px sans-serif",
    };
}
