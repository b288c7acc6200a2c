// What the page asks its calculator: one question at a time, which a newer one cancels, and meanwhile what
// ranges mean.

import { createContext } from "preact";
import { useContext, useEffect, useLayoutEffect, useRef, useState } from "preact/hooks";
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
  /** The question, as JSON, that was refused last, and why. */
  refused: { key: string; error: PokermathError } | null;
  progress: Progress | null;
  /** The question, as JSON, that was answered, refused or stopped last; "" for none. */
  settled: string;
  stopped: boolean;
}

const NOTHING: Asked = { last: null, refused: null, progress: null, settled: "", stopped: false };
/** Letters that come faster than this are one question. */
const REST_MS = 20;
/** What takes no longer than this needs no sign of it. */
const SLOW_MS = 150;

export interface Asking extends Pick<Asked, "last" | "progress" | "stopped"> {
  /** What is wrong with the question. */
  error: PokermathError | null;
  running: boolean;
  /** Whether it has been running for a while. */
  slow: boolean;
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
        show({ last: { question, answer }, refused: null, settled: key });
      } catch (problem) {
        show({ refused: { key, error: errorOf(problem) }, settled: key });
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

  const { last, refused, progress } = asked;
  const running = asked.settled !== key;
  const slow = useSlow(running);
  // Without the moment that a verdict usually takes, notes would come and go with every letter.
  const refusedNow = refused !== null && (refused.key === key || (running && !slow));
  return {
    last,
    progress,
    error: refusedNow ? refused.error : null,
    running,
    slow,
    stopped: asked.stopped && !running,
    stop: () => {
      abort.current?.abort();
      setAsked((before) => ({ ...before, settled: key, stopped: true }));
    },
    again: () => setRound((before) => before + 1),
  };
}

function useSlow(running: boolean): boolean {
  const [late, setLate] = useState(false);
  useEffect(() => {
    if (!running) return;
    const timer = setTimeout(() => setLate(true), SLOW_MS);
    return () => {
      clearTimeout(timer);
      setLate(false);
    };
  }, [running]);
  return running && late;
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
  reading.catch((problem: unknown) => {
    // A text stays wrong; whatever else failed may go well the next time.
    if (!(problem instanceof PokermathError)) readings.delete(key);
  });
  return reading;
}

export interface Reading {
  /** What the text means; while it is typed or wrong, what it meant before. */
  meaning: RangeReading | null;
  /** The text of now was read. */
  read: boolean;
  /** The text of now cannot be read; the answer says why, at the field. */
  wrong: boolean;
}

const UNREAD: Reading = { meaning: null, read: false, wrong: false };

/** The meaning of a text; an earlier one is shown only of the same game and `player`. */
export function useReading(game: Game, text: string, player = 0): Reading {
  const calculator = useCalculator();
  const whose = `${game} ${player}`;
  const [last, setLast] = useState({ ...UNREAD, whose, text });
  // Before the drawing, so that a text that was read before never begins with nothing.
  useLayoutEffect(() => {
    let current = true;
    read(calculator, game, text).then(
      (meaning) => {
        if (current) setLast({ meaning, read: true, wrong: false, whose, text });
      },
      () => {
        if (!current) return;
        setLast((before) => {
          const meaning = before.whose === whose ? before.meaning : null;
          return { meaning, read: false, wrong: true, whose, text };
        });
      },
    );
    return () => {
      current = false;
    };
  }, [calculator, game, text, whose]);
  if (last.whose !== whose) return UNREAD;
  return last.text === text ? last : { ...UNREAD, meaning: last.meaning };
}

/** Does the newest of several jobs that come faster than they are done; those between are left out. */
export function useLatest<T>(
  work: (job: T) => Promise<void>,
  onFailure: (problem: unknown) => void,
): (job: T) => void {
  const state = useRef<{ busy: boolean; next: T | null }>({ busy: false, next: null });
  const run = async () => {
    const mine = state.current;
    if (mine.busy) return;
    mine.busy = true;
    try {
      while (mine.next !== null) {
        const now = mine.next;
        mine.next = null;
        await work(now);
      }
    } catch (problem) {
      mine.next = null;
      onFailure(problem);
    } finally {
      mine.busy = false;
    }
  };
  return (job) => {
    state.current.next = job;
    void run();
  };
}
