// Tests of the built page in a real browser: npm run test:e2e.
import { defineConfig } from "vitest/config";

export default defineConfig({
    test: { include: ["e2e/**/*.test.ts"], testTimeout: 90_000, hookTimeout: 60_000, fileParallelism: false },
});
