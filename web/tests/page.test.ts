// The main paths of the built page, in a browser.

import { readFileSync } from "node:fs";
import type { Browser, BrowserContext, Page } from "playwright-core";
import { afterAll, beforeAll, describe, expect, it } from "vitest";
import {
  FILE_ADDRESS,
  cell,
  equities,
  go,
  launch,
  open,
  player,
  serve,
  settled,
} from "./browser.js";

let browser: Browser;
let shared: Page;
let problems: string[];
let host: Awaited<ReturnType<typeof serve>>;

beforeAll(async () => {
  browser = await launch();
  host = await serve();
  ({ page: shared, problems } = await open(browser, FILE_ADDRESS));
});
afterAll(async () => {
  expect(problems).toEqual([]);
  await browser.close();
  host.server.close();
});

const FLOP = "#p=AhKd&p=15%&board=2c7dTh&of=2";

describe("question and answer", () => {
  it.each(["disk", "a server"])("opens from %s with an answer", async (from) => {
    const address = from === "disk" ? FILE_ADDRESS : host.address;
    const opened = await open(browser, address);
    expect(await equities(opened.page)).toEqual(["54.25", "45.75"]);
    const status = await opened.page.locator(".method").textContent();
    expect(status).toMatch(/Exact135,630 cases[\d.]+ m?severy case counted/);
    expect(await cell(opened.page, "AKo").getAttribute("aria-label")).toBe(
      "AKo 50.0 % equity, 100 % in the range",
    );
    expect(opened.problems).toEqual([]);
    await opened.page.context().close();
  });

  it("answers while one types, and takes it back", async () => {
    const page = shared;
    await go(page, FLOP);
    await player(page, 1).fill("QQ");
    await settled(page);
    expect(await equities(page)).toEqual(["24.75", "75.25"]);
    expect(await page.locator(".p1 .figures").textContent()).toMatch(/Tie0\.00\u202f% 0/);
    await page.keyboard.press("Control+z");
    await settled(page);
    expect(await player(page, 1).inputValue()).toBe("15%");
    expect(await equities(page)).toEqual(["54.25", "45.75"]);
    await page.keyboard.press("Control+y");
    await settled(page);
    expect(await equities(page)).toEqual(["24.75", "75.25"]);
  });

  it("names what is wrong at its field and keeps the last good answer", async () => {
    const page = shared;
    await go(page, FLOP);
    await player(page, 1).fill("15%x");
    expect(await settled(page)).toBe("wrong");
    const note = page.locator(".player.p1 .note.error");
    expect(await note.textContent()).toContain("'15%x' at position 4: expected an exclusion");
    expect(await player(page, 1).getAttribute("aria-invalid")).toBe("true");
    expect(await equities(page)).toEqual(["54.25", "45.75"]);
    expect(await page.locator(".status .warning").textContent()).toContain("AhKd – 15% · 2c7dTh");
    await page.fill("#board", "2c7dThXX");
    await player(page, 1).fill("15%");
    expect(await settled(page)).toBe("wrong");
    expect(await page.locator(".cards-field .error").textContent()).toContain("XX");
    expect(await equities(page)).toEqual(["54.25", "45.75"]);
    await page.fill("#board", "2c7dTh");
    expect(await settled(page)).toBe("done");
    expect(await page.locator(".note.error").count()).toBe(0);
  });

  it("has players, folded ranges, dead cards and a street", async () => {
    const page = shared;
    await go(page, FLOP);
    await page.getByRole("button", { name: "Add player" }).click();
    await player(page, 2).fill("QcJc");
    await settled(page);
    expect((await equities(page)).length).toBe(3);
    await page.getByText("More", { exact: false }).first().click();
    await page.fill("#dead", "AsAc");
    await page.getByRole("button", { name: "Add a folded range" }).click();
    await page.fill("#folded-0", "KK");
    await page.getByRole("radio", { name: "Turn" }).check();
    expect(await settled(page)).toBe("done");
    await hashOnceWritten(
      page,
      "#p=AhKd&p=15%&p=QcJc&folded=KK&board=2c7dTh&dead=AsAc&to=turn&of=2",
    );
    await page.getByRole("button", { name: "Remove player 1", exact: true }).click();
    await settled(page);
    expect(await player(page, 0).inputValue()).toBe("15%");
    expect((await equities(page)).length).toBe(2);
  });
});

async function hashOnceWritten(page: Page, hash: string) {
  const written = () => page.evaluate(() => decodeURIComponent(location.hash));
  await expect.poll(written, { timeout: 4000 }).toBe(hash);
}

