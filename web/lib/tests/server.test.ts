import { WASI } from "@bjorn3/browser_wasi_shim";
import { afterEach, expect, test, vi } from "vitest";

import { Instance } from "../src/instance.js";
import { moduleBytes } from "../src/module_source.js";
import { Server } from "../src/server.js";
import { PokermathError } from "../src/types.js";

afterEach(() => vi.restoreAllMocks());

const compiled = async () => WebAssembly.compile(await moduleBytes());

test("an instance goes on after refusals, though not for ever", async () => {
  const server = new Server(await compiled());
  const instances = vi.spyOn(WASI.prototype, "initialize");
  const equity = () => {
    const { answer } = server.ask('{"players":["AhKd","15%"],"board":"2c7dTh"}', 1000);
    return /"equity":[0-9.]+/.exec(answer ?? "")?.[0];
  };
  const before = equity();
  const refusal = () => {
    try {
      return server.open('{"players":["AhKd","TT+,A"]}');
    } catch (error) {
      return error;
    }
  };
  // More than there is stack for, were it not put back.
  for (let i = 0; i < 3000; ++i) expect(refusal()).toBeInstanceOf(PokermathError);
  for (let i = 1; i < 1000; ++i) server.recover(refusal());
  expect(equity()).toBe(before);
  expect(instances).toHaveBeenCalledTimes(1);
  server.recover(refusal());
  expect(equity()).toBe(before);
  expect(instances).toHaveBeenCalledTimes(2);
});

test("a clock that stands still makes no slice long", async () => {
  const server = new Server(await compiled());
  server.open('{"players":["30%","40%"],"method":"exact","detail":["made"]}');
  let now = 0;
  vi.spyOn(Instance.prototype, "do").mockImplementation((first, last) => {
    now += (last - first) * 0.3;
  });
  vi.spyOn(performance, "now").mockImplementation(() => Math.floor(now / 16) * 16);
  server.steps(0, 1e6, 30);
  expect(now).toBeLessThan(100);
});
