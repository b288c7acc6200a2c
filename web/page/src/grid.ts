// A range as a square of cells: pairs on the diagonal, suited hands above it, offsuit ones below. Weights
// are kept for each holding, so that text and cells are two views of the same thing.

import { SUITS, canonical, canonicalHand } from "./cards.js";

/** Weights 0..1 of holdings in their canonical spelling; a holding that is not in it has none. */
export type Weights = ReadonlyMap<string, number>;

export interface Cell {
  label: string;
  /** Holdings, canonical. */
  hands: readonly string[];
}

const decks = new Map<string, readonly Cell[]>();

/** The cells of a deck with these ranks, row by row. */
export function cellsOf(ranks: string): readonly Cell[] {
  const made = decks.get(ranks) ?? makeCells(ranks);
  decks.set(ranks, made);
  return made;
}

function makeCells(ranks: string): Cell[] {
  const cells: Cell[] = [];
  for (let row = 0; row < ranks.length; ++row) {
    for (let column = 0; column < ranks.length; ++column) {
      const high = ranks.charAt(Math.min(row, column));
      const low = ranks.charAt(Math.max(row, column));
      const kind = row === column ? "" : row < column ? "s" : "o";
      cells.push({ label: high + low + kind, hands: holdings(high, low, kind) });
    }
  }
  return cells;
}

function holdings(high: string, low: string, kind: string): string[] {
  const hands = new Set<string>();
  for (const first of SUITS) {
    for (const second of SUITS) {
      if ((first === second) === (kind === "s")) hands.add(canonical(high + first, low + second));
    }
  }
  return [...hands];
}

export function weightsOf(list: readonly (readonly [string, number])[]): Weights {
  return new Map(list.map(([hand, weight]) => [canonicalHand(hand), weight]));
}

/** As the calculator wants them; weights are ten-thousandths there. */
export function listOf(weights: Weights): [string, number][] {
  return [...weights].map(([hand, weight]) => [hand, Math.round(weight * 1e4) / 1e4]);
}

/** What of a cell is in the range, 0..1: the mean weight of its holdings. */
export function share(weights: Weights, cell: Cell): number {
  let sum = 0;
  for (const hand of cell.hands) sum += weights.get(hand) ?? 0;
  return sum / cell.hands.length;
}

/** Whether all holdings of a cell have this weight. */
function isWhole(weights: Weights, cell: Cell, weight: number): boolean {
  return cell.hands.every((hand) => Math.abs((weights.get(hand) ?? 0) - weight) < 1e-9);
}

/** What a stroke that begins at this cell paints: the brush, or nothing where that is what stood there. */
export function strokeFrom(weights: Weights, cell: Cell, brush: number): number {
  return isWhole(weights, cell, brush) ? 0 : brush;
}

export function paint(weights: Weights, hands: Iterable<string>, weight: number): Weights {
  const painted = new Map(weights);
  for (const hand of hands) {
    if (weight > 0) painted.set(hand, weight);
    else painted.delete(hand);
  }
  return painted;
}

/** A turn of the wheel: twentieths, never below one and so never out of the range. */
export function turned(weights: Weights, cell: Cell, up: boolean): Weights {
  const twentieths = share(weights, cell) * 20;
  const next = up ? Math.floor(twentieths + 1e-9) + 1 : Math.ceil(twentieths - 1e-9) - 1;
  return paint(weights, cell.hands, Math.min(20, Math.max(1, next)) / 20);
}

export interface Point {
  x: number;
  y: number;
}

/**
 * Cells on the way of the pointer from one place to another, both in units of cells. A fast hand leaves
 * several cells between two events; all of them count.
 */
export function cellsBetween(from: Point, to: Point, size: number): number[] {
  const steps = Math.max(
    1,
    Math.ceil(4 * Math.max(Math.abs(to.x - from.x), Math.abs(to.y - from.y))),
  );
  const passed = new Set<number>();
  for (let step = 0; step <= steps; ++step) {
    const column = Math.floor(from.x + ((to.x - from.x) * step) / steps);
    const row = Math.floor(from.y + ((to.y - from.y) * step) / steps);
    if (row >= 0 && row < size && column >= 0 && column < size) passed.add(row * size + column);
  }
  return [...passed];
}

/** A cell and the better ones of its line: higher pairs, or the same high card with a higher second one. */
export function andBetter(index: number, size: number): number[] {
  const row = Math.floor(index / size);
  const column = index % size;
  const cells: number[] = [];
  if (row === column) for (let at = 0; at <= row; ++at) cells.push(at * size + at);
  if (row < column) for (let at = row + 1; at <= column; ++at) cells.push(row * size + at);
  if (row > column) for (let at = column + 1; at <= row; ++at) cells.push(at * size + column);
  return cells;
}

/** Where an arrow key (or Home, End) leads from a cell. */
export function neighbour(index: number, key: string, size: number): number | null {
  const row = Math.floor(index / size);
  const column = index % size;
  const last = size - 1;
  switch (key) {
    case "ArrowLeft":
      return row * size + Math.max(0, column - 1);
    case "ArrowRight":
      return row * size + Math.min(last, column + 1);
    case "ArrowUp":
      return Math.max(0, row - 1) * size + column;
    case "ArrowDown":
      return Math.min(last, row + 1) * size + column;
    case "Home":
      return row * size;
    case "End":
      return row * size + last;
    default:
      return null;
  }
}
