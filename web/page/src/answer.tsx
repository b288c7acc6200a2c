// The right half of the page: the answer, and what it is broken down by.

import { memo } from "preact/compat";
import { useEffect, useState } from "preact/hooks";
import type { Answer, DetailName, PokermathError, Question } from "pokermath";
import { casesOf, type Asking } from "./calculator.js";
import { ranksOf } from "./cards.js";
import { Choice, Note } from "./controls.js";
import { CurvePanel } from "./curve_panel.js";
import { TABS, type Tab, type View } from "./hash.js";
import { MadePanel } from "./made_panel.js";
import { NextCards } from "./next_cards.js";
import { RangePanel } from "./range_panel.js";
import { TakeAlong } from "./take_along.js";
import { TAB_NAMES, T, duration } from "./texts.js";
import { comesNext, type Query } from "./state.js";

/** What the question is broken down by for a view. */
export const DETAIL_OF: Record<Tab, DetailName> = {
  range: "class",
  next: "next",
  curve: "hand",
  made: "made",
};

interface AnswerProps {
  query: Query;
  view: View;
  asking: Asking;
  /** Whether the last answer is of another question. */
  earlier: boolean;
  onView: (view: Partial<View>) => void;
  onText: (at: number, text: string, key: string) => void;
  onSuits: (open: boolean) => void;
  onTold: (message: string) => void;
}

export function AnswerPanel(props: AnswerProps) {
  const { query, view, asking, earlier, onView } = props;
  const answer = asking.last?.answer ?? null;
  return (
    <section class="answer" aria-label={T.answer}>
      <div class="panel">
        <Status asking={asking} earlier={earlier} />
        <div class="views">
          <Tabs tab={view.tab} onTab={(tab) => onView({ tab })} />
          {(view.tab === "range" || view.tab === "next") && (
            <Choice
              label={T.chosenPlayer}
              value={String(view.player)}
              options={query.players.map((_, at) => ({
                value: String(at),
                name: `P${at + 1}`,
              }))}
              onChange={(at) => onView({ player: Number(at) })}
            />
          )}
        </div>
        <div
          id="view"
          role="tabpanel"
          aria-labelledby={`tab-${view.tab}`}
          class={earlier ? "view earlier" : "view"}
        >
          <ViewBody {...props} answer={answer} />
        </div>
        <TakeAlong
          by={DETAIL_OF[view.tab]}
          picture={hasPicture(view.tab, answer)}
          disabled={answer === null || asking.running || earlier}
          onTold={props.onTold}
        />
      </div>
    </section>
  );
}

function hasPicture(tab: Tab, answer: Answer | null): boolean {
  if (tab === "made") return false;
  return tab !== "next" || (answer?.next?.[0]?.cards.length ?? 0) === 1;
}

type BodyProps = AnswerProps & { answer: Answer | null };

function ViewBody({ query, view, answer, onText, onSuits }: BodyProps) {
  const same = answer !== null && answer.players.length === query.players.length;
  const player = same ? (answer.players[view.player] ?? null) : null;
  if (view.tab === "range") {
    const text = query.players[view.player] ?? "";
    const mine = answer?.game === query.game ? player : null;
    return (
      <RangePanel
        game={query.game}
        at={view.player}
        text={text}
        answer={mine}
        onText={onText}
        onSuits={onSuits}
      />
    );
  }
  if (answer === null) return <p class="muted">{T.loading}</p>;
  if (view.tab === "next") {
    const shown = answer.players[view.player];
    if (!comesNext(query)) return <p class="muted">{T.noNext}</p>;
    if (answer.next === undefined || shown === undefined) return null;
    return (
      <NextCards
        next={answer.next}
        player={view.player}
        equity={shown.equity}
        ranks={ranksOf(answer.game)}
      />
    );
  }
  if (view.tab === "made") {
    return answer.players.some(({ made }) => made) ? <MadePanel players={answer.players} /> : null;
  }
  if (!hasFewHands(answer)) {
    return <p class="muted">{T.tooMany(MOST_HANDS)}</p>;
  }
  return answer.players.some(({ hands_detail }) => hands_detail) ? (
    <CurvePanel players={answer.players} />
  ) : null;
}

