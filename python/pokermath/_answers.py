"""Questions about one hand, one range text or one pot, and what they are answered with.

Every answer prints as the page of the command line, and `to_dict()` is its JSON object.
"""

from __future__ import annotations

from collections.abc import Sequence
from typing import TYPE_CHECKING, Any, NamedTuple, Optional

import numpy as np

from . import _core

if TYPE_CHECKING:
    from numpy.typing import NDArray  # takes longer than all of the package

    from . import Cards

_Made = tuple[dict[str, Any], str, Optional[str]]


class Facts:
    """An answer with its page, its dict and, where it has one, its picture.

    What a class annotates it has from the dict; None for what is not there.
    """

    def __init__(self, made: _Made) -> None:
        self._facts, self._page, self._svg = made
        for name in type(self).__annotations__:
            setattr(self, name, self._facts.get(name))

    def to_dict(self) -> dict[str, Any]:
        """What the command line prints with --json."""
        return self._facts

    def __eq__(self, other: object) -> bool:
        return isinstance(other, type(self)) and other._facts == self._facts

    def __repr__(self) -> str:
        return self._page

    def _repr_svg_(self) -> str | None:
        return self._svg


class BestHand(Facts):
    """What cards are worth."""

    category: str
    """"flush", "full house"."""
    words: str | None
    """"flush Ace high"; None in the short deck."""
    ascending: int | None
    """1..7462, larger is better; None in the short deck."""
    descending: int | None
    """1..7462, 1 is the royal flush; None in the short deck."""
    value: int | None
    """1..1404, larger is better, in the short deck; else None."""
    cards: list[str] | None
    """The five cards that play, as players read them; None in Omaha."""
    hole_cards: list[str] | None
    """In Omaha the two cards of the hand that play."""
    board_cards: list[str] | None
    """In Omaha the three cards of the board that play."""


def best_hand(cards: Cards, *, board: Cards | None = None, game: str = "holdem") -> BestHand:
    """What five to seven cards make, those of the board counted; or an Omaha hand and its board."""
    return BestHand(_core.best_hand(cards, board, game))


class Outs(Facts):
    """The cards that lift an Omaha hand to a higher category when they come next."""

    value: int
    """Of the hand now, 1..7462, larger is better."""
    category: str
    words: str
    by_category: dict[str, dict[str, Any]]
    """By the category that they make: numbers "outs" and "nut_outs", lists "cards", "nut_cards"."""
    all: dict[str, Any]
    """The same of all categories together."""
    unseen: int
    chance: float
    """That the next card is an out, 0..1."""
    straights: dict[str, Any]
    flush_draws: list[dict[str, Any]]


def outs(hand: Cards, board: Cards, *, game: str | None = None) -> Outs:
    """Outs of an Omaha hand of four to six cards on a board of three or four.

    `game` refuses another number of hole cards than its own. In a notebook the answer is a deck.
    """
    return Outs(_core.outs(hand, board, game))


class Nuts(Facts):
    """What beats an Omaha hand, and the best that two unseen cards make."""

    value: int
    category: str
    words: str
    is_nuts: bool
    beaten_by: int
    """Hands of as many unseen cards that beat it, of `of`."""
    of: int
    beaten_by_pairs: int
    """Holdings of two unseen cards that beat it, of `of_pairs`."""
    of_pairs: int
    nut_value: int
    nut_category: str
    nut_words: str
    nuts: list[str]
    """The best holdings of two unseen cards."""


def nuts(hand: Cards, board: Cards, *, game: str | None = None) -> Nuts:
    """Whether an Omaha hand of four to six cards is the nuts on a board of three to five."""
    return Nuts(_core.nuts(hand, board, game))


