// The page's answers are the command-line tool's, to the last digit; and how long the page takes.

import { execFileSync, type StdioOptions } from "node:child_process";
import type { Browser, Page } from "playwright-core";
import { afterAll, beforeAll, expect, it } from "vitest";
import { CLI, FILE_ADDRESS, go, launch, open, player, settled } from "./browser.js";
import { questions, type Asked } from "./random_questions.js";

let browser: Browser;
beforeAll(async () => {
  browser = await launch();
});
afterAll(() => browser.close());

const SEED = 20;
const VIEW_OF: Record<string, string> = {
  class: "range",
  hand: "curve",
  next: "next",
  made: "made",
};

function hashOf({ game, players, folded, board, dead, to, method, ...how }: Asked): string {
  const pairs = [
    ...players.map((text) => ["p", text]),
    ...folded.map((text) => ["folded", text]),
    ["game", game],
    ["board", board],
    ["dead", dead],
    ["to", to],
    ["method", method],
    ["view", VIEW_OF[how.detail] ?? "range"],
    ["error", String(how.standard_error)],
  ];
  return "#" + pairs.map(([key, value]) => `${key}=${encodeURIComponent(value ?? "")}`).join("&");
}

function cliAnswers(asked: readonly Asked[]): Record<string, unknown>[] {
  const lines = asked.map(({ detail, ...question }) =>
    JSON.stringify({ ...question, detail: [detail] }),
  );
  try {
    return parse(execFileSync(CLI, ["equity", "-", "--json"], options(lines)));
  } catch (failed) {
    // It says by its exit code that some lines were wrong, as some here are on purpose.
    return parse((failed as { stdout: string }).stdout);
  }
}

function options(lines: readonly string[]) {
  return {
    input: lines.join("\n"),
    encoding: "utf8" as const,
    maxBuffer: 1e9,
    stdio: ["pipe", "pipe", "ignore"] as StdioOptions,
  };
}

function parse(lines: string): Record<string, unknown>[] {
  return lines
    .trim()
    .split("\n")
    .map((line) => JSON.parse(line) as Record<string, unknown>);
}

it("answers 100 random questions as the command-line tool does", async () => {
  const asked = questions(100, SEED);
  const expected = cliAnswers(asked);
  const { page, problems } = await open(browser, FILE_ADDRESS);
  await keepCopies(page);
  let refused = 0;
  for (const [at, question] of asked.entries()) {
    const state = await go(page, hashOf(question));
    const wanted = timeless(expected[at] ?? {});
    const what = `question ${at} of seed ${SEED}: ${hashOf(question)}`;
    if (wanted["error"] !== undefined) {
      ++refused;
      const shown = await page.locator(".note.error").allTextContents();
      expect(shown.join(" "), what).toContain(wanted["error"]);
    } else {
      expect(state, what).toBe("done");
      // The page asks for the hands of Omaha ranges once it knows that they are few.
      if (question.detail === "hand")
        await page.locator(".curve-line").nth(1).waitFor({ state: "attached" });
      const answer = timeless(await copiedAnswer(page));
      expect(JSON.stringify(answer) === JSON.stringify(wanted), what).toBe(true);
    }
  }
  console.log(`100 questions as the tool answers them, ${refused} of them refused`);
  expect(refused).toBeLessThan(40);
  expect(problems).toEqual([]);
});

/** The same for the same question. */
function timeless(answer: Record<string, unknown>): Record<string, unknown> {
  return { ...answer, elapsed_ms: 0 };
}

/** What the page copies, without the clipboard that all programs share. */
async function keepCopies(page: Page) {
  await page.evaluate(() => {
    const keep = (text: string) => {
      document.documentElement.dataset["copied"] = text;
      return Promise.resolve();
    };
    Object.defineProperty(navigator.clipboard, "writeText", { value: keep });
  });
}

async function copiedAnswer(page: Page): Promise<Record<string, unknown>> {
  const copied = await page.evaluate(async (name) => {
    const { dataset } = document.documentElement;
    delete dataset["copied"];
    const buttons = [...document.querySelectorAll<HTMLElement>(".take button")];
    buttons.find((button) => button.textContent === name)?.click();
    const end = performance.now() + 5000;
    while (dataset["copied"] === undefined && performance.now() < end) {
      await new Promise((done) => setTimeout(done, 2));
    }
    return dataset["copied"] ?? "";
  }, "Copy JSON");
  return JSON.parse(copied) as Record<string, unknown>;
}

it("is quick (figures, best of some)", async () => {
  const first: number[] = [];
  for (let run = 0; run < 2; ++run) {
    const context = await browser.newContext();
    const page = await context.newPage();
    await page.goto(FILE_ADDRESS);
    await page.locator(".equity:has-text('54.25')").waitFor();
    first.push(await page.evaluate(() => performance.now()));
    await context.close();
  }
  console.log(`first answer after opening: ${best(first)} ms`);

  const { page } = await open(browser, FILE_ADDRESS);
  const times: number[] = [];
  for (const flop of ["2c7dTh", "2c7dJh", "3c7dTh", "AsKs2h", "9h8h7d"]) {
    await go(page, `#p=15%&p=15%&board=${flop}&of=2`);
    times.push(parseFloat((await page.locator(".time").textContent()) ?? ""));
  }
  console.log(`15% v 15% on a flop with the per-hand map: ${best(times)} ms of counting`);

  console.log(`longest task while typing: ${await longestTaskWhileTyping(page)} ms of its thread`);
  await page.context().close();
});

function best(times: readonly number[]): string {
  return Math.min(...times).toFixed(1);
}

interface Traced {
  name: string;
  pid: number;
  tid: number;
  /** Microseconds of the processor. */
  tdur?: number;
}

/** What the page's one thread did in one go while letters came; other programs do not count. */
async function longestTaskWhileTyping(page: Page): Promise<string> {
  await go(page, "#p=15%&p=KK&board=2c7dTh&of=2");
  await player(page, 1).focus();
  await page.keyboard.press("End");
  await browser.startTracing(page, { categories: ["toplevel", "devtools.timeline"] });
  await page.keyboard.type(",TT+,A9s+,KJs+:0.5", { delay: 60 });
  await settled(page);
  const trace = (await browser.stopTracing()).toString();
  const { traceEvents } = JSON.parse(trace) as { traceEvents: Traced[] };
  const typed = traceEvents.find(({ name }) => name === "EventDispatch");
  const tasks = traceEvents.filter(
    ({ name, pid, tid }) => name.endsWith("RunTask") && pid === typed?.pid && tid === typed.tid,
  );
  expect(tasks.length).toBeGreaterThan(18);
  return (Math.max(...tasks.map(({ tdur }) => tdur ?? 0)) / 1000).toFixed(1);
}
