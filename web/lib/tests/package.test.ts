// The package as others get it: packed, installed into an empty folder, used as its README says.

import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath } from "node:url";

import { afterAll, beforeAll, expect, test } from "vitest";

import { version } from "../package.json";

const kLib = fileURLToPath(new URL("..", import.meta.url));
const kProject = join(kLib, "../..");
const folder = mkdtempSync(join(tmpdir(), "pokermath-package-"));

function run(program: string, args: string[], cwd = folder): string {
  return execFileSync(program, args, { cwd, encoding: "utf8", stdio: ["ignore", "pipe", "pipe"] });
}

function readme(language: string): string[] {
  const text = readFileSync(join(kLib, "README.md"), "utf8");
  return [...text.matchAll(/^```(\w+)\n(.*?)^```$/gms)]
    .filter((block) => block[1] === language)
    .map((block) => block[2] ?? "");
}

beforeAll(() => {
  run("npm", ["pack", "--pack-destination", folder], kLib);
  writeFileSync(join(folder, "package.json"), '{ "private": true, "type": "module" }');
  run("npm", ["install", "--offline", `./pokermath-${version}.tgz`]);
}, 60_000);
afterAll(() => rmSync(folder, { recursive: true }));

test("the examples of the README print what it says", () => {
  const programs = readme("js");
  const outputs = programs.map((program, i) => {
    writeFileSync(join(folder, `example${i}.js`), program);
    return run("node", [`example${i}.js`]);
  });
  expect(outputs).toEqual(readme("text"));
  expect(programs).toHaveLength(3);
}, 60_000);

test("the types compile without those of browsers", () => {
  writeFileSync(join(folder, "use.ts"), kUse);
  const tsc = createRequire(import.meta.url).resolve("typescript/bin/tsc");
  const flags = "--strict --noEmit --module nodenext --target es2022 --lib es2022".split(" ");
  const types = ["--types", "node", "--typeRoots", join(kLib, "../node_modules/@types")];
  expect(run("node", [tsc, ...flags, ...types, "use.ts"])).toBe("");
}, 60_000);

const kUse = `
import { calculate, type Answer, type Question } from "pokermath";
const question: Question = { players: ["AhKd", ["7s", "7c"]], detail: ["class"] };
const answer: Answer = await calculate(question, { signal: AbortSignal.timeout(1000) });
const equity: number = answer.players[0]!.equity;
// @ts-expect-error: there is no such game
await calculate({ players: [], game: "draughts" });
export default equity;
`;

test("the version is the project's", () => {
  const header = readFileSync(join(kProject, "include/pokermath/version.h"), "utf8");
  expect(header).toContain(`#define POKERMATH_VERSION_STRING "${version}"`);
});

test("the licence is the project's, and those of others are with it", () => {
  const text = (path: string) => readFileSync(path, "utf8");
  expect(text(join(kLib, "LICENSE"))).toBe(text(join(kProject, "LICENSE")));
  const notices = text(join(kProject, "docs/licences.md"));
  expect(text(join(folder, "node_modules/pokermath/dist/licences.md"))).toBe(notices);
});
