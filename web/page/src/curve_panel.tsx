// Range against range: the sorted equities of all players in one drawing, and the figures below it.

import { memo } from "preact/compat";
import { useMemo, useState } from "preact/hooks";
import type { PlayerAnswer } from "pokermath";
import { equityAt, pathOf, stepsOf, type Step } from "./curve.js";
import { T, percent } from "./texts.js";

const SIZE = 400;
const LEFT = 44;
const TOP = 12;
const WIDE = LEFT + SIZE + 24;
const MARKS = [0, 0.25, 0.5, 0.75, 1];

interface Line {
  range: string;
  steps: readonly Step[];
}

export const CurvePanel = memo(function CurvePanel({
  players,
}: {
  players: readonly PlayerAnswer[];
}) {
  const [place, setPlace] = useState<number | null>(null);
  const lines = useMemo(
    () => players.map(({ range, hands_detail }) => ({ range, steps: stepsOf(hands_detail ?? []) })),
    [players],
  );
  return (
    <div class="curve">
      <svg
        viewBox={`0 0 ${WIDE} ${SIZE + TOP + 44}`}
        role="img"
        aria-label={T.curve}
        onPointerMove={(event) => {
          const { left, width } = event.currentTarget.getBoundingClientRect();
          const x = (((event.clientX - left) / width) * WIDE - LEFT) / SIZE;
          setPlace(x < 0 || x > 1 ? null : x);
        }}
        onPointerLeave={() => setPlace(null)}
      >
        <g transform={`translate(${LEFT} ${TOP})`}>
          {MARKS.map((mark) => (
            <g key={mark}>
              <path class="mark" d={`M0 ${SIZE * (1 - mark)}H${SIZE}`} />
              <text class="mark-text" x={-8} y={SIZE * (1 - mark) + 4} text-anchor="end">
                {100 * mark}
              </text>
              <text class="mark-text" x={SIZE * mark} y={SIZE + 18} text-anchor="middle">
                {100 * mark} %
              </text>
            </g>
          ))}
          <text class="mark-text" x={SIZE / 2} y={SIZE + 38} text-anchor="middle">
            {T.curveX}
          </text>
          <Paths lines={lines} />
          {place !== null && <path class="place-line" d={`M${SIZE * place} 0V${SIZE}`} />}
        </g>
      </svg>
      <CurveTable lines={lines} place={place} />
    </div>
  );
});

/** Apart, for they stay while the pointer moves. */
const Paths = memo(function Paths({ lines }: { lines: readonly Line[] }) {
  return (
    <>
      {lines.map(({ steps }, at) => (
        <path key={at} class={`curve-line p${at % 10}`} d={pathOf(steps, SIZE)} />
      ))}
    </>
  );
});

function CurveTable({ lines, place }: { lines: readonly Line[]; place: number | null }) {
  const columns = [0, 0.5, 1];
  return (
    <table class="curve-table">
      <thead>
        <tr>
          <th scope="col">{place === null ? T.players : T.at(place)}</th>
          {place === null ? (
            [T.best, T.median, T.worst].map((name) => (
              <th key={name} scope="col" class="number">
                {name}
              </th>
            ))
          ) : (
            <th scope="col" class="number" colSpan={3}>
              {T.equity}
            </th>
          )}
        </tr>
      </thead>
      <tbody>
        {lines.map(({ range, steps }, at) => (
          <tr key={at} class={`p${at % 10}`}>
            <th scope="row">
              <span class="dot" /> {T.player(at)}
              <small class="range-name">{range}</small>
            </th>
            {(place === null ? columns : [place]).map((where) => (
              <td key={where} class="number" colSpan={place === null ? 1 : 3}>
                {percent(equityAt(steps, where), 1)}
              </td>
            ))}
          </tr>
        ))}
      </tbody>
    </table>
  );
}
