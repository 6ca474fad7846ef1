// How a move of the camera spreads over its time: a cubic Bézier from (0, 0) to (1, 1), as in CSS.

export interface Easing {
    x1: number;
    y1: number;
    x2: number;
    y2: number;
}

export const kEasings = {
    "ease-in-out": { x1: 0.42, y1: 0, x2: 0.58, y2: 1 },
    linear: { x1: 0, y1: 0, x2: 1, y2: 1 },
    "ease-out": { x1: 0, y1: 0, x2: 0.58, y2: 1 },
    smooth: { x1: 0.65, y1: 0, x2: 0.35, y2: 1 },
} as const satisfies Record<string, Easing>;

export type EasingName = keyof typeof kEasings;

export const kDefaultEasing: Easing = kEasings["ease-in-out"];

/** The name of the preset with these control points; null when there is none. */
export function easingName(easing: Easing): EasingName | null {
    for (const [name, preset] of Object.entries(kEasings)) {
        if (preset.x1 === easing.x1 && preset.y1 === easing.y1 && preset.x2 === easing.x2 && preset.y2 === easing.y2) {
            return name as EasingName;
        }
    }
    return null;
}

/** Each step halves the stretch in which the curve's parameter lies; after these the halves are no longer apart. */
const kBisections = 54;

function bezier(first: number, second: number, s: number): number {
    const rest = 1 - s;
    return 3 * rest * rest * s * first + 3 * rest * s * s * second + s * s * s;
}

/** The share of the way that is done when the share `x` of the time has passed. */
export function ease(easing: Easing, x: number): number {
    if (!(x > 0)) return 0;
    if (x >= 1) return 1;
    if (easing.x1 === easing.y1 && easing.x2 === easing.y2) return x;
    let low = 0;
    let high = 1;
    for (let i = 0; i < kBisections; ++i) {
        const middle = low + (high - low) / 2;
        if (bezier(easing.x1, easing.x2, middle) < x) low = middle;
        else high = middle;
    }
    return bezier(easing.y1, easing.y2, high);
}
