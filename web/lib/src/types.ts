// What a question and its answer look like: the objects of `pokermath equity --json`.

export type Game =
  | "holdem"
  | "shortdeck"
  | "shortdeck-straights"
  | "omaha"
  | "omaha5"
  | "omaha6"
  | "omaha-hilo"
  | "omaha5-hilo"
  | "omaha6-hilo";

export type Street = "flop" | "turn" | "river";
export type Method = "auto" | "exact" | "sampled";
export type DetailName = "hand" | "class" | "next" | "made";

/** Cards as one text ("AhKd") or as a list of texts (["Ah", "Kd"]). */
export type Cards = string | readonly string[];

/** A question of equity; what is left out has the value in brackets. */
export interface Question {
  /** [holdem] */
  game?: Game;
  /** 2 to 10 players, each a hand, a range ("TT+,AQs+:0.5", "15%") or the word "random". */
  players: readonly Cards[];
  /** Ranges of players who are out: they take cards away. [none] */
  folded?: readonly Cards[];
  /** Known board cards, 0 to 5. [none] */
  board?: Cards;
  /** Cards that nobody holds and that cannot come. [none] */
  dead?: Cards;
  /** Where hands are compared. [river] */
  to?: Street;
  /** Exact where that takes less than about a second, else sampled. [auto] */
  method?: Method;
  /** Sample until every equity is as good as this, a share of the pot. [0.0005] */
  standard_error?: number;
  /** Sample no more random deals than these. [no end of that kind] */
  trials?: number;
  /** Milliseconds for sampling. [no end of that kind] */
  time_ms?: number;
  /** Start of the random numbers. [1] */
  seed?: number;
  /** What the answer is broken down by. [nothing] */
  detail?: readonly DetailName[];
}

/** Numbers of cases above 2^53 are rounded to the nearest double. */
export interface Outcome {
  cases: number;
  /** Share of the pot, 0..1: a pot shared by k players counts 1/k; null without a case. */
  equity: number | null;
  /** In Hi/Lo, what of the equity comes from low hands. */
  low?: number | null;
  wins: number;
  ties: number;
}

export interface HandOutcome extends Outcome {
  hand: string[];
  /** 0..1 */
  weight: number;
}

export interface ClassOutcome extends Outcome {
  /** "AKs", or of Omaha "aces, double-suited" */
  class: string;
  hands: number;
}

export interface MadeOutcome extends Outcome {
  /** "two pair" */
  category: string;
}

export interface PlayerAnswer {
  range: string;
  /** Hands of the range that the known cards leave. */
  hands: number;
  /** Share of the pot, 0..1. */
  equity: number;
  wins: number;
  ties: number;
  /** [k]: cases in which k + 1 players share the best hand, this one among them. */
  shared: number[];
  /** In Hi/Lo, what of the equity comes from low hands. */
  low?: number;
  /** Of the equity, where it was sampled. */
  standard_error?: number | null;
  hands_detail?: HandOutcome[];
  classes?: ClassOutcome[];
  made?: MadeOutcome[];
}

export interface NextOutcome {
  /** One card, or a flop. */
  cards: string[];
  /** How many flops it stands for. */
  alike: number;
  players: Outcome[];
}

/** The answer, of the layout with "schema" 2. */
export interface Answer {
  schema: number;
  game: Game;
  board: string[];
  dead: string[];
  to: Street;
  method: "exact" | "sampled";
  /** Why that method, in words. */
  reason: string;
  /** Ranges of players who are out, if there are any. */
  folded?: string[];
  /** Of boards and hands, where it is exact. */
  cases?: number;
  /** Random deals, where it is sampled. */
  trials?: number;
  players: PlayerAnswer[];
  next?: NextOutcome[];
  elapsed_ms: number;
  [more: string]: unknown;
}

/** How far a calculation has come. */
export interface Progress {
  /** 0..1 */
  part: number;
  /** Trials or steps. */
  done: number;
  method: "exact" | "sampled";
  /** Guessed; null where nothing can be said yet. */
  secondsLeft: number | null;
}

export interface CalculateOptions {
  signal?: AbortSignal;
  /** Called again and again where it takes longer than a moment, and always at the end: part 1. */
  onProgress?: (progress: Progress) => void;
  /** What is odd about a question that is answered nevertheless. */
  onWarning?: (warning: string) => void;
}

/** Of the library inside. */
export interface Version {
  version: string;
  /** The instructions that it is compiled for. */
  isa: string;
}

/** What a player's text means. */
export interface RangeReading {
  /** The text as answers name it. */
  name: string;
  /** Whether it is every hand: "random". */
  every: boolean;
  hands: number;
  /** Hands with weights 0..1: all of them for games of two cards, else the first 500. */
  weights: [hand: string, weight: number][];
  /** Whether there are more hands than `weights` has. */
  cut: boolean;
  warnings: string[];
}

export type DocumentKind = "text" | "json" | "csv" | "svg";

/** A question that cannot be answered; the text names what is wrong and what is expected. */
export class PokermathError extends Error {
  override name = "PokermathError";
  constructor(
    message: string,
    /**
     * What is wrong: a key of the question, with the place in a list ("board", "players/1"), of
     * other calls an argument ("game", "text", "weights", "kind", "by"); "" where it is neither.
     */
    readonly field: string,
  ) {
    super(message);
  }
}

/** What the page and other programs use of the package. */
export interface PokermathCalculator {
  /** Rejects with PokermathError, or with the reason of the signal. */
  calculate(question: Question, options?: CalculateOptions): Promise<Answer>;
  describe(game: Game, text: string): Promise<RangeReading>;
  /** Text that reads back as these weighted hands. */
  rangeText(game: Game, weights: readonly (readonly [string, number])[]): Promise<string>;
  /** The last answer as the command-line tool prints it; csv and svg need what it is about. */
  document(kind: DocumentKind, by?: DetailName): Promise<string>;
  version(): Promise<Version>;
  /** Ends all work; what is waiting rejects. */
  close(): void;
}
