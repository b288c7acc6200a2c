// The range of one player: tools and grid, or for games with more cards a list of what the text means.
//
// Text and grid are one range. The text is what is kept (undo, address); what it means comes from the
// calculator. A stroke is shown at once and becomes text as fast as the calculator writes it; until then,
// and as long as that text stands, the painted weights are shown.

import { useMemo, useRef, useState } from "preact/hooks";
import type { Game, PlayerAnswer, RangeReading } from "pokermath";
import { useCalculator, useLatest, useReading } from "./calculator.js";
import { canonical, holeCards, ranksOf } from "./cards.js";
import { cellsOf, listOf, paint, weightsOf, type Weights } from "./grid.js";
import { HandList } from "./hand_list.js";
import { HeatLegend } from "./legend.js";
import { RangeGrid } from "./range_grid.js";
import { Suits } from "./suits.js";
import { PRESETS, SHORT_PRESETS, T } from "./texts.js";

interface RangeProps {
  game: Game;
  at: number;
  text: string;
  answer: PlayerAnswer | null;
  onText: (at: number, text: string, key: string) => void;
  /** Whether the equity of single holdings is wanted. */
  onSuits: (open: boolean) => void;
}

export function RangePanel(props: RangeProps) {
  const reading = useReading(props.game, props.text);
  if (holeCards(props.game) !== 2) return <HandList reading={reading} answer={props.answer} />;
  return <GridPanel {...props} reading={reading} />;
}

const NO_WEIGHTS: Weights = new Map();

interface Draft {
  at: number;
  weights: Weights;
  /** What they became as text; null while that is not known. */
  text: string | null;
}

/** The weights that stand for the text, and a way to change them. */
function usePaintedText({
  game,
  at,
  text,
  onText,
  reading,
}: RangeProps & { reading: RangeReading | null }) {
  const calculator = useCalculator();
  const [draft, setDraft] = useState<Draft | null>(null);
  const read = useMemo(() => weightsOf(reading?.weights ?? []), [reading]);
  const write = useLatest(async (job: { at: number; weights: Weights; step: string }) => {
    const written = await calculator.rangeText(game, listOf(job.weights));
    setDraft((now) => (now?.weights === job.weights ? { ...now, text: written } : now));
    onText(job.at, written, job.step);
  });
  const onPaint = (weights: Weights, step: string) => {
    setDraft({ at, weights, text: null });
    write({ at, weights, step });
  };
  const holds = draft !== null && draft.at === at && (draft.text === null || draft.text === text);
  const fromText = text.trim() === "" ? NO_WEIGHTS : read;
  return { weights: holds ? draft.weights : fromText, onPaint };
}

function GridPanel(props: RangeProps & { reading: RangeReading | null }) {
  const { game, at, answer } = props;
  const ranks = ranksOf(game);
  const cells = cellsOf(ranks);
  const { weights, onPaint } = usePaintedText(props);
  const [brush, setBrush] = useState(1);
  const [open, setOpen] = useState<number | null>(null);
  const focused = useRef(0);
  const classes = useEquities(answer);
  const holdings = useHoldings(answer);
  const openSuits = (index: number | null) => {
    setOpen(index);
    props.onSuits(index !== null);
  };
  const opened = open === null ? undefined : cells[open];
  const all = (ranks.length * 4 * (ranks.length * 4 - 1)) / 2;
  return (
    <div class="range-panel">
      <div class="range-parts">
        <Tools
          game={game}
          brush={brush}
          onBrush={setBrush}
          onText={(text, key) => props.onText(at, text, key)}
          onAll={() =>
            onPaint(
              paint(
                NO_WEIGHTS,
                cells.flatMap((cell) => cell.hands),
                brush,
              ),
              "",
            )
          }
          onNone={() => onPaint(NO_WEIGHTS, "")}
          onSuits={() => openSuits(open === null ? focused.current : null)}
          suitsOpen={open !== null}
          top={props.text}
        />
        <div class="grid-box">
          <RangeGrid
            label={T.grid(at)}
            cells={cells}
            size={ranks.length}
            weights={weights}
            equities={classes}
            answered={answer?.classes !== undefined}
            brush={brush}
            open={open}
            onPaint={onPaint}
            onFocusCell={(index) => {
              focused.current = index;
              if (open !== null) setOpen(index);
            }}
            onOpen={(index) => openSuits(open === index ? null : index)}
          />
        </div>
        <div class="range-side">
          <p class="in-range">{T.inRange(weights.size, all)}</p>
          {opened === undefined ? (
            <HeatLegend />
          ) : (
            <Suits
              cell={opened}
              weights={weights}
              equities={holdings}
              brush={brush}
              onPaint={onPaint}
              onClose={() => openSuits(null)}
            />
          )}
        </div>
      </div>
      <p class="note hint" id="grid-help">
        {T.gridHelp}
      </p>
    </div>
  );
}

