// The range of one player: tools and grid, or for games with more cards a list of what the text means.
//
// Text and grid are one range. The text is what is kept (undo, address); what it means comes from the
// calculator. A stroke is shown at once and becomes text as fast as the calculator writes it; until then,
// and as long as that text stands, the painted weights are shown.

import { useEffect, useMemo, useRef, useState } from "preact/hooks";
import type { Game, PlayerAnswer } from "pokermath";
import { useCalculator, useLatest, useReading, type Reading } from "./calculator.js";
import { canonical, holeCards, ranksOf } from "./cards.js";
import { cellsOf, listOf, paint, weightsOf, type Weights } from "./grid.js";
import { Note } from "./controls.js";
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
  /** Whether the answer is of an earlier question. */
  earlier: boolean;
  onText: (at: number, text: string, key: string) => void;
  /** Whether the equity of single holdings is wanted. */
  onSuits: (open: boolean) => void;
}

export function RangePanel(props: RangeProps) {
  const { game, at, text, answer } = props;
  const reading = useReading(game, text, at);
  if (holeCards(game) === 2) return <GridPanel key={game} {...props} reading={reading} />;
  return <HandList key={`${game} ${at}`} reading={reading.meaning} answer={answer} />;
}

const NO_WEIGHTS: Weights = new Map();

interface Draft {
  at: number;
  weights: Weights;
  /** What they became as text; null while that is not known. */
  text: string | null;
}

/** The weights that stand for the text, and a way to change them. */
function usePaintedText({ game, at, text, onText, reading }: RangeProps & { reading: Reading }) {
  const calculator = useCalculator();
  const [draft, setDraft] = useState<Draft | null>(null);
  const [failure, setFailure] = useState("");
  const { meaning } = reading;
  const fromText = useMemo(() => weightsOf(meaning?.weights ?? []), [meaning]);
  const write = useLatest(
    async (job: { at: number; weights: Weights; step: string }) => {
      const written = await calculator.rangeText(game, listOf(job.weights));
      setDraft((now) => (now?.weights === job.weights ? { ...now, text: written } : now));
      onText(job.at, written, job.step);
    },
    (problem) => {
      setDraft(null);
      setFailure(T.failed(problem instanceof Error ? problem.message : String(problem)));
    },
  );
  /** The whole range anew, whatever the text is. */
  const replace = (weights: Weights, step: string) => {
    setFailure("");
    setDraft({ at, weights, text: null });
    write({ at, weights, step });
  };
  const holds = draft !== null && draft.at === at && (draft.text === null || draft.text === text);
  const empty = text.trim() === "";
  const known = holds || empty || reading.read;
  return {
    weights: holds ? draft.weights : empty ? NO_WEIGHTS : fromText,
    /** A change of what stands there, which for that must be known. */
    paint: (weights: Weights, step: string) => {
      if (known) replace(weights, step);
    },
    replace,
    /** Whether the weights stand in the text already. */
    written: !holds || draft.text !== null,
    locked: !known && reading.wrong,
    failure,
  };
}

function GridPanel(props: RangeProps & { reading: Reading }) {
  const { game, at, answer, onSuits } = props;
  const ranks = ranksOf(game);
  const cells = cellsOf(ranks);
  const painted = usePaintedText(props);
  const { weights, locked } = painted;
  const [brush, setBrush] = useState(1);
  const [open, setOpen] = useState<number | null>(null);
  const focused = useRef(0);
  const box = useRef<HTMLDivElement>(null);
  const classes = useEquities(answer);
  const holdings = useHoldings(answer);
  const suitsOpen = open !== null;
  useEffect(() => {
    onSuits(suitsOpen);
    return () => onSuits(false);
  }, [suitsOpen, onSuits]);
  const closeSuits = () => {
    box.current?.querySelector<HTMLElement>(`[data-cell='${open}']`)?.focus();
    setOpen(null);
  };
  const opened = open === null ? undefined : cells[open];
  const all = (ranks.length * 4 * (ranks.length * 4 - 1)) / 2;
  return (
    <div class="range-panel">
      <div
        class="range-parts"
        onKeyDown={(event) => {
          if (event.key === "Escape" && suitsOpen) closeSuits();
        }}
      >
        <Tools
          game={game}
          brush={brush}
          onBrush={setBrush}
          onText={(text, key) => props.onText(at, text, key)}
          onAll={() =>
            painted.replace(
              paint(
                NO_WEIGHTS,
                cells.flatMap((cell) => cell.hands),
                brush,
              ),
              "",
            )
          }
          onNone={() => painted.replace(NO_WEIGHTS, "")}
          onSuits={() => setOpen(suitsOpen ? null : focused.current)}
          suitsOpen={suitsOpen}
          top={props.text}
        />
        <div class="grid-box" ref={box}>
          <RangeGrid
            label={T.grid(at)}
            cells={cells}
            size={ranks.length}
            weights={weights}
            equities={classes}
            answered={answer?.classes !== undefined && !props.earlier && painted.written}
            brush={brush}
            locked={locked}
            open={open}
            onPaint={painted.paint}
            onFocusCell={(index) => {
              focused.current = index;
              if (suitsOpen) setOpen(index);
            }}
            onOpen={(index) => setOpen(open === index ? null : index)}
          />
        </div>
        <div class="range-side">
          <p class="in-range">{locked ? T.locked : T.inRange(weights.size, all)}</p>
          {painted.failure !== "" && <Note kind="error">{painted.failure}</Note>}
          {opened === undefined ? (
            <HeatLegend />
          ) : (
            <Suits
              cell={opened}
              weights={weights}
              equities={holdings}
              brush={brush}
              onPaint={painted.paint}
              onClose={closeSuits}
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

interface PresetsProps {
  presets: readonly { name: string; text: string }[];
  onText: (text: string, key: string) => void;
}

/** Each arrow key chooses another one of a closed list: with keys, Enter is what takes it. */
function Presets({ presets, onText }: PresetsProps) {
  const [chosen, setChosen] = useState("");
  const byKeys = useRef(false);
  return (
    <select
      class="presets"
      aria-label={T.preset}
      title={T.presetHint}
      value={chosen}
      onPointerDown={() => {
        byKeys.current = false;
      }}
      onKeyDown={(event) => {
        byKeys.current = true;
        if (event.key !== "Enter" || chosen === "") return;
        event.preventDefault();
        onText(chosen, "");
        setChosen("");
      }}
      onChange={(event) => {
        const text = event.currentTarget.value;
        if (byKeys.current) return setChosen(text);
        onText(text, "");
        event.currentTarget.value = chosen;
      }}
      onBlur={() => {
        setChosen("");
        byKeys.current = false;
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
  );
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
        <Presets presets={presets} onText={props.onText} />
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
