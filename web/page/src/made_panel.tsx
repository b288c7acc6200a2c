// How often each player makes what, and how good that is.

import { memo } from "preact/compat";
import type { MadeOutcome, PlayerAnswer } from "pokermath";
import { T, percent } from "./texts.js";

export const MadePanel = memo(function MadePanel({
  players,
}: {
  players: readonly PlayerAnswer[];
}) {
  const categories = categoriesOf(players);
  return (
    <div class="made" tabIndex={0} role="region" aria-label={T.category}>
      <table>
        <thead>
          <tr>
            <th scope="col">{T.category}</th>
            {players.map((player, at) => (
              <th key={at} scope="col" class={`p${at % 10}`}>
                <span class="dot" /> {T.player(at)}
                <small class="range-name">{player.range}</small>
              </th>
            ))}
          </tr>
          <tr class="made-units">
            <td />
            {players.map((_, at) => (
              <td key={at}>
                {T.howOften} · {T.thenWins}
              </td>
            ))}
          </tr>
        </thead>
        <tbody>
          {categories.map((category) => (
            <tr key={category}>
              <th scope="row">{category}</th>
              {players.map((player, at) => (
                <MadeCell key={at} at={at} made={player.made ?? []} category={category} />
              ))}
            </tr>
          ))}
        </tbody>
      </table>
    </div>
  );
});

/** Of all players, in the order of the game, the lowest first. */
function categoriesOf(players: readonly PlayerAnswer[]): string[] {
  const lists = players.map((player) => (player.made ?? []).map(({ category }) => category));
  const order: string[] = [];
  for (const list of lists) {
    let after = -1;
    for (const category of list) {
      const known = order.indexOf(category);
      if (known < 0) order.splice(after + 1, 0, category);
      after = known < 0 ? after + 1 : known;
    }
  }
  return order.reverse();
}

interface CellProps {
  at: number;
  made: readonly MadeOutcome[];
  category: string;
}

function MadeCell({ at, made, category }: CellProps) {
  const found = made.find((row) => row.category === category);
  const all = made.reduce((sum, row) => sum + row.cases, 0);
  if (found === undefined || all === 0) return <td class="muted">–</td>;
  const part = found.cases / all;
  return (
    <td class={`p${at % 10}`}>
      <span class="made-part">{percent(part)}</span>
      <span class="made-equity">{percent(found.equity, 1)}</span>
      <span class="made-bar" aria-hidden="true">
        <span style={{ width: `${100 * part}%` }} />
      </span>
    </td>
  );
}
