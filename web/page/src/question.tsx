// The left half of the page: the question.

import { useEffect, useState } from "preact/hooks";
import type { Game, Method, PlayerAnswer, PokermathError, Street } from "pokermath";
import { errorAt, useReading } from "./calculator.js";
import { cardsInUse, MOST_FOLDED, MOST_PLAYERS, replaced, without, type Query } from "./state.js";
import { ranksOf, readCards } from "./cards.js";
import { CardsField } from "./cards_field.js";
import { Choice, IconButton, Note, Select } from "./controls.js";
import { Icon } from "./icons.js";
import { Player, PotBar, RangeText } from "./players.js";
import { METHOD_NAMES, STREET_NAMES, T } from "./texts.js";

const STREETS: readonly Street[] = ["flop", "turn", "river"];
const METHODS: readonly Method[] = ["auto", "exact", "sampled"];
const ERRORS = [0.002, 0.001, 0.0005, 0.0002, 0.0001];
const LIMITS = [200, 1000, 5000, 30000];

interface QuestionProps {
  query: Query;
  chosen: number;
  error: PokermathError | null;
  /** Of the last good answer, for each player what is known. */
  answers: readonly (PlayerAnswer | null)[];
  /** Whether that is of an earlier question. */
  earlier: boolean;
  cases: number;
  low: boolean;
  onChange: (next: Query, key: string) => void;
  onText: (at: number, text: string, typed: boolean) => void;
  onRemove: (at: number) => void;
  onChoose: (at: number) => void;
}

export function QuestionPanel(props: QuestionProps) {
  const { query, error, answers, onChange } = props;
  const known = answers.filter((answer) => answer !== null);
  const ranks = ranksOf(query.game);
  const used = cardsInUse(query);
  return (
    <section class="question" aria-label={T.question}>
      <div class="panel">
        <h2>{T.board}</h2>
        <CardsField
          name={T.board}
          id="board"
          value={query.board}
          places={5}
          most={5}
          ranks={ranks}
          used={used}
          placeholder={T.boardPlaceholder}
          error={errorAt(error, "board")}
          onChange={(board, typed) => onChange({ ...query, board }, typed ? "board" : "")}
        />
        <Streets query={query} error={errorAt(error, "to")} onChange={onChange} />
      </div>
      <div class="panel">
        <h2>{T.players}</h2>
        {known.length === answers.length && <PotBar players={known} />}
        <ol class="players">
          {query.players.map((text, at) => (
            <Player
              key={at}
              at={at}
              game={query.game}
              text={text}
              chosen={props.chosen === at}
              removable={query.players.length > 2}
              answer={answers[at] ?? null}
              earlier={props.earlier}
              cases={props.cases}
              error={errorAt(error, `players/${at}`)}
              onText={props.onText}
              onRemove={props.onRemove}
              onChoose={props.onChoose}
            />
          ))}
        </ol>
        {error?.field === "players" && <Note kind="error">{error.message}</Note>}
        {query.players.length < MOST_PLAYERS && (
          <button
            type="button"
            class="button add"
            onClick={() => onChange({ ...query, players: [...query.players, "random"] }, "")}
          >
            <Icon name="plus" /> {T.addPlayer}
          </button>
        )}
        <p class="meaning">{props.low ? T.meaningLow : T.meaning}</p>
      </div>
      <More query={query} error={error} ranks={ranks} used={used} onChange={onChange} />
    </section>
  );
}

interface StreetsProps {
  query: Query;
  error: string | null;
  onChange: (next: Query, key: string) => void;
}

function Streets({ query, error, onChange }: StreetsProps) {
  const board = readCards(query.board)?.length ?? 0;
  const options = STREETS.map((value, index) => ({
    value,
    name: STREET_NAMES[value],
    disabled: board > index + 3 && value !== query.to,
  }));
  return (
    <div class="streets">
      <span class="field-name">{T.compareOn}</span>
      <Choice
        label={T.compareOn}
        value={query.to}
        options={options}
        onChange={(to) => onChange({ ...query, to }, "")}
      />
      {error !== null && <Note kind="error">{error}</Note>}
    </div>
  );
}

interface MoreProps {
  query: Query;
  error: PokermathError | null;
  ranks: string;
  used: ReadonlySet<string>;
  onChange: (next: Query, key: string) => void;
}

