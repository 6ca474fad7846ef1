// Wishes as a file: the format that the command reads with --wishes (docs/camera-path.md). Times are seconds there and
// ticks here.
import { kNoWishes, type Pin, type Stretch, type Wishes } from "../camera/wishes";

const kFormat = "orvanta-wishes";
const kVersion = 1;

/** A file that holds no wishes that can be used. */
export class WishesError extends Error {
    constructor(message: string) {
        super(message);
        this.name = "WishesError";
    }
}

interface Clock {
    timeScale: number;
    /** Ticks; stands for ends that are left out. */
    clip: Stretch;
}

/** The file, or an empty text where nothing is wished: an empty file changes nothing. */
export function writeWishes(wishes: Wishes, clock: Clock): string {
    const stretch = ({ start, stop }: Stretch): object => ({ from: start / clock.timeScale, to: stop / clock.timeScale });
    const document: Record<string, unknown> = { format: kFormat, version: kVersion };
    if (wishes.pins.length > 0) {
        document["pins"] = wishes.pins.map((pin) => ({
            ...stretch(pin), left: pin.rect.left, top: pin.rect.top, width: pin.rect.width, height: pin.rect.height,
        }));
    }
    if (wishes.whole.length > 0) document["whole"] = wishes.whole.map(stretch);
    if (wishes.keepOut.length > 0) document["keepOut"] = wishes.keepOut.map(stretch);
    if (wishes.leastZoom !== null) document["leastZoom"] = wishes.leastZoom;
    if (wishes.greatestZoom !== null) document["greatestZoom"] = wishes.greatestZoom;
    if (wishes.leastRest !== null) document["leastRest"] = wishes.leastRest / clock.timeScale;
    return `${JSON.stringify(document, null, 2)}\n`;
}

type Fields = Record<string, unknown>;

function objectOf(value: unknown, where: string): Fields {
    if (typeof value !== "object" || value === null || Array.isArray(value)) throw new WishesError(`${where} must be an object`);
    return value as Fields;
}

function refuseOthers(fields: Fields, known: readonly string[], where: string): void {
    const other = Object.keys(fields).find((name) => !known.includes(name));
    if (other !== undefined) throw new WishesError(`${where}: there is no field "${other}"; there are ${known.join(", ")}`);
}

function numberOf(fields: Fields, name: string, where: string): number {
    const value = fields[name];
    if (typeof value !== "number" || !Number.isFinite(value)) throw new WishesError(`${where}: "${name}" must be a number`);
    return value;
}

function stretchOf(fields: Fields, where: string, clock: Clock): Stretch {
    const tick = (name: string, otherwise: number): number =>
        fields[name] === undefined ? otherwise : Math.round(numberOf(fields, name, where) * clock.timeScale);
    const stretch = { start: tick("from", clock.clip.start), stop: tick("to", clock.clip.stop) };
    if (stretch.stop <= stretch.start) throw new WishesError(`${where} must end after it begins`);
    return stretch;
}

function listOf(fields: Fields, name: string): [Fields, string][] {
    const value = fields[name];
    if (value === undefined) return [];
    if (!Array.isArray(value)) throw new WishesError(`"${name}" must be a list`);
    return value.map((entry, i) => [objectOf(entry, `${name}[${i}]`), `${name}[${i}]`]);
}

function pixelsOf(fields: Fields, name: string, where: string, least: number): number {
    const value = numberOf(fields, name, where);
    if (!Number.isInteger(value) || value < least || Math.abs(value) > 2 ** 31 - 1) {
        throw new WishesError(`${where}: "${name}" must be a whole number of pixels${least > 0 ? ", at least 1" : ""}`);
    }
    return value;
}

/** Reads wishes. Throws `WishesError`. */
export function readWishes(text: string, clock: Clock): Wishes {
    if (text.trim() === "") return kNoWishes;
    let value: unknown;
    try {
        value = JSON.parse(text);
    } catch {
        throw new WishesError("this file is no JSON");
    }
    const fields = objectOf(value, "the file");
    if (fields["format"] !== kFormat) throw new WishesError(`these are no wishes; "format" must be "${kFormat}"`);
    if (fields["version"] !== kVersion) throw new WishesError(`this version of wishes is not known to this page, which reads ${kVersion}`);
    refuseOthers(fields, ["format", "version", "pins", "whole", "keepOut", "leastZoom", "greatestZoom", "leastRest"], "the file");
    const zoom = (name: string): number | null => {
        if (fields[name] === undefined) return null;
        const zoomed = numberOf(fields, name, "the file");
        if (!(zoomed > 0)) throw new WishesError(`"${name}" must be above 0`);
        return zoomed;
    };
    const stretches = (name: string): Stretch[] =>
        listOf(fields, name).map(([entry, where]) => {
            refuseOthers(entry, ["from", "to"], where);
            return stretchOf(entry, where, clock);
        });
    const wishes: Wishes = {
        pins: listOf(fields, "pins").map(([entry, where]): Pin => {
            refuseOthers(entry, ["from", "to", "left", "top", "width", "height"], where);
            return {
                ...stretchOf(entry, where, clock),
                rect: {
                    left: pixelsOf(entry, "left", where, -(2 ** 31)),
                    top: pixelsOf(entry, "top", where, -(2 ** 31)),
                    width: pixelsOf(entry, "width", where, 1),
                    height: pixelsOf(entry, "height", where, 1),
                },
            };
        }),
        whole: stretches("whole"),
        keepOut: stretches("keepOut"),
        leastZoom: zoom("leastZoom"),
        greatestZoom: zoom("greatestZoom"),
        leastRest: null,
    };
    if (wishes.leastZoom !== null && wishes.greatestZoom !== null && wishes.leastZoom > wishes.greatestZoom) {
        throw new WishesError('"leastZoom" must not be above "greatestZoom"');
    }
    if (fields["leastRest"] !== undefined) {
        const rest = Math.round(numberOf(fields, "leastRest", "the file") * clock.timeScale);
        if (rest < 0) throw new WishesError('"leastRest" must be 0 or more');
        wishes.leastRest = rest;
    }
    return wishes;
}
