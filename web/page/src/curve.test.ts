import { expect, it } from "vitest";
import { equityAt, pathOf, stepsOf } from "./curve.js";

const hand = (equity: number | null, cases: number) => ({
  hand: ["Ah", "Kd"],
  weight: 1,
  cases,
  equity,
  wins: 0,
  ties: 0,
});

it("sorts hands, each as wide as it is often dealt, and leaves blocked ones out", () => {
  const steps = stepsOf([hand(0.25, 30), hand(null, 0), hand(0.75, 10)]);
  expect(steps).toEqual([
    { from: 0, to: 0.25, equity: 0.75 },
    { from: 0.25, to: 1, equity: 0.25 },
  ]);
  expect(equityAt(steps, 0)).toBe(0.75);
  expect(equityAt(steps, 0.3)).toBe(0.25);
  expect(equityAt(steps, 1)).toBe(0.25);
  expect(equityAt([], 0.5)).toBeNull();
});

it("draws a line of steps, neighbours of one height as one", () => {
  const steps = stepsOf([hand(0.75, 1), hand(0.75, 1), hand(0.25, 2)]);
  expect(pathOf(steps, 400)).toBe("M0.0 100.0H200.0V300.0H400.0");
  expect(pathOf([], 400)).toBe("");
});