function useEquities(answer: PlayerAnswer | null): ReadonlyMap<string, number> {
  const classes = answer?.classes;
  return useMemo(() => {
    const found = new Map<string, number>();
    for (const row of classes ?? []) if (row.equity !== null) found.set(row.class, row.equity);
    return found;
  }, [classes]);
}

function useHoldings(answer: PlayerAnswer | null): ReadonlyMap<string, number> {
  const hands = answer?.hands_detail;
  return useMemo(() => {
    const found = new Map<string, number>();
    for (const { hand, equity } of hands ?? []) {
      const [first, second] = hand;
      if (equity === null || first === undefined || second === undefined) continue;
      found.set(canonical(first, second), equity);
    }
    return found;
  }, [hands]);
}

interface ToolsProps {
  game: Game;
  brush: number;
  onBrush: (brush: number) => void;
  onText: (text: string, key: string) => void;
  onAll: () => void;
  onNone: () => void;
  onSuits: () => void;
  suitsOpen: boolean;
  /** The text, which the slider shows where it is a mere percentage. */
  top: string;
}

function Tools(props: ToolsProps) {
  const percentage = /^\s*(\d+(?:\.\d+)?)%\s*$/.exec(props.top)?.[1];
  const presets = props.game.startsWith("shortdeck") ? SHORT_PRESETS : PRESETS;
  return (
    <div class="tools">
      <label class="tool slider">
        <span>
          {T.top} <output>{percentage === undefined ? "–" : `${percentage}\u202f%`}</output>
        </span>
        <input
          type="range"
          min={1}
          max={100}
          step={1}
          value={percentage === undefined ? 1 : Number(percentage)}
          aria-label={T.topSlider}
          onInput={(event) => props.onText(`${event.currentTarget.value}%`, "slider")}
        />
      </label>
      <label class="tool slider">
        <span>
          {T.brush} <output>{`${Math.round(100 * props.brush)}\u202f%`}</output>
        </span>
        <input
          type="range"
          min={5}
          max={100}
          step={5}
          value={100 * props.brush}
          aria-label={T.brushWeight}
          onInput={(event) => props.onBrush(Number(event.currentTarget.value) / 100)}
        />
      </label>
      <div class="tool-buttons">
        <select
          class="presets"
          aria-label={T.preset}
          value=""
          onChange={(event) => {
            props.onText(event.currentTarget.value, "");
            event.currentTarget.value = "";
          }}
        >
          <option value="" disabled>
            {T.preset}
          </option>
          {presets.map((preset) => (
            <option key={preset.name} value={preset.text}>
              {preset.name}
            </option>
          ))}
        </select>
        <button type="button" class="button" onClick={props.onAll}>
          {T.allHands}
        </button>
        <button type="button" class="button" onClick={props.onNone}>
          {T.noHands}
        </button>
        <button type="button" class="button" aria-pressed={props.suitsOpen} onClick={props.onSuits}>
          {T.suits}
        </button>
      </div>
    </div>
  );
}