describe("the range grid", () => {
  it("paints by what the first cell was, also where the pointer jumps", async () => {
    const page = shared;
    await go(page, "#p=AhKd&p=QQ&board=2c7dTh&of=2");
    await drag(page, "AA", "A9s");
    await textIs(page, 1, "AA,QQ,A9s+");
    await drag(page, "AKs", "AJs");
    await textIs(page, 1, "AA,QQ,ATs-A9s");
    expect(await settled(page)).toBe("done");
    await page.keyboard.press("Control+z");
    await page.keyboard.press("Control+z");
    await textIs(page, 1, "QQ");
  });

  it("has a brush, a wheel, suits of a cell, and better hands", async () => {
    const page = shared;
    await go(page, "#p=AhKd&p=QQ&board=2c7dTh&of=2");
    await page.getByLabel("Brush weight in percent").fill("50");
    await cell(page, "77").click();
    await textIs(page, 1, "QQ,77:0.5");
    await cell(page, "77").hover();
    await page.mouse.wheel(0, -100);
    await textIs(page, 1, "QQ,77:0.55");
    await cell(page, "ATs").click({ modifiers: ["Alt"] });
    await textIs(page, 1, "QQ,77:0.55,ATs+:0.5");
    await page.getByLabel("Brush weight in percent").fill("100");
    await cell(page, "AKo").click({ modifiers: ["Shift"] });
    await page.getByRole("button", { name: "AsKc: weight 0 %" }).click();
    await textIs(page, 1, "QQ,77:0.55,ATs+:0.5,AsKc");
    await settled(page);
    expect(await page.getByRole("button", { name: "AsKc: weight 100 %" }).textContent()).toMatch(
      /\d\d\.\d$/,
    );
    await page.getByRole("button", { name: "Close suits" }).click();
    // What was painted is what the text means to who opens the link.
    await settled(page);
    const painted = await labels(page);
    await go(page, "#p=AhKd&p=QQ,77:0.55,ATs+:0.5,AsKc&board=2c7dTh&of=2");
    expect(await labels(page)).toEqual(painted);
    expect(painted).toContain("77 98.4 % equity, 55 % in the range");
  });

  it("follows the slider, presets and undo", async () => {
    const page = shared;
    await go(page, "#p=AhKd&p=QQ&board=2c7dTh&of=2");
    await page.getByLabel("Strongest hands in percent").fill("30");
    await textIs(page, 1, "30%");
    await page.getByLabel("Presets").selectOption("Pairs");
    await textIs(page, 1, "22+");
    await page.locator(".cell.high, .cell.low").nth(12).waitFor();
    expect(await page.locator(".cell[aria-selected=true]").count()).toBe(13);
    await page.getByRole("button", { name: "None", exact: true }).click();
    await textIs(page, 1, "");
    expect(await page.locator(".cell[aria-selected=true]").count()).toBe(0);
    expect(await settled(page)).toBe("wrong");
    await page.getByRole("button", { name: "Undo" }).click();
    await textIs(page, 1, "22+");
  });

  it("is of one player and one game", async () => {
    const page = shared;
    await go(page, "#p=AhKd,QQ&p=oops&of=1");
    await page.locator(".cell[aria-selected=true]").nth(1).waitFor();
    await page.getByRole("button", { name: "Show player 2" }).click();
    expect(await page.locator(".cell[aria-selected=true]").count()).toBe(0);
    await page.getByText("The text cannot be read").waitFor();
    await cell(page, "AA").click({ force: true });
    await settled(page);
    expect(await player(page, 1).inputValue()).toBe("oops");
    await go(page, "#game=omaha&p=AhAdKhKd&p=oops&board=2c7dTh");
    await page.locator(".hands li").waitFor();
    await page.getByRole("button", { name: "Show player 2" }).click();
    expect(await page.locator(".hands li").count()).toBe(0);

    await go(page, "#p=AhKd&p=QQ&of=2");
    await cell(page, "22").click();
    await textIs(page, 1, "QQ,22");
    await page.getByLabel("Game").selectOption("shortdeck");
    await page.getByText("The text cannot be read").waitFor(); // there is no 22
    expect(await page.locator(".cell[aria-selected=true]").count()).toBe(0);
    expect(await page.locator(".cell[tabindex='0']").count()).toBe(1);
  });

  it("leaves a text alone that it cannot read", async () => {
    const page = shared;
    await go(page, "#p=AhKd&p=AA&of=2");
    await player(page, 1).fill("AKQ,JJ");
    await page.getByText("The text cannot be read").waitFor();
    await cell(page, "KK").click({ force: true });
    await cell(page, "KK").press("+");
    await player(page, 1).press("End");
    await page.keyboard.type(",99");
    await settled(page);
    expect(await player(page, 1).inputValue()).toBe("AKQ,JJ,99");
    await page.getByRole("button", { name: "None", exact: true }).click();
    await textIs(page, 1, "");
    await cell(page, "KK").click();
    await textIs(page, 1, "KK");
  });

  it("is painted by one pointer, by screen readers, and where the focus is", async () => {
    const page = shared;
    await go(page, "#p=AhKd&p=QQ&of=2");
    await cell(page, "KK").evaluate((one: HTMLElement) => one.focus());
    await page.keyboard.press("Space");
    await textIs(page, 1, "KK-QQ");
    await cell(page, "JJ").evaluate((one: HTMLElement) => one.click());
    await textIs(page, 1, "KK-JJ");
    await cell(page, "99").hover();
    await page.mouse.down();
    const { x, y } = (await cell(page, "22").boundingBox()) ?? { x: 0, y: 0 };
    const finger = { pointerId: 77, clientX: x + 9, clientY: y + 9 };
    await cell(page, "22").dispatchEvent("pointermove", finger);
    await page.mouse.up();
    await textIs(page, 1, "KK-JJ,99");
  });

  it("gives the focus back where something goes", async () => {
    const page = shared;
    await go(page, "#p=AhKd&p=QQ&p=JJ&of=2");
    for (const close of ["Escape", "Enter"]) {
      await cell(page, "QQ").press("Enter");
      const button = page.getByRole("button", { name: "Close suits" });
      await button.press(close);
      await button.waitFor({ state: "detached" });
      expect(await page.evaluate(() => document.activeElement?.textContent)).toMatch(/^QQ/);
    }
    await page.getByRole("button", { name: "Remove player 3" }).click();
    expect(await focusedId(page)).toBe("player-1");
  });

  it("takes a preset with Enter, not with each arrow key", async () => {
    const page = shared;
    await go(page, "#p=AhKd&p=QQ&of=2");
    const presets = page.getByLabel("Presets");
    await presets.focus();
    await page.keyboard.press("ArrowDown");
    await page.keyboard.press("ArrowDown");
    expect(await player(page, 1).inputValue()).toBe("QQ");
    await page.keyboard.press("Enter");
    await textIs(page, 1, "22+");
    expect(await presets.inputValue()).toBe("");
  });

  it("reads what is pasted between, dropped, or put in by a telephone", async () => {
    const page = shared;
    await go(page, "#p=AhKd&p=AA,KK&of=2");
    const field = player(page, 1);
    await field.evaluate((box: HTMLTextAreaElement) => box.setSelectionRange(3, 3));
    await field.evaluate((box: HTMLTextAreaElement) => box.focus());
    await pasteText(page, "QQ,\n");
    await page.keyboard.type("JJ,");
    await textIs(page, 1, "AA,QQ,JJ,KK");
    await field.evaluate((box: HTMLTextAreaElement) => {
      box.value = "AA: 0.5\nKK";
      box.dispatchEvent(new InputEvent("input", { inputType: "insertFromDrop", bubbles: true }));
    });
    await textIs(page, 1, "AA:0.5,KK");
    await field.selectText();
    await page.keyboard.insertText("AA: 0.5, KK : 1");
    await page.getByText("The text cannot be read").waitFor();
    await page.keyboard.press("Tab");
    await textIs(page, 1, "AA:0.5,KK:1");
  });

  it.each([
    ["TT+,AQs+:0.5", 30 + 8],
    ["[50]AA, KK[/50], QQ", 18],
    ["AA@50; KK@25", 12],
    ["AA: 0.5\nKK: 1\nQQ: 0.25", 18],
    ["0.4(AsKs,AhKh),JJ", 8],
    ["AsKs:0.5,AhKh", 2],
    ["A♥K♦ JJ–99", 19],
    ["T9s-65s", 20],
    ["AhXx", 51],
    ["random!AA", 1320],
    ["15%@10,16%-50%@5", 660],
  ])("reads %j as it is pasted", async (text, hands) => {
    const page = shared;
    await go(page, "#p=22&p=QQ&board=2c7dTh&of=2");
    await page.evaluate(() => document.getElementById("player-1")?.focus());
    await player(page, 1).selectText();
    await pasteText(page, text);
    await page.waitForFunction(
      (count) =>
        document
          .querySelector(".in-range")
          ?.textContent?.replace(/,/g, "")
          .startsWith(`${count} hand`),
      hands,
    );
    expect(await settled(page)).toBe("done");
  });

  it("is nine by nine with the short deck, and a list for Omaha", async () => {
    const page = shared;
    await go(page, "#game=shortdeck&p=AhKd&p=20%&board=9c7dTh&of=2");
    expect(await page.locator(".cell").count()).toBe(81);
    await page.getByLabel("Game").selectOption("omaha");
    expect(await settled(page)).toBe("done");
    expect(await player(page, 1).inputValue()).toBe("JTxx:ds");
    await player(page, 1).fill("AAxx:ds");
    await settled(page);
    await page.getByText("The first 500 of 864 hands").waitFor();
    expect(await page.locator(".hands li").count()).toBe(60);
    await page.getByRole("button", { name: "Show 200 more" }).click();
    expect(await page.locator(".hands li").count()).toBe(260);
    expect(await page.locator("tbody th").first().textContent()).toContain("double-suited");
  });
});

