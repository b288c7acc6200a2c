// The calculator: who works, which question is next, and what was answered last.
//
// Questions are answered one after another. Texts of ranges and documents go to a worker of their
// own, the reader, which no question keeps busy and no cancelled question takes along.

import { Job } from "./job.js";
import { moduleBytes } from "./module_source.js";
import { platform } from "./platform.js";
import type { Answered } from "./protocol.js";
import { Remote, Stopped } from "./remote.js";
import {
  type Answer,
  type CalculateOptions,
  type DetailName,
  type DocumentKind,
  type Game,
  type PokermathCalculator,
  PokermathError,
  type Question,
  type RangeReading,
  type Version,
} from "./types.js";

const kMostWorkers = 8; // the reader among them: each has memory of its own
const kGraceMs = 40; // in which a worker may end what it does for a cancelled question

const kKinds: readonly DocumentKind[] = ["text", "json", "csv", "svg"];
const kDetails: readonly DetailName[] = ["hand", "class", "next", "made"];

type Bytes = Uint8Array | ArrayBuffer;

export interface CalculatorOptions {
  /** Workers for one question. [as many as the processor has cores, 7 at the most] */
  threads?: number;
  /** The bytes of pokermath.wasm, for who keeps it elsewhere. [the file beside the package's] */
  module?: Bytes | Promise<Bytes>;
}

interface Asked {
  question: string;
  options: CalculateOptions;
  resolve: (answer: Answer) => void;
  reject: (reason: unknown) => void;
}

// The module reads no halves of characters, which texts in JavaScript may have.
function jsonOf(request: object): string {
  return JSON.stringify(request, (_, value: unknown) =>
    typeof value === "string" ? value.replace(/\p{Surrogate}/gu, "\ufffd") : value,
  );
}

function checkWord(field: string, word: string, known: readonly string[]): void {
  if (known.includes(word)) return;
  throw new PokermathError(`${field} '${word}' is not known: ${known.join(", ")}`, field);
}

export class Calculator implements PokermathCalculator {
  readonly #options: CalculatorOptions;
  readonly #workers: Remote[] = [];
  readonly #queue: Asked[] = [];
  #module: Promise<WebAssembly.Module> | undefined;
  #reader: Remote | undefined;
  #running: Asked | undefined;
  #last: { json: string; answered: Promise<Answered> } | undefined;
  #closed = false;

  constructor(options: CalculatorOptions = {}) {
    this.#options = options;
  }

  calculate(question: Question, options: CalculateOptions = {}): Promise<Answer> {
    const { signal } = options;
    if (this.#closed) return Promise.reject(new Stopped("the calculator is closed"));
    if (signal?.aborted) return Promise.reject(signal.reason as Error);
    let asked: Asked;
    const abort = () => this.#cancel(asked);
    signal?.addEventListener("abort", abort);
    const answer = new Promise<Answer>((resolve, reject) => {
      asked = { question: jsonOf(question), options, resolve, reject };
      this.#queue.push(asked);
      void this.#advance();
    });
    return answer.finally(() => signal?.removeEventListener("abort", abort));
  }

  async describe(game: Game, text: string): Promise<RangeReading> {
    const request = jsonOf({ game, text });
    return JSON.parse(await this.#read().call("describe", request)) as RangeReading;
  }

  async rangeText(game: Game, weights: readonly (readonly [string, number])[]): Promise<string> {
    const request = jsonOf({ game, weights });
    const reply = JSON.parse(await this.#read().call("rangeText", request)) as { text: string };
    return reply.text;
  }

  async document(kind: DocumentKind, by?: DetailName): Promise<string> {
    checkWord("kind", kind, kKinds);
    if (by !== undefined) checkWord("by", by, kDetails);
    if (!this.#last) throw new PokermathError("nothing has been answered yet", "");
    if (kind === "json") return this.#last.json;
    if (kind !== "text" && !by) {
      throw new PokermathError(`${kind} is of something: ${kDetails.join(", ")}`, "by");
    }
    try {
      return await this.#read().call("document", await this.#last.answered, kind, by ?? "hand");
    } catch (error) {
      // The question itself has been answered before.
      throw error instanceof PokermathError ? new PokermathError(error.message, "by") : error;
    }
  }

  async version(): Promise<Version> {
    return JSON.parse(await this.#read().call("version")) as Version;
  }

  close(): void {
    this.#closed = true;
    const error = new Stopped("the calculator is closed");
    for (const { reject } of [this.#running, ...this.#queue.splice(0)].filter((a) => !!a)) {
      reject(error);
    }
    for (const worker of [this.#reader, ...this.#workers]) worker?.terminate();
  }

  // A worker that comes to the end of a slice soon keeps what it has built; others hear nothing.
  #cancel(asked: Asked): void {
    asked.reject(asked.options.signal?.reason);
    if (this.#running !== asked) {
      const place = this.#queue.indexOf(asked);
      if (place >= 0) this.#queue.splice(place, 1);
      return;
    }
    for (const worker of this.#workers) worker.finishWithin(kGraceMs);
  }

  async #advance(): Promise<void> {
    if (this.#running) return;
    while ((this.#running = this.#queue.shift())) {
      try {
        await this.#answer(this.#running);
      } catch (error) {
        const { reject, options } = this.#running;
        reject(error);
        if (!(error instanceof PokermathError || options.signal?.aborted)) this.#stopBusy();
        if (!this.#closed) this.#worker(0); // if it was stopped: the next question comes soon
      }
    }
  }

  async #answer({ question, options, resolve }: Asked): Promise<void> {
    const workers = { most: () => this.#most(), at: (i: number) => this.#worker(i) };
    const job = new Job(workers, question, options);
    const json = await job.run();
    const answer = JSON.parse(json) as Answer;
    const answered = job.answered(answer.elapsed_ms / 1e3);
    this.#last = { json, answered };
    resolve(answer);
    await answered;
  }

  // Of a question that has failed.
  #stopBusy(): void {
    for (const worker of this.#workers) if (worker.busy) worker.terminate();
  }

  async #most(): Promise<number> {
    const cores = Math.min((await platform()).cores, kMostWorkers - 1);
    return Math.max(1, this.#options.threads ?? cores);
  }

  #worker(i: number): Remote {
    const worker = this.#workers[i];
    return !worker || worker.dead ? (this.#workers[i] = this.#start()) : worker;
  }

  #read(): Remote {
    return !this.#reader || this.#reader.dead ? (this.#reader = this.#start()) : this.#reader;
  }

  #start(): Remote {
    if (this.#closed) throw new Stopped("the calculator is closed");
    if (!this.#module) {
      this.#module = this.#compile();
      this.#module.catch(() => undefined); // a worker that is stopped early never looks at it
    }
    return new Remote(this.#module);
  }

  async #compile(): Promise<WebAssembly.Module> {
    try {
      const bytes = await (this.#options.module ?? moduleBytes());
      return await WebAssembly.compile(bytes as BufferSource);
    } catch (error) {
      this.#module = undefined; // the next question may find it
      throw error;
    }
  }
}
