// What the page's thread and its workers say to each other: calls, each with one reply, in order.

import type { Server } from "./server.js";

/** How a question is going to be answered. */
export interface Plan {
  steps: number;
  method: "exact" | "sampled";
  reason: string;
  /** After which sampling ends. */
  time_ms: number | null;
  warnings: string[];
}

/** How far the work on a question has come. */
export interface Standing {
  /** Steps. */
  done: number;
  /** Whether the answer is as good as was asked for. */
  enough: boolean;
  /** How many steps have to be done before it is worth looking again. */
  stop: number;
  /** 0..1 */
  part: number;
  /** Cases or trials. */
  cases: number;
}

/** What became of a question in the first moments, in which one worker works alone. */
export interface Begun {
  plan: Plan;
  standing: Standing;
  /** JSON; null where the question takes longer. */
  answer: string | null;
  outOfTime: boolean;
  /** How long the work has taken. */
  ms: number;
}

/** All that it takes to have an answer again. */
export interface Answered {
  question: string;
  sums: Uint8Array;
  elapsedSeconds: number;
  outOfTime: boolean;
}

/** The functions of a server that can be called from outside. */
export type Served = Omit<Server, "constructor">;
export type Name = keyof Served;

export type Message =
  { module: WebAssembly.Module } | { [K in Name]: { name: K; args: Parameters<Served[K]> } }[Name];

/** Of a call: its value, the module's refusal, or that something broke. */
export type Reply =
  { value: unknown } | { refused: { message: string; field: string } } | { broken: string };
