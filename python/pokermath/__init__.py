"""Exact poker mathematics: equity of hands and ranges, evaluators over arrays, ranges with weights.

>>> import pokermath as pm
>>> pm.equity("AhKd", "15%", board="2c7dTh").equity
0.5424...

A card is a number, suit * 13 + rank: 0 is the deuce of clubs, 51 the ace of spades. Wherever cards
are wanted, text ("AhKd", "Ah Kd"), a `Hand` and a sequence of numbers will do.

Games: "holdem", "shortdeck", "shortdeck-straights", "omaha", "omaha5", "omaha6" and the last three
with "-hilo" behind.

Errors: ValueError says what is wrong with a value and what was expected, TypeError what is no such
value at all, RuntimeError what could not be done.
"""

from __future__ import annotations

from collections.abc import Iterable, Sequence
from typing import Union

from . import _core
from ._answers import (
    BestHand,
    Low,
    Nuts,
    OmahaRank,
    OmahaRangeFacts,
    Outs,
    Pot,
    Pots,
    RangeFacts,
    Rank,
    best_hand,
    describe_range,
    low,
    nuts,
    outs,
    pots,
    rank,
)
from ._arrays import (
    evaluate,
    low_evaluate,
    omaha_evaluate,
    omaha_low_evaluate,
    shortdeck_evaluate,
)
from ._core import Answer, Hand, Player, Range, __version__
from ._progress import Progress, watcher

__all__ = [
    "Answer",
    "BestHand",
    "Cards",
    "Hand",
    "Low",
    "Nuts",
    "OmahaRangeFacts",
    "OmahaRank",
    "Outs",
    "Player",
    "PlayerLike",
    "Pot",
    "Pots",
    "Progress",
    "Range",
    "RangeFacts",
    "Rank",
    "__version__",
    "best_hand",
    "card_text",
    "cards",
    "compare",
    "describe_range",
    "equity",
    "evaluate",
    "low",
    "low_evaluate",
    "nuts",
    "omaha_evaluate",
    "omaha_low_evaluate",
    "outs",
    "points",
    "pots",
    "rank",
    "shortdeck_evaluate",
]

Cards = Union[str, Hand, Sequence[int], Sequence[str]]
"""Cards: text, a hand, or a sequence of card codes or of texts."""

PlayerLike = Union[str, Range, Hand, Sequence[int], Sequence[str]]
"""A player: a hand, a range, or the word "random"."""


def equity(
    *players: PlayerLike | Sequence[PlayerLike],
    game: str = "holdem",
    board: Cards | None = None,
    dead: Cards | None = None,
    folded: str | Range | Hand | Iterable[PlayerLike] | None = None,
    to: str | None = None,
    method: str = "auto",
    standard_error: float | None = None,
    trials: int | None = None,
    time_ms: int | None = None,
    seed: int | None = None,
    threads: int | None = None,
    by: str | Sequence[str] | None = None,
    progress: Progress | None = None,
) -> Answer:
    """Equity of two to ten players: what share of the pot each wins.

    What takes less than about a second is counted, everything else sampled; the answer says which
    one, and why. Ctrl-C raises KeyboardInterrupt at once, however long the question is.

    Args:
        players: one by one, or all as one list. Each is a hand ("AhKd"), a range ("TT+,AQs+:0.5",
            "15%", a `Range`) or "random".
        game: see the module.
        board: up to five cards.
        dead: cards that nobody holds and that cannot come.
        folded: the ranges of players who are out, one or several: their hands take cards away.
        to: "flop", "turn" or "river" [river]: where the hands are compared.
        method: "auto", "exact" (counted, however long that takes) or "sampled".
        standard_error: sample until every equity is as good as this, a share of the pot, 0..1
            [0.0005].
        trials: sample no more random deals than these.
        time_ms: milliseconds for sampling, up to a day.
        seed: start of the random numbers, 0 .. 2**64 - 1 [1].
        threads: at most, 1..1024 [as many as there are processors]. The answer does not depend on
            it.
        by: what else is wanted: "hand", "class", "next" or "made", or several of them.
        progress: called now and then with what is done (steps, or trials) and which part of all
            that is, 0..1; or a progress bar with `total`, `n` and `update(more)`, like tqdm's.
    """
    if len(players) == 1 and isinstance(players[0], (list, tuple)):
        players = tuple(players[0])
    out = [folded] if isinstance(folded, (str, Range, Hand)) else folded
    return _core.equity(
        players,
        game,
        board,
        dead,
        out,
        to,
        method,
        standard_error,
        trials,
        time_ms,
        seed,
        threads,
        by,
        None if progress is None else watcher(progress),
    )


def cards(text: Cards) -> tuple[int, ...]:
    """Card codes, 0..51, in the order of the text: cards("AhKd") is (38, 24)."""
    return _core.cards(text)


def card_text(codes: Cards) -> str:
    """The text of cards: card_text([38, 24]) is "AhKd"."""
    return _core.card_text(codes)


def compare(a: Cards, b: Cards, *, board: Cards | None = None, game: str = "holdem") -> int:
    """Which of two hands of two cards is better: 1 for the first, -1 for the second, 0 for neither.

    On a board of three to five cards, or without one as starting hands: a pair first, then the
    higher card, then the other one. For "holdem" and "shortdeck".
    """
    return _core.compare(a, b, board, game)


def points(hand: Cards, *, hilo: bool = False) -> float:
    """Points of an Omaha starting hand of four cards by the Hutchison count; more is better."""
    return _core.points(hand, hilo)
