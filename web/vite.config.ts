// The page, as one file, and the tests of page and package.

import { fileURLToPath } from "node:url";

import { viteSingleFile } from "vite-plugin-singlefile";
import type { Plugin } from "vite";
import { defineConfig } from "vitest/config";

import { moduleInside, noticesInside, workerProgram } from "./inlined.js";

const here = (path: string) => fileURLToPath(new URL(path, import.meta.url));

// The page's source has the name that servers of a folder look for.
function named(fileName: string): Plugin {
  return {
    name: "pokermath-page-name",
    enforce: "post",
    generateBundle(_, bundle) {
      const page = bundle["index.html"];
      if (page) page.fileName = fileName;
    },
  };
}

export default defineConfig({
  root: here("page"),
  logLevel: "warn",
  plugins: [
    workerProgram(),
    moduleInside(),
    noticesInside(),
    viteSingleFile(),
    named("pokermath.html"),
  ],
  resolve: { alias: { pokermath: here("lib/src/index.ts") } },
  esbuild: { jsx: "automatic", jsxImportSource: "preact" },
  build: {
    target: "es2022",
    outDir: here("../build/web"),
    emptyOutDir: true,
  },
  test: {
    root: here("."),
    include: ["lib/**/*.test.ts", "page/**/*.test.{ts,tsx}"],
    testTimeout: 30_000,
  },
});
