import { afterAll, beforeEach, describe, expect, test, vi } from "vitest";

import { Calculator, PokermathError, type Progress, type Question } from "../src/index.js";
import { Instance } from "../src/instance.js";
import { moduleBytes } from "../src/module_source.js";
import type { Platform } from "../src/platform.js";

// What each worker that was started was asked to do.
const workers = vi.hoisted((): string[][] => []);
// Those whose replies never come, as if a step of theirs took for ever.
const deaf = vi.hoisted(() => new Set<string[]>());
// How many replies have come.
const replies = vi.hoisted(() => ({ count: 0 }));

vi.mock("../src/platform.js", async (original) => {
  const real = await original<typeof import("../src/platform.js")>();
  const platform = async (): Promise<Platform> => {
    const found = await real.platform();
    const start: Platform["start"] = (onReply, onFailure) => {
      const calls: string[] = [];
      workers.push(calls);
      const hear: typeof onReply = (reply) => {
        ++replies.count;
        if (!deaf.has(calls)) onReply(reply);
      };
      const port = found.start(hear, onFailure);
      const post: typeof port.post = (message, transfer) => {
        if ("name" in message) calls.push(message.name);
        port.post(message, transfer);
      };
      return { ...port, post };
    };
    return { ...found, start };
  };
  return { ...real, platform };
});

const kShort: Question = { players: ["AhKd", "QcJs"], board: "2c7dTh" };
const kSampled: Question = { players: ["AhKd", "15%", "random"], method: "sampled" };
// Ten minutes.
const kEndless: Question = { players: ["30%", "40%"], method: "exact", detail: ["made"] };

const one = new Calculator({ threads: 1 });
const three = new Calculator({ threads: 3 });
afterAll(() => [one, three].forEach((calculator) => calculator.close()));
beforeEach(() => workers.forEach((calls) => (calls.length = 0)));

const helpers = () => workers.filter((calls) => calls.includes("open") && calls.includes("steps"));

// As the command-line tool goes through the steps of a question.
async function plainly(question: Question): Promise<string> {
  const instance = new Instance(await WebAssembly.compile(await moduleBytes()));
  instance.open(JSON.stringify(question));
  let standing = instance.standing(0);
  while (!standing.enough) {
    instance.do(standing.done, standing.stop);
    standing = instance.standing(standing.stop);
  }
  return untimed(instance.answer(0, false));
}

const untimed = (json: string) => json.replace(/"elapsed_ms":[0-9.e-]+/, "");

async function textOf(calculator: Calculator, question: Question): Promise<string> {
  await calculator.calculate(question);
  return untimed(await calculator.document("json"));
}

describe("the answer does not depend on the workers:", () => {
  const questions: Record<string, Question> = {
    exact: {
      players: Array(3).fill("15%"),
      board: "2c7d",
      method: "exact",
      detail: ["next", "made"],
    },
    "to an error": { ...kSampled, standard_error: 0.0001 },
    trials: { ...kSampled, trials: 1800001, seed: 7, detail: ["hand", "made"] },
    omaha: {
      game: "omaha",
      players: ["12%", "AAxx:ds"],
      board: "AsKs7c",
      method: "exact",
      detail: ["next"],
    },
  };
  for (const [name, question] of Object.entries(questions)) {
    test(name, async () => {
      const answer = await plainly(question);
      expect(await textOf(three, question)).toBe(answer);
      expect(helpers()).not.toHaveLength(0);
      expect(await textOf(one, question)).toBe(answer);
    });
  }
});

test("a short question is one worker's", async () => {
  const known = workers.length;
  const calculator = new Calculator({ threads: 3 });
  await calculator.calculate(kShort);
  expect(workers.slice(known)).toEqual([["ask", "takeSums"]]);
  calculator.close();
});

test("progress rises to 1 and says how long it will take", async () => {
  const seen: Progress[] = [];
  const onProgress = (progress: Progress) => seen.push(progress);
  const { trials } = await three.calculate(
    { ...kSampled, standard_error: 0.00006 },
    { onProgress },
  );
  const parts = seen.map(({ part }) => part);
  expect(parts.length).toBeGreaterThan(3);
  expect(parts).toEqual([...parts].sort((a, b) => a - b));
  expect(seen.at(-1)).toEqual({ part: 1, done: trials, method: "sampled", secondsLeft: 0 });
  expect(seen.some(({ secondsLeft }) => secondsLeft !== null && secondsLeft > 0)).toBe(true);
});

test("time ends sampling", async () => {
  const begun = performance.now();
  const answer = await three.calculate({ ...kSampled, time_ms: 300 });
  expect(performance.now() - begun).toBeGreaterThan(290);
  expect(answer.trials).toBeGreaterThan(0);
  expect(await three.document("text")).toContain("So many deals were possible in 300 ms.");
});

