// The package: one file for node and browsers, and the module beside it.

import { readFileSync } from "node:fs";
import { fileURLToPath } from "node:url";

import { defineConfig } from "vite";

import { kModuleFile, workerProgram } from "../inlined.js";

const here = (path: string) => fileURLToPath(new URL(path, import.meta.url));

export default defineConfig({
  plugins: [
    workerProgram(),
    {
      name: "module-beside",
      generateBundle() {
        const source = readFileSync(kModuleFile);
        this.emitFile({ type: "asset", fileName: "pokermath.wasm", source });
      },
    },
  ],
  build: {
    target: "es2022",
    outDir: here("dist"),
    lib: { entry: here("src/index.ts"), formats: ["es"], fileName: "index" },
  },
});
