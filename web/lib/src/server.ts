// What a worker does when it is called. It holds one instance of the module with one open question.

import { Instance } from "./instance.js";
import { perStep } from "./pace.js";
import type { Answered, Begun, Plan, Standing } from "./protocol.js";
import { type DetailName, PokermathError } from "./types.js";

const kSliceMs = 2; // between looks at the clock
const kMostRefusals = 1000; // of an instance, which loses memory at each

const kBy: Record<DetailName, number> = { hand: 0, class: 1, next: 2, made: 3 };

export class Server {
  readonly #module: WebAssembly.Module;
  #kept: Instance | undefined;
  #refusals = 0;
  #msPerStep = kSliceMs;
  #openedAt = 0;

  constructor(module: WebAssembly.Module) {
    this.#module = module;
  }

  /** Opens a question and works on it alone, for `patience` milliseconds at the most. */
  ask(question: string, patience: number): Begun {
    this.#openedAt = performance.now();
    const plan = this.open(question);
    const workedFrom = performance.now();
    const time = plan.method === "sampled" ? plan.time_ms : null;
    const ms = () => performance.now() - workedFrom;
    let standing = this.#instance.standing(0);
    let done = 0;
    const outOfTime = () => time !== null && done > 0 && ms() >= time;
    while (!standing.enough && !outOfTime() && (done === 0 || ms() < patience)) {
      done = this.steps(done, standing.stop, Math.min(time ?? Infinity, patience) - ms());
      if (done === standing.stop) standing = this.#instance.standing(done);
    }
    const late = !standing.enough && outOfTime();
    const answer = standing.enough || late ? this.answer(late) : null;
    // Between two stops it does not count whether it is enough.
    const { part, cases } = this.#instance.standing(done);
    return {
      plan,
      standing: { ...standing, done, part, cases },
      answer,
      outOfTime: late,
      ms: ms(),
    };
  }

  open(question: string): Plan {
    this.#msPerStep = kSliceMs;
    return this.#instance.open(question);
  }

  /**
   * Adds steps from `first` on to the sums, until `last` or for so many milliseconds, but at least
   * one; returns the one it came to.
   */
  steps(first: number, last: number, patience: number): number {
    const begun = performance.now();
    let done = first;
    let ms = 0;
    do {
      const slice = Math.max(1, Math.floor(kSliceMs / this.#msPerStep));
      const next = Math.min(last, done + slice);
      this.#instance.do(done, next);
      const now = performance.now() - begun;
      this.#msPerStep = perStep(this.#msPerStep, now - ms, next - done);
      done = next;
      ms = now;
    } while (done < last && ms < patience);
    return done;
  }

  takeSums(): Uint8Array<ArrayBuffer> {
    return this.#instance.takeSums();
  }

  /** Adds what other workers have done; `done` is what all of them have. */
  addSums(others: Uint8Array[], done: number): Standing {
    for (const sums of others) this.#instance.addSums(sums);
    return this.#instance.standing(done);
  }

  /** To the question of ask(), as JSON. */
  answer(outOfTime: boolean): string {
    return this.#instance.answer((performance.now() - this.#openedAt) / 1e3, outOfTime);
  }

  /** The page of an answer; with `by` its rows or its picture. */
  document(answered: Answered, kind: "text" | "csv" | "svg", by: DetailName): string {
    this.open(answered.question);
    this.#instance.addSums(answered.sums);
    this.#instance.answer(answered.elapsedSeconds, answered.outOfTime);
    if (kind === "text") return this.#instance.text();
    return kind === "csv" ? this.#instance.csv(kBy[by]) : this.#instance.svg(kBy[by]);
  }

  describe(request: string): string {
    return this.#instance.describe(request);
  }

  rangeText(request: string): string {
    return this.#instance.rangeText(request);
  }

  version(): string {
    return this.#instance.version();
  }

  /** After a call has thrown: goes on where that is possible. Returns what the instance wrote. */
  recover(error: unknown): string {
    const complaint = this.#kept?.complaint ?? "";
    if (!(error instanceof PokermathError) || ++this.#refusals === kMostRefusals) {
      this.#kept = undefined;
      this.#refusals = 0;
    }
    return complaint;
  }

  get #instance(): Instance {
    return (this.#kept ??= new Instance(this.#module));
  }
}