function focusedId(page: Page): Promise<string | undefined> {
  return page.evaluate(() => document.activeElement?.id);
}

async function drag(page: Page, from: string, to: string) {
  await cell(page, from).hover();
  await page.mouse.down();
  await cell(page, to).hover();
  await page.mouse.up();
}

function labels(page: Page): Promise<string[]> {
  return page.locator(".cell").evaluateAll((cells) => cells.map((one) => one.ariaLabel ?? ""));
}

async function textIs(page: Page, at: number, text: string) {
  const read = () => player(page, at).inputValue();
  await expect.poll(read, { timeout: 4000, interval: 20 }).toBe(text);
}

async function pasteText(page: Page, text: string) {
  await page.evaluate((pasted) => {
    const data = new DataTransfer();
    data.setData("text/plain", pasted);
    const event = new ClipboardEvent("paste", {
      clipboardData: data,
      bubbles: true,
      cancelable: true,
    });
    document.activeElement?.dispatchEvent(event);
  }, text);
}

describe("the deck", () => {
  it("gives cards by click and by typing", async () => {
    const page = shared;
    await go(page, "#p=AhKd&p=15%");
    await page.getByRole("button", { name: "Pick: Board" }).click();
    await page.getByRole("button", { name: "2 of clubs" }).click();
    await page.keyboard.type("7dth");
    await settled(page);
    expect(await page.inputValue("#board")).toBe("2c7dTh");
    expect(await equities(page)).toEqual(["54.25", "45.75"]);
    await page.keyboard.type("ah"); // the first player's
    expect(await page.locator("[data-card='Ah']").getAttribute("aria-disabled")).toBe("true");
    expect(await page.inputValue("#board")).toBe("2c7dTh");
    await page.keyboard.press("Backspace");
    expect(await page.inputValue("#board")).toBe("2c7d");
    await page.keyboard.press("Escape");
    expect(await page.locator(".deck").count()).toBe(0);
    await page.getByRole("button", { name: "Clear: Board" }).click();
    expect(await page.inputValue("#board")).toBe("");
    expect(await focusedId(page)).toBe("board");
  });

  it("keeps a card in the order of tabs with another deck, and what of a text is cards", async () => {
    const page = shared;
    await go(page, "#p=AhKd&p=15%&board=2c7dTx");
    await page.getByRole("button", { name: "Pick: Board" }).click();
    await page.getByRole("button", { name: "2 of clubs" }).focus();
    await page.getByLabel("Game").selectOption("shortdeck");
    expect(await page.locator(".deck-card").count()).toBe(36);
    expect(await page.locator(".deck-card[tabindex='0']").count()).toBe(1);
    await page.getByLabel("Game").selectOption("holdem");
    await page.getByRole("button", { name: "9 of spades" }).click();
    expect(await page.inputValue("#board")).toBe("2c7d9s");
    await page.keyboard.press("Escape");
  });
});

