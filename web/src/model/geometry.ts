// Rectangles as the page handles them: recording pixels, (0, 0) at the top left of the first recorded region.

export interface Rect {
    left: number;
    top: number;
    width: number;
    height: number;
}

export interface Point {
    x: number;
    y: number;
}

export interface Size {
    width: number;
    height: number;
}

/** An edge-to-edge rectangle, as the engine's stages have it. */
export interface Edges {
    left: number;
    top: number;
    right: number;
    bottom: number;
}

export function fromEdges(edges: Edges): Rect {
    return { left: edges.left, top: edges.top, width: edges.right - edges.left, height: edges.bottom - edges.top };
}

export function isEmpty(rect: Rect): boolean {
    return rect.width <= 0 || rect.height <= 0;
}

export function area(rect: Rect): number {
    return isEmpty(rect) ? 0 : rect.width * rect.height;
}

export function right(rect: Rect): number {
    return rect.left + rect.width;
}

export function bottom(rect: Rect): number {
    return rect.top + rect.height;
}

/** Left and top edge belong to a rectangle, right and bottom do not. */
export function holdsPoint(rect: Rect, point: Point): boolean {
    return point.x >= rect.left && point.x < right(rect) && point.y >= rect.top && point.y < bottom(rect);
}

export function intersection(a: Rect, b: Rect): Rect {
    const left = Math.max(a.left, b.left);
    const top = Math.max(a.top, b.top);
    return {
        left,
        top,
        width: Math.max(0, Math.min(right(a), right(b)) - left),
        height: Math.max(0, Math.min(bottom(a), bottom(b)) - top),
    };
}

export function sameRect(a: Rect, b: Rect): boolean {
    return a.left === b.left && a.top === b.top && a.width === b.width && a.height === b.height;
}

/** "340x220 at 120, 40" */
export function rectText(rect: Rect): string {
    return `${Math.round(rect.width)}\u00d7${Math.round(rect.height)} at ${Math.round(rect.left)}, ${Math.round(rect.top)}`;
}

/** "340x220" */
export function sizeText(size: Size): string {
    return `${Math.round(size.width)}\u00d7${Math.round(size.height)}`;
}
