// One bundle, two pages: `report` is the file that the command fills with a recording, `site` is the static page with
// the engine beside it. Both come out as one HTML file without any address in it.
import preact from "@preact/preset-vite";
import { defineConfig } from "vitest/config";
import { viteSingleFile } from "vite-plugin-singlefile";

export default defineConfig(({ mode }) => ({
    plugins: [preact({ devToolsEnabled: false }), viteSingleFile({ removeViteModuleLoader: true })],
    build: {
        outDir: mode === "report" ? "dist-report" : "dist",
        target: "es2022",
        modulePreload: false,
        chunkSizeWarningLimit: 1000,
        reportCompressedSize: false,
    },
    test: { include: ["src/**/*.test.ts"] },
}));
