// How long a step takes, from which follows how many of them fit into a slice of time.

/**
 * In milliseconds: what has been measured, but at least a quarter of what was thought before. The
 * clocks of browsers stand still for up to 100 ms, and no slice shall grow without bounds then.
 */
export function perStep(before: number, ms: number, steps: number): number {
  return Math.max(ms / steps, before / 4);
}
