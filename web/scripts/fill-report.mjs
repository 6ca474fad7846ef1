// Fills the report page by hand, as the command does: for working on the page without building the command.
//   node scripts/fill-report.mjs INSPECTION.json RECORDING.jsonl OUT.html [VIDEO-NAME]
import { readFileSync, writeFileSync } from "node:fs";
import { gzipSync } from "node:zlib";

const [inspection, recording, out, video] = process.argv.slice(2);
const template = readFileSync(new URL("../dist-report/index.html", import.meta.url), "utf8");
const pack = (content) => gzipSync(content, { level: 9 }).toString("base64");
const report = {
    inspection: JSON.parse(readFileSync(inspection, "utf8")),
    source: recording,
    video: video ? { name: video, type: "video/mp4", embedded: false } : null,
};
const element = (id, content) => `<script type="application/octet-stream" id="${id}">${content}</script>`;
writeFileSync(
    out,
    template.replace(
        "<!-- orvanta-data -->",
        () => element("orvanta-report", pack(JSON.stringify(report))) + element("orvanta-recording", pack(readFileSync(recording))),
    ),
);
