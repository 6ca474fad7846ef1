// The text of a file that a person brought, whatever it is packed with.
import { decompress } from "fzstd";
import { inflate } from "../model/embedded";
import { shellWord } from "../take/pathFiles";

/** A file that holds no recording in a form that this page reads; the message tells what to do. */
export class UnreadableFile extends Error {
    constructor(message: string) {
        super(message);
        this.name = "UnreadableFile";
    }
}

/** The first bytes of a file, and what it is then. */
const kZstd = [0x28, 0xb5, 0x2f, 0xfd];
const kOthers: readonly { bytes: readonly number[]; name: string }[] = [
    { bytes: [0x50, 0x4b, 0x03, 0x04], name: "a zip archive" },
    { bytes: [0xfd, 0x37, 0x7a, 0x58, 0x5a], name: "packed with xz" },
    { bytes: [0x42, 0x5a, 0x68], name: "packed with bzip2" },
    { bytes: [0x37, 0x7a, 0xbc, 0xaf], name: "a 7z archive" },
    { bytes: [0x89, 0x50, 0x4e, 0x47], name: "a picture" },
    { bytes: [0xff, 0xd8, 0xff], name: "a picture" },
    { bytes: [0x25, 0x50, 0x44, 0x46], name: "a PDF document" },
];

function startsWith(head: Uint8Array, bytes: readonly number[]): boolean {
    return bytes.every((byte, i) => head[i] === byte);
}

/** Text of a plain, gzip or zstd file. Throws `UnreadableFile`. */
export async function textOf(blob: Blob, name: string): Promise<string> {
    const head = new Uint8Array(await blob.slice(0, 256).arrayBuffer());
    const other = kOthers.find(({ bytes }) => startsWith(head, bytes));
    if (other) throw new UnreadableFile(`${name} is ${other.name}, not a recording; a recording is JSON Lines, plain or packed with gzip or zstd`);
    let text: string;
    try {
        text = startsWith(head, kZstd) ? new TextDecoder().decode(decompress(new Uint8Array(await blob.arrayBuffer()))) : await inflate(blob);
    } catch {
        throw new UnreadableFile(`${name} cannot be unpacked: it is damaged or was cut short`);
    }
    if (isCapturedRequest(text)) {
        throw new UnreadableFile(`${name} is a captured request, which this page does not read; make a page of it with: orvanta report ${shellWord(name)} --size 640x400 -o report.html`);
    }
    return text;
}

/** A request as hosts dump it begins with three numbers: the output's width and height, and the time scale. */
function isCapturedRequest(text: string): boolean {
    return /^\d+[\s,]+\d+[\s,]+\d[\d.e+]*\s*(?:\n|$)/.test(text.slice(0, 200));
}
