// A canvas as large as its place on the page, sharp on every screen, drawn again when what it reads has changed.
import { effect } from "@preact/signals";
import type { RefObject } from "preact";
import { useEffect, useRef } from "preact/hooks";
import { appearance } from "./theme";

export interface CanvasSize {
    width: number;
    height: number;
}

/**
 * Calls `draw` at once, on every change of a signal that it reads, of the canvas's size and of the theme; at most once a
 * display frame; and when one of `inputs`, values that it closes over, is another than before. The context is scaled so that `draw` counts in CSS pixels.
 */
export function useDrawing(draw: (ctx: CanvasRenderingContext2D, size: CanvasSize) => void, inputs: readonly unknown[] = []): RefObject<HTMLCanvasElement | null> {
    const canvas = useRef<HTMLCanvasElement>(null);
    const latest = useRef(draw);
    latest.current = draw;
    useEffect(() => {
        const element = canvas.current;
        const ctx = element?.getContext("2d");
        if (!element || !ctx) return;
        let frame = 0;
        let size: CanvasSize = { width: 0, height: 0 };
        let dispose: (() => void) | null = null;
        const paint = (): void => {
            frame = 0;
            dispose?.();
            const ratio = window.devicePixelRatio || 1;
            const { width, height } = size;
            if (width === 0 || height === 0) return;
            if (element.width !== Math.round(width * ratio) || element.height !== Math.round(height * ratio)) {
                element.width = Math.round(width * ratio);
                element.height = Math.round(height * ratio);
            }
            let first = true;
            dispose = effect(() => {
                // The first run draws and learns what the drawing reads; any change of that asks for the next frame.
                if (first) {
                    first = false;
                    void appearance.value;
                    ctx.setTransform(ratio, 0, 0, ratio, 0, 0);
                    latest.current(ctx, { width, height });
                } else {
                    request();
                }
            });
        };
        const request = (): void => {
            if (frame === 0) frame = requestAnimationFrame(paint);
        };
        // Told by the browser when it has laid the page out; asking here would make it do so at every drawing.
        const observer = new ResizeObserver(([entry]) => {
            if (entry) size = { width: entry.contentRect.width, height: entry.contentRect.height };
            request();
        });
        observer.observe(element);
        element.addEventListener("redraw", request);
        return () => {
            observer.disconnect();
            element.removeEventListener("redraw", request);
            cancelAnimationFrame(frame);
            dispose?.();
        };
    }, []);
    // What the drawing takes from outside signals is a change too.
    useEffect(() => {
        canvas.current?.dispatchEvent(new Event("redraw"));
    }, inputs);
    return canvas;
}