class Low(Facts):
    """The low of an Omaha Hi/Lo hand."""

    standing: str
    """"made", "draw", "counterfeited", "hand too high" or "board too high"."""
    low: str | None
    """"8-6-4-2-A"; None for none."""
    value: int
    """Its ranks as digits, 54321 is the best; 0 for none."""
    is_nuts: bool
    beaten_by_pairs: int | None
    """Holdings of two unseen cards with a better low, of `of_pairs`."""
    of_pairs: int
    unseen: int
    outs: int | None
    """Next cards that make a low; None on the river."""
    nut_outs: int | None
    chance: float | None
    """Of an out, 0..1."""


def low(hand: Cards, board: Cards, *, game: str | None = None) -> Low:
    """The low of an Omaha hand of four to six cards on a board of three to five."""
    return Low(_core.low(hand, board, game))


class Pot(NamedTuple):
    """A pot, main or side; lists with an entry a seat."""

    chips: int
    winners: list[int]
    """Seats, the first one is 0; none where stakes go back."""
    paid: list[int]
    won: list[int]


class Pots(Facts):
    """Who gets what."""

    winnings: list[int]
    """Chips of each seat."""

    @property
    def pots(self) -> list[Pot]:
        return [Pot(**pot) for pot in self._facts["pots"]]


def pots(stakes: Sequence[int], scores: Sequence[int]) -> Pots:
    """Pot and side pots of up to 1000 seats.

    Args:
        stakes: chips that each seat has put in, 0 or more.
        scores: how strong each seat's hand is; larger is better, equal ones share, 0 has folded.
    """
    return Pots(_core.pots(stakes, scores))


class Rank(Facts):
    """Where a class of hands stands among all."""

    hand: str
    """"AKs"."""
    class_order: int
    """1 is the strongest; of 169, or of 81 in the short deck."""
    table: str
    enters_at_percent: float | None
    """The narrowest range of the table that has it; None if none has."""
    sklansky_group: int | None
    """1 (best) .. 8, 0 for none; None in the short deck."""


class OmahaRank(Facts):
    """Where an Omaha hand stands among all."""

    name: str
    """"aces, double-suited"."""
    percentile: float
    """It is among the strongest so many percent; small is strong."""


def rank(
    hand: Cards, *, game: str = "holdem", table: str = "equilibrium"
) -> Rank | OmahaRank:
    """Where a starting hand stands among all: "AKs", "AhKd", or four or five cards of Omaha.

    `table` is "equilibrium" or "corvelle", for two cards.
    """
    made = _core.rank(hand, game, table)
    return Rank(made) if "class_order" in made[0] else OmahaRank(made)


class RangeFacts(Facts):
    """What a range of two cards holds."""

    text: str
    combos: int
    percent: float
    """Of all holdings, 0..100."""

    @property
    def matrix(self) -> NDArray[np.bool_]:
        """Whether it has a class, shape (13, 13), aces first, suited ones above the diagonal."""
        return np.array(self._facts["matrix"], dtype=bool).reshape(13, 13)


class OmahaRangeFacts(Facts):
    """What a range of Omaha holds."""

    text: str
    hands: int
    percent: float
    """Of all hands, 0..100."""
    suits: dict[str, int]
    """Hands by how they are suited, the most frequent first."""
    types: dict[str, int]
    """Hands by what players call them, likewise."""
    examples: list[str]


def describe_range(
    text: str,
    *,
    game: str = "holdem",
    table: str = "equilibrium",
    bare_offsuit: bool = False,
    dead: Cards | None = None,
) -> RangeFacts | OmahaRangeFacts:
    """What a range text holds, without weights.

    Args:
        text: range text, as of `Range`.
        game: "holdem", "shortdeck", "omaha", "omaha5" or "omaha6".
        table: where percentages come from, for two cards: "equilibrium" or "corvelle".
        bare_offsuit: a bare AK is offsuit only, in what is read and in what is written.
        dead: in Omaha, cards that no hand may hold.
    """
    made = _core.describe_range(text, game, table, bare_offsuit, dead)
    return RangeFacts(made) if "combos" in made[0] else OmahaRangeFacts(made)
