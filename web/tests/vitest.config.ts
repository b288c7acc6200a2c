// Tests of the built page in a real browser; `npm run build` (or ./run web) makes the page before.

import { fileURLToPath } from "node:url";
import { defineConfig } from "vitest/config";

export default defineConfig({
  test: {
    root: fileURLToPath(new URL(".", import.meta.url)),
    include: ["*.test.ts"],
    testTimeout: 60_000,
    hookTimeout: 60_000,
    // A machine that stalls may miss a moment; what is wrong is wrong twice.
    retry: 1,
    // One browser after the other: the figures that are printed are those of one page alone.
    fileParallelism: false,
  },
});
