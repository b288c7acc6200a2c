"""Calls everything with anything, for some seconds: fuzz_module.py SECONDS [SEED].

Exceptions are fine; a crash, a report of a sanitizer or a call that takes very long is not.
"""

from __future__ import annotations

import faulthandler
import pickle
import random
import sys
import time
import warnings
from typing import Any, Callable

import numpy as np

import pokermath as pm
from pokermath import _core

GAMES = ["holdem"] * 6 + ["shortdeck", "shortdeck-straights", "omaha", "omaha5", "omaha-hilo", ""]
PIECES = [
    "AhKd", "7s7c", "AA", "TT+", "A9s+", "JJ-88", "15%", "random", ":0.5", ":2", "AAxx", "KQJT",
    "[T-A][T-A]xx", ":ds", "!KKxx", ",", " ", "%", "+", "\x00", "é", "♠", "A♥", "10h", "9" * 50,
    "2c7dTh", "5s", "Jd", "AhAdKhKd", "0", "-1", "1e400", "nan", "[25]AA[/25]", "5%-20%", "AA@50",
]  # fmt: skip
MOST_SECONDS = 20.0


class Odd:
    """A sequence and a number that misbehave."""

    def __init__(self, rng: random.Random) -> None:
        self.rng = rng

    def __len__(self) -> int:
        return self.rng.choice([0, 1, 3, 1000, -1])

    def __getitem__(self, place: Any) -> Any:
        if self.rng.random() < 0.3:
            raise IndexError
        return self.rng.choice([place, "Ah", None])

    def __index__(self) -> int:
        if self.rng.random() < 0.2:
            raise RuntimeError("no number")
        return self.rng.choice([0, 3, 51, 52, -1, 2**70])

    def __hash__(self) -> int:
        return self.rng.choice([1, 2])

    def __eq__(self, other: object) -> bool:
        return self.rng.random() < 0.5


class Choices(random.Random):
    """Takes what it chooses from bytes; when there are no more, from a generator."""

    def __new__(cls, data: bytes) -> Choices:
        return super().__new__(cls)

    def __init__(self, data: bytes) -> None:
        self.data = data
        self.place = 0
        self.rest = random.Random(0)
        super().__init__(0)

    def seed(self, *args: Any, **kwargs: Any) -> None:
        pass

    def left(self) -> int:
        return len(self.data) - self.place

    def getrandbits(self, k: int) -> int:
        if self.left() <= 0:
            return self.rest.getrandbits(k)
        count = (k + 7) // 8
        part = self.data[self.place : self.place + count]
        self.place += count
        return int.from_bytes(part, "little") & ((1 << k) - 1)

    def random(self) -> float:
        return self.getrandbits(16) / 2**16


