// What a range of games with four cards and more means: its kinds of hands with their equity, and the
// hands themselves.

import { useState } from "preact/hooks";
import type { PlayerAnswer, RangeReading } from "pokermath";
import { heat } from "./heat.js";
import { Cards } from "./controls.js";
import { T, count, percent } from "./texts.js";

const PAGE = 60;

export function HandList({
  reading,
  answer,
}: {
  reading: RangeReading | null;
  answer: PlayerAnswer | null;
}) {
  return (
    <div class="hand-list">
      {answer?.classes !== undefined && <Kinds classes={answer.classes} />}
      {reading !== null && <Hands reading={reading} />}
    </div>
  );
}

function Kinds({ classes }: { classes: NonNullable<PlayerAnswer["classes"]> }) {
  const [shown, setShown] = useState(PAGE);
  return (
    <section>
      <h3>{T.kinds}</h3>
      <table>
        <thead>
          <tr>
            <th scope="col">{T.kind}</th>
            <th scope="col" class="number">
              {T.handList}
            </th>
            <th scope="col" class="number">
              {T.equity}
            </th>
          </tr>
        </thead>
        <tbody>
          {classes.slice(0, shown).map((row) => (
            <tr key={row.class}>
              <th scope="row">{row.class}</th>
              <td class="number">{count(row.hands)}</td>
              <td class="number">
                <Warm equity={row.equity} />
              </td>
            </tr>
          ))}
        </tbody>
      </table>
      <More shown={shown} all={classes.length} onMore={setShown} />
    </section>
  );
}

/** An equity in its colour. */
export function Warm({ equity }: { equity: number | null }) {
  if (equity === null) return <span class="warm">–</span>;
  const { side, strength } = heat(equity);
  return (
    <span class={`warm ${side}`} style={{ "--heat": `${strength}%` }}>
      {percent(equity, 1)}
    </span>
  );
}

function Hands({ reading }: { reading: RangeReading }) {
  const [shown, setShown] = useState(PAGE);
  const { weights, hands } = reading;
  return (
    <section>
      <h3>
        {T.handList}{" "}
        <span class="muted">{reading.cut ? T.firstOf(weights.length, hands) : count(hands)}</span>
      </h3>
      <ul class="hands">
        {weights.slice(0, shown).map(([hand, weight]) => (
          <li key={hand}>
            <Cards cards={hand.match(/../g) ?? []} />
            {weight < 1 && <small> {percent(weight, 0)}</small>}
          </li>
        ))}
      </ul>
      <More shown={shown} all={weights.length} onMore={setShown} />
    </section>
  );
}

interface MoreProps {
  shown: number;
  all: number;
  onMore: (shown: number) => void;
}

/** Long lists come in pieces, so that drawing one never takes long. */
export function More({ shown, all, onMore }: MoreProps) {
  if (shown >= all) return null;
  const more = Math.min(all - shown, 200);
  return (
    <button type="button" class="button add" onClick={() => onMore(shown + more)}>
      {T.showMore(more)}
    </button>
  );
}
