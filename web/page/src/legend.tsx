// What the colours mean.

import { T } from "./texts.js";

export function HeatLegend() {
  return (
    <div class="legend">
      <span>
        {T.heatLegend} 0
        <span class="ramp" aria-hidden="true" />
        100
      </span>
      <span class="legend-weight">{T.weightLegend}</span>
      <span class="legend-blocked">
        <span class="swatch blocked" aria-hidden="true" />
        {T.blockedLegend}
      </span>
    </div>
  );
}

export function ChangeLegend({ widest }: { widest: number }) {
  return (
    <div class="legend">
      <span>
        {T.nextLegend}: −{widest}
        <span class="ramp" aria-hidden="true" />+{widest}
      </span>
    </div>
  );
}
