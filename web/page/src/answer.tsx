// The right half of the page: the answer, and what it is broken down by.

import { memo } from "preact/compat";
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
import { comesNext, placeIn, type Query } from "./state.js";

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
  /** Whether that is to be said. */
  marked: boolean;
  onView: (view: Partial<View>) => void;
  onText: (at: number, text: string, key: string) => void;
  onSuits: (open: boolean) => void;
  onTold: (message: string) => void;
}

export function AnswerPanel(props: AnswerProps) {
  const { query, view, asking, earlier, marked, onView } = props;
  const answer = asking.last?.answer ?? null;
  return (
    <section class="answer" aria-label={T.answer}>
      <div class="panel">
        <Status asking={asking} earlier={earlier} marked={marked} />
        <div class="views">
          <Tabs tab={view.tab} onTab={(tab) => onView({ tab })} />
          {(view.tab === "range" || view.tab === "next") && (
            <Choice
              label={T.chosenPlayer}
              value={String(view.player)}
              options={query.players.map((_, at) => ({
                value: String(at),
                name: T.shortPlayer(at),
              }))}
              onChange={(at) => onView({ player: Number(at) })}
            />
          )}
        </div>
        <div id="view" role="tabpanel" aria-labelledby={`tab-${view.tab}`} class="view">
          <ViewBody {...props} answer={answer} />
        </div>
        <TakeAlong
          by={DETAIL_OF[view.tab]}
          rows={answer !== null && hasRows(view.tab, answer)}
          picture={answer !== null && hasPicture(view.tab, answer)}
          disabled={answer === null || asking.running || earlier}
          onTold={props.onTold}
        />
      </div>
    </section>
  );
}

/** Whether the answer is broken down as the view is. */
function hasRows(tab: Tab, { next, players }: Answer): boolean {
  if (tab === "next") return next !== undefined;
  return players.some(({ classes, hands_detail, made }) =>
    Boolean({ range: classes, curve: hands_detail, made }[tab]),
  );
}

/** There is none of what is made, and of next cards only where one comes. */
function hasPicture(tab: Tab, answer: Answer): boolean {
  if (tab === "made") return false;
  return tab === "next" ? answer.next?.[0]?.cards.length === 1 : hasRows(tab, answer);
}

type BodyProps = AnswerProps & { answer: Answer | null };

function ViewBody({ query, view, asking, answer, earlier, onText, onSuits }: BodyProps) {
  const { last, running, error } = asking;
  const place = last === null ? -1 : placeIn(last.question, query, view.player);
  if (view.tab === "range") {
    const text = query.players[view.player] ?? "";
    const mine = answer?.game === query.game ? (answer.players[place] ?? null) : null;
    return (
      <RangePanel
        game={query.game}
        at={view.player}
        text={text}
        answer={mine}
        earlier={earlier}
        onText={onText}
        onSuits={onSuits}
      />
    );
  }
  if (answer === null) {
    return running && error === null ? <p class="muted">{T.loading}</p> : null;
  }
  if (view.tab === "next") {
    const shown = answer.players[place];
    if (!comesNext(query)) return <p class="muted">{T.noNext}</p>;
    if (answer.next === undefined || shown === undefined) return null;
    return (
      <NextCards
        next={answer.next}
        player={place}
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

type StatusProps = Pick<AnswerProps, "asking" | "earlier" | "marked">;

function Status({ asking, earlier, marked }: StatusProps) {
  const { last, error, running, slow, stopped } = asking;
  return (
    <div class="status" data-state={stateOf(asking)}>
      {slow ? <Work asking={asking} /> : last !== null && <Method answer={last.answer} />}
      {stopped && (
        <div class="stopped">
          <Note kind="warning">{stoppedText(asking, earlier)}</Note>
          <button type="button" class="button" onClick={asking.again}>
            {T.again}
          </button>
        </div>
      )}
      {error !== null && !running && isGeneral(error) && <Note kind="error">{error.message}</Note>}
      {error !== null && last === null && !isGeneral(error) && (
        <Note kind="error">{T.noAnswer}</Note>
      )}
      {marked && last !== null && (
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

export function stoppedText({ last }: Asking, earlier: boolean): string {
  if (last === null) return T.stoppedFirst;
  return earlier ? T.stopped : T.stoppedView;
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
      <span class="muted" title={answer.reason}>
        {exact ? T.counted : answer.reason}
      </span>
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
