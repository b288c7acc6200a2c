"""Measures what the package costs on top of C++: bench.py [POKERMATH_BENCH].

POKERMATH_BENCH is the benchmark program of the same build, for the figures of C++ in the same run.
Best of several rounds on one core; other work on the machine makes all of them slower. Short calls
are timed by the processor's time, as the benchmark program does, and threads by the clock.
"""

from __future__ import annotations

import json
import os
import signal
import subprocess
import sys
import threading
import time
from typing import Callable

import numpy as np

import pokermath as pm

ROUNDS = 15


def best(
    call: Callable[[], object],
    number: int = 1,
    rounds: int = ROUNDS,
    clock: Callable[[], float] = time.perf_counter,
) -> float:
    """Seconds of a call; with time.thread_time those of the processor."""
    found = float("inf")
    for _ in range(rounds):
        start = clock()
        for _ in range(number):
            call()
        found = min(found, (clock() - start) / number)
    return found


def line(what: str, figure: str, beside: str = "") -> None:
    print(f"{what:46}{figure:>12}   {beside}".rstrip(), flush=True)


def batch_of_cpp(program: str) -> float:
    """Milliseconds that C++ takes for a million seven-card hands."""
    words = [program, "--benchmark_filter=BM_EvaluateBatch/", "--benchmark_format=json"]
    words += ["--benchmark_repetitions=5"]
    runs = json.loads(subprocess.run(words, capture_output=True, text=True).stdout)["benchmarks"]
    return min(1e9 / float(run["items_per_second"]) for run in runs if "items_per_second" in run)


def evaluators(program: str | None) -> None:
    rng = np.random.default_rng(1)
    hands = np.concatenate(
        [rng.random((10_000, 52)).argpartition(7)[:, :7].astype(np.uint8) for _ in range(100)]
    )
    cpp = f"C++ batch: {batch_of_cpp(program):.2f} ms" if program else ""
    alone = best(lambda: pm.evaluate(hands), rounds=40, clock=time.thread_time)
    line("evaluate, 1,000,000 hands of seven", f"{1e3 * alone:.2f} ms", cpp)
    one = best(lambda: [pm.evaluate(hands) for _ in range(4)])

    def twice() -> None:
        threads = [
            threading.Thread(target=lambda: [pm.evaluate(hands) for _ in range(4)])
            for _ in range(2)
        ]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()

    line("the same in two threads of Python", f"{2 * one / best(twice):.2f} times as fast")


def questions() -> None:
    seconds = best(lambda: pm.equity("AhKd", "7s7c"), 500, 100, time.thread_time)
    line('equity("AhKd", "7s7c")', f"{1e6 * seconds:.2f} us")
    first, second = pm.Range("15%"), pm.Range("TT+,AQs+:0.5")
    over, whole = float("inf"), 0.0
    for _ in range(300):
        start = time.perf_counter()
        answer = pm.equity(first, second, board="2c7dTh", threads=1)
        took = 1e3 * (time.perf_counter() - start)
        if took - answer.elapsed_ms < over:
            over, whole = took - answer.elapsed_ms, answer.elapsed_ms
    line("range against range on a flop", f"{1e3 * whole:.0f} us", f"{1e3 * over:.1f} us around it")
    ask = "AhKd", "random", "random"
    one, two = (
        best(lambda: pm.equity(*ask, trials=3_000_000, threads=n), rounds=5) for n in (1, 2)
    )
    one_thread = f"{1e3 * one:.0f} ms on one"
    line("3,000,000 trials on two threads", f"{one / two:.2f} times as fast", one_thread)


def interrupt() -> None:
    """Of a count that would take half an hour."""
    sent = 0.0

    def send() -> None:
        nonlocal sent
        time.sleep(0.2)
        sent = time.perf_counter()
        os.kill(os.getpid(), signal.SIGINT)

    worst = 0.0
    for _ in range(5):
        threading.Thread(target=send).start()
        try:
            pm.equity("AhKd", "random", "random", "random", method="exact", board="2c")
        except KeyboardInterrupt:
            worst = max(worst, time.perf_counter() - sent)
    line("Ctrl-C in a long question", f"{1e3 * worst:.1f} ms", "the longest of five")


def imports() -> None:
    """Of the package alone: numpy is there already."""
    program = (
        "import time, numpy\nt = time.perf_counter()\nimport pokermath\n"
        "print(time.perf_counter() - t)"
    )
    words = [sys.executable, "-c", program]
    runs = [subprocess.run(words, capture_output=True, text=True).stdout for _ in range(5)]
    seconds = min(float(run) for run in runs)
    line("import pokermath, without numpy's own time", f"{1e3 * seconds:.1f} ms")


if __name__ == "__main__":
    questions()
    evaluators(sys.argv[1] if len(sys.argv) > 1 else None)
    imports()
    interrupt()
