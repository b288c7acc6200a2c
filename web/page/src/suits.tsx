// The single holdings of a cell: which of them are in the range, and how each stands.

import type { Cell, Weights } from "./grid.js";
import { paint, strokeFrom } from "./grid.js";
import { heat } from "./heat.js";
import { Cards, IconButton } from "./controls.js";
import { T } from "./texts.js";

interface SuitsProps {
  cell: Cell;
  weights: Weights;
  /** By canonical holding. */
  equities: ReadonlyMap<string, number>;
  brush: number;
  onPaint: (weights: Weights, step: string) => void;
  onClose: () => void;
}

export function Suits({ cell, weights, equities, brush, onPaint, onClose }: SuitsProps) {
  return (
    <section class="suits" aria-label={T.suitsOf(cell.label)}>
      <header>
        <h3>{cell.label}</h3>
        <button
          type="button"
          class="button"
          onClick={() => onPaint(paint(weights, cell.hands, strokeFrom(weights, cell, brush)), "")}
        >
          {T.wholeCell}
        </button>
        <IconButton icon="close" label={T.closeSuits} onClick={onClose} />
      </header>
      <div class="suit-list">
        {cell.hands.map((hand) => {
          const weight = weights.get(hand) ?? 0;
          const equity = weight > 0 ? (equities.get(hand) ?? null) : null;
          const warmth = equity === null ? null : heat(equity);
          const next = Math.abs(weight - brush) < 1e-9 ? 0 : brush;
          return (
            <button
              key={hand}
              type="button"
              class={`holding ${weight === 0 ? "out" : (warmth?.side ?? "plain")}`}
              aria-pressed={weight > 0}
              onClick={() => onPaint(paint(weights, [hand], next), "")}
            >
              <span class="unseen">{T.holding(hand, weight, equity)}</span>
              <span
                class="fill"
                style={{
                  height: `${100 * weight}%`,
                  ...(warmth === null ? {} : { "--heat": `${warmth.strength}%` }),
                }}
              />
              <span class="holding-text" aria-hidden="true">
                <Cards cards={[hand.slice(0, 2), hand.slice(2)]} />
                <span class="holding-equity">
                  {equity === null ? "" : (100 * equity).toFixed(1)}
                </span>
              </span>
            </button>
          );
        })}
      </div>
    </section>
  );
}