const MOST_HANDS = 20_000;

/** Whether all hands can be handed over and drawn in no time. */
export function hasFewHands({ players }: Answer): boolean {
  return players.every(({ hands }) => hands <= MOST_HANDS);
}

function Tabs({ tab, onTab }: { tab: Tab; onTab: (tab: Tab) => void }) {
  const onKey = (event: KeyboardEvent) => {
    const step = event.key === "ArrowRight" ? 1 : event.key === "ArrowLeft" ? -1 : 0;
    const next = TABS[(TABS.indexOf(tab) + step + TABS.length) % TABS.length];
    if (step === 0 || next === undefined) return;
    event.preventDefault();
    onTab(next);
    document.getElementById(`tab-${next}`)?.focus();
  };
  return (
    <div class="tabs" role="tablist" aria-label={T.views} onKeyDown={onKey}>
      {TABS.map((one) => (
        <button
          key={one}
          id={`tab-${one}`}
          type="button"
          role="tab"
          aria-selected={one === tab}
          aria-controls="view"
          tabIndex={one === tab ? 0 : -1}
          onClick={() => onTab(one)}
        >
          {TAB_NAMES[one]}
        </button>
      ))}
    </div>
  );
}

/** A count that takes a moment needs no sign of it. */
const SHOW_WORK_MS = 150;

function Status({ asking, earlier }: { asking: Asking; earlier: boolean }) {
  const { last, error, running, stopped } = asking;
  const [slow, setSlow] = useState(false);
  useEffect(() => {
    if (!running) setSlow(false);
    const timer = running ? setTimeout(() => setSlow(true), SHOW_WORK_MS) : undefined;
    return () => clearTimeout(timer);
  }, [running]);
  return (
    <div class="status" data-state={stateOf(asking)}>
      {running && slow ? (
        <Work asking={asking} />
      ) : (
        last !== null && <Method answer={last.answer} />
      )}
      {stopped && (
        <div class="stopped">
          <Note kind="warning">{T.stopped}</Note>
          <button type="button" class="button" onClick={asking.again}>
            {T.again}
          </button>
        </div>
      )}
      {error !== null && !running && isGeneral(error) && <Note kind="error">{error.message}</Note>}
      {earlier && last !== null && (error !== null || slow || stopped) && (
        <Note kind="warning">
          {T.earlier} {named(last.question)}
        </Note>
      )}
    </div>
  );
}

function stateOf({ running, stopped, error }: Asking): string {
  if (running) return "running";
  return stopped ? "stopped" : error === null ? "done" : "wrong";
}

/** Errors of a field stand at that field. */
function isGeneral(error: PokermathError): boolean {
  return !/^(players|folded)(\/\d+)?$|^(board|dead|to|standard_error|time_ms)$/.test(error.field);
}

function named({ players, board }: Question): string {
  const cards = board === undefined || board.length === 0 ? "" : ` · ${String(board)}`;
  return players.join(" – ") + cards;
}

const Method = memo(function Method({ answer }: { answer: Answer }) {
  const exact = answer.method === "exact";
  const number = exact ? T.cases(casesOf(answer)) : T.trials(casesOf(answer));
  return (
    <p class="method">
      <b class={exact ? "exact" : "sampled"}>{exact ? T.exact : T.sampled}</b>
      <span>{number}</span>
      <span class="time">{duration(answer.elapsed_ms)}</span>
      <span class="muted">{answer.reason}</span>
    </p>
  );
});

function Work({ asking }: { asking: Asking }) {
  const { progress } = asking;
  const part = progress?.part ?? 0;
  return (
    <div class="work">
      <div class="work-line">
        <span>
          {progress === null ? T.loading : T.working(progress.method, part, progress.secondsLeft)}
        </span>
        <button type="button" class="button stop" onClick={asking.stop}>
          {T.stop}
        </button>
      </div>
      <progress max={1} value={part} aria-label={T.progress} />
    </div>
  );
}
