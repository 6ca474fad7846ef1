// One bundle, two pages: `report` is the file that the command fills with a recording, `site` is the static page with
// the engines in it. Both come out as one HTML file without any address in it, and with a policy that lets none in.
import { createHash } from "node:crypto";
import { existsSync } from "node:fs";
import { fileURLToPath } from "node:url";
import type { Plugin } from "vite";
import { viteSingleFile } from "vite-plugin-singlefile";
import { defineConfig } from "vitest/config";

/** Names everything that the page may load: its own script by its hash, and what it makes itself. */
function contentPolicy(mode: string): Plugin {
    return {
        name: "content-policy",
        enforce: "post",
        generateBundle: {
            order: "post",
            handler(_options, bundle) {
                for (const file of Object.values(bundle)) {
                    // What the engines would import under Node.js has no place here.
                    if (file.fileName.startsWith("__vite-browser-external")) delete bundle[file.fileName];
                    if (file.type !== "asset" || !file.fileName.endsWith(".html")) continue;
                    const html = String(file.source);
                    const hashes = [...html.matchAll(/<script type="module"[^>]*>([\s\S]*?)<\/script>/g)].map(
                        (match) => `'sha256-${createHash("sha256").update(match[1] ?? "").digest("base64")}'`,
                    );
                    const site = mode === "site";
                    const policy = [
                        "default-src 'none'",
                        `script-src ${hashes.join(" ")}${site ? " 'wasm-unsafe-eval'" : ""}`,
                        "style-src 'unsafe-inline'",
                        "img-src data: blob:",
                        // A report's video lies beside it.
                        `media-src blob:${site ? "" : " 'self' file:"}`,
                        site ? "worker-src 'self' blob:" : "worker-src blob:",
                        "connect-src 'none'",
                        "base-uri 'none'",
                        "form-action 'none'",
                    ].join("; ");
                    file.source = html.replace("<!-- content-policy -->", () => `<meta http-equiv="Content-Security-Policy" content="${policy}" />`);
                }
            },
        },
    };
}

export default defineConfig(({ mode }) => {
    const engine = process.env["ORVANTA_ENGINE"] ?? fileURLToPath(new URL("../bindings/js/dist/orvanta.js", import.meta.url));
    if (mode === "site" && !existsSync(engine)) {
        throw new Error(`the static page needs the engines' module, and there is none at ${engine}; build bindings/js first, or name it with ORVANTA_ENGINE`);
    }
    return {
        plugins: [viteSingleFile({ removeViteModuleLoader: true }), contentPolicy(mode)],
        resolve: { alias: { "orvanta-engine": engine } },
        publicDir: mode === "report" ? false : "public",
        // A bare system may know no localhost.
        server: { host: "127.0.0.1" },
        // The engines' module would load what only Node.js has; nothing of it may become a file of its own.
        worker: { format: "iife", rollupOptions: { output: { inlineDynamicImports: true } } },
        build: {
            outDir: mode === "report" ? "dist-report" : "dist",
            target: "es2022",
            modulePreload: false,
            chunkSizeWarningLimit: 2000,
            reportCompressedSize: false,
        },
        // Laws over many cases take longer on a machine that does other things too.
        test: { include: ["src/**/*.test.ts"], testTimeout: 60_000 },
    };
});
