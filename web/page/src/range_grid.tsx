// The range as a square of cells that one paints; the fill of a cell is as high as its weight and as blue
// or orange as its equity.
//
// Only what a cell shows is given to it, as plain values, so that a stroke or an answer draws the few cells
// anew that it changed. Painting follows the pointer by its place, not by the element below it: events
// come less often than cells.

import { memo } from "preact/compat";
import { useEffect, useRef, useState } from "preact/hooks";
import { andBetter, cellsBetween, neighbour, paint, share, strokeFrom, turned } from "./grid.js";
import type { Cell, Point, Weights } from "./grid.js";
import { heat } from "./heat.js";
import { T } from "./texts.js";

interface CellProps {
  at: number;
  label: string;
  /** Thousandths, so that equal views are equal numbers. */
  weight: number;
  equity: number | null;
  blocked: boolean;
  focused: boolean;
  open: boolean;
}

const GridCell = memo(function GridCell(props: CellProps) {
  const { at, label, weight, equity, blocked } = props;
  const [whole, decimal] = equity === null ? [] : (100 * equity).toFixed(1).split(".");
  const kind =
    weight === 0 ? "out" : blocked ? "blocked" : equity === null ? "plain" : heat(equity).side;
  return (
    <div
      role="gridcell"
      class={`cell ${kind} ${props.open ? "open" : ""}`}
      data-cell={at}
      tabIndex={props.focused ? 0 : -1}
      aria-selected={weight > 0}
      aria-label={T.cell(label, weight / 1000, equity, blocked)}
      style={
        weight === 0
          ? ""
          : `--weight:${weight / 10}%;--heat:${equity === null ? 0 : heat(equity).strength}%`
      }
    >
      <span class="cell-name">{label}</span>{" "}
      {equity !== null && weight > 0 && (
        <span class="cell-equity">
          {whole}
          <span class="decimal">.{decimal}</span>
        </span>
      )}
    </div>
  );
});

interface GridProps {
  label: string;
  cells: readonly Cell[];
  size: number;
  weights: Weights;
  /** By the cell's name. */
  equities: ReadonlyMap<string, number>;
  /** Whether a cell without equity is one without a possible hand. */
  answered: boolean;
  brush: number;
  /** The text cannot be read: what is shown is an earlier range. */
  locked: boolean;
  open: number | null;
  /** Changes with the same name are one step for undo; "" is a step of its own. */
  onPaint: (weights: Weights, step: string) => void;
  onFocusCell: (at: number) => void;
  onOpen: (at: number) => void;
}

export function RangeGrid(props: GridProps) {
  const { cells, size, weights, brush, onPaint } = props;
  const [at, setAt] = useState(0);
  const box = useRef<HTMLDivElement>(null);
  const latest = useRef(props);
  latest.current = props;

  usePainting(box, latest);
  useWheel(box, latest);

  const onFocus = (event: FocusEvent) => {
    const index = cellAt(event.target);
    if (index === at || cells[index] === undefined) return;
    setAt(index);
    props.onFocusCell(index);
  };
  const press = (cell: Cell) =>
    onPaint(paint(weights, cell.hands, strokeFrom(weights, cell, brush)), "");
  // Pointers paint as they go down; a click without one comes from a screen reader or the like.
  const onClick = (event: MouseEvent) => {
    const cell = cells[cellAt(event.target)];
    if (cell !== undefined && event.detail === 0) press(cell);
  };
  const onKey = (event: KeyboardEvent) => {
    const index = cellAt(event.target);
    const cell = cells[index];
    if (cell === undefined || event.ctrlKey || event.metaKey || event.altKey) return;
    const to = neighbour(index, event.key, size);
    if (to !== null) focusCell(box, to);
    else if (event.key === " ") press(cell);
    else if (event.key === "Enter") props.onOpen(index);
    else if (event.key === "Delete") onPaint(paint(weights, cell.hands, 0), "");
    else if ("+-=−".includes(event.key)) {
      onPaint(turned(weights, cell, event.key === "+" || event.key === "="), cell.label);
    } else return;
    event.preventDefault();
  };

  return (
    <div
      ref={box}
      class="grid"
      role="grid"
      aria-label={props.label}
      aria-describedby="grid-help"
      aria-disabled={props.locked}
      style={{ "--size": size }}
      onKeyDown={onKey}
      onClick={onClick}
      onFocusIn={onFocus}
    >
      {Array.from({ length: size }, (_, row) => (
        <div role="row" class="grid-row" key={row}>
          {cells.slice(row * size, (row + 1) * size).map((cell, column) => {
            const index = row * size + column;
            const weight = Math.round(1000 * share(weights, cell));
            const equity = props.equities.get(cell.label) ?? null;
            return (
              <GridCell
                key={cell.label}
                at={index}
                label={cell.label}
                weight={weight}
                equity={weight > 0 ? equity : null}
                blocked={props.answered && equity === null}
                focused={index === at}
                open={index === props.open}
              />
            );
          })}
        </div>
      ))}
    </div>
  );
}

