// The page for everybody: keys alone, a small telephone, dark and light, and what axe says of it.

import { readFileSync } from "node:fs";
import { fileURLToPath } from "node:url";
import type { Browser, Page } from "playwright-core";
import { afterAll, beforeAll, describe, expect, it } from "vitest";
import { FILE_ADDRESS, equities, go, launch, open, player, settled } from "./browser.js";

const here = (path: string) => fileURLToPath(new URL(path, import.meta.url));
const AXE = readFileSync(here("../node_modules/axe-core/axe.min.js"), "utf8");

let browser: Browser;
beforeAll(async () => {
  browser = await launch();
});
afterAll(() => browser.close());

describe("with keys alone", () => {
  it("a question is asked, painted and looked at", async () => {
    const { page } = await open(browser, `${FILE_ADDRESS}#p=AhKd&p=15%25`);
    const { keyboard } = page;
    await tabTo(page, "Pick: Board");
    await keyboard.press("Enter");
    await keyboard.type("2c7d");
    await keyboard.press("Home");
    for (const key of ["ArrowDown", "ArrowRight", "ArrowRight", "ArrowRight", "ArrowRight"]) {
      await keyboard.press(key);
    }
    await keyboard.press("Space");
    await keyboard.press("Escape");
    expect(await focusedName(page)).toBe("Pick: Board");
    expect(await page.inputValue("#board")).toBe("2c7dTh");
    await settled(page);
    expect(await equities(page)).toEqual(["54.25", "45.75"]);

    await tabTo(page, "Show player 2");
    await keyboard.press("Enter");
    await tabTo(page, "Hand or range of player 2");
    await keyboard.press("Control+a");
    await keyboard.type("QQ");
    await tabTo(page, "AA: not in the range");
    await keyboard.press("ArrowRight");
    await keyboard.press("Space");
    await keyboard.press("-");
    const text = () => player(page, 1).inputValue();
    await expect.poll(text, { timeout: 4000 }).toBe("QQ,AKs:0.95");
    await keyboard.press("Enter");
    await page.getByRole("region", { name: "Suits of AKs" }).waitFor();
    await tabTo(page, "Range");
    await keyboard.press("ArrowRight");
    await expect.poll(() => page.locator(".next-card").count()).toBe(52);
    await page.context().close();
  });
});

/** Presses Tab until something with this name has the focus. */
async function tabTo(page: Page, name: string) {
  for (let at = 0; at < 90; ++at) {
    await page.keyboard.press("Tab");
    if ((await focusedName(page)).startsWith(name)) return;
  }
  throw new Error(`Tab never came to ${name}`);
}

function focusedName(page: Page): Promise<string> {
  return page.evaluate(() => {
    const focused = document.activeElement;
    const name =
      focused?.getAttribute("aria-label") ?? focused?.querySelector(".unseen")?.textContent;
    return name ?? focused?.textContent ?? "";
  });
}

describe("for ears", () => {
  it("the result is spoken, and what is wrong", async () => {
    const { page } = await open(browser, FILE_ADDRESS);
    const spoken = () => page.locator("#spoken").textContent();
    await expect.poll(spoken, { timeout: 4000 }).toBe("Exact: AhKd 54.2\u202f%, 15% 45.8\u202f%.");
    await player(page, 1).fill("oops");
    await expect.poll(spoken, { timeout: 4000 }).toContain("Error: 'oops' at position 1");
    await page.context().close();
  });
});

const VIEWS = [
  "#p=AhKd&p=15%&board=2c7dTh&of=2",
  "#p=AhKd&p=15%&board=2c7dTh&view=next",
  "#p=AhKd&p=QQ&view=next",
  "#p=AhKd&p=15%&board=2c7dTh&view=curve",
  "#p=AhKd&p=15%&p=KK&board=2c7dTh&view=made",
  "#game=omaha&p=AhAdKhKd&p=JTxx:ds&board=2c7dTh&dead=As&folded=AAxx&of=2",
  "#p=AhKd&p=15%x&board=2c7dTh&of=2",
  `#${"p=random&p=TT%2B,AQs%2B,KJs:0.5&".repeat(5)}board=2c7dTh&ms=100`,
];

