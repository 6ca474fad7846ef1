// Wishes of a recording, kept by the browser until the next visit.
import type { Wishes } from "../camera/wishes";
import { isEmptyWishes } from "../camera/wishes";
import type { Recording } from "../model/recording";
import { readWishes, writeWishes } from "./wishesFile";

/** Recordings are told apart by name, length and what they hold, so that another take of the same name starts anew. */
export function storageKey(recording: Recording): string {
    const counts = [recording.stopTick, recording.cursor.time.length, recording.dirty.time.length, recording.presses.length];
    return `orvanta-wishes:${recording.name}:${counts.join(":")}`;
}

interface Clock {
    timeScale: number;
    clip: { start: number; stop: number };
}

export function storedWishes(recording: Recording, clock: Clock): Wishes | null {
    try {
        const text = localStorage.getItem(storageKey(recording));
        return text === null ? null : readWishes(text, clock);
    } catch {
        return null; // No storage, or from another version: the page begins without wishes.
    }
}

export function storeWishes(recording: Recording, clock: Clock, wishes: Wishes): void {
    try {
        if (isEmptyWishes(wishes)) localStorage.removeItem(storageKey(recording));
        else localStorage.setItem(storageKey(recording), writeWishes(wishes, clock));
    } catch {
        // The wishes then last as long as the page; the file can be saved all the same.
    }
}
