// The question and what is looked at as the part of an address behind #, short enough to read:
//   #p=AhKd&p=15%25&board=2c7dTh&view=next&of=1
// What has its usual value is left out; what cannot be read is taken as left out, too.

import type { Game, Method, Street } from "pokermath";
import { GAMES } from "./cards.js";
import { MOST_FOLDED, MOST_PLAYERS, OPENING, type Query } from "./state.js";

export const TABS = ["range", "next", "curve", "made"] as const;
export type Tab = (typeof TABS)[number];

/** What is looked at. */
export interface View {
  readonly tab: Tab;
  /** Index of the player. */
  readonly player: number;
}

const STREETS: readonly Street[] = ["flop", "turn", "river"];
const METHODS: readonly Method[] = ["auto", "exact", "sampled"];

export function writeHash(query: Query, view: View): string {
  const pairs: [string, string][] = [];
  if (query.game !== "holdem") pairs.push(["game", query.game]);
  for (const player of query.players) pairs.push(["p", player]);
  for (const range of query.folded) pairs.push(["folded", range]);
  if (query.board !== "") pairs.push(["board", query.board]);
  if (query.dead !== "") pairs.push(["dead", query.dead]);
  if (query.to !== "river") pairs.push(["to", query.to]);
  if (query.method !== "auto") pairs.push(["method", query.method]);
  if (query.standardError !== null) pairs.push(["error", String(query.standardError)]);
  if (query.timeMs !== null) pairs.push(["ms", String(query.timeMs)]);
  if (view.tab !== "range") pairs.push(["view", view.tab]);
  if (view.player !== 0) pairs.push(["of", String(view.player + 1)]);
  return "#" + pairs.map(([key, value]) => `${key}=${encode(value)}`).join("&");
}

/** Signs of range text that an address may hold as they are stay readable. */
function encode(text: string): string {
  return encodeURIComponent(text).replace(/%(2C|3A|2B|40|2F|3B|21)/g, (sign) =>
    decodeURIComponent(sign),
  );
}

/** Null where there is no question: an address without players. */
export function readHash(hash: string): { query: Query; view: View } | null {
  const pairs = hash.replace(/^#/, "").split("&").map(readPair);
  const all = (key: string) => pairs.filter(([name]) => name === key).map(([, value]) => value);
  const one = (key: string) => all(key)[0] ?? "";
  const players = all("p").slice(0, MOST_PLAYERS);
  if (players.length < 2) return null;
  const query: Query = {
    game: among<Game>(GAMES, one("game"), OPENING.game),
    players,
    folded: all("folded").slice(0, MOST_FOLDED),
    board: one("board"),
    dead: one("dead"),
    to: among(STREETS, one("to"), OPENING.to),
    method: among(METHODS, one("method"), OPENING.method),
    standardError: positive(one("error")),
    timeMs: positive(one("ms")),
  };
  const player = (positive(one("of")) ?? 1) - 1;
  const view = {
    tab: among(TABS, one("view"), "range"),
    player: players[player] === undefined ? 0 : player,
  };
  return { query, view };
}

function readPair(pair: string): [string, string] {
  const at = pair.indexOf("=");
  if (at < 0) return [pair, ""];
  const value = pair.slice(at + 1);
  try {
    return [pair.slice(0, at), decodeURIComponent(value)];
  } catch {
    return [pair.slice(0, at), value]; // a lone %, as people type it
  }
}

function among<T extends string>(list: readonly T[], text: string, otherwise: T): T {
  return list.find((item) => item === text) ?? otherwise;
}

function positive(text: string): number | null {
  const number = Number(text);
  return text !== "" && Number.isFinite(number) && number > 0 ? number : null;
}
