// Light or dark: as the system has it, until a person chooses.
import { effect, signal } from "@preact/signals";

export type Theme = "light" | "dark";

const kKey = "orvanta-theme";
const system = window.matchMedia("(prefers-color-scheme: dark)");

function stored(): Theme | null {
    try {
        const value = localStorage.getItem(kKey);
        return value === "light" || value === "dark" ? value : null;
    } catch {
        return null; // No storage for pages from files, in some browsers.
    }
}

const systemTheme = signal<Theme>(system.matches ? "dark" : "light");
const chosen = signal<Theme | null>(stored());

/** Changes with everything that the colours depend on. */
export const appearance = signal<Theme>("light");

system.addEventListener("change", () => {
    systemTheme.value = system.matches ? "dark" : "light";
});

effect(() => {
    const theme = chosen.value ?? systemTheme.value;
    document.documentElement.dataset["theme"] = theme;
    appearance.value = theme;
});

/** A value that is read from the style sheet once for each theme: asking for computed styles at every drawing is slow. */
export function byTheme<T>(read: () => T): () => T {
    const known = new Map<Theme, T>();
    return () => {
        const theme = appearance.value;
        let value = known.get(theme);
        if (value === undefined) {
            value = read();
            known.set(theme, value);
        }
        return value;
    };
}

export function toggleTheme(): void {
    const theme = appearance.value === "dark" ? "light" : "dark";
    chosen.value = theme === systemTheme.value ? null : theme;
    try {
        if (chosen.value) localStorage.setItem(kKey, chosen.value);
        else localStorage.removeItem(kKey);
    } catch {
        // The choice then lasts as long as the page.
    }
}
