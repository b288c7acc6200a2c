// The curve of a range: its hands sorted by equity, the best first, each as wide as its part of the range.

import type { HandOutcome } from "pokermath";

export interface Step {
  /** Where the hand begins and ends, 0..1 of the range. */
  from: number;
  to: number;
  equity: number;
}

/** A hand's width is its weight times how often it was dealt: blocked hands are narrow. */
export function stepsOf(hands: readonly HandOutcome[]): Step[] {
  const possible = hands.filter((hand) => hand.equity !== null && hand.cases > 0);
  const sorted = possible.sort((a, b) => (b.equity ?? 0) - (a.equity ?? 0));
  const all = sorted.reduce((sum, hand) => sum + hand.cases, 0);
  const steps: Step[] = [];
  let before = 0;
  for (const { cases, equity } of sorted) {
    steps.push({ from: before / all, to: (before + cases) / all, equity: equity ?? 0 });
    before += cases;
  }
  return steps;
}

/** Equity at a place of the range, 0..1. */
export function equityAt(steps: readonly Step[], place: number): number | null {
  const step = steps.find(({ to }) => place <= to) ?? steps[steps.length - 1];
  return step?.equity ?? null;
}

/** Steps as the path of a drawing `size` units wide and high; neighbours that look alike become one. */
export function pathOf(steps: readonly Step[], size: number): string {
  let path = "";
  let height: string | null = null;
  for (const { from, to, equity } of steps) {
    const y = (size * (1 - equity)).toFixed(1);
    if (height === null) path = `M${(size * from).toFixed(1)} ${y}`;
    else if (y !== height) path += `V${y}`;
    if (y === height) path = path.slice(0, path.lastIndexOf("H"));
    path += `H${(size * to).toFixed(1)}`;
    height = y;
  }
  return path;
}
