// The whole page: question on the left, answer on the right, and who tells whom.

import { useCallback, useEffect, useMemo, useState } from "preact/hooks";
import type { DetailName } from "pokermath";
import { AnswerPanel, DETAIL_OF, hasFewHands, stoppedText } from "./answer.js";
import { casesOf, useAnswer, type Asking } from "./calculator.js";
import { GAMES, holeCards } from "./cards.js";
import { IconButton, Select } from "./controls.js";
import type { Tab } from "./hash.js";
import { usePage } from "./query.js";
import { QuestionPanel } from "./question.js";
import { THEMES, useSettings, type Settings } from "./settings.js";
import { comesNext, placeIn, questionOf, withGame, type Query } from "./state.js";
import { copy } from "./take_along.js";
import { GAME_NAMES, T, percent } from "./texts.js";

export function App() {
  const page = usePage();
  const { query, view, onView, onText: onKeyedText } = page;
  const [settings, setSettings] = useSettings();
  const [suits, setSuits] = useState(false);
  const [few, setFew] = useState(false);
  const [told, setTold] = useTold();
  const question = useMemo(
    () => questionOf(query, detailOf(query, view.tab, suits, few)),
    [query, view.tab, suits, few],
  );
  const asking = useAnswer(question);
  const { last, error } = asking;
  const earlier = last !== null && bare(last.question) !== bare(question);
  const answer = last?.answer ?? null;
  useEffect(() => setFew(!earlier && answer !== null && hasFewHands(answer)), [answer, earlier]);
  // An answer that comes at once needs no sign that the one before was of another question.
  const marked = earlier && (error !== null || asking.slow || asking.stopped);

  const onText = useCallback(
    (at: number, text: string, typed: boolean) =>
      onKeyedText(at, text, typed ? `players/${at}` : ""),
    [onKeyedText],
  );
  const onChoose = useCallback(
    (player: number) => {
      onView({ player, tab: "range" });
      showView();
    },
    [onView],
  );

  return (
    <>
      <header class="top">
        <h1>
          <span class="logo" aria-hidden="true">
            ♠
          </span>
          {T.title} <span class="tagline">{T.tagline}</span>
        </h1>
        <Select
          label={T.game}
          quiet
          value={query.game}
          options={GAMES.map((value) => ({ value, name: GAME_NAMES[value] }))}
          onChange={(game) => page.onChange(withGame(query, game), "")}
        />
        <div class="top-buttons">
          <IconButton icon="undo" label={T.undo} disabled={!page.canUndo} onClick={page.undo} />
          <IconButton icon="redo" label={T.redo} disabled={!page.canRedo} onClick={page.redo} />
          <IconButton
            icon="link"
            label={T.copyLink}
            onClick={() =>
              void copy(page.address()).then(
                () => setTold(T.linkCopied),
                (problem: unknown) => setTold(T.failed(String(problem))),
              )
            }
          />
          <Switches settings={settings} onSettings={setSettings} />
        </div>
      </header>
      <main class={marked ? "earlier-answer" : ""}>
        <QuestionPanel
          query={query}
          chosen={view.player}
          error={error}
          answers={query.players.map((_, at) => {
            const place = last === null ? -1 : placeIn(last.question, query, at);
            return answer?.players[place] ?? null;
          })}
          earlier={marked}
          cases={answer === null ? 0 : casesOf(answer)}
          low={query.game.endsWith("hilo")}
          onChange={page.onChange}
          onText={onText}
          onRemove={page.onRemove}
          onChoose={onChoose}
        />
        <AnswerPanel
          query={query}
          view={view}
          asking={asking}
          earlier={earlier}
          marked={marked}
          onView={onView}
          onText={onKeyedText}
          onSuits={setSuits}
          onTold={setTold}
        />
      </main>
      <p class="told" role="status" data-shown={told !== ""}>
        {told}
      </p>
      <Spoken asking={asking} earlier={earlier} />
    </>
  );
}

/** On a telephone the view lies below the question. */
function showView() {
  const view = document.querySelector(".views");
  if (view !== null && view.getBoundingClientRect().top > window.innerHeight) view.scrollIntoView();
}

/**
 * Only what is looked at. Omaha ranges may have so many hands that handing them over takes seconds: those
 * are asked for once it is known how many there are.
 */
function detailOf(query: Query, tab: Tab, suits: boolean, few: boolean): DetailName[] {
  const two = holeCards(query.game) === 2;
  if (tab === "curve" && !two && !few) return [];
  if (tab === "next" && !comesNext(query)) return [];
  return tab === "range" && suits && two ? ["class", "hand"] : [DETAIL_OF[tab]];
}

/** The question itself, whatever it is broken down by. */
function bare(question: object): string {
  return JSON.stringify({ ...question, detail: [] });
}

interface SwitchesProps {
  settings: Settings;
  onSettings: (settings: Settings) => void;
}

function Switches({ settings, onSettings }: SwitchesProps) {
  const { theme, fourColours } = settings;
  const after = THEMES[(THEMES.indexOf(theme) + 1) % THEMES.length] ?? "auto";
  return (
    <>
      <IconButton
        icon={theme}
        label={T.theme[theme]}
        onClick={() => onSettings({ ...settings, theme: after })}
      />
      <button
        type="button"
        class="icon-button four"
        aria-pressed={fourColours}
        aria-label={T.fourColours}
        title={T.fourColours}
        onClick={() => onSettings({ ...settings, fourColours: !fourColours })}
      >
        <span class="suit-s">♠</span>
        <span class="suit-h">♥</span>
        <span class="suit-d">♦</span>
        <span class="suit-c">♣</span>
      </button>
    </>
  );
}

/** A message that goes by itself. */
function useTold(): [string, (message: string) => void] {
  const [told, setTold] = useState({ message: "", at: 0 });
  useEffect(() => {
    if (told.message === "") return;
    const timer = setTimeout(() => setTold({ message: "", at: 0 }), 2500);
    return () => clearTimeout(timer);
  }, [told]);
  const tell = useCallback((message: string) => setTold({ message, at: Date.now() }), []);
  return [told.message, tell];
}

const SPEAK_AFTER_MS = 700;

/** What happens, for those who hear the page, once the typing rests. */
function Spoken({ asking, earlier }: SpokenProps) {
  const [said, setSaid] = useState("");
  const text = spokenText(asking, earlier);
  useEffect(() => {
    if (text === null) return;
    const timer = setTimeout(() => setSaid(text), SPEAK_AFTER_MS);
    return () => clearTimeout(timer);
  }, [text]);
  return (
    <p class="unseen" id="spoken" role="status" aria-live="polite">
      {said}
    </p>
  );
}

interface SpokenProps {
  asking: Asking;
  earlier: boolean;
}

/** Null where nothing new is to be said; of the progress, quarters. */
function spokenText(asking: Asking, earlier: boolean): string | null {
  const { last, error, running, slow, stopped, progress } = asking;
  if (running) {
    if (!slow || progress === null) return null;
    return T.working(progress.method, Math.floor(4 * progress.part) / 4, null);
  }
  if (stopped) return stoppedText(asking, earlier);
  if (error !== null) return T.spokenError(error.message);
  if (last === null || earlier) return null;
  const { method, players } = last.answer;
  return T.spoken(
    method === "exact" ? T.exact : T.sampled,
    players.map(({ range, equity }) => `${range} ${percent(equity, 1)}`),
  );
}