describe("on a telephone of 360 points", () => {
  it("nothing is wider than the screen, and a finger paints", async () => {
    const phone = { viewport: { width: 360, height: 740 }, hasTouch: true, isMobile: true };
    const { page } = await open(browser, FILE_ADDRESS, phone);
    for (const view of VIEWS) {
      await go(page, view);
      const wide = await page.evaluate(() => document.documentElement.scrollWidth);
      expect(wide, view).toBeLessThanOrEqual(360);
    }
    await go(page, "#p=AhKd&p=QQ&board=2c7dTh&of=2");
    await page.locator(".cell").first().tap();
    await expect.poll(() => player(page, 1).inputValue(), { timeout: 4000 }).toBe("AA,QQ");
    await page.getByRole("button", { name: "Pick: Board" }).tap();
    const wide = await page.evaluate(() => document.documentElement.scrollWidth);
    expect(wide).toBeLessThanOrEqual(360);
    await page.context().close();
  });
});

describe("dark and light", () => {
  it.each(["light", "dark"] as const)("axe finds nothing serious in %s", async (colorScheme) => {
    const { page } = await open(browser, FILE_ADDRESS, { colorScheme, reducedMotion: "reduce" });
    await page.evaluate(AXE);
    for (const view of VIEWS) {
      await go(page, view);
      if (view === VIEWS[0]) {
        await page.getByRole("button", { name: "Pick: Board" }).click();
        await page.getByRole("button", { name: "Suits", exact: true }).click();
        await settled(page);
      }
      expect(await serious(page, colorScheme === "dark"), view).toEqual([]);
    }
    await page.context().close();
  });

  it("are switched by hand, too, and remembered", async () => {
    const { page } = await open(browser, FILE_ADDRESS, { colorScheme: "dark" });
    const paper = () => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
    const dark = await paper();
    await page.getByRole("button", { name: "Theme: as the system" }).click();
    expect(await paper()).not.toBe(dark);
    const red = () =>
      page.evaluate(
        () => getComputedStyle(document.querySelector(".card.suit-d") ?? document.body).color,
      );
    const fourth = await red();
    await page.getByRole("button", { name: "Four-colour deck" }).click();
    expect(await red()).not.toBe(fourth);
    const light = await paper();
    await page.reload();
    expect(await paper()).toBe(light);
    await page.context().close();
  });
});

interface Violation {
  id: string;
  impact: string | null;
  nodes: { html: string; failureSummary: string }[];
}

/** In the second of two schemes only the colours are others. */
async function serious(page: Page, coloursOnly: boolean): Promise<string[]> {
  const found = await page.evaluate(async (only) => {
    const { axe } = window as unknown as {
      axe: { run: (options: object) => Promise<{ violations: Violation[] }> };
    };
    const rules = only ? { runOnly: ["color-contrast"] } : {};
    return (await axe.run({ ...rules, resultTypes: ["violations"], preload: false })).violations;
  }, coloursOnly);
  return found
    .filter(({ impact }) => impact === "serious" || impact === "critical")
    .flatMap(({ id, nodes }) => nodes.map((node) => `${id}: ${node.html} ${node.failureSummary}`));
}

describe.runIf(process.env["POKERMATH_SCREENSHOTS"] === "1")("pictures for the docs", () => {
  it.each([
    ["light", 1170, 756, "light"],
    ["dark", 1170, 756, "dark"],
    ["phone", 360, 1560, "light"],
  ] as const)("page-%s.png", async (name, width, height, colorScheme) => {
    const address = `${FILE_ADDRESS}#p=AhKd&p=TT%2B,A9s%2B,KJs%2B,AQo%2B,QJs:0.5,JTs:0.5&board=2c7dTh&of=2`;
    const { page } = await open(browser, address, { viewport: { width, height }, colorScheme });
    await page.screenshot({ path: here(`../../docs/page-${name}.png`) });
    await page.context().close();
  });
});
