// Cards that are typed, or picked from a deck that opens below the field.

import { useId, useLayoutEffect, useRef, useState } from "preact/hooks";
import { SUITS, firstCards, readCards, toggleCard, typeCard } from "./cards.js";
import { neighbour } from "./grid.js";
import { Card, IconButton, Note } from "./controls.js";
import { T, spokenCard } from "./texts.js";

interface DeckProps {
  name: string;
  ranks: string;
  chosen: readonly string[];
  /** Cards that others have. */
  used: ReadonlySet<string>;
  full: boolean;
  onToggle: (card: string) => void;
  onBack: () => void;
  onClose: () => void;
}

/** All cards of the deck; one is in the order of tabs, arrows lead to the others. */
export function Deck({ name, ranks, chosen, used, full, onToggle, onBack, onClose }: DeckProps) {
  const [focused, setFocused] = useState("");
  const [pending, setPending] = useState("");
  const box = useRef<HTMLDivElement>(null);
  const cards = [...SUITS].flatMap((suit) => [...ranks].map((rank) => rank + suit));
  // Another game has other cards: what had the place in the order of tabs may not be there.
  const at = Math.max(0, cards.indexOf(focused));
  const blocked = (card: string) => !chosen.includes(card) && (full || used.has(card));

  // At once, for the next key may come before the next drawing.
  const focus = (index: number) => {
    const card = cards[index] ?? "";
    setFocused(card);
    box.current?.querySelector<HTMLElement>(`[data-card='${card}']`)?.focus();
  };
  useLayoutEffect(() => box.current?.querySelector<HTMLElement>("[tabindex='0']")?.focus(), []);

  const move = (key: string): boolean => {
    const size = ranks.length;
    const row = Math.floor(at / size);
    const column = at % size;
    if (key === "ArrowUp") focus(Math.max(0, row - 1) * size + column);
    else if (key === "ArrowDown") focus(Math.min(SUITS.length - 1, row + 1) * size + column);
    else {
      const to = neighbour(column, key, size);
      if (to !== null) focus(row * size + to);
      return to !== null;
    }
    return true;
  };
  const onKey = (event: KeyboardEvent) => {
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    if (event.key === "Escape") onClose();
    else if (event.key === "Backspace") onBack();
    else if (!move(event.key)) {
      const typed = typeCard(pending, event.key);
      setPending(typed.pending);
      const { card } = typed;
      if (card !== undefined && cards.includes(card) && !blocked(card)) onToggle(card);
      if (event.key.length !== 1 || event.key === " ") return;
    }
    event.preventDefault();
  };

  return (
    <div class="deck-box" ref={box} onKeyDown={onKey}>
      <div
        class="deck"
        role="group"
        aria-label={T.deck(name)}
        style={{ gridTemplateColumns: `repeat(${ranks.length}, 1fr)` }}
      >
        {cards.map((card, index) => (
          <button
            key={card}
            type="button"
            class="deck-card"
            tabIndex={index === at ? 0 : -1}
            aria-pressed={chosen.includes(card)}
            aria-disabled={blocked(card)}
            data-card={card}
            onFocus={() => setFocused(card)}
            onClick={() => {
              if (!blocked(card)) onToggle(card);
            }}
          >
            <span class="unseen">{spokenCard(card)}</span>
            <span aria-hidden="true">
              <Card card={card} />
            </span>
          </button>
        ))}
      </div>
      <div class="deck-foot">
        <Note kind="hint">
          {T.deckHint}
          {pending !== "" && <b> {pending}…</b>}
        </Note>
        <button type="button" class="button" onClick={onClose}>
          {T.closeDeck}
        </button>
      </div>
    </div>
  );
}

/** One card less; what cannot be read goes first. */
function withoutLast(text: string): string {
  const cards = readCards(text)?.slice(0, -1) ?? firstCards(text);
  return cards.join("");
}

interface FieldProps {
  name: string;
  id: string;
  value: string;
  /** Places that are shown though they are empty. */
  places: number;
  most: number;
  ranks: string;
  used: ReadonlySet<string>;
  placeholder: string;
  hint?: string;
  error: string | null;
  /** `typed` where letters follow each other. */
  onChange: (text: string, typed: boolean) => void;
}

export function CardsField(props: FieldProps) {
  const { name, id, value, places, most, ranks, used, error, onChange } = props;
  const [open, setOpen] = useState(false);
  const note = useId();
  const opener = useRef<HTMLButtonElement>(null);
  const input = useRef<HTMLInputElement>(null);
  const cards = firstCards(value);
  const empty = Math.max(0, places - cards.length);
  const close = () => {
    setOpen(false);
    opener.current?.focus();
  };
  return (
    <div class="cards-field">
      <div class="cards-line">
        <button
          ref={opener}
          type="button"
          class="places"
          aria-expanded={open}
          title={T.pick(name)}
          onClick={() => setOpen(!open)}
        >
          <span class="unseen">{T.pick(name)}</span>
          <span class="places-cards" aria-hidden="true">
            {cards.map((card, index) => (
              <Card key={`${index}${card}`} card={card} />
            ))}
            {Array.from({ length: empty }, (_, index) => (
              <span key={index} class="card place" />
            ))}
            {places === 0 && cards.length === 0 && <span class="card place" />}
          </span>
        </button>
        <input
          ref={input}
          id={id}
          type="text"
          value={value}
          placeholder={props.placeholder}
          aria-label={name}
          aria-invalid={error !== null}
          aria-describedby={note}
          autocomplete="off"
          autocapitalize="off"
          spellcheck={false}
          onInput={(event) => onChange(event.currentTarget.value, true)}
        />
        {value !== "" && (
          <IconButton
            icon="close"
            label={T.clear(name)}
            onClick={() => {
              onChange("", false);
              input.current?.focus(); // the button goes
            }}
          />
        )}
      </div>
      <div id={note}>
        {error !== null && <Note kind="error">{error}</Note>}
        {props.hint !== undefined && error === null && <Note kind="hint">{props.hint}</Note>}
      </div>
      {open && (
        <Deck
          name={name}
          ranks={ranks}
          chosen={cards}
          used={used}
          full={cards.length >= most}
          onToggle={(card) => onChange(toggleCard(value, card, most), false)}
          onBack={() => onChange(withoutLast(value), false)}
          onClose={close}
        />
      )}
    </div>
  );
}
