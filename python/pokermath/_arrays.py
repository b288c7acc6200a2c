"""Evaluators over arrays of card codes, a hand a row."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Union, overload

import numpy as np

from . import _core
from ._core import Hand

if TYPE_CHECKING:
    from collections.abc import Callable, Iterable

    from numpy.typing import NDArray  # takes longer than all of the package

    Rows = Union[NDArray[Any], Iterable[Any]]
    Codes = NDArray[np.uint8]
    Values = NDArray[np.uint16]


def _codes(rows: Rows) -> Codes:
    """An array of uint8 without a copy where it is one; anything else as such an array."""
    if not isinstance(rows, np.ndarray):
        return _core.rows(list(rows))
    if rows.dtype == np.uint8:
        return rows
    if rows.dtype.kind not in "iu":
        if rows.dtype.kind in "OSU":
            return _core.rows(rows.tolist())
        raise TypeError(f"card codes are whole numbers, not {rows.dtype}")
    foreign = (rows < 0) | (rows > 51)
    if foreign.any():
        place = tuple(int(i[0]) for i in np.nonzero(foreign))
        where = f"row {place[0]}: " if place else ""
        raise ValueError(f"{where}{rows[place]} is not a card code: 0 to 51")
    return rows.astype(np.uint8)


def _evaluate(batch: Callable[[Codes], NDArray[Any]], hands: Rows | str | Hand) -> Any:
    if isinstance(hands, (str, Hand)):
        return int(batch(_core.rows([hands]))[0])
    return batch(_codes(hands))


@overload
def evaluate(hands: str | Hand) -> int: ...  # type: ignore[misc]
@overload
def evaluate(hands: Rows) -> Values: ...
def evaluate(hands: Rows | str | Hand) -> int | Values:
    """Values of hands of five to seven cards: 1..7462, larger is better.

    Args:
        hands: an array of shape (n, 5), (n, 6) or (n, 7), card codes; uint8 in C order is read
            where it is, anything else is converted. Or a list of hands: texts, `Hand`s or sequences
            of codes, all of as many cards. Or one hand, a text or a `Hand`.

    Returns:
        n values as uint16; of one hand an int.

    Raises:
        ValueError: a row is no hand; it is named.
    """
    return _evaluate(_core.evaluate, hands)  # type: ignore[no-any-return]


@overload
def shortdeck_evaluate(hands: str | Hand) -> int: ...  # type: ignore[misc]
@overload
def shortdeck_evaluate(hands: Rows) -> Values: ...
def shortdeck_evaluate(hands: Rows | str | Hand) -> int | Values:
    """The same with the short deck, six to ace, by its own order: 1..1404, larger is better."""
    return _evaluate(_core.shortdeck_evaluate, hands)  # type: ignore[no-any-return]


@overload
def low_evaluate(hands: str | Hand) -> int: ...  # type: ignore[misc]
@overload
def low_evaluate(hands: Rows) -> Codes: ...
def low_evaluate(hands: Rows | str | Hand) -> int | Codes:
    """Lows of five ranks of eight and below, the ace low: 1 (8-7-6-5-4) .. 56 (the wheel).

    Larger is better, 0 is no low. Arguments as of `evaluate`; uint8.
    """
    return _evaluate(_core.low_evaluate, hands)  # type: ignore[no-any-return]


def omaha_evaluate(holes: Rows, boards: Rows | str) -> Values:
    """Values of Omaha hands, two hole cards and three board cards: 1..7462, larger is better.

    Args:
        holes: shape (n, 4), (n, 5) or (n, 6), as of `evaluate`; or a list of hands.
        boards: a board for each hand, shape (n, 5), or one for all, shape (5,) or a text.

    Returns:
        n values as uint16.

    Raises:
        ValueError: a row is no hand and board; it is named.
    """
    return _core.omaha_evaluate(_codes(holes), _boards(boards))


def omaha_low_evaluate(holes: Rows, boards: Rows | str) -> Codes:
    """Lows of Omaha hands: 1..56, larger is better, 0 for none. Arguments as of the other."""
    return _core.omaha_low_evaluate(_codes(holes), _boards(boards))


def _boards(boards: Rows | str) -> Codes:
    if isinstance(boards, str):
        boards = np.array(_core.cards(boards), dtype=np.uint8)
    return _codes(boards)
