// Rules for the page's code: what the type checker can tell, and nothing about style that a person would not notice.
import js from "@eslint/js";
import tseslint from "typescript-eslint";

export default tseslint.config(
    { ignores: ["dist/", "dist-report/", "node_modules/"] },
    js.configs.recommended,
    ...tseslint.configs.recommendedTypeChecked,
    {
        languageOptions: { parserOptions: { projectService: true, tsconfigRootDir: import.meta.dirname } },
        rules: {
            "@typescript-eslint/switch-exhaustiveness-check": "error",
            "@typescript-eslint/restrict-template-expressions": ["error", { allowNumber: true }],
            eqeqeq: "error",
        },
    },
    {
        files: ["public/sw.js"],
        languageOptions: { globals: { self: "readonly", caches: "readonly", fetch: "readonly" } },
    },
    {
        files: ["bench/*.mjs"],
        languageOptions: {
            globals: Object.fromEntries(["process", "performance", "document", "requestAnimationFrame", "console", "Event", "WheelEvent"].map((name) => [name, "readonly"])),
        },
    },
    { files: ["**/*.js", "**/*.mjs"], ...tseslint.configs.disableTypeChecked },
);
