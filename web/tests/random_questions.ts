// Questions of all games with all kinds of ranges; some of them cannot be answered.

export interface Asked {
  game: string;
  players: string[];
  folded: string[];
  board: string;
  dead: string;
  to: string;
  method: string;
  /** Of sampled answers, which need no long time to be equal. */
  standard_error: number;
  detail: string;
}

/** The same numbers for the same seed. */
export function random(seed: number): (below: number) => number {
  let state = seed >>> 0;
  return (below) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return Math.floor((state / 2 ** 32) * below);
  };
}

const HOLDEM = [
  "15%",
  "TT+,AQs+:0.5",
  "random",
  "QQ",
  "A9s-A5s,[50]KK,QJo[/50]",
  "AxKh",
  "xhxh",
  "7-2",
];
const SHORT = ["20%", "JJ+,AQs+:0.5", "random", "QQ", "T9s-76s", "A*s!AKs", "66:0"];
const OMAHA = ["AAxx:ds", "JTxx!JJxx@50", "5%", "KQJT", "[25.0]AAxx[/25.0],KKxx:ds", "AAx"];
const OMAHA5 = ["AAKKx:ds", "KQJTx:3"];
const OMAHA6 = ["AAKKQx:ts", "KQJT98"];
const GAMES: readonly { game: string; cards: number; ranges: string[] }[] = [
  { game: "holdem", cards: 2, ranges: HOLDEM },
  { game: "holdem", cards: 2, ranges: HOLDEM },
  { game: "shortdeck", cards: 2, ranges: SHORT },
  { game: "shortdeck-straights", cards: 2, ranges: SHORT },
  { game: "omaha", cards: 4, ranges: OMAHA },
  { game: "omaha-hilo", cards: 4, ranges: OMAHA },
  { game: "omaha5", cards: 5, ranges: OMAHA5 },
  { game: "omaha6-hilo", cards: 6, ranges: OMAHA6 },
];

export function questions(number: number, seed: number): Asked[] {
  const below = random(seed);
  return Array.from({ length: number }, () => question(below));
}

function question(below: (below: number) => number): Asked {
  const { game, cards, ranges } = GAMES[below(GAMES.length)] ?? { game: "", cards: 2, ranges: [] };
  const deck = cardsOf(game.startsWith("shortdeck") ? "6789TJQKA" : "23456789TJQKA");
  const deal = (number: number) =>
    Array.from({ length: number }, () => deck.splice(below(deck.length), 1)[0]).join("");
  const detail = ["class", "next", "hand", "made"][below(4)] ?? "class";
  // Without a board, and with something that comes next, only what takes some milliseconds.
  const bare = cards === 2 && detail === "class" && below(2) === 0;
  const known = bare ? 0 : detail === "next" ? (cards === 2 ? 3 : 4) : 3 + below(3);
  const board = deal(known);
  const dead = below(4) === 0 ? deal(2) : "";
  const many = cards === 2 && known > 0 && below(3) === 0;
  const hands = (number: number) =>
    Array.from({ length: number }, () =>
      below(2) === 0 ? deal(cards) : (ranges[below(ranges.length)] ?? ""),
    );
  const players = hands(many ? 3 + below(4) : 2);
  const folded = known > 0 && below(4) === 0 ? hands(1 + below(2)) : [];
  const to = detail !== "next" && below(6) === 0 ? "turn" : "river";
  const method = below(5) === 0 ? "sampled" : "auto";
  const standard_error = [0.002, 0.003, 0.005][below(3)] ?? 0.002;
  return { game, players, folded, board, dead, to, method, standard_error, detail };
}

function cardsOf(ranks: string): string[] {
  return [...ranks].flatMap((rank) => [..."cdhs"].map((suit) => rank + suit));
}
