// Cards and games as the page needs them: which ranks there are, and cards out of typed text.

import type { Game } from "pokermath";

export const SUITS = "shdc";
const ALL_RANKS = "AKQJT98765432";
const SHORT_RANKS = "AKQJT9876";

export const GAMES: readonly Game[] = [
  "holdem",
  "shortdeck",
  "shortdeck-straights",
  "omaha",
  "omaha5",
  "omaha6",
  "omaha-hilo",
  "omaha5-hilo",
  "omaha6-hilo",
];

/** The ranks of a game's deck, the highest first. */
export function ranksOf(game: Game): string {
  return game.startsWith("shortdeck") ? SHORT_RANKS : ALL_RANKS;
}

/** How many cards a player holds. */
export function holeCards(game: Game): number {
  if (!game.startsWith("omaha")) return 2;
  return game.startsWith("omaha5") ? 5 : game.startsWith("omaha6") ? 6 : 4;
}

const SIGNS: Record<string, string> = { "♠": "s", "♥": "h", "♦": "d", "♣": "c" };
SIGNS["♤"] = "s";
SIGNS["♡"] = "h";
SIGNS["♢"] = "d";
SIGNS["♧"] = "c";

/**
 * The cards of a text like "AhKd", "ah kd" or "10♥"; null where anything else stands in it. Repeated
 * cards stay, the calculator names them.
 */
export function readCards(text: string): string[] | null {
  const { cards, rest } = cardsBefore(text);
  return rest === "" ? cards : null;
}

/** The cards before the first thing that is none. */
export function firstCards(text: string): string[] {
  return cardsBefore(text).cards;
}

function cardsBefore(text: string): { cards: string[]; rest: string } {
  const cards: string[] = [];
  let rest = text.replace(/[\s,;]+/g, "");
  while (rest !== "") {
    const found = /^(10|[2-9tjqka])([cdhs♠♥♦♣♤♡♢♧])\ufe0f?/i.exec(rest);
    const [all, rank, suit] = found ?? [];
    if (all === undefined || rank === undefined || suit === undefined) break;
    cards.push((rank === "10" ? "T" : rank.toUpperCase()) + (SIGNS[suit] ?? suit.toLowerCase()));
    rest = rest.slice(all.length);
  }
  return { cards, rest };
}

/** The cards of a text with one more, or without it where it was in; at most `most`. */
export function toggleCard(text: string, card: string, most: number): string {
  const cards = firstCards(text);
  if (cards.includes(card)) return cards.filter((other) => other !== card).join("");
  return cards.length < most ? [...cards, card].join("") : text;
}

/** Keys typed on a deck: a rank waits for its suit, then the card is there. */
export function typeCard(pending: string, key: string): { pending: string; card?: string } {
  const rank = key === "1" || key === "0" ? "T" : key.toUpperCase();
  if (pending !== "" && SUITS.includes(key.toLowerCase())) {
    return { pending: "", card: pending + key.toLowerCase() };
  }
  return { pending: rank.length === 1 && ALL_RANKS.includes(rank) ? rank : "" };
}

/** One spelling for each holding of two cards: the higher rank first, then suits as in SUITS. */
export function canonical(first: string, second: string): string {
  return place(first) <= place(second) ? first + second : second + first;
}

function place(card: string): number {
  return ALL_RANKS.indexOf(card.charAt(0)) * 4 + SUITS.indexOf(card.charAt(1));
}

export function canonicalHand(hand: string): string {
  return canonical(hand.slice(0, 2), hand.slice(2, 4));
}

export const SUIT_SIGNS: Record<string, string> = { s: "♠", h: "♥", d: "♦", c: "♣" };
