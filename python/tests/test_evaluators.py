"""Arrays against one hand at a time, and rows that are no hands."""

from __future__ import annotations

from collections.abc import Callable
from itertools import combinations
from typing import Any

import numpy as np
import pytest
from numpy.typing import NDArray

import pokermath as pm

RNG = np.random.default_rng(7)
DECKS = {"holdem": np.arange(52), "shortdeck": np.arange(52)[np.arange(52) % 13 >= 4]}


def deals(rows: int, width: int, game: str = "holdem") -> NDArray[np.uint8]:
    order = RNG.random((rows, len(DECKS[game]))).argsort(axis=1)[:, :width]
    hands: NDArray[np.uint8] = DECKS[game][order].astype(np.uint8)
    return hands


@pytest.mark.parametrize("width", [5, 6, 7])
def test_values_are_those_of_single_hands(width: int) -> None:
    hands = deals(1300, width)
    values = pm.evaluate(hands)
    assert values.dtype == np.uint16 and values.shape == (1300,)
    for hand, value in zip(hands[::20].tolist(), values[::20]):
        assert pm.best_hand(hand).ascending == value == pm.evaluate(pm.card_text(hand))
        assert value == max(pm.evaluate([list(five) for five in combinations(hand, 5)]))
    short = deals(600, width, "shortdeck")
    for hand, value in zip(short[::20].tolist(), pm.shortdeck_evaluate(short)[::20]):
        assert pm.best_hand(hand, game="shortdeck").value == value


def test_lows() -> None:
    assert pm.low_evaluate(["Ah2c3d4h5sKdQd", "4h5c6d7h8sKdQd", "4h4c6d7h8sKdQd"]).tolist() == [
        56,
        1,
        0,
    ]
    both = deals(500, 9)
    holes, boards = both[:, :4], both[:, 4:]
    lows = pm.omaha_low_evaluate(holes, boards)
    for hole, board, value in zip(holes.tolist(), boards.tolist(), lows):
        assert (pm.low(hole, board).value == 0) == (value == 0)
        made = [
            pm.low_evaluate(pm.card_text(two + three))
            for two in combinations(hole, 2)
            for three in combinations(board, 3)
        ] if value else [0]
        assert max(made) == value


@pytest.mark.parametrize("holes", [4, 5, 6])
def test_omaha(holes: int) -> None:
    both = deals(1100, holes + 5)
    hands, boards = both[:, :holes], both[:, holes:]
    values = pm.omaha_evaluate(hands, boards)
    game = "omaha" if holes == 4 else f"omaha{holes}"
    for hand, board, value in zip(hands[::50].tolist(), boards[::50].tolist(), values[::50]):
        assert pm.best_hand(hand, board=board, game=game).ascending == value
    board = pm.cards("2c7dThJs3h")
    free = [card for card in range(52) if card not in board]
    hands = np.array([RNG.choice(free, holes, replace=False) for _ in range(700)], dtype=np.uint8)
    expected = pm.omaha_evaluate(hands, np.tile(np.array(board, np.uint8), (700, 1)))
    assert (pm.omaha_evaluate(hands, "2c7dThJs3h") == expected).all()
    assert (pm.omaha_evaluate(hands, np.array(board)) == expected).all()


def test_forms_of_rows() -> None:
    hands = deals(700, 7)
    expected = pm.evaluate(hands)
    texts = [pm.card_text(hand) for hand in hands.tolist()]
    for rows in (
        hands.astype(np.int64),
        np.asfortranarray(hands),
        np.repeat(hands, 2, axis=0)[::2],
        hands.tolist(),
        texts,
        np.array(texts),
        np.array(texts, dtype=object),
        [pm.Hand(text) for text in texts],
        tuple(texts),
    ):
        assert (pm.evaluate(rows) == expected).all()
    assert pm.evaluate(np.empty((0, 7), np.uint8)).shape == (0,)
    assert pm.evaluate("AhKhQhJhTh") == pm.evaluate(pm.Hand("AhKhQhJhTh")) == 7462


@pytest.mark.parametrize("width", [5, 6, 7])
@pytest.mark.parametrize("row", [0, 63, 64, 511, 512, 1299])
def test_the_first_bad_row_is_named(width: int, row: int) -> None:
    good = deals(1300, width)
    for first, second in combinations(range(width), 2):
        hands = good.copy()
        hands[row, first] = hands[row, second]
        with pytest.raises(ValueError, match=f"^row {row}: .. is given twice"):
            pm.evaluate(hands)
    for place in range(width):
        for card in (52, 255):
            hands = good.copy()
            hands[row:, place] = card
            with pytest.raises(ValueError, match=f"^row {row}: {card} is not a card code"):
                pm.evaluate(hands)


def test_bad_cards_of_the_short_deck_and_of_boards() -> None:
    with pytest.raises(ValueError, match="row 1: 2c is not in the short deck"):
        pm.shortdeck_evaluate(["AhKhQhJhTh", "AhKhQhJh2c"])
    hands = deals(600, 4, "shortdeck")
    hands[599, 3] = 0
    with pytest.raises(ValueError, match="row 599: 2c is given twice"):
        pm.omaha_evaluate(hands, "2c3c4c5c2d")
    with pytest.raises(ValueError, match="boards: 2c is given twice"):
        pm.omaha_evaluate(["AhKhQhJh"], np.zeros(5, np.uint8))


@pytest.mark.parametrize(
    "call, error",
    [
        (lambda: pm.evaluate(np.zeros(7, np.uint8)), ValueError),
        (lambda: pm.evaluate(np.zeros((2, 8), np.uint8)), ValueError),
        (lambda: pm.evaluate(np.zeros((2, 7, 2), np.uint8)), ValueError),
        (lambda: pm.evaluate(np.array(3, np.uint8)), ValueError),
        (lambda: pm.evaluate(np.array([[0, 1, 2, 3, 300]])), ValueError),
        (lambda: pm.evaluate(np.array([[0, 1, 2, 3, -1]])), ValueError),
        (lambda: pm.evaluate(np.array([[0.0, 1, 2, 3, 4]])), TypeError),
        (lambda: pm.evaluate(["AhKhQhJhTh", "AhKhQhJhTh2c"]), ValueError),
        (lambda: pm.evaluate(["AhKhQhJhTx"]), ValueError),
        (lambda: pm.evaluate([None]), TypeError),
        (lambda: pm.evaluate([]), ValueError),
        (lambda: pm.evaluate(5), TypeError),  # type: ignore[call-overload]
        (lambda: pm.omaha_evaluate(["AhKhQhJh"] * 3, np.zeros((2, 5), np.uint8)), ValueError),
        (lambda: pm.omaha_evaluate(np.zeros((3, 3), np.uint8), "2c7dThJs3h"), ValueError),
        (lambda: pm.omaha_evaluate(np.array(3, np.uint8), "2c7dThJs3h"), ValueError),
        (lambda: pm.omaha_evaluate(np.zeros((3, 4), np.uint8), "2c7dTh"), ValueError),
    ],
)
def test_what_is_no_array_of_hands(call: Callable[[], Any], error: type[Exception]) -> None:
    with pytest.raises(error):
        call()
