// A browser with the built page, and what all tests do with it.

import { createServer, type Server } from "node:http";
import { readFileSync } from "node:fs";
import type { AddressInfo } from "node:net";
import { fileURLToPath } from "node:url";
import { chromium, type Browser, type BrowserContextOptions, type Page } from "playwright-core";

const here = (path: string) => fileURLToPath(new URL(path, import.meta.url));

export const PAGE_FILE = process.env["POKERMATH_PAGE"] ?? here("../../build/web/pokermath.html");
export const CLI = process.env["POKERMATH_CLI"] ?? here("../../build/release/cli/pokermath");
export const FILE_ADDRESS = `file://${PAGE_FILE}`;

export function launch(): Promise<Browser> {
  const executablePath = process.env["POKERMATH_BROWSER"] ?? "/usr/bin/chromium";
  return chromium.launch({ executablePath, args: ["--no-sandbox"], headless: true });
}

/** The page as any static host serves it. */
export async function serve(): Promise<{ server: Server; address: string }> {
  const page = readFileSync(PAGE_FILE);
  const server = createServer((request, response) => {
    const found = request.url === "/pokermath.html";
    response.writeHead(found ? 200 : 404, { "content-type": "text/html; charset=utf-8" });
    response.end(found ? page : "");
  });
  await new Promise<void>((resolve) => server.listen(0, "127.0.0.1", resolve));
  return {
    server,
    address: `http://127.0.0.1:${(server.address() as AddressInfo).port}/pokermath.html`,
  };
}

export interface Opened {
  page: Page;
  /** Errors that the page did not catch, and what it wrote to the console as one. */
  problems: string[];
}

/** Opens the page, and waits for its first answer. */
export async function open(
  browser: Browser,
  address: string,
  options: BrowserContextOptions = {},
): Promise<Opened> {
  const context = await browser.newContext({ viewport: { width: 1320, height: 900 }, ...options });
  const page = await context.newPage();
  page.setDefaultTimeout(8000);
  const problems: string[] = [];
  page.on("pageerror", (error) => problems.push(error.message));
  page.on("console", (message) => {
    if (message.type() === "error") problems.push(message.text());
  });
  await page.goto(address);
  await settled(page);
  return { page, problems };
}

/** Waits until the question of now is answered, refused or stopped, and says which. */
export function settled(page: Page): Promise<string> {
  return page.evaluate(async () => {
    const state = () => document.querySelector<HTMLElement>(".status")?.dataset["state"] ?? "";
    // What was typed last is a question only after the next drawing.
    await new Promise((done) => requestAnimationFrame(() => setTimeout(done)));
    const end = performance.now() + 15_000;
    while (state() === "running" && performance.now() < end) {
      await new Promise((done) => setTimeout(done, 4));
    }
    return state();
  });
}

let asked = 0;

/** Another question in the address of the open page. */
export async function go(page: Page, hash: string): Promise<string> {
  await page.evaluate(
    (to) => {
      const heard = new Promise((done) => addEventListener("hashchange", done, { once: true }));
      location.hash = to;
      return heard;
    },
    `${hash}&n=${++asked}`, // the same address again would be no change of it
  );
  return settled(page);
}

export const player = (page: Page, at: number) => page.locator(`#player-${at}`);
export const cell = (page: Page, name: string) =>
  page.locator(".cell", { has: page.locator(`.cell-name:text-is("${name}")`) });

/** Equities as the page shows them, "54.25". */
export async function equities(page: Page): Promise<string[]> {
  const texts = await page.locator(".equity").allTextContents();
  return texts.map((text) => /^[\d.]*/.exec(text)?.[0] ?? "");
}