describe("views of the answer", () => {
  it("shows the next card, sorted as one likes", async () => {
    const page = shared;
    await go(page, "#p=AhKd&p=15%&board=2c7dTh&view=next");
    expect(await page.locator(".next-card:not(.gone)").count()).toBe(47);
    await page.getByRole("radio", { name: "Equity" }).check();
    const best = await page.locator(".next-card").first().textContent();
    expect(best).toMatch(/^king of spades: equity 8\d\.\d %, change \+2\d\.\d/);
    await page.getByRole("radio", { name: "P2" }).check();
    expect(await page.locator(".next-card").first().textContent()).toMatch(/^jack of /);
  });

  it("says so where nothing comes next", async () => {
    const page = shared;
    expect(await go(page, "#p=AhKd&p=15%&board=2c7dThJsQs&view=next")).toBe("done");
    await page.getByText("nothing comes next").waitFor();
  });

  it("lists flops where there is no board", async () => {
    const page = shared;
    await go(page, "#p=AhKd&p=QsQc&view=next");
    await page.getByText("kinds of flops").waitFor();
    expect(await page.locator(".flops tbody tr").count()).toBe(60);
    await page.getByRole("radio", { name: "Equity" }).check();
    expect(await page.locator(".flops tbody tr").first().textContent()).toContain("100.0");
  });

  it("draws the curves and counts what is made", async () => {
    const page = shared;
    await go(page, "#p=AA,72o&p=15%&board=2c7dTh&view=curve");
    expect(await page.locator(".curve-line").count()).toBe(2);
    const row = await page.locator(".curve-table tbody tr").first().textContent();
    const [best, median, worst] = [...(row ?? "").matchAll(/([\d.]+)\u202f%/g)].map((found) =>
      Number(found[1]),
    );
    expect(best).toBeGreaterThanOrEqual(median ?? 1e9);
    expect(median).toBeGreaterThan(worst ?? 1e9);
    await page.getByRole("tab", { name: "Made hands" }).click();
    await settled(page);
    const parts = await page.locator(".made tr td:nth-child(2) .made-part").allTextContents();
    const sum = parts.reduce((all, part) => all + parseFloat(part), 0);
    expect(Math.abs(sum - 100)).toBeLessThan(0.1);
  });
});

