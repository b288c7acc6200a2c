import { describe, expect, it } from "vitest";
import { canonicalHand, readCards, toggleCard, typeCard } from "./cards.js";
import { andBetter, cellsBetween, cellsOf, neighbour, paint, share } from "./grid.js";
import { strokeFrom, turned, weightsOf } from "./grid.js";

const cells = cellsOf("AKQJT98765432");
const cell = (label: string) => {
  const found = cells.find((one) => one.label === label);
  if (found === undefined) throw new Error(label);
  return found;
};

describe("cells of a deck", () => {
  it.each([
    ["AKQJT98765432", 1326],
    ["AKQJT9876", 630],
  ])("hold every hand of %s once", (ranks, hands) => {
    const all = cellsOf(ranks).flatMap((one) => one.hands);
    expect(all.length).toBe(hands);
    expect(new Set(all).size).toBe(hands);
    expect(all.every((hand) => canonicalHand(hand) === hand)).toBe(true);
  });

  it("have suited hands above the diagonal", () => {
    expect(cells[1]?.label).toBe("AKs");
    expect(cells[13]?.label).toBe("AKo");
    expect(cell("AKo").hands).not.toContain("AhKh");
  });
});

describe("painting", () => {
  it("reads holdings in any spelling, and keeps parts of a cell", () => {
    const weights = weightsOf([
      ["KdAh", 1],
      ["AcKs", 0.5],
    ]);
    expect(share(weights, cell("AKo"))).toBeCloseTo(1.5 / 12);
    expect(share(weights, cell("AKs"))).toBe(0);
  });

  it("goes by what the first cell was", () => {
    const half = paint(new Map(), cell("AKs").hands, 0.5);
    expect(strokeFrom(half, cell("AKs"), 0.5)).toBe(0);
    expect(strokeFrom(half, cell("AKs"), 1)).toBe(1);
    expect(strokeFrom(half, cell("AA"), 0.5)).toBe(0.5);
    const part = paint(half, ["AhKh"], 0);
    expect(strokeFrom(part, cell("AKs"), 0.5)).toBe(0.5);
  });

  it("fills in the cells that a fast pointer jumped over, and none outside", () => {
    expect(cellsBetween({ x: 0.5, y: 0.5 }, { x: 5.5, y: 0.5 }, 13)).toEqual([0, 1, 2, 3, 4, 5]);
    const diagonal = cellsBetween({ x: 2.5, y: 2.5 }, { x: 5.5, y: 5.5 }, 13);
    for (const at of [28, 42, 56, 70]) expect(diagonal).toContain(at);
    expect(cellsBetween({ x: 12.5, y: 12.5 }, { x: 30, y: 12.5 }, 13)).toEqual([168]);
    expect(cellsBetween({ x: -3, y: -3 }, { x: -1, y: -1 }, 13)).toEqual([]);
  });

  it("turns weights by twentieths and never drops a cell", () => {
    const hands = cell("QQ").hands;
    const share17 = (weight: number, up: boolean) =>
      share(turned(paint(new Map(), hands, weight), cell("QQ"), up), cell("QQ"));
    expect(share17(0.5, true)).toBeCloseTo(0.55);
    expect(share17(0.52, false)).toBeCloseTo(0.5);
    expect(share17(0.05, false)).toBeCloseTo(0.05);
    expect(share17(1, true)).toBe(1);
  });

  it("takes a hand and the better ones of its line", () => {
    const names = (label: string) =>
      andBetter(cells.indexOf(cell(label)), 13).map((at) => cells[at]?.label);
    expect(names("QQ")).toEqual(["AA", "KK", "QQ"]);
    expect(names("ATs")).toEqual(["AKs", "AQs", "AJs", "ATs"]);
    expect(names("K9o")).toEqual(["KQo", "KJo", "KTo", "K9o"]);
  });

  it("stays inside when arrows reach an edge", () => {
    expect(neighbour(0, "ArrowUp", 13)).toBe(0);
    expect(neighbour(12, "ArrowRight", 13)).toBe(12);
    expect(neighbour(14, "End", 13)).toBe(25);
    expect(neighbour(14, "x", 13)).toBeNull();
  });
});

describe("cards from text", () => {
  it("reads what people type and nothing else", () => {
    expect(readCards("ah 10♥, kD")).toEqual(["Ah", "Th", "Kd"]);
    expect(readCards("A♥️K♦")).toEqual(["Ah", "Kd"]);
    expect(readCards("Ahx")).toBeNull();
    expect(readCards("")).toEqual([]);
  });

  it("adds and takes away", () => {
    expect(toggleCard("2c7d", "Th", 5)).toBe("2c7dTh");
    expect(toggleCard("2c7d", "7d", 5)).toBe("2c");
    expect(toggleCard("2c7d", "Th", 2)).toBe("2c7d");
    expect(toggleCard("2c7dTx", "9s", 5)).toBe("2c7d9s");
  });

  it("takes keys on a deck: rank, then suit", () => {
    expect(typeCard("", "a")).toEqual({ pending: "A" });
    expect(typeCard("A", "s")).toEqual({ pending: "", card: "As" });
    expect(typeCard("", "s")).toEqual({ pending: "" });
    expect(typeCard("A", "k")).toEqual({ pending: "K" });
    expect(typeCard("1", "0").pending).toBe("T");
    expect(typeCard("A", "Enter")).toEqual({ pending: "" });
  });
});