type Latest = { current: GridProps };
type Box = { current: HTMLDivElement | null };

/** The index of the cell that an event was for; -1 for none. */
function cellAt(target: EventTarget | null): number {
  const cell = target instanceof Element ? target.closest("[data-cell]") : null;
  return Number(cell?.getAttribute("data-cell") ?? -1);
}

function focusCell(box: Box, index: number) {
  box.current?.querySelector<HTMLElement>(`[data-cell='${index}']`)?.focus();
}

interface Stroke {
  pointer: number;
  name: string;
  weight: number;
  last: Point;
  weights: Weights;
}

function usePainting(box: Box, latest: Latest) {
  useEffect(() => {
    const grid = box.current;
    if (grid === null) return;
    let stroke: Stroke | null = null;

    const place = (event: PointerEvent): Point => {
      const { left, top, width, height } = grid.getBoundingClientRect();
      const { size } = latest.current;
      return {
        x: ((event.clientX - left) / width) * size,
        y: ((event.clientY - top) / height) * size,
      };
    };
    const draw = (now: Stroke, from: Point, to: Point) => {
      const { cells, size, onPaint } = latest.current;
      const hands = cellsBetween(from, to, size).flatMap((index) => cells[index]?.hands ?? []);
      now.weights = paint(now.weights, hands, now.weight);
      onPaint(now.weights, now.name);
    };
    const onDown = (event: PointerEvent) => {
      const { cells, size, weights, brush, onOpen, onPaint } = latest.current;
      const from = place(event);
      const [index] = cellsBetween(from, from, size);
      const cell = index === undefined ? undefined : cells[index];
      if (event.button !== 0 || index === undefined || cell === undefined) return;
      event.preventDefault();
      if (!event.isPrimary) return; // a second finger
      // A finger holds the cell that it touched first, which may go while it paints.
      const { target, pointerId: pointer } = event;
      if (target instanceof Element && target.hasPointerCapture(pointer)) {
        target.releasePointerCapture(pointer);
      }
      focusCell(box, index);
      if (event.shiftKey) {
        onOpen(index);
      } else if (event.altKey) {
        const line = andBetter(index, size).flatMap((other) => cells[other]?.hands ?? []);
        onPaint(paint(weights, line, brush), "");
      } else {
        const name = `stroke ${event.timeStamp}`;
        stroke = { pointer, name, weight: strokeFrom(weights, cell, brush), last: from, weights };
        draw(stroke, from, from);
      }
    };
    const onMove = (event: PointerEvent) => {
      if (stroke?.pointer !== event.pointerId) return;
      const to = place(event);
      draw(stroke, stroke.last, to);
      stroke.last = to;
    };
    const onUp = (event: PointerEvent) => {
      if (stroke?.pointer === event.pointerId) stroke = null;
    };
    grid.addEventListener("pointerdown", onDown);
    window.addEventListener("pointermove", onMove);
    window.addEventListener("pointerup", onUp);
    window.addEventListener("pointercancel", onUp);
    return () => {
      grid.removeEventListener("pointerdown", onDown);
      window.removeEventListener("pointermove", onMove);
      window.removeEventListener("pointerup", onUp);
      window.removeEventListener("pointercancel", onUp);
    };
  }, [box, latest]);
}

/**
 * The wheel changes the weight of a cell that is in the range, once the grid was clicked; before, and over
 * other cells, it scrolls the page as everywhere.
 */
function useWheel(box: Box, latest: Latest) {
  useEffect(() => {
    const grid = box.current;
    if (grid === null) return;
    const onWheel = (event: WheelEvent) => {
      const { cells, weights, onPaint } = latest.current;
      const cell = cells[cellAt(event.target)];
      if (cell === undefined || share(weights, cell) === 0 || event.deltaY === 0) return;
      if (!grid.contains(document.activeElement)) return;
      event.preventDefault();
      onPaint(turned(weights, cell, event.deltaY < 0), cell.label);
    };
    grid.addEventListener("wheel", onWheel, { passive: false });
    return () => grid.removeEventListener("wheel", onWheel);
  }, [box, latest]);
}
