// Output sizes as people write them; the same rules as the command's --size.
import type { Size } from "../model/geometry";

/** A size that cannot be used; the message is for people. */
export class SizeError extends Error {
    constructor(message: string) {
        super(message);
        this.name = "SizeError";
    }
}

/** A fit that covers more of the recording than this leaves the camera no room to move. */
const kLargestShare = 0.75;
/** The engines' smallest side. */
const kSmallest = 64;

/** Video encoders want even sizes; rounding down keeps what fits fitting. */
function evenBelow(pixels: number): number {
    return Math.floor(pixels / 2) * 2;
}

function decimal(text: string): number | null {
    return /^\d+(\.\d+)?$/.test(text) ? Number(text) : null;
}

function fitted(aspect: number, recording: Size, engine: string): Size {
    const margin = engine === "voting" ? 1 : 0;
    let width = recording.width - margin;
    let height = width / aspect;
    if (height > recording.height - margin) {
        height = recording.height - margin;
        width = height * aspect;
    }
    if (width * height > kLargestShare * recording.width * recording.height) {
        width /= 2;
        height /= 2;
    }
    return { width: evenBelow(width), height: evenBelow(height) };
}

/** The size that "640x400", "0.5" or "9:16" means for a recording. Throws `SizeError`. */
export function resolveSize(text: string, recording: Size, engine: string): Size {
    const size = readSize(text.trim(), recording, engine);
    if (size.width < kSmallest || size.height < kSmallest) {
        throw new SizeError(`A picture of ${size.width}×${size.height} is too small; each side must have at least ${kSmallest} pixels.`);
    }
    const wider = size.width >= recording.width;
    const higher = size.height >= recording.height;
    if (engine === "voting" ? wider || higher : wider && higher) {
        throw new SizeError(
            `A picture of ${size.width}×${size.height} leaves the camera nowhere to go in a recording of ${recording.width}×${recording.height}; choose a smaller one.`,
        );
    }
    return size;
}

function readSize(text: string, recording: Size, engine: string): Size {
    const pixels = /^(\d+)[xX×](\d+)$/.exec(text);
    if (pixels) return { width: Number(pixels[1]), height: Number(pixels[2]) };
    const [across, down, ...more] = text.split(":");
    if (down !== undefined && more.length === 0) {
        const width = decimal(across ?? "");
        const height = decimal(down);
        if (width && height) return fitted(width / height, recording, engine);
        throw new SizeError(`“${text}” is no shape; write it as 9:16.`);
    }
    const scale = decimal(text);
    if (scale !== null && scale > 0 && scale < 1) {
        return { width: evenBelow(scale * recording.width), height: evenBelow(scale * recording.height) };
    }
    throw new SizeError(`“${text}” is no size; write 640x400, a shape such as 9:16 or a scale such as 0.5.`);
}