/** What few questions need; it opens where the question has it, and for what is wrong in it. */
function More({ query, error, ranks, used, onChange }: MoreProps) {
  const [open, setOpen] = useState(false);
  const { dead, folded, method, standardError, timeMs } = query;
  const needed =
    dead !== "" ||
    folded.length > 0 ||
    method !== "auto" ||
    standardError !== null ||
    timeMs !== null;
  const wrong = error !== null && /^(dead|folded|method|standard_error|time_ms)/.test(error.field);
  useEffect(() => {
    if (needed || wrong) setOpen(true);
  }, [needed, wrong]);
  return (
    <details class="panel more" open={open} onToggle={(event) => setOpen(event.currentTarget.open)}>
      <summary>
        {T.more} <span class="muted">{T.moreHint}</span>
      </summary>
      <h3>{T.dead}</h3>
      <CardsField
        name={T.dead}
        id="dead"
        value={query.dead}
        places={0}
        most={30}
        ranks={ranks}
        used={used}
        placeholder={T.deadPlaceholder}
        hint={T.deadHint}
        error={errorAt(error, "dead")}
        onChange={(dead, typed) => onChange({ ...query, dead }, typed ? "dead" : "")}
      />
      <Folded query={query} error={error} onChange={onChange} />
      <Sampling query={query} error={error} onChange={onChange} />
    </details>
  );
}

type PartProps = Pick<MoreProps, "query" | "error" | "onChange">;

function Folded({ query, error, onChange }: PartProps) {
  const { folded } = query;
  return (
    <>
      <h3>{T.folded}</h3>
      <Note kind="hint">{T.foldedHint}</Note>
      {folded.map((text, at) => (
        <FoldedRange
          key={at}
          at={at}
          text={text}
          game={query.game}
          error={errorAt(error, `folded/${at}`)}
          onText={(next, typed) =>
            onChange({ ...query, folded: replaced(folded, at, next) }, typed ? `folded/${at}` : "")
          }
          onRemove={() => onChange({ ...query, folded: without(folded, at) }, "")}
        />
      ))}
      {folded.length < MOST_FOLDED && (
        <button
          type="button"
          class="button add"
          onClick={() => onChange({ ...query, folded: [...folded, "random"] }, "")}
        >
          <Icon name="plus" /> {T.addFolded}
        </button>
      )}
    </>
  );
}

interface FoldedProps {
  at: number;
  text: string;
  game: Game;
  error: string | null;
  onText: (text: string, typed: boolean) => void;
  onRemove: () => void;
}

function FoldedRange({ at, text, game, error, onText, onRemove }: FoldedProps) {
  const reading = useReading(game, text);
  return (
    <div class="folded">
      <div>
        <RangeText
          id={`folded-${at}`}
          value={text}
          label={T.foldedRange(at)}
          placeholder=""
          error={error}
          reading={reading}
          onText={onText}
        />
      </div>
      <IconButton icon="close" label={T.removeFolded(at)} onClick={onRemove} />
    </div>
  );
}

function Sampling({ query, error, onChange }: PartProps) {
  const sampling = query.method !== "exact";
  const none = { value: "", name: T.usual };
  const errors = withOne(ERRORS, query.standardError).map((value) => ({
    value: String(value),
    name: T.precisionOf(value),
  }));
  const limits = withOne(LIMITS, query.timeMs).map((value) => ({
    value: String(value),
    name: T.timeOf(value),
  }));
  const text = (value: number | null) => (value === null ? "" : String(value));
  const number = (value: string) => (value === "" ? null : Number(value));
  const wrong = errorAt(error, "standard_error") ?? errorAt(error, "time_ms");
  return (
    <>
      <h3>{T.method}</h3>
      <Choice
        label={T.method}
        value={query.method}
        options={METHODS.map((value) => ({ value, name: METHOD_NAMES[value] }))}
        onChange={(method) => onChange({ ...query, method }, "")}
      />
      {sampling && (
        <div class="fields">
          <Select
            label={T.precision}
            value={text(query.standardError)}
            options={[none, ...errors]}
            onChange={(value) => onChange({ ...query, standardError: number(value) }, "")}
          />
          <Select
            label={T.timeLimit}
            value={text(query.timeMs)}
            options={[{ value: "", name: T.noLimit }, ...limits]}
            onChange={(value) => onChange({ ...query, timeMs: number(value) }, "")}
          />
        </div>
      )}
      {wrong !== null && <Note kind="error">{wrong}</Note>}
    </>
  );
}

/** A link may say another one than those that are offered. */
function withOne(offered: readonly number[], value: number | null): readonly number[] {
  return value === null || offered.includes(value) ? offered : [...offered, value];
}
