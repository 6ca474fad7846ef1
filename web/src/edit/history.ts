// Undo and redo over values that are never changed in place.
import { computed, signal, type ReadonlySignal, type Signal } from "@preact/signals";

/** More steps than a person goes back. */
const kMostSteps = 200;

export class History<T> {
    private readonly past: Signal<readonly T[]> = signal([]);
    private readonly future: Signal<readonly T[]> = signal([]);
    private readonly present: Signal<T>;
    readonly value: ReadonlySignal<T>;
    readonly canUndo = computed(() => this.past.value.length > 0);
    readonly canRedo = computed(() => this.future.value.length > 0);

    constructor(first: T) {
        this.present = signal(first);
        this.value = computed(() => this.present.value);
    }

    /** A new value; what was undone is gone. */
    set(value: T): void {
        if (value === this.present.value) return;
        this.past.value = [...this.past.value, this.present.value].slice(-kMostSteps);
        this.future.value = [];
        this.present.value = value;
    }

    undo(): void {
        const last = this.past.value[this.past.value.length - 1];
        if (last === undefined) return;
        this.past.value = this.past.value.slice(0, -1);
        this.future.value = [this.present.value, ...this.future.value];
        this.present.value = last;
    }

    redo(): void {
        const next = this.future.value[0];
        if (next === undefined) return;
        this.future.value = this.future.value.slice(1);
        this.past.value = [...this.past.value, this.present.value];
        this.present.value = next;
    }
}
