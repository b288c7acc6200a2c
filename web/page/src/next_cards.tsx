// What the next card does: a deck in which every card is coloured by how it changes the equity of a player;
// before the flop, a list of all flops.

import { memo } from "preact/compat";
import { useMemo, useState } from "preact/hooks";
import type { NextOutcome } from "pokermath";
import { SUITS } from "./cards.js";
import { heatOfChange } from "./heat.js";
import { Card, Cards, Choice } from "./controls.js";
import { More, Warm } from "./hand_list.js";
import { ChangeLegend } from "./legend.js";
import { T, count, percent, points, spokenCard } from "./texts.js";

type Sort = "rank" | "suit" | "equity";
const SORTS: readonly Sort[] = ["suit", "rank", "equity"];

interface NextProps {
  next: readonly NextOutcome[];
  player: number;
  /** Of the player, now. */
  equity: number;
  ranks: string;
}

interface Row {
  cards: readonly string[];
  alike: number;
  equity: number | null;
}

export const NextCards = memo(function NextCards({ next, player, equity, ranks }: NextProps) {
  const [sort, setSort] = useState<Sort>("suit");
  const rows = useMemo(
    () => sorted(rowsOf(next, player), sort, ranks),
    [next, player, sort, ranks],
  );
  const flops = (rows[0]?.cards.length ?? 1) > 1;
  return (
    <div class="next">
      <div class="next-head">
        <span class="field-name">{T.sort}</span>
        <Choice
          label={T.sort}
          value={flops && sort === "suit" ? "rank" : sort}
          options={SORTS.filter((value) => !flops || value !== "suit").map((value) => ({
            value,
            name: T.sorts[value],
          }))}
          onChange={setSort}
        />
        <span class="muted">{flops ? T.flops(rows.length) : T.nowAt(percent(equity, 1))}</span>
      </div>
      {flops ? (
        <Flops rows={rows} equity={equity} />
      ) : (
        <NextDeck rows={rows} equity={equity} ranks={ranks} grouped={sort === "suit"} />
      )}
    </div>
  );
});

function rowsOf(next: readonly NextOutcome[], player: number): Row[] {
  return next.map(({ cards, alike, players }) => ({
    cards,
    alike,
    equity: players[player]?.equity ?? null,
  }));
}

function sorted(rows: Row[], sort: Sort, ranks: string): Row[] {
  const rank = (card: string) => ranks.indexOf(card.charAt(0));
  const suit = (card: string) => SUITS.indexOf(card.charAt(1));
  const byCards = (a: Row, b: Row) => {
    for (let at = 0; at < a.cards.length; ++at) {
      const [one, other] = [a.cards[at] ?? "", b.cards[at] ?? ""];
      if (rank(one) !== rank(other)) return rank(one) - rank(other);
    }
    return suit(a.cards[0] ?? "") - suit(b.cards[0] ?? "");
  };
  if (sort === "equity") return rows.sort((a, b) => (b.equity ?? -1) - (a.equity ?? -1));
  if (sort === "rank") return rows.sort(byCards);
  return rows.sort((a, b) => suit(a.cards[0] ?? "") - suit(b.cards[0] ?? "") || byCards(a, b));
}

interface DeckProps {
  rows: readonly Row[];
  equity: number;
  ranks: string;
  /** A line for each suit, with gaps for cards that cannot come. */
  grouped: boolean;
}

function NextDeck({ rows, equity, ranks, grouped }: DeckProps) {
  const widest = scaleOf(rows, equity);
  const byCard = new Map(rows.map((row) => [row.cards[0] ?? "", row]));
  const cards = grouped
    ? [...SUITS].flatMap((suit) => [...ranks].map((rank) => rank + suit))
    : [...byCard.keys()];
  return (
    <>
      <ul
        class={`next-deck ${grouped ? "grouped" : ""}`}
        style={{ "--columns": ranks.length }}
        tabIndex={0}
      >
        {cards.map((card) => {
          const row = byCard.get(card);
          return <NextCard key={card} card={card} row={row} now={equity} widest={widest} />;
        })}
      </ul>
      <ChangeLegend widest={Math.round(100 * widest)} />
    </>
  );
}

/** The change that has the full colour: a round number that few cards go beyond. */
function scaleOf(rows: readonly Row[], equity: number): number {
  const most = Math.max(...rows.map((row) => Math.abs((row.equity ?? equity) - equity)));
  return [0.05, 0.1, 0.2, 0.3, 0.5].find((scale) => most <= scale) ?? 1;
}

interface NextCardProps {
  card: string;
  row: Row | undefined;
  now: number;
  widest: number;
}

function NextCard({ card, row, now, widest }: NextCardProps) {
  if (row?.equity == null) {
    return (
      <li class="next-card gone">
        <Card card={card} />
      </li>
    );
  }
  const change = row.equity - now;
  const { side, strength } = heatOfChange(change, widest);
  const told = T.nextCard(spokenCard(card), row.equity, points(change));
  return (
    <li class={`next-card ${side}`} style={{ "--heat": `${strength}%` }} title={told}>
      <span class="unseen">{told}</span>
      <span aria-hidden="true">
        <Card card={card} />
        <span class="next-equity">{(100 * row.equity).toFixed(0)}</span>
        <span class="next-change">{points(change)}</span>
      </span>
    </li>
  );
}

const PAGE = 60;

function Flops({ rows, equity }: { rows: readonly Row[]; equity: number }) {
  const [shown, setShown] = useState(PAGE);
  return (
    <>
      <table class="flops">
        <thead>
          <tr>
            <th scope="col">{T.flop}</th>
            <th scope="col" class="number">
              {T.alike}
            </th>
            <th scope="col" class="number">
              {T.equity}
            </th>
            <th scope="col" class="number">
              {T.changes}
            </th>
          </tr>
        </thead>
        <tbody>
          {rows.slice(0, shown).map((row) => (
            <tr key={row.cards.join("")}>
              <th scope="row">
                <Cards cards={row.cards} />
              </th>
              <td class="number">{count(row.alike)}</td>
              <td class="number">
                <Warm equity={row.equity} />
              </td>
              <td class="number">{row.equity === null ? "–" : points(row.equity - equity)}</td>
            </tr>
          ))}
        </tbody>
      </table>
      <More shown={shown} all={rows.length} onMore={setShown} />
    </>
  );
}
