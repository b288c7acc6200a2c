import { afterEach, expect, test, vi } from "vitest";

import { isNode } from "../src/platform.js";

afterEach(() => vi.unstubAllGlobals());

test("a page with a process of its own is no node, and a page for a module is none", async () => {
  vi.stubGlobal("process", { env: {} });
  vi.stubGlobal("fetch", async () => new Response("<!doctype html>"));
  expect(isNode()).toBe(false);
  // The tests have the page's source of the module otherwise.
  const beside = await vi.importActual<typeof import("../src/module_source.js")>(
    "../src/module_source.js?beside",
  );
  await expect(beside.moduleBytes()).rejects.toThrow(/pokermath\.wasm is no WebAssembly module/);
});
