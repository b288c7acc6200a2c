// Everything the page says.

import type { DetailName, Game, Method, Street } from "pokermath";
import type { Tab } from "./hash.js";

export const GAME_NAMES: Record<Game, string> = {
  holdem: "Texas Hold’em",
  shortdeck: "Short deck",
  "shortdeck-straights": "Short deck, straights above trips",
  omaha: "Omaha",
  omaha5: "Omaha, five cards",
  omaha6: "Omaha, six cards",
  "omaha-hilo": "Omaha Hi/Lo",
  "omaha5-hilo": "Omaha Hi/Lo, five cards",
  "omaha6-hilo": "Omaha Hi/Lo, six cards",
};

export const STREET_NAMES: Record<Street, string> = { flop: "Flop", turn: "Turn", river: "River" };
export const METHOD_NAMES: Record<Method, string> = {
  auto: "Automatic",
  exact: "Exact",
  sampled: "Sampled",
};
export const TAB_NAMES: Record<Tab, string> = {
  range: "Range",
  next: "Next card",
  curve: "Curve",
  made: "Made hands",
};

/** Ranges to begin with, of games with two cards. */
export const PRESETS: readonly { name: string; text: string }[] = [
  { name: "Any hand", text: "random" },
  { name: "Pairs", text: "22+" },
  { name: "Big pairs", text: "TT+" },
  { name: "Suited aces", text: "A2s+" },
  { name: "Broadway cards", text: "TT+,ATs+,KTs+,QTs+,JTs,ATo+,KTo+,QTo+,JTo" },
  { name: "Suited connectors", text: "JTs-54s" },
  { name: "Premium", text: "QQ+,AK" },
];
export const SHORT_PRESETS: readonly { name: string; text: string }[] = [
  { name: "Any hand", text: "random" },
  { name: "Pairs", text: "66+" },
  { name: "Big pairs", text: "JJ+" },
  { name: "Suited aces", text: "A6s+" },
  { name: "Broadway cards", text: "TT+,ATs+,KTs+,QTs+,JTs,ATo+,KTo+,QTo+,JTo" },
  { name: "Suited connectors", text: "JTs-76s" },
  { name: "Premium", text: "QQ+,AK" },
];

const SUIT_NAMES: Record<string, string> = { s: "spades", h: "hearts", d: "diamonds", c: "clubs" };
const RANK_NAMES: Record<string, string> = { A: "ace", K: "king", Q: "queen", J: "jack", T: "ten" };

/** "ace of hearts", for those who hear it. */
export function spokenCard(card: string): string {
  const rank = card.charAt(0);
  return `${RANK_NAMES[rank] ?? rank} of ${SUIT_NAMES[card.charAt(1)] ?? ""}`;
}

const whole = new Intl.NumberFormat("en", { maximumFractionDigits: 0 });
const halves = new Intl.NumberFormat("en", { maximumFractionDigits: 2 });

export function count(number: number): string {
  return Math.abs(number) < 1e6 ? halves.format(number) : whole.format(number);
}

/** 0..1 as "54.25 %"; none as a dash. */
export function percent(share: number | null, digits = 2): string {
  return share === null ? "–" : `${(100 * share).toFixed(digits)}\u202f%`;
}

/** A change of equity, with its sign. */
export function points(difference: number): string {
  const text = (100 * difference).toFixed(1);
  return Number(text) === 0 ? "±0" : difference > 0 ? `+${text}` : text.replace("-", "−");
}

export function plural(number: number, one: string, many: string): string {
  return `${count(number)} ${number === 1 ? one : many}`;
}

export function duration(milliseconds: number): string {
  if (milliseconds < 10) return `${milliseconds.toFixed(1)} ms`;
  if (milliseconds < 1000) return `${milliseconds.toFixed(0)} ms`;
  return seconds(milliseconds / 1000);
}

export function seconds(time: number): string {
  if (time < 10) return `${time.toFixed(1)} s`;
  return time < 90 ? `${time.toFixed(0)} s` : `${(time / 60).toFixed(0)} min`;
}

