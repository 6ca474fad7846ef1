// Reads what the command wrote into the page: a report (JSON), the recording (JSON Lines) and perhaps the video.
import { kEasings, type EasingName } from "../camera/easing";
import type { Model, VideoSource } from "../session";
import { readRecording } from "./readRecording";
import { readStages, type Inspection } from "./stages";

/** What the command says beside the recording. */
interface Report {
    inspection: Inspection;
    /** File that the recording was read from. */
    source: string;
    easing?: string;
    video?: { name: string; type: string; embedded: boolean } | null;
}

export const kReportElement = "orvanta-report";
export const kRecordingElement = "orvanta-recording";
export const kVideoElement = "orvanta-video";

function bytesOf(id: string): Uint8Array<ArrayBuffer> | null {
    const text = document.getElementById(id)?.textContent.trim();
    if (!text) return null;
    const binary = atob(text);
    const bytes = new Uint8Array(binary.length);
    for (let i = 0; i < binary.length; ++i) bytes[i] = binary.charCodeAt(i);
    return bytes;
}

/** Text that may be gzip. */
export async function inflate(blob: Blob): Promise<string> {
    const head = new Uint8Array(await blob.slice(0, 2).arrayBuffer());
    if (head[0] !== 0x1f || head[1] !== 0x8b) return blob.text();
    return new Response(blob.stream().pipeThrough(new DecompressionStream("gzip"))).text();
}

export function hasReport(): boolean {
    return (document.getElementById(kReportElement)?.textContent.trim() ?? "") !== "";
}

/** The model and the video of a report. Throws `Error` when the page is damaged. */
export async function readEmbedded(): Promise<{ model: Model; video: VideoSource | null }> {
    const reportBytes = bytesOf(kReportElement);
    const recordingBytes = bytesOf(kRecordingElement);
    if (!reportBytes || !recordingBytes) throw new Error("This page holds no recording: it was cut short.");
    const report = JSON.parse(await inflate(new Blob([reportBytes]))) as Report;
    const text = await inflate(new Blob([recordingBytes]));
    const name = report.source.split(/[\\/]/).pop() ?? report.source;
    const model: Model = {
        recording: readRecording(text, name),
        stages: readStages(report.inspection),
        source: report.source,
        easing: report.easing && report.easing in kEasings ? (report.easing as EasingName) : "ease-in-out",
    };
    let video: VideoSource | null = null;
    if (report.video?.embedded) {
        const bytes = bytesOf(kVideoElement);
        if (bytes) {
            const blob = new Blob([bytes], { type: report.video.type });
            video = { url: URL.createObjectURL(blob), name: report.video.name, blob };
            document.getElementById(kVideoElement)?.remove();
        }
    } else if (report.video) {
        const url = report.video.name.split("/").map(encodeURIComponent).join("/");
        video = { url, name: report.video.name, blob: null };
    }
    return { model, video };
}
