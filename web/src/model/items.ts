// Things that the page can point at.

export type ItemKind =
    | "press"
    | "wheel"
    | "window"
    | "caret"
    | "changes"
    | "stroke"
    | "object"
    | "evidence"
    | "slice"
    | "shot"
    | "keyframe"
    | "wish";

export interface Item {
    kind: ItemKind;
    /** Into the list that the kind names; for `changes` the first of the rectangles drawn at one moment. */
    index: number;
}

export function sameItem(a: Item | null, b: Item | null): boolean {
    return a !== null && b !== null && a.kind === b.kind && a.index === b.index;
}
