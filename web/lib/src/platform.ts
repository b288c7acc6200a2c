// Workers as browsers and as node have them.

import program from "virtual:worker-program";

import type { Message, Reply } from "./protocol.js";

/** A worker that runs. */
export interface Port {
  post(message: Message, transfer: ArrayBuffer[]): void;
  /** Whether the process has to wait for it. */
  hold(busy: boolean): void;
  terminate(): void;
}

export interface Platform {
  /** Of the processor. */
  cores: number;
  start(onReply: (reply: Reply) => void, onFailure: (error: Error) => void): Port;
}

// node's worker, with the few names of a browser's that the program uses.
const kInNode = `
const { parentPort } = require("node:worker_threads");
globalThis.self = globalThis;
globalThis.postMessage = (message, { transfer }) => parentPort.postMessage(message, transfer);
parentPort.on("message", (data) => globalThis.onmessage({ data }));
`;

// Hidden from bundlers, which would look for node's modules in a browser.
function importOfNode<T>(name: string): Promise<T> {
  return import(/* @vite-ignore */ /* webpackIgnore: true */ `node:${name}`) as Promise<T>;
}

async function node(): Promise<Platform> {
  const { Worker } = await importOfNode<typeof import("node:worker_threads")>("worker_threads");
  const os = await importOfNode<typeof import("node:os")>("os");
  return {
    cores: os.availableParallelism?.() ?? os.cpus().length, // the first is of node 18.14
    start(onReply, onFailure) {
      const worker = new Worker(kInNode + program, { eval: true, execArgv: [] });
      worker.unref();
      worker.on("message", onReply);
      worker.on("error", onFailure);
      return {
        post: (message, transfer) => worker.postMessage(message, transfer),
        hold: (busy) => (busy ? worker.ref() : worker.unref()),
        terminate: () => void worker.terminate(),
      };
    },
  };
}

function browser(): Platform {
  const url = URL.createObjectURL(new Blob([program], { type: "text/javascript" }));
  return {
    cores: navigator.hardwareConcurrency,
    start(onReply, onFailure) {
      const worker = new Worker(url);
      worker.onmessage = ({ data }: MessageEvent<Reply>) => onReply(data);
      worker.onerror = ({ message }) => onFailure(new Error(`a worker failed: ${message}`));
      return {
        post: (message, transfer) => worker.postMessage(message, transfer),
        hold: () => undefined,
        terminate: () => worker.terminate(),
      };
    },
  };
}

// Pages may have a process too, which bundlers make up for those who ask it for its environment.
export function isNode(): boolean {
  return typeof process !== "undefined" && Boolean(process.versions?.node);
}

let found: Promise<Platform> | undefined;

export function platform(): Promise<Platform> {
  return (found ??= isNode() ? node() : Promise.resolve(browser()));
}

export { importOfNode };
