// The package: one file for node and browsers, and beside it the module and the
// notices of those whose work is in it.

import { readFileSync } from "node:fs";
import { fileURLToPath } from "node:url";

import { createLogger, defineConfig } from "vite";

import { kModuleFile, kNoticesFile, workerProgram } from "../inlined.js";

const here = (path: string) => fileURLToPath(new URL(path, import.meta.url));

// The module is beside the built file, not beside its source.
const customLogger = createLogger("warn");
const { warnOnce } = customLogger;
customLogger.warnOnce = (message, options) => {
  if (!message.includes("pokermath.wasm")) warnOnce(message, options);
};

export default defineConfig({
  customLogger,
  plugins: [
    workerProgram(),
    {
      name: "module-beside",
      generateBundle() {
        const source = readFileSync(kModuleFile);
        this.emitFile({ type: "asset", fileName: "pokermath.wasm", source });
        const notices = readFileSync(kNoticesFile);
        this.emitFile({ type: "asset", fileName: "licences.md", source: notices });
      },
    },
  ],
  build: {
    target: "es2022",
    outDir: here("dist"),
    lib: { entry: here("src/index.ts"), formats: ["es"], fileName: "index" },
  },
});
