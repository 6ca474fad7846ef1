import { describe, expect, it } from "vitest";
import { forEachRun, placeRows } from "./draw";
import { itemAt, rowAt } from "./hit";
import { spanRow, type Row } from "./rows";

const text = { id: "t", label: "T", height: 20, title: "", group: "streams" } as const;
/** Ten pixels a second. */
const scale = { start: 0, perPixel: 0.1, width: 1000 };

function spans(list: [number, number][]): Row & { kind: "spans" } {
    return spanRow(text, "object", list.map(([start, stop]) => ({ start, stop })), { ink: () => "x" });
}

describe("hits on spans", () => {
    it("finds the span under the pointer, the shortest where several are", () => {
        const row = spans([[0, 50], [10, 12], [11, 30]]);
        expect(itemAt(row, scale, 105)).toEqual({ kind: "object", index: 1 });
        expect(itemAt(row, scale, 200)).toEqual({ kind: "object", index: 2 });
        expect(itemAt(row, scale, 400)).toEqual({ kind: "object", index: 0 });
    });
    it("finds a span that began long before others that are over", () => {
        const row = spans([[0, 90], [1, 2], [3, 4], [5, 6]]);
        expect(itemAt(row, scale, 800)).toEqual({ kind: "object", index: 0 });
    });
    it("reaches five pixels far, and no further", () => {
        const row = spans([[10, 20]]);
        expect(itemAt(row, scale, 95)).not.toBeNull();
        expect(itemAt(row, scale, 94)).toBeNull();
        expect(itemAt(row, scale, 205)).not.toBeNull();
        expect(itemAt(row, scale, 206)).toBeNull();
    });
    it("names the item's own index whatever the order by time", () => {
        const row = spans([[50, 60], [10, 20]]);
        expect(itemAt(row, scale, 550)).toEqual({ kind: "object", index: 0 });
        expect(itemAt(row, scale, 150)).toEqual({ kind: "object", index: 1 });
    });
});

describe("hits on events", () => {
    const row: Row = { kind: "events", item: "wheel", time: Float64Array.of(1, 1.2, 9), index: Int32Array.of(0, 1, 2), ink: () => "x", mark: "dot", ...text };
    it("takes the nearest within reach", () => {
        expect(itemAt(row, scale, 10.8)).toEqual({ kind: "wheel", index: 0 });
        expect(itemAt(row, scale, 11.2)).toEqual({ kind: "wheel", index: 1 });
        expect(itemAt(row, scale, 50)).toBeNull();
    });
});

describe("rows", () => {
    it("stand below each other, and are found by height", () => {
        const { placed, height } = placeRows([spans([]), spans([])]);
        const [first, second] = placed;
        if (!first || !second) throw new Error("two rows");
        expect(second.top).toBeGreaterThan(first.bottom);
        expect(height).toBeGreaterThan(second.bottom);
        expect(rowAt(placed, first.top + 3)).toBe(first.row);
        expect(rowAt(placed, 2)).toBeNull();
    });
    it("draw no more blocks than there are pixels for, and leave out nothing", () => {
        const many = Array.from({ length: 20_000 }, (_, i): [number, number] => [i * 0.005, i * 0.005 + 0.002]);
        let blocks = 0;
        let counted = 0;
        forEachRun(spans(many), scale, (from, to, _i, count) => {
            ++blocks;
            counted += count;
            expect(to).toBeGreaterThan(from);
        });
        expect(counted).toBe(20_000);
        expect(blocks).toBeLessThanOrEqual(1000);
    });
    it("visit only what is seen", () => {
        const many = Array.from({ length: 1000 }, (_, i): [number, number] => [i * 10, i * 10 + 5]);
        const seen: number[] = [];
        forEachRun(spans(many), { start: 500, perPixel: 0.1, width: 300 }, (_from, _to, i) => seen.push(i));
        expect(seen).toEqual([50, 51, 52, 53]);
    });
});
