// The question as one value that never changes, and the steps that led to it.

import type { DetailName, Game, Method, Question, Street } from "pokermath";
import { holeCards, ranksOf, readCards } from "./cards.js";

export const MOST_PLAYERS = 10;
export const MOST_FOLDED = 8;

/** What the person asks; all ranges and cards as they were typed. */
export interface Query {
  readonly game: Game;
  readonly players: readonly string[];
  readonly folded: readonly string[];
  readonly board: string;
  readonly dead: string;
  readonly to: Street;
  readonly method: Method;
  /** A share of the pot, or null for the calculator's own. */
  readonly standardError: number | null;
  /** Milliseconds for sampling, or null for no such end. */
  readonly timeMs: number | null;
}

const FIRST: Readonly<Record<number, readonly [string, string]>> = {
  2: ["AhKd", "15%"],
  4: ["AhAdKhKd", "JTxx:ds"],
  5: ["AhAdKhKdQc", "AsKsQsJsTs"],
  6: ["AhAdKhKdQcJs", "Ts9s8h7h6d5d"],
};

export const OPENING: Query = {
  game: "holdem",
  players: ["AhKd", "15%"],
  folded: [],
  board: "2c7dTh",
  dead: "",
  to: "river",
  method: "auto",
  standardError: null,
  timeMs: null,
};

/** The question as the calculator takes it. */
export function questionOf(query: Query, detail: readonly DetailName[]): Question {
  const { standardError, timeMs } = query;
  return {
    game: query.game,
    players: query.players,
    folded: query.folded,
    board: query.board,
    dead: query.dead,
    to: query.to,
    method: query.method,
    ...(standardError === null ? {} : { standard_error: standardError }),
    ...(timeMs === null ? {} : { time_ms: timeMs }),
    detail,
  };
}

/** Another game; hands with another number of cards begin anew, and cards that are not in its deck go. */
export function withGame(query: Query, game: Game): Query {
  const kept = holeCards(game) === holeCards(query.game);
  const first = FIRST[holeCards(game)] ?? [];
  return {
    ...query,
    game,
    players: kept ? query.players : query.players.map((_, at) => first[at] ?? "random"),
    folded: kept ? query.folded : [],
    board: cardsOfDeck(query.board, game),
    dead: cardsOfDeck(query.dead, game),
  };
}

function cardsOfDeck(text: string, game: Game): string {
  const cards = readCards(text);
  if (cards === null) return text;
  const ranks = ranksOf(game);
  const left = cards.filter((card) => ranks.includes(card.charAt(0)));
  return left.length === cards.length ? text : left.join("");
}

/** Whether a card comes before hands are compared. */
export function comesNext({ board, to }: Query): boolean {
  const compared = { flop: 3, turn: 4, river: 5 }[to];
  return (readCards(board)?.length ?? 0) < compared;
}

/**
 * Where a player of the query stands in a question that was answered: at the same place, or where the
 * number of players is another one, at the same text; -1 for none.
 */
export function placeIn(question: Question, { game, players }: Query, at: number): number {
  if (question.players.length === players.length) return at;
  const text = players[at] ?? "";
  if (question.game !== game) return -1;
  return question.players[at] === text ? at : question.players.indexOf(text);
}

export function replaced<T>(list: readonly T[], at: number, item: T): T[] {
  return list.map((old, index) => (index === at ? item : old));
}

export function without<T>(list: readonly T[], at: number): T[] {
  return list.filter((_, index) => index !== at);
}

/** Cards that are in sight already, on the board and dead ones and as single hands. */
export function cardsInUse(query: Query): Set<string> {
  const size = 2 * holeCards(query.game);
  const texts = [query.board, query.dead];
  for (const player of query.players) if (player.length === size) texts.push(player);
  return new Set(texts.flatMap((text) => readCards(text) ?? []));
}

/** A query and the ones before and after it. */
export interface History {
  readonly past: readonly Query[];
  readonly present: Query;
  readonly future: readonly Query[];
  /** What the last change was about and when: letters typed in one field are one step. */
  readonly last: { readonly key: string; readonly at: number };
}

const SAME_STEP_MS = 1500;
const MOST_STEPS = 200;

export function begin(present: Query): History {
  return { past: [], present, future: [], last: { key: "", at: 0 } };
}

/** `key` is "" for a change that is a step of its own. `now` in milliseconds. */
export function change(history: History, next: Query, key: string, now: number): History {
  if (JSON.stringify(next) === JSON.stringify(history.present)) return history;
  const { last } = history;
  // A stroke ends with the pointer, however long it rested.
  const soon = key.startsWith("stroke ") || now - last.at < SAME_STEP_MS;
  const same = key !== "" && last.key === key && soon;
  const past = same ? history.past : [...history.past, history.present].slice(-MOST_STEPS);
  return { past, present: next, future: [], last: { key, at: now } };
}

export function undo(history: History): History {
  const before = history.past[history.past.length - 1];
  if (before === undefined) return history;
  return {
    past: history.past.slice(0, -1),
    present: before,
    future: [history.present, ...history.future],
    last: { key: "", at: 0 },
  };
}

export function redo(history: History): History {
  const after = history.future[0];
  if (after === undefined) return history;
  return {
    past: [...history.past, history.present],
    present: after,
    future: history.future.slice(1),
    last: { key: "", at: 0 },
  };
}