describe("sharing", () => {
  let context: BrowserContext;
  let page: Page;
  beforeAll(async () => {
    ({ page } = await open(browser, host.address));
    context = page.context();
    await context.grantPermissions(["clipboard-read", "clipboard-write"]);
  });
  afterAll(() => context.close());
  const clipboard = () => page.evaluate(() => navigator.clipboard.readText());

  it("copies a link that shows the same screen elsewhere", async () => {
    await go(page, "#p=AhKd&p=TT+,AQs+:0.5&board=2c7dTh");
    await page.getByRole("tab", { name: "Next card" }).click();
    await page.getByRole("radio", { name: "P2" }).check();
    await settled(page);
    await page.getByRole("button", { name: "Copy link" }).click();
    await page.getByText("Link copied").waitFor();
    const link = await clipboard();
    const other = await open(browser, link);
    expect(await equities(other.page)).toEqual(await equities(page));
    expect(await other.page.locator(".next-deck").textContent()).toBe(
      await page.locator(".next-deck").textContent(),
    );
    await other.page.context().close();
  });

  it("copies text, JSON and CSV, and saves the picture", async () => {
    await go(page, FLOP);
    const copied = async (name: string) => {
      await page.getByRole("button", { name: `Copy ${name}` }).click();
      await page.getByText(`${name[0]?.toUpperCase()}${name.slice(1)} copied`).waitFor();
      return clipboard();
    };
    expect(await copied("text")).toContain("AhKd against 15%, Texas Hold'em, on the flop 2c7dTh");
    const answer = JSON.parse(await copied("JSON")) as { players: { equity: number }[] };
    expect(answer.players[0]?.equity).toBe(0.542464793924648);
    expect(await copied("CSV")).toMatch(/^player,.*\n/);
    const saving = page.waitForEvent("download");
    await page.getByRole("button", { name: "Save SVG" }).click();
    const file = await (await saving).path();
    expect(readFileSync(file, "utf8")).toMatch(/^<svg [\s\S]*AhKd on the flop/);
  });
});

