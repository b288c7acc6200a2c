// A worker as its owner sees it: functions that return promises. Calls may be made before it runs.

import { platform, type Port } from "./platform.js";
import type { Message, Name, Reply, Served } from "./protocol.js";
import { PokermathError } from "./types.js";

interface Waiting {
  resolve: (value: unknown) => void;
  reject: (reason: unknown) => void;
}

/** What calls reject with whose worker was stopped. */
export class Stopped extends Error {
  override name = "Stopped";
}

export class Remote {
  readonly #port: Promise<Port>;
  #running: Port | undefined;
  #waiting: Waiting[] = [];
  #replies = 0;
  #failure: Error | undefined;

  constructor(module: Promise<WebAssembly.Module>) {
    this.#port = this.#start(module);
    this.#port.catch((error: unknown) => {
      this.#fail(error instanceof Error ? error : new Error(String(error)));
    });
  }

  /** Calls are answered one after another. Bytes, also in lists, are handed over, not copied. */
  call<K extends Name>(name: K, ...args: Parameters<Served[K]>): Promise<ReturnType<Served[K]>> {
    if (this.#failure) return Promise.reject(this.#failure);
    const reply = new Promise<unknown>((resolve, reject) => {
      this.#waiting.push({ resolve, reject });
    });
    this.#running?.hold(true);
    const message = { name, args } as Message;
    const bytes = args.flat().filter((argument) => argument instanceof Uint8Array);
    const transfer = bytes.map(({ buffer }) => buffer as ArrayBuffer);
    this.#port
      .then((port) => port.post(message, transfer))
      .catch((error: Error) => this.#fail(error));
    return reply as Promise<ReturnType<Served[K]>>;
  }

  /** Whether a call waits for its reply. */
  get busy(): boolean {
    return this.#waiting.length > 0;
  }

  /** Whether it can be called no more. */
  get dead(): boolean {
    return this.#failure !== undefined;
  }

  /** Terminates unless the calls that were made up to now are answered so soon. */
  finishWithin(ms: number): void {
    if (!this.busy) return;
    const due = this.#replies + this.#waiting.length;
    setTimeout(() => {
      if (this.#replies < due) this.terminate();
    }, ms);
  }

  /** At once, whatever it is doing. */
  terminate(): void {
    this.#fail(new Stopped("the worker was stopped"));
  }

  // The worker starts while the module is still being compiled.
  async #start(module: Promise<WebAssembly.Module>): Promise<Port> {
    const system = await platform();
    if (this.#failure) throw this.#failure;
    const port = system.start(
      (reply) => this.#receive(reply),
      (error) => this.#fail(error),
    );
    this.#running = port;
    port.hold(this.busy);
    port.post({ module: await module }, []);
    return port;
  }

  #receive(reply: Reply): void {
    const waiting = this.#waiting.shift();
    ++this.#replies;
    if (!this.busy) this.#running?.hold(false);
    if ("value" in reply) {
      waiting?.resolve(reply.value);
    } else if ("refused" in reply) {
      waiting?.reject(new PokermathError(reply.refused.message, reply.refused.field));
    } else {
      waiting?.reject(new Error(reply.broken));
    }
  }

  #fail(error: Error): void {
    this.#failure ??= error;
    this.#running?.terminate();
    for (const { reject } of this.#waiting.splice(0)) reject(error);
  }
}
