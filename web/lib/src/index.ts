// Exact equity in poker, answered by workers with the library's own kernels as WebAssembly.

import { Calculator } from "./calculator.js";
import type { Answer, CalculateOptions, Game, Question, RangeReading } from "./types.js";

export { Calculator, type CalculatorOptions } from "./calculator.js";
export * from "./types.js";

let shared: Calculator | undefined;

function common(): Calculator {
  return (shared ??= new Calculator());
}

/** Calculator.calculate of one that all callers share. */
export function calculate(question: Question, options?: CalculateOptions): Promise<Answer> {
  return common().calculate(question, options);
}

/** Calculator.describe of one that all callers share. */
export function describe(game: Game, text: string): Promise<RangeReading> {
  return common().describe(game, text);
}

/** Calculator.rangeText of one that all callers share. */
export function rangeText(
  game: Game,
  weights: readonly (readonly [string, number])[],
): Promise<string> {
  return common().rangeText(game, weights);
}
