// Colours that people see alike whatever their eyes: blue above the middle, orange below it, and hardly
// any colour in the middle. The style sheet mixes them, light and dark.

export interface Heat {
  side: "high" | "low";
  /** 0..100, how much of the full colour. */
  strength: number;
}

/** Of an equity 0..1, around one half. */
export function heat(equity: number): Heat {
  const away = Math.min(1, Math.abs(equity - 0.5) * 2);
  return { side: equity >= 0.5 ? "high" : "low", strength: Math.round(10 + 90 * away) };
}

/** Of a change of equity, full at `widest`. */
export function heatOfChange(change: number, widest: number): Heat {
  const away = widest > 0 ? Math.min(1, Math.abs(change) / widest) : 0;
  return { side: change >= 0 ? "high" : "low", strength: Math.round(100 * away) };
}