describe("what stands where no answer does", () => {
  it("an error of a link opens the part with its field, and no view waits for ever", async () => {
    const { page } = await open(browser, `${FILE_ADDRESS}#p=AhKd&p=QQ&board=2c7dTh&ms=0.5`);
    await page.locator(".more .note.error").waitFor(); // waits until it is in sight
    expect(await page.locator(".status").textContent()).toContain("There is no answer");
    await page.goto(`${FILE_ADDRESS}#p=oops&p=15%25`);
    await page.reload();
    expect(await settled(page)).toBe("wrong");
    for (const tab of ["Next card", "Curve", "Made hands"]) {
      await page.getByRole("tab", { name: tab }).click();
      expect(await settled(page)).toBe("wrong");
      expect(await page.locator("#view").textContent()).toBe("");
    }
    await page.context().close();
  });

  it("offers to take along only what the answer has", async () => {
    const page = shared;
    const offered = () =>
      page.locator(".take button:enabled").evaluateAll((all) => all.map((one) => one.textContent));
    await go(page, FLOP);
    expect(await offered()).toEqual(["Copy text", "Copy JSON", "Copy CSV", "Save SVG"]);
    await go(page, "#p=AhKd&p=15%&board=2c7dTh&view=made");
    expect(await offered()).toEqual(["Copy text", "Copy JSON", "Copy CSV"]);
    for (const none of [
      "#p=AhKd&p=15%&board=2c7dThJsQs&view=next",
      "#game=omaha&p=AhAdKhKd&p=random&board=2c7dTh&view=curve",
    ]) {
      await go(page, none);
      expect(await offered(), none).toEqual(["Copy text", "Copy JSON"]);
    }
  });

  it("keeps the figures of players who stay, marked as earlier ones", async () => {
    const page = shared;
    await go(page, FLOP);
    expect(await page.locator(".earlier-word").count()).toBe(0);
    await go(page, "#p=AhKd&p=15%&p=oops&board=2c7dTh&of=2");
    expect(await page.locator(".equity").allTextContents()).toEqual([
      "54.25\u202f%earlier",
      "45.75\u202f%earlier",
      "",
    ]);
  });
});

describe("long questions", () => {
  const LONG = "#p=AhKd&p=random&p=random&method=exact";

  it("show progress, can be stopped, and give way to the next one", async () => {
    const { page } = await open(browser, FILE_ADDRESS);
    await page.evaluate((hash) => {
      location.hash = hash;
    }, LONG);
    await page.locator("progress").waitFor();
    await page.waitForFunction(() => (document.querySelector("progress")?.value ?? 0) > 0);
    await page.getByRole("button", { name: "Stop" }).click();
    expect(await settled(page)).toBe("stopped");
    await page.getByText("Stopped.").waitFor();
    await page.getByRole("button", { name: "Calculate" }).click();
    await page.locator("progress").waitFor();
    const began = Date.now();
    await page.getByRole("button", { name: "Remove player 3" }).click();
    await player(page, 1).fill("QQ");
    expect(await settled(page)).toBe("done");
    console.log(`long question to the answer of the next: ${Date.now() - began} ms`);
    expect((await equities(page)).length).toBe(2);
    await page.context().close();
  });

  it("leave no error of before, and mark the figures of before", async () => {
    const { page } = await open(
      browser,
      `${FILE_ADDRESS}#p=AhKd&p=QQ&p=22,77&board=7s7h7d&dead=2c&method=exact&of=3`,
    );
    const blocked = () => page.locator(".cell.blocked").count();
    expect(await blocked()).toBe(1);
    await page.fill("#board", "");
    await player(page, 2).fill("QQx");
    expect(await settled(page)).toBe("wrong");
    await player(page, 2).fill("random");
    await page.locator("progress").waitFor();
    const marks = () => page.locator(".earlier-word").count();
    expect([await page.locator(".note.error").count(), await marks(), await blocked()]).toEqual([
      0, 3, 0,
    ]);
    const spoken = () => page.locator("#spoken").textContent();
    await expect.poll(spoken, { timeout: 4000 }).toMatch(/^Counting: \d+ %$/);
    await page.getByRole("button", { name: "Stop" }).click();
    await page.getByText("Stopped. The answer shown is of the question before.").first().waitFor();
    expect([await page.locator(".note.error").count(), await marks(), await blocked()]).toEqual([
      0, 3, 0,
    ]);
    await expect.poll(spoken, { timeout: 4000 }).toContain("Stopped.");
    await page.context().close();
  });

  it("say of a view that was stopped that the question is the same", async () => {
    const { page } = await open(browser, FILE_ADDRESS);
    await go(page, "#p=random&p=random&method=exact");
    await page.getByRole("tab", { name: "Made hands" }).click();
    await page.getByRole("button", { name: "Stop" }).click();
    await page.locator(".status").getByText("The equities are of this question").waitFor();
    expect(await equities(page)).toEqual(["50.00", "50.00"]);
    expect(await page.locator(".earlier-word").count()).toBe(0);
    expect(await page.locator(".take button:enabled").count()).toBe(2);
    await page.context().close();
  });
});