class Fuzzer:
    def __init__(self, rng: random.Random) -> None:
        self.rng = rng
        self.kept: list[Any] = []

    def text(self) -> str:
        return "".join(self.rng.choice(PIECES) for _ in range(self.rng.choice([1, 1, 1, 2, 3, 5])))

    def cards(self, most: int = 7) -> Any:
        codes = self.rng.sample(range(52), self.rng.randint(0, most))
        if self.rng.random() < 0.1:
            codes.append(self.rng.choice([52, 255, -1, 0, 2**40]))
        forms: list[Callable[[], Any]] = [
            lambda: codes,
            lambda: tuple(codes),
            lambda: pm.card_text(codes),
            lambda: np.array(codes),
            lambda: pm.Hand(codes),
        ]
        return self.rng.choice(forms)()

    def array(self) -> Any:
        shapes = [(3, 7), (600, 5), (70, 9), (2, 4), (5,), (0, 7), (1, 6), (3, 3, 3), ()]
        shape = self.rng.choice(shapes)
        kind = self.rng.choice(["u1", "u1", "u1", "i8", "f8", "?", "U4", "O", "u2", "M8[s]"])
        numbers = np.random.default_rng(self.rng.randrange(10**6)).integers(0, 53, shape)
        if len(shape) == 2 and self.rng.random() < 0.5 and shape[1] < 10:
            order = np.random.default_rng(1).random((shape[0], 52)).argsort(axis=1)
            numbers = order[:, : shape[1]]
        array = numbers.astype(kind)
        if self.rng.random() < 0.3 and array.ndim == 2:
            array = self.rng.choice([array.T, array[::-1], array[:, ::-1], array[::2]])
        return array

    def anything(self, depth: int = 0) -> Any:
        forms: list[Callable[[], Any]] = [
            lambda: None,
            lambda: self.rng.choice([0, 1, -1, 2**63, 2**64, 10**30, 5, 1000]),
            lambda: self.rng.choice([0.5, float("nan"), float("inf"), -1.0, 1e-9]),
            self.text,
            self.cards,
            self.array,
            lambda: self.rng.choice(self.kept) if self.kept else None,
            lambda: self.text().encode(),
            lambda: Odd(self.rng),
            lambda: [self.anything(depth + 1) for _ in range(self.rng.randint(0, 3))]
            if depth < 3
            else [],
            lambda: {self.text(): self.anything(depth + 1)} if depth < 3 else {},
            self.never_made,
        ]
        return self.rng.choice(forms)()

    def never_made(self) -> Any:
        kinds: list[Any] = [pm.Range, pm.Hand, pm.Answer, pm.Player]
        return self.rng.choice(kinds).__new__(self.rng.choice(kinds))

    def sane_or_not(self, sane: Any) -> Any:
        return self.anything() if self.rng.random() < 0.15 else sane

    def player(self) -> Any:
        hands: list[Callable[[], Any]] = [self.text, lambda: self.cards(6), self.anything]
        return self.rng.choice(hands)()

    def equity(self) -> Any:
        options: dict[str, Any] = {"trials": 200, "method": "sampled", "threads": 2}
        if self.rng.random() < 0.3:
            options["method"] = "auto"
            options["board"] = self.cards(5)
        names = ["board", "dead", "folded", "to", "seed", "threads", "by", "game", "progress"]
        for name in self.rng.sample(names, self.rng.randint(0, 4)):
            sane = {
                "game": self.rng.choice(GAMES),
                "by": self.rng.choice(["hand", "class", "next", "made", ["hand", "made"]]),
                "to": self.rng.choice(["flop", "turn", "river"]),
                "board": self.cards(5),
                "dead": self.cards(5),
                "seed": self.rng.randrange(2**64),
                "threads": 2,
                "folded": [self.player()],
                "progress": lambda *_: self.rng.random() < 0.9 or 1 / 0,
            }
            options[name] = self.sane_or_not(sane[name])
        players = [self.player() for _ in range(self.rng.choice([0, 1, 2, 2, 2, 3, 11]))]
        return pm.equity(*players, **options)

    def look_at(self, it: Any) -> Any:
        names = [name for name in dir(it) if not name.startswith("__") or name in ("__len__",)]
        if not names:
            return None
        found = getattr(it, self.rng.choice(names))
        if callable(found):
            return found(*[self.anything() for _ in range(self.rng.randint(0, 2))])
        return found

    def calls(self) -> Any:
        rng = self.rng
        functions = [getattr(_core, name) for name in dir(_core) if not name.startswith("__")]
        public = [getattr(pm, name) for name in pm.__all__ if callable(getattr(pm, name))]
        two = [it for it in self.kept if isinstance(it, pm.Range)]
        choices: list[Callable[[], Any]] = [
            self.equity,
            self.equity,
            lambda: pm.Range(self.sane_or_not(self.text()), game=rng.choice(GAMES)),
            lambda: pm.Hand(self.sane_or_not(self.cards())),
            lambda: pm.Range.of(self.anything(), game=rng.choice(GAMES)),
            lambda: rng.choice(two) | rng.choice(two) & rng.choice(two) - rng.choice(two),
            lambda: pickle.loads(pickle.dumps(rng.choice(two))),
            lambda: pm._core.unpickled_range(
                rng.choice(GAMES), self.text(), rng.randrange(2**64), rng.randbytes(24)
            ),
            lambda: rng.choice([pm.evaluate, pm.shortdeck_evaluate, pm.low_evaluate])(self.array()),
            lambda: pm.omaha_evaluate(self.array(), self.array()),
            lambda: pm.outs(self.cards(6), self.cards(5)),
            lambda: pm.nuts(self.cards(6), self.cards(5)),
            lambda: pm.low(self.cards(6), self.cards(5)),
            lambda: pm.best_hand(self.cards(), board=self.cards(5), game=rng.choice(GAMES)),
            lambda: pm.compare(self.cards(2), self.cards(2), board=self.cards(5)),
            lambda: pm.rank(self.text(), game=rng.choice(GAMES)),
            lambda: pm.describe_range(self.text(), game=rng.choice(GAMES)),
            lambda: pm.pots(self.anything(), self.anything()),
            lambda: rng.choice(public)(*[self.anything() for _ in range(rng.randint(0, 3))]),
            lambda: rng.choice(functions)(*[self.anything() for _ in range(rng.randint(0, 5))]),
            lambda: self.look_at(rng.choice(self.kept)),
            lambda: [repr(it) for it in self.kept[-1:]],
        ]
        return rng.choice(choices)()

    def step(self) -> bool:
        try:
            made = self.calls()
        except (Exception, RecursionError):
            return False
        # Large ranges take long to write.
        large = isinstance(made, pm.Range) and len(made) > 2000
        if isinstance(made, (pm.Range, pm.Hand, pm.Answer, pm.Player)) and not large:
            self.kept = self.kept[-30:] + [made]
        return True


def run(data: bytes) -> None:
    """What fuzz_calls does with its bytes."""
    warnings.simplefilter("ignore")
    choices = Choices(data)
    fuzzer = Fuzzer(choices)
    while choices.left() > 0:
        fuzzer.step()


def main() -> None:
    seconds = float(sys.argv[1]) if len(sys.argv) > 1 else 10
    seed = int(sys.argv[2]) if len(sys.argv) > 2 else 1
    faulthandler.enable()
    warnings.simplefilter("ignore")
    end = time.monotonic() + seconds
    calls = right = 0
    while time.monotonic() < end:
        # A seed of its own for every few calls, so that what breaks can be found again.
        state = seed + calls // 50
        if calls % 50 == 0:
            fuzzer = Fuzzer(random.Random(state))
        faulthandler.dump_traceback_later(MOST_SECONDS + seconds, exit=True)
        right += fuzzer.step()
        calls += 1
    print(f"{calls} calls, {right} of them answered")
    assert right > calls // 20, "hardly any call was right"


if __name__ == "__main__":
    main()
