// Small controls that several parts of the page use.

import type { ComponentChildren } from "preact";
import { useId } from "preact/hooks";
import { Icon, type IconName } from "./icons.js";
import { SUIT_SIGNS } from "./cards.js";

interface IconButtonProps {
  icon: IconName;
  label: string;
  onClick: () => void;
  disabled?: boolean;
  pressed?: boolean;
}

export function IconButton({ icon, label, onClick, disabled, pressed }: IconButtonProps) {
  return (
    <button
      type="button"
      class="icon-button"
      aria-label={label}
      title={label}
      aria-pressed={pressed}
      disabled={disabled === true}
      onClick={onClick}
    >
      <Icon name={icon} />
    </button>
  );
}

interface ChoiceProps<T extends string> {
  label: string;
  value: T;
  options: readonly { value: T; name: string; disabled?: boolean }[];
  onChange: (value: T) => void;
}

/** One of a few, all in sight. */
export function Choice<T extends string>({ label, value, options, onChange }: ChoiceProps<T>) {
  const name = useId();
  return (
    <div class="choice" role="radiogroup" aria-label={label}>
      {options.map((option) => (
        <label key={option.value}>
          <input
            type="radio"
            name={name}
            checked={option.value === value}
            disabled={option.disabled === true}
            onChange={() => onChange(option.value)}
          />
          <span>{option.name}</span>
        </label>
      ))}
    </div>
  );
}

interface SelectProps<T extends string> {
  label: string;
  value: T;
  options: readonly { value: T; name: string }[];
  onChange: (value: T) => void;
  quiet?: boolean;
}

export function Select<T extends string>({
  label,
  value,
  options,
  onChange,
  quiet,
}: SelectProps<T>) {
  return (
    <label class="field">
      <span class={quiet === true ? "unseen" : "field-name"}>{label}</span>
      <select value={value} onChange={(event) => onChange(event.currentTarget.value as T)}>
        {options.map((option) => (
          <option key={option.value} value={option.value}>
            {option.name}
          </option>
        ))}
      </select>
    </label>
  );
}

/** A card in the colour of its suit. */
export function Card({ card }: { card: string }) {
  const suit = card.charAt(1);
  return (
    <span class={`card suit-${suit}`}>
      {card.charAt(0)}
      <span class="sign">{SUIT_SIGNS[suit]}</span>
    </span>
  );
}

export function Cards({ cards }: { cards: readonly string[] }) {
  return (
    <span class="cards">
      {cards.map((card) => (
        <Card key={card} card={card} />
      ))}
    </span>
  );
}

/** A line below a field: what is wrong with it, or what to know about it. */
export function Note({ id, kind, children }: NoteProps) {
  return (
    <p id={id} class={`note ${kind}`}>
      {children}
    </p>
  );
}

interface NoteProps {
  id?: string;
  kind: "error" | "warning" | "hint";
  children: ComponentChildren;
}