test("a cancelled question rejects at once, and others go on", async () => {
  const stop = new AbortController();
  const { signal } = stop;
  let told = () => {};
  const works = new Promise<void>((resolve) => (told = resolve));
  const endless = three.calculate(kEndless, { signal, onProgress: () => told() });
  const waiting = three.calculate(kEndless, { signal });
  const next = three.calculate(kShort);
  await works;
  const stopped = Promise.allSettled([endless, waiting]);
  const { count } = replies;
  stop.abort(new Error("enough"));
  expect(await stopped).toEqual(Array(2).fill({ status: "rejected", reason: signal.reason }));
  expect(replies.count).toBe(count);
  expect((await next).players[0]?.hands).toBe(1);
  await expect(three.calculate(kShort, { signal })).rejects.toBe(signal.reason);
});

test("a question that is cancelled at its end is not the last answer", async () => {
  const text = await textOf(one, kShort);
  const stop = new AbortController();
  const options = { signal: stop.signal, onProgress: () => stop.abort() };
  const asked = one.calculate({ ...kShort, players: ["AhKd", "QQ"] }, options);
  await expect(asked).rejects.toThrow("aborted");
  await one.version();
  expect(untimed(await one.document("json"))).toBe(text);
});

test("a worker that hears nothing is replaced when its question is cancelled", async () => {
  const calculator = new Calculator({ threads: 1 });
  await calculator.calculate(kShort);
  await calculator.document("text"); // its first worker is at rest then
  const known = workers.length;
  for (const worker of workers) if (worker.includes("ask")) deaf.add(worker);
  const endless = calculator.calculate(kShort, { signal: AbortSignal.timeout(10) });
  await expect(endless).rejects.toThrow("timeout");
  expect((await calculator.calculate(kShort)).players).toHaveLength(2);
  expect(workers).toHaveLength(known + 1);
  calculator.close();
});

test("ranges are read and documents written while a question is counted", async () => {
  const text = await textOf(three, { ...kShort, detail: ["next"] });
  const stop = new AbortController();
  const endless = three.calculate(kEndless, { signal: stop.signal });
  const reading = await three.describe("holdem", "TT+,AKs:0.5");
  expect(reading).toMatchObject({ every: false, hands: 34, cut: false, warnings: [] });
  expect(reading.weights).toContainEqual(["AhKh", 0.5]);
  const written = await three.rangeText("holdem", reading.weights);
  expect((await three.describe("holdem", written)).weights).toEqual(reading.weights);
  expect(await three.document("json")).toContain(text.slice(0, 200));
  expect(await three.document("csv", "next")).toMatch(/^player,range,next,/);
  expect(await three.document("svg", "next")).toMatch(/^<svg/);
  stop.abort();
  await expect(endless).rejects.toBe(stop.signal.reason);
});

test("errors name the field, and the calculator goes on", async () => {
  const refused = async (question: object) => {
    const error: unknown = await three.calculate(question as Question).catch((e: unknown) => e);
    expect(error).toBeInstanceOf(PokermathError);
    return error as PokermathError;
  };
  expect(await refused({ players: ["AhKd", "AhX"] })).toMatchObject({ field: "players/1" });
  expect(await refused({ ...kShort, board: "2c7dX" })).toMatchObject({ field: "board" });
  expect(await refused({ ...kShort, standard_error: 7 })).toMatchObject({
    field: "standard_error",
  });
  expect(await refused({ players: ["AhKd", "\ud83d"] })).toMatchObject({ field: "players/1" });
  await expect(three.describe("holdem", "TT+,ZZ\udc00")).rejects.toThrow(/ZZ/);
  expect((await three.calculate({ ...kShort, detail: ["next"] })).players).toHaveLength(2);
  const documents: [string, string?][] = [["svg"], ["csv", "zz"], ["csv", "hand"], ["svg", "made"]];
  for (const [kind, by] of documents) {
    const written = three.document(kind as "csv", by as "hand");
    await expect(written).rejects.toMatchObject({ name: "PokermathError", field: "by" });
  }
  await expect(three.document("foo" as "csv", "next")).rejects.toMatchObject({ field: "kind" });
  expect(await three.document("csv", "next")).toMatch(/^player,range,next,/);
});

test("closing ends what runs and what waits", async () => {
  const calculator = new Calculator({ threads: 2 });
  const asked = [kEndless, kShort].map((question) => calculator.calculate(question));
  const settled = Promise.allSettled(asked);
  await calculator.describe("holdem", "TT+");
  calculator.close();
  expect((await settled).map(({ status }) => status)).toEqual(["rejected", "rejected"]);
  await expect(calculator.calculate(kShort)).rejects.toThrow("closed");
});

test("a module that is lost after closing is nobody's error", async () => {
  const lost = vi.fn();
  process.once("unhandledRejection", lost);
  const module = new Promise<ArrayBuffer>((_, reject) => setTimeout(reject, 20, new Error("lost")));
  const calculator = new Calculator({ module });
  const asked = calculator.calculate(kShort);
  calculator.close();
  await expect(asked).rejects.toThrow("closed");
  await expect(module).rejects.toThrow("lost");
  await new Promise((resolve) => setTimeout(resolve, 0));
  process.off("unhandledRejection", lost);
  expect(lost).not.toHaveBeenCalled();
});
