// What the page asks its calculator: one question at a time, which a newer one cancels, and meanwhile what
// ranges mean.

import { createContext } from "preact";
import { useContext, useEffect, useRef, useState } from "preact/hooks";
import { PokermathError } from "pokermath";
import type {
  Answer,
  Game,
  PokermathCalculator,
  Progress,
  Question,
  RangeReading,
} from "pokermath";

export const CalculatorContext = createContext<PokermathCalculator | null>(null);

export function useCalculator(): PokermathCalculator {
  const calculator = useContext(CalculatorContext);
  if (calculator === null) throw new Error("no calculator");
  return calculator;
}

/** What is known about the question; the last good answer stays until there is a better one. */
export interface Asked {
  /** With the question that it answers. */
  last: { question: Question; answer: Answer } | null;
  /** What is wrong with the present question. */
  error: PokermathError | null;
  progress: Progress | null;
  /** The question, as JSON, that was answered, refused or stopped last; "" for none. */
  settled: string;
  stopped: boolean;
}

const NOTHING: Asked = { last: null, error: null, progress: null, settled: "", stopped: false };
/** Letters that come faster than this are one question. */
const REST_MS = 20;

export interface Asking extends Asked {
  running: boolean;
  stop: () => void;
  again: () => void;
}

/** Asks the question, and again whenever another one is given; an older one is cancelled. */
export function useAnswer(question: Question): Asking {
  const calculator = useCalculator();
  const [asked, setAsked] = useState(NOTHING);
  const [round, setRound] = useState(0);
  const abort = useRef<AbortController | null>(null);
  const key = JSON.stringify(question);

  useEffect(() => {
    const mine = new AbortController();
    abort.current = mine;
    const { signal } = mine;
    const show = (change: Partial<Asked>) => {
      if (!signal.aborted) setAsked((before) => ({ ...before, ...change }));
    };
    const ask = async () => {
      try {
        show({ progress: null, settled: "", stopped: false });
        const onProgress = (progress: Progress) => show({ progress });
        const answer = await calculator.calculate(question, { signal, onProgress });
        show({ last: { question, answer }, error: null, settled: key });
      } catch (problem) {
        show({ error: errorOf(problem), settled: key });
      }
    };
    const timer = setTimeout(() => void ask(), REST_MS);
    return () => {
      clearTimeout(timer);
      mine.abort();
    };
    // The key stands for the question, which is another object at every drawing.
    // eslint-disable-next-line react-hooks/exhaustive-deps
  }, [calculator, key, round]);

  return {
    ...asked,
    running: asked.settled !== key,
    stop: () => {
      abort.current?.abort();
      setAsked((before) => ({ ...before, settled: key, stopped: true }));
    },
    again: () => setRound((before) => before + 1),
  };
}

function errorOf(problem: unknown): PokermathError {
  if (problem instanceof PokermathError) return problem;
  return new PokermathError(problem instanceof Error ? problem.message : String(problem), "");
}

/** The error of a field, "players/1", or null. */
export function errorAt(error: PokermathError | null, field: string): string | null {
  return error?.field === field ? error.message : null;
}

/** Cases of an exact answer, deals of a sampled one. */
export function casesOf({ cases, trials }: Answer): number {
  return cases ?? trials ?? 0;
}

const FEW = 200;
const readings = new Map<string, Promise<RangeReading>>();

function read(calculator: PokermathCalculator, game: Game, text: string): Promise<RangeReading> {
  const key = `${game} ${text}`;
  const known = readings.get(key);
  if (known !== undefined) return known;
  const reading = calculator.describe(game, text);
  if (readings.size >= FEW) readings.clear();
  readings.set(key, reading);
  return reading;
}

/** What a text means; while it is typed or wrong, what it meant before. */
export function useReading(game: Game, text: string): RangeReading | null {
  const calculator = useCalculator();
  const [shown, setShown] = useState<{ game: Game; reading: RangeReading } | null>(null);
  useEffect(() => {
    let current = true;
    read(calculator, game, text).then(
      (reading) => {
        if (current) setShown({ game, reading });
      },
      () => undefined, // the answer says what is wrong, at the field
    );
    return () => {
      current = false;
    };
  }, [calculator, game, text]);
  return shown?.game === game ? shown.reading : null;
}

/** Does the newest of several jobs that come faster than they are done; those between are left out. */
export function useLatest<T>(work: (job: T) => Promise<void>): (job: T) => void {
  const state = useRef<{ busy: boolean; next: T | null }>({ busy: false, next: null });
  const run = async (job: T) => {
    const mine = state.current;
    if (mine.busy) {
      mine.next = job;
      return;
    }
    mine.busy = true;
    let now: T | null = job;
    while (now !== null) {
      mine.next = null;
      try {
        await work(now);
      } finally {
        now = mine.next;
      }
    }
    mine.busy = false;
  };
  return (job) => void run(job);
}
