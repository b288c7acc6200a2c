// One question from its start to its answer, on one worker or on several.
//
// The first worker works alone for a moment, which is enough for most questions. Then others open
// the same question, each takes slices of steps as it has time, and what they add up goes to the
// first one wherever the calculation says that it is worth looking whether that is enough. Sums are
// whole numbers and the stops follow from the question, so the answer does not depend on who did
// what.

import { perStep } from "./pace.js";
import type { Answered, Begun, Plan, Standing } from "./protocol.js";
import type { Remote } from "./remote.js";
import type { CalculateOptions } from "./types.js";

const kPatienceMs = 30; // of the first worker alone
const kSliceMs = 30; // of a worker, so that there is progress to tell and it can be stopped
const kReportMs = 40; // between reports
const kTellingMs = 200; // before it can be said how long it will take

/** Who can work. */
export interface Workers {
  most(): Promise<number>;
  at(i: number): Remote;
}

export class Job {
  readonly #workers: Workers;
  readonly #first: Remote;
  readonly #question: string;
  readonly #options: CalculateOptions;
  #outOfTime = false;

  constructor(workers: Workers, question: string, options: CalculateOptions) {
    this.#workers = workers;
    this.#first = workers.at(0);
    this.#question = question;
    this.#options = options;
  }

  /** The answer as JSON. After the signal, workers end what they are doing, and it rejects. */
  async run(): Promise<string> {
    const { signal, onWarning } = this.#options;
    const begun = await this.#first.call("ask", this.#question, kPatienceMs);
    signal?.throwIfAborted();
    for (const warning of begun.plan.warnings) onWarning?.(warning);
    const sharing = new Sharing(this.#workers, this.#first, this.#question, begun, this.#options);
    this.#outOfTime = begun.answer === null ? await sharing.run() : begun.outOfTime;
    const answer = begun.answer ?? (await this.#first.call("answer", this.#outOfTime));
    sharing.report(1);
    signal?.throwIfAborted();
    return answer;
  }

  /** What it takes to have the answer again; once, after run(). */
  async answered(elapsedSeconds: number): Promise<Answered> {
    const sums = await this.#first.call("takeSums");
    return { question: this.#question, sums, elapsedSeconds, outOfTime: this.#outOfTime };
  }
}

class Sharing {
  readonly #workers: Workers;
  readonly #first: Remote;
  readonly #question: string;
  readonly #plan: Plan;
  readonly #options: CalculateOptions;
  readonly #workedFrom: number;
  readonly #ready: Remote[];
  readonly #labours = new Set<Promise<void>>();
  readonly #helped = new Set<Remote>();
  #standing: Standing;
  #msPerStep: number;
  #next: number; // step to be taken
  #stop = 0; // where taking ends
  #done: number;
  #part = 0;
  #reportedAt = -Infinity;

  constructor(
    workers: Workers,
    first: Remote,
    question: string,
    begun: Begun,
    options: CalculateOptions,
  ) {
    this.#workers = workers;
    this.#first = first;
    this.#question = question;
    this.#plan = begun.plan;
    this.#options = options;
    this.#workedFrom = performance.now() - begun.ms;
    this.#ready = [first];
    this.#standing = begun.standing;
    this.#done = this.#next = begun.standing.done;
    this.#msPerStep = begun.ms / this.#done;
  }

  /** Works until it is enough; returns whether time was over before that. */
  async run(): Promise<boolean> {
    try {
      this.report();
      if (this.#msLeft() > kPatienceMs) await this.#callHelpers();
      while (!this.#standing.enough && this.#timeLeft() > 0) {
        this.#stop = this.#standing.stop;
        for (const worker of this.#ready) this.#join(worker);
        while (this.#labours.size > 0) await Promise.all(this.#labours);
        this.#options.signal?.throwIfAborted();
        this.#standing = await this.#gather();
      }
      return !this.#standing.enough;
    } finally {
      this.#stop = 0;
    }
  }

  report(part?: number): void {
    const now = performance.now();
    const { onProgress, signal } = this.#options;
    if (!onProgress || signal?.aborted || (!part && now - this.#reportedAt < kReportMs)) return;
    this.#reportedAt = now;
    this.#part = part ?? this.#partNow();
    const { method } = this.#plan;
    const casesAStep = this.#standing.cases / this.#standing.done;
    const done = method === "exact" ? this.#done : Math.round(this.#done * casesAStep);
    const tells = part === 1 || now - this.#workedFrom >= kTellingMs;
    const secondsLeft = tells && this.#part > 0 ? this.#msLeft() / 1e3 : null;
    onProgress({ part: this.#part, done, method, secondsLeft });
  }

  // Who cannot open the question, perhaps for want of memory, does not help.
  async #callHelpers(): Promise<void> {
    const most = Math.min(await this.#workers.most(), this.#plan.steps - this.#done);
    for (let i = 1; i < most; ++i) {
      const helper = this.#workers.at(i);
      const join = () => {
        this.#ready.push(helper);
        this.#join(helper);
      };
      helper.call("open", this.#question).then(join, () => undefined);
    }
  }

  #join(worker: Remote): void {
    const labour = this.#labour(worker).finally(() => this.#labours.delete(labour));
    labour.catch(() => undefined); // of those who joined after another one has failed
    this.#labours.add(labour);
  }

  async #labour(worker: Remote): Promise<void> {
    for (let last = this.#take(); last > 0; last = this.#take()) {
      const first = this.#next;
      this.#next = last;
      this.#helped.add(worker);
      const begun = performance.now();
      const reached = await worker.call("steps", first, last, this.#timeLeft());
      this.#msPerStep = perStep(this.#msPerStep, performance.now() - begun, reached - first);
      this.#done += reached - first;
      this.report();
    }
  }

  // The end of a slice; 0 if there is none. Towards the end they are small, so that all end alike.
  #take(): number {
    const left = this.#stop - this.#next;
    if (left <= 0 || this.#options.signal?.aborted || this.#timeLeft() <= 0) return 0;
    const fair = Math.ceil(left / (2 * this.#ready.length));
    return this.#next + Math.min(fair, Math.max(1, Math.floor(kSliceMs / this.#msPerStep)));
  }

  async #gather(): Promise<Standing> {
    const others = [...this.#helped].filter((worker) => worker !== this.#first);
    this.#helped.clear();
    const sums = await Promise.all(others.map((worker) => worker.call("takeSums")));
    return this.#first.call("addSums", sums, this.#done);
  }

  #timeLeft(): number {
    if (this.#plan.method === "exact" || this.#plan.time_ms === null) return Infinity;
    return this.#plan.time_ms - (performance.now() - this.#workedFrom);
  }

  #partNow(): number {
    const bySteps = (this.#standing.part * this.#done) / this.#standing.done;
    const timeLeft = this.#timeLeft();
    const time = this.#plan.time_ms ?? Infinity;
    const byTime = timeLeft === Infinity ? 0 : 1 - timeLeft / time;
    return Math.min(1, Math.max(this.#part, bySteps, byTime));
  }

  #msLeft(): number {
    const part = this.#partNow();
    return ((performance.now() - this.#workedFrom) * (1 - part)) / part;
  }
}
