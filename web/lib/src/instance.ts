// One instance of the WebAssembly module, its functions with texts and bytes in place of pointers.
//
// The module has one buffer for requests and one for replies. What it refuses it says by calling an
// import, which throws right through it. Its stack is put back then, and it goes on: the question
// that was open before still is, and what the refused call had allocated is lost. After any other
// error, whoever catches it needs a new instance.

import { ConsoleStdout, WASI } from "@bjorn3/browser_wasi_shim";

import type { Plan, Standing } from "./protocol.js";
import { PokermathError } from "./types.js";

interface Exports {
  memory: WebAssembly.Memory;
  __stack_pointer: WebAssembly.Global<"i32">;
  _initialize?: () => void;
  pokermath_request(bytes: number): number;
  pokermath_reply(): number;
  pokermath_open(): number;
  pokermath_do(first: number, last: number): void;
  pokermath_next_stop(done: number): number;
  pokermath_enough(done: number): number;
  pokermath_part(done: number): number;
  pokermath_cases(): number;
  pokermath_take_sums(): number;
  pokermath_add_sums(): number;
  pokermath_answer(elapsedSeconds: number, outOfTime: number): number;
  pokermath_text(): number;
  pokermath_csv(by: number): number;
  pokermath_svg(by: number): number;
  pokermath_describe(): number;
  pokermath_range_text(): number;
  pokermath_version(): number;
}

export class Instance {
  readonly #exports: Exports;
  /** What the module wrote to its standard error: why it gave up, if it did. */
  complaint = "";

  constructor(module: WebAssembly.Module) {
    const complain = ConsoleStdout.lineBuffered((line) => (this.complaint += `: ${line}`));
    const wasi = new WASI([], [], [complain, complain, complain], { debug: false });
    const refuse = (text: number, length: number, field: number, fieldLength: number) => {
      this.#exports.__stack_pointer.value = stack;
      throw new PokermathError(this.#text(text, length), this.#text(field, fieldLength));
    };
    const instance = new WebAssembly.Instance(module, {
      wasi_snapshot_preview1: wasi.wasiImport,
      pokermath: { refuse },
    });
    this.#exports = instance.exports as unknown as Exports;
    wasi.initialize({ exports: this.#exports });
    const stack = this.#exports.__stack_pointer.value; // between calls
  }

  open(question: string): Plan {
    this.#request(new TextEncoder().encode(question));
    return JSON.parse(this.#reply(this.#exports.pokermath_open())) as Plan;
  }

  do(first: number, last: number): void {
    this.#exports.pokermath_do(first, last);
  }

  /** Right where all of the first `done` steps are in the sums of this instance. */
  standing(done: number): Standing {
    const enough = this.#exports.pokermath_enough(done) !== 0;
    return {
      done,
      enough,
      stop: enough ? done : this.#exports.pokermath_next_stop(done),
      part: this.#exports.pokermath_part(done),
      cases: this.#exports.pokermath_cases(),
    };
  }

  takeSums(): Uint8Array<ArrayBuffer> {
    return this.#bytes(this.#exports.pokermath_take_sums());
  }

  addSums(sums: Uint8Array): void {
    this.#request(sums);
    this.#exports.pokermath_add_sums();
  }

  answer(elapsedSeconds: number, outOfTime: boolean): string {
    return this.#reply(this.#exports.pokermath_answer(elapsedSeconds, Number(outOfTime)));
  }

  /** Of the question that was answered. */
  text(): string {
    return this.#reply(this.#exports.pokermath_text());
  }

  csv(by: number): string {
    return this.#reply(this.#exports.pokermath_csv(by));
  }

  svg(by: number): string {
    return this.#reply(this.#exports.pokermath_svg(by));
  }

  describe(request: string): string {
    this.#request(new TextEncoder().encode(request));
    return this.#reply(this.#exports.pokermath_describe());
  }

  rangeText(request: string): string {
    this.#request(new TextEncoder().encode(request));
    return this.#reply(this.#exports.pokermath_range_text());
  }

  version(): string {
    return this.#reply(this.#exports.pokermath_version());
  }

  #request(bytes: Uint8Array): void {
    const place = this.#exports.pokermath_request(bytes.length) >>> 0;
    new Uint8Array(this.#exports.memory.buffer, place, bytes.length).set(bytes);
  }

  #reply(length: number): string {
    return this.#text(this.#exports.pokermath_reply(), length);
  }

  #bytes(length: number): Uint8Array<ArrayBuffer> {
    const place = this.#exports.pokermath_reply() >>> 0;
    return new Uint8Array(this.#exports.memory.buffer.slice(place, place + length) as ArrayBuffer);
  }

  #text(place: number, length: number): string {
    return new TextDecoder().decode(
      new Uint8Array(this.#exports.memory.buffer, place >>> 0, length),
    );
  }
}
