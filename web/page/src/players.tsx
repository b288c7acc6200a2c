// The players: what each may hold, and what that is worth.

import type { TargetedInputEvent } from "preact";
import { memo } from "preact/compat";
import { useId, useRef } from "preact/hooks";
import type { Game, PlayerAnswer } from "pokermath";
import { useReading, type Reading } from "./calculator.js";
import { holeCards } from "./cards.js";
import { Icon } from "./icons.js";
import { IconButton, Note } from "./controls.js";
import { tidyPiece, tidyRange } from "./paste.js";
import { T, count, percent } from "./texts.js";

/** Win solid, the shares of tied pots striped behind it. */
function EquityBar({ player, cases }: { player: PlayerAnswer; cases: number }) {
  const win = cases > 0 ? Math.min(player.wins / cases, player.equity) : 0;
  const tie = Math.max(0, player.equity - win);
  return (
    <div class="bar" aria-hidden="true">
      <span class="bar-win" style={{ width: `${100 * win}%` }} />
      <span class="bar-tie" style={{ width: `${100 * tie}%` }} />
    </div>
  );
}

function Figures({ player, cases }: { player: PlayerAnswer; cases: number }) {
  const part = (number: number) => (cases > 0 ? number / cases : null);
  return (
    <dl class="figures">
      <div>
        <dt>{T.win}</dt>
        <dd>
          {percent(part(player.wins))} <small>{count(player.wins)}</small>
        </dd>
      </div>
      <div>
        <dt>{T.tie}</dt>
        <dd>
          {percent(part(player.ties))} <small>{count(player.ties)}</small>
        </dd>
      </div>
      {player.low !== undefined && (
        <div>
          <dt>{T.low}</dt>
          <dd>{percent(player.low)}</dd>
        </div>
      )}
      <div class="figures-hands">
        <dd>
          <small>{T.hands(player.hands)}</small>
        </dd>
      </div>
    </dl>
  );
}

interface RangeTextProps {
  id: string;
  value: string;
  label: string;
  placeholder: string;
  error: string | null;
  reading: Reading;
  onText: (text: string, typed: boolean) => void;
}

/** A range as text, as many lines as it needs; what is pasted is tidied. */
export function RangeText(props: RangeTextProps) {
  const note = useId();
  const onPaste = (event: ClipboardEvent) => {
    const pasted = event.clipboardData?.getData("text/plain") ?? "";
    const box = event.currentTarget as HTMLTextAreaElement;
    event.preventDefault();
    const { value, selectionStart: start, selectionEnd: end } = box;
    // Into the field itself, which keeps the caret behind it.
    box.setRangeText(tidyPiece(value.slice(0, start), pasted, value.slice(end)), start, end, "end");
    props.onText(box.value, false);
  };
  const onInput = (event: TargetedInputEvent<HTMLTextAreaElement>) => {
    const { value } = event.currentTarget;
    if (event.inputType === "insertFromDrop") props.onText(tidyRange(value), false);
    else props.onText(value.replace(/\n/g, " "), true);
  };
  // Telephones put copied text in as if it had been typed.
  const onBlur = () => {
    const tidy = tidyRange(props.value);
    if (props.reading.wrong && tidy !== props.value) props.onText(tidy, false);
  };
  return (
    <>
      <textarea
        id={props.id}
        class="range-text"
        rows={1}
        value={props.value}
        placeholder={props.placeholder}
        aria-label={props.label}
        aria-invalid={props.error !== null}
        aria-describedby={note}
        autocomplete="off"
        autocapitalize="off"
        spellcheck={false}
        onInput={onInput}
        onBlur={onBlur}
        onKeyDown={(event) => {
          if (event.key === "Enter") event.preventDefault();
        }}
        onPaste={onPaste}
      />
      <div id={note} class="notes">
        {props.error !== null && <Note kind="error">{props.error}</Note>}
        {props.error === null &&
          props.reading.meaning?.warnings.map((warning) => (
            <Note key={warning} kind="warning">
              {warning}
            </Note>
          ))}
      </div>
    </>
  );
}

interface PlayerProps {
  at: number;
  game: Game;
  text: string;
  chosen: boolean;
  removable: boolean;
  answer: PlayerAnswer | null;
  /** Whether the answer is of an earlier question. */
  earlier: boolean;
  cases: number;
  error: string | null;
  onText: (at: number, text: string, typed: boolean) => void;
  onRemove: (at: number) => void;
  onChoose: (at: number) => void;
}

export const Player = memo(function Player(props: PlayerProps) {
  const { at, answer, earlier, text, game } = props;
  const reading = useReading(game, text);
  const field = useRef(`player-${at}`);
  const onRemove = () => {
    props.onRemove(at);
    // The next player comes to this place; the last place goes, and its button with it.
    const place = document.getElementById(`player-${at + 1}`) === null ? at - 1 : at;
    document.getElementById(`player-${place}`)?.focus();
  };
  const placeholder = holeCards(game) === 2 ? T.rangePlaceholder : T.omahaPlaceholder;
  return (
    <li class={`player p${at % 10} ${props.chosen ? "chosen" : ""}`}>
      <div class="player-head">
        <button
          type="button"
          class="player-name"
          aria-pressed={props.chosen}
          aria-label={T.showPlayer(at)}
          onClick={() => props.onChoose(at)}
        >
          <span class="dot" />
          {T.player(at)}
          <Icon name="grid" />
        </button>
        <span class="equity" data-equity={at}>
          {answer === null ? "" : percent(answer.equity)}
          {answer !== null && earlier && <small class="earlier-word">{T.earlierFigures}</small>}
          {answer?.standard_error != null && !earlier && (
            <small>{T.standardError(answer.standard_error)}</small>
          )}
        </span>
        {props.removable && (
          <IconButton icon="close" label={T.removePlayer(at)} onClick={onRemove} />
        )}
      </div>
      <RangeText
        id={field.current}
        value={text}
        label={T.rangeOf(at)}
        placeholder={placeholder}
        error={props.error}
        reading={reading}
        onText={(next, typed) => props.onText(at, next, typed)}
      />
      {answer !== null && (
        <div class="player-answer">
          <EquityBar player={answer} cases={props.cases} />
          <Figures player={answer} cases={props.cases} />
        </div>
      )}
    </li>
  );
});

/** All shares of the pot in one line. */
export function PotBar({ players }: { players: readonly PlayerAnswer[] }) {
  return (
    <div class="pot-bar" aria-hidden="true">
      {players.map((player, at) => (
        <span key={at} class={`p${at % 10}`} style={{ width: `${100 * player.equity}%` }} />
      ))}
    </div>
  );
}
