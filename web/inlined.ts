// What is put into the bundles as text: the program of the workers, and for the page the module.

import { readFileSync } from "node:fs";
import { gzipSync } from "node:zlib";
import { fileURLToPath } from "node:url";

import { build, type Plugin, type Rollup } from "vite";

const here = (path: string) => fileURLToPath(new URL(path, import.meta.url));

/** The WebAssembly module that the build of the library made. */
export const kModuleFile = process.env["POKERMATH_WASM"] ?? here("../build/wasm/pokermath.wasm");

const kShimLicense = here("node_modules/@bjorn3/browser_wasi_shim/LICENSE-MIT");

async function bundleWorker(): Promise<string> {
  const outputs = (await build({
    configFile: false,
    logLevel: "warn",
    build: {
      write: false,
      target: "es2022",
      lib: { entry: here("lib/src/worker.ts"), formats: ["iife"], name: "pokermathWorker" },
    },
  })) as Rollup.RollupOutput[];
  const code = outputs[0]?.output[0].code ?? "";
  // What it has from others keeps their licence.
  return `/*\n${readFileSync(kShimLicense, "utf8")}*/\n${code}`;
}

/** `import program from "virtual:worker-program"`: a classic script. */
export function workerProgram(): Plugin {
  const name = "virtual:worker-program";
  return {
    name: "pokermath-worker-program",
    resolveId: (id) => (id === name ? `\0${name}` : undefined),
    async load(id) {
      if (id !== `\0${name}`) return undefined;
      return `export default ${JSON.stringify(await bundleWorker())};`;
    },
  };
}

/** What is asked to go with all that is in the page and in the module. */
export const kNoticesFile = here("../docs/licences.md");

/** Puts the notices of those whose work is in the page into it. */
export function noticesInside(): Plugin {
  const [, notices] = readFileSync(kNoticesFile, "utf8").split("\n## Notices\n");
  if (!notices || notices.includes("--" + ">")) throw new Error(`${kNoticesFile}: no notices`);
  return {
    name: "pokermath-notices-inside",
    transformIndexHtml: (page) => page.replace("</head>", () => `<!--${notices}-->\n</head>`),
  };
}

/** Puts the module itself, packed, in the place of lib/src/module_source.ts. */
export function moduleInside(): Plugin {
  const replaced = here("lib/src/module_source.ts");
  return {
    name: "pokermath-module-inside",
    enforce: "pre",
    load(id) {
      if (id !== replaced) return undefined;
      this.addWatchFile(kModuleFile);
      const packed = gzipSync(readFileSync(kModuleFile), { level: 9 }).toString("base64");
      return `import { unpack } from "./unpack.js";
        export const moduleBytes = () => unpack(${JSON.stringify(packed)});`;
    },
  };
}