export const T = {
  title: "pokermath",
  tagline: "Exact equity, offline",
  question: "Question",
  answer: "Answer",
  game: "Game",
  undo: "Undo",
  redo: "Redo",
  copyLink: "Copy link",
  linkCopied: "Link copied",
  theme: { auto: "Theme: as the system", light: "Theme: light", dark: "Theme: dark" },
  fourColours: "Four-colour deck",

  board: "Board",
  dead: "Dead cards",
  deadHint: "Seen cards that nobody holds",
  folded: "Folded ranges",
  foldedHint: "Players who are out; their cards are gone",
  foldedRange: (at: number) => `Folded range ${at + 1}`,
  addFolded: "Add a folded range",
  removeFolded: (at: number) => `Remove folded range ${at + 1}`,
  pick: (name: string) => `Pick: ${name}`,
  clear: (name: string) => `Clear: ${name}`,
  deck: (name: string) => `Deck for: ${name}`,
  deckHint: "Click cards, or type rank and suit: a s, k d. Backspace takes the last one back.",
  closeDeck: "Done",
  boardPlaceholder: "e.g. 2c7dTh",
  deadPlaceholder: "e.g. AsKs",

  players: "Players",
  player: (at: number) => `Player ${at + 1}`,
  shortPlayer: (at: number) => `P${at + 1}`,
  rangeOf: (at: number) => `Hand or range of player ${at + 1}`,
  rangePlaceholder: "AhKd, TT+,AQs+:0.5, 15%, random",
  omahaPlaceholder: "AhAdKhKd, AAxx:ds, 10%, random",
  addPlayer: "Add player",
  removePlayer: (at: number) => `Remove player ${at + 1}`,
  showPlayer: (at: number) => `Show player ${at + 1}`,
  equity: "Equity",
  win: "Win",
  tie: "Tie",
  low: "Low",
  standardError: (error: number) => `± ${(100 * error).toFixed(3)}`,
  earlierFigures: "earlier",
  hands: (hands: number) => plural(hands, "hand", "hands"),
  meaning:
    "Equity is the share of the pot: a pot that k players share counts 1/k for each. " +
    "Win is being best alone, tie is sharing the best hand.",
  meaningLow:
    "Equity is the share of the pot, half of which is for the low where one qualifies. " +
    "Win is whole pots, tie is parts of one, low is what of the equity comes from low hands.",

  more: "More",
  moreHint: "dead cards, folded players, method",
  compareOn: "Compare hands on the",
  method: "Method",
  precision: "Standard error when sampled",
  precisionOf: (error: number) =>
    100 * error >= 0.01 ? percent(error) : `${Number((100 * error).toPrecision(2))}\u202f%`,
  usual: "Usual",
  timeLimit: "Time limit when sampled",
  timeOf: (milliseconds: number) => `${milliseconds / 1000} s`,
  noLimit: "None",

  views: "Break-down of the answer",
  chosenPlayer: "Player shown",
  loading: "Getting ready …",
  working: (method: string, part: number, left: number | null) =>
    `${method === "sampled" ? "Sampling" : "Counting"}: ${Math.floor(100 * part)} %` +
    (left === null ? "" : `, about ${seconds(left)} left`),
  progress: "Progress",
  stop: "Stop",
  stopped: "Stopped. The answer shown is of the question before.",
  stoppedView: "Stopped. The equities are of this question, but this view has not been counted.",
  stoppedFirst: "Stopped. Nothing has been answered yet.",
  noAnswer: "There is no answer: something in the question is wrong.",
  again: "Calculate",
  earlier: "Answer to the earlier question:",
  exact: "Exact",
  sampled: "Sampled",
  counted: "every case counted",
  cases: (cases: number) => plural(cases, "case", "cases"),
  trials: (trials: number) => plural(trials, "trial", "trials"),
  spoken: (method: string, parts: readonly string[]) => `${method}: ${parts.join(", ")}.`,
  spokenError: (message: string) => `Error: ${message}`,

  brush: "Brush",
  brushWeight: "Brush weight in percent",
  top: "Top",
  topSlider: "Strongest hands in percent",
  preset: "Presets",
  presetHint: "With keys: choose with arrows, take with Enter",
  suits: "Suits",
  suitsOf: (cell: string) => `Suits of ${cell}`,
  closeSuits: "Close suits",
  allHands: "All",
  noHands: "None",
  wholeCell: "Whole cell",
  grid: (at: number) => `Range of player ${at + 1}`,
  gridHelp:
    "Drag to paint, wheel for weight, Shift-click or Enter for suits, Alt-click for “and better”. " +
    "With keys: arrows, Space paints, + and − change the weight.",
  /** Begins with what the cell shows. */
  cell: (name: string, weight: number, equity: number | null, blocked: boolean) =>
    weight === 0
      ? `${name}: not in the range`
      : name +
        (equity === null
          ? blocked
            ? ", blocked"
            : ""
          : ` ${(100 * equity).toFixed(1)} % equity`) +
        `, ${Math.round(100 * weight)} % in the range`,
  holding: (name: string, weight: number, equity: number | null) =>
    `${name}: weight ${Math.round(100 * weight)} %` +
    (equity === null ? "" : `, equity ${(100 * equity).toFixed(1)} %`),
  heatLegend: "Equity",
  weightLegend: "Height: weight in the range",
  blockedLegend: "Blocked by known cards",
  locked: "The text cannot be read; paint again once it is mended.",
  inRange: (hands: number, all: number) =>
    `${plural(hands, "hand", "hands")} · ${((100 * hands) / all).toFixed(1)}\u202f%`,

  kinds: "Kinds of hands",
  kind: "Kind",
  handList: "Hands",
  firstOf: (shown: number, all: number) => `The first ${count(shown)} of ${count(all)} hands`,
  showMore: (more: number) => `Show ${count(more)} more`,

  sort: "Sort by",
  sorts: { rank: "Rank", suit: "Suit", equity: "Equity" },
  noNext: "All cards that are compared lie on the board already: nothing comes next.",
  nextCard: (card: string, equity: number, change: string) =>
    `${card}: equity ${(100 * equity).toFixed(1)} %, change ${change}`,
  nextLegend: "Change of equity in percent points",
  nowAt: (equity: string) => `Now ${equity}`,
  flop: "Flop",
  changes: "±",
  alike: "Alike",
  flops: (number: number) => plural(number, "kind of flop", "kinds of flops"),

  curve: "Equity of all hands, the best first",
  curveX: "Share of the range",
  best: "Best",
  median: "Median",
  worst: "Worst",
  tooMany: (most: number) => `The curve is drawn for up to ${count(most)} hands of a player.`,
  at: (place: number) => `At ${Math.round(100 * place)} % of the range`,

  category: "Hand made",
  howOften: "how often",
  thenWins: "equity then",

  export: "Take along",
  copyText: "Copy text",
  copyJson: "Copy JSON",
  copyCsv: "Copy CSV",
  saveSvg: "Save SVG",
  copied: (what: string) => `${what} copied`,
  saved: "Picture saved",
  noCopying: "the browser does not let the page copy",
  failed: (why: string) => `That did not work: ${why}`,
  whats: { text: "Text", json: "JSON", csv: "CSV", svg: "SVG" },
  pictureFile: (by: DetailName) => `equity-${by}.svg`,
};
