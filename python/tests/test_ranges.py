"""Ranges as sets with weights, and hands."""

from __future__ import annotations

import copy
import pickle
import random
import subprocess
import sys
from collections.abc import Callable
from typing import Any
from xml.etree import ElementTree

import numpy as np
import pytest

import pokermath as pm

TEXTS = ("TT+,AQs+:0.5", "15%", "22-55:0.25,AhKd,T9s", "", "random", "AKo:0.0001")


def as_dict(held: pm.Range) -> dict[pm.Hand, float]:
    return dict(held.items())


def some_range(rng: random.Random, game: str) -> pm.Range:
    ranks = range(4 if game == "shortdeck" else 0, 13)
    deck = [suit * 13 + rank for suit in range(4) for rank in ranks]
    size = 4 if game == "omaha" else 2
    hands = [pm.Hand(rng.sample(deck, size)) for _ in range(rng.randint(0, 40))]
    return pm.Range.of({hand: rng.randint(1, 10000) / 10000 for hand in hands}, game=game)


@pytest.mark.parametrize("game", ["holdem", "shortdeck", "omaha"])
def test_set_algebra_is_that_of_dicts(game: str) -> None:
    rng = random.Random(1)
    for _ in range(30):
        a, b = some_range(rng, game), some_range(rng, game)
        x, y = as_dict(a), as_dict(b)
        if x and y:  # some hands in common
            y.update((hand, 0.5) for hand in list(x)[::2])
            b = pm.Range.of(y, game=game)
        union = {hand: max(x.get(hand, 0), y.get(hand, 0)) for hand in {**x, **y}}
        assert as_dict(a | b) == union
        assert as_dict(a & b) == {hand: min(x[hand], y[hand]) for hand in x if hand in y}
        assert as_dict(a - b) == {hand: x[hand] for hand in x if hand not in y}
        assert (a | b) == (b | a) and hash(a | b) == hash(b | a)
        assert (a == b) == (x == y) and a == a | a == a & a
        assert len(a | b) == len(union)
        assert (a | b).combos == pytest.approx(sum(union.values()))


@pytest.mark.parametrize("game", ["holdem", "shortdeck"])
@pytest.mark.parametrize("text", TEXTS)
def test_what_is_written_reads_back(game: str, text: str) -> None:
    if game == "shortdeck":
        text = text.replace("22-55", "66-88")
    held = pm.Range(text, game=game)
    assert eval(repr(held), {"Range": pm.Range}) == held
    assert pm.Range(held.text, game=game) == held
    assert pickle.loads(pickle.dumps(held)) == held == copy.deepcopy(held)
    assert repr(pickle.loads(pickle.dumps(held))) == repr(held)
    assert hash(pickle.loads(pickle.dumps(held))) == hash(held)
    half = held - pm.Range.percent(10, game=game)
    assert eval(repr(half), {"Range": pm.Range}) == half


def test_omaha_ranges() -> None:
    held = pm.Range("AAxx:ds,10%!KKxx", game="omaha")
    assert eval(repr(held), {"Range": pm.Range}) == held
    assert pm.Range(held.text, game="omaha") == held
    every = pm.Range.random(game="omaha")
    assert len(every) == 270725 and len(pickle.dumps(every)) < 500
    assert pickle.loads(pickle.dumps(every)) == every
    assert len(every - held) == len(every) - len(held)
    assert "AhAdKhKd" in held and "KhKdQhQd" not in held
    assert held._repr_svg_() is None


def test_arrays_go_with_iteration() -> None:
    held = pm.Range("TT+,AQs+:0.5")
    hands = list(held)
    assert len(hands) == len(held) == 38
    assert held.hands.shape == (38, 2) and held.hands.dtype == np.uint8
    assert [tuple(row) for row in held.hands.tolist()] == [hand.cards for hand in hands]
    assert held.weights.tolist() == [held[hand] for hand in hands]
    assert held.combos == 34 and held.share == 34 / 1326
    assert pm.Range.random().share == 1


def test_membership_and_weights() -> None:
    held = pm.Range("TT+,AQs+:0.5")
    assert "AhQh" in held and pm.Hand("QhAh") in held and pm.cards("AhQh") in held
    assert "AhQd" not in held and "AA" in held and "TT+" in held and "AQ" not in held
    assert pm.Range("KK+") in held and pm.Range("99+") not in held
    assert held["AhQh"] == 0.5 and held[pm.Hand("AhAd")] == 1
    with pytest.raises(KeyError):
        held["2c2d"]
    assert "AhAd" not in held.without("Ah") and len(held.without("Ah")) < len(held)


def test_hands() -> None:
    hand = pm.Hand("KdAh")
    assert str(hand) == "AhKd" and repr(hand) == "Hand('AhKd')" and hand.name == "AKo"
    assert hand == pm.Hand([24, 38]) == pm.Hand(("Ah", "Kd")) and len({hand, pm.Hand("AhKd")}) == 1
    assert hand.cards == tuple(hand) == (38, 24) and hand[-1] == 24 and len(hand) == 2
    assert pickle.loads(pickle.dumps(hand)) == hand and 38 in hand and 0 not in hand
    assert pm.Hand("AhAdKhKd").name == pm.rank("AhAdKhKd", game="omaha").to_dict()["name"]
    assert pm.cards("AhKd") == (38, 24) and pm.card_text([38, 24]) == "AhKd"


@pytest.mark.parametrize(
    "wrong, says",
    [
        (lambda: pm.Range("TT+,QQQ"), "'QQQ' at position 7: expected"),
        (lambda: pm.Range("AA:2"), "position 4: expected a weight up to 1"),
        (lambda: pm.Range("AA", game="chess"), "game 'chess' is not known"),
        (lambda: pm.Range("22", game="shortdeck"), "short deck"),
        (lambda: pm.Range.percent(float("nan")), "nan%"),
        (lambda: pm.Range.percent(101), "101%"),
        (lambda: pm.Range.of(["AhKdQc"]), "'AhKdQc' is not a hand of holdem"),
        (lambda: pm.Range.of({"AhKd": 0}), "weight 0 is not accepted"),
        (lambda: pm.Range.of({"AhKd": float("nan")}), "weight nan is not accepted"),
        (lambda: pm.Range("AA") | pm.Range("AA", game="shortdeck"), "do not go together"),
        (lambda: pm.Hand("AhAh"), "Ah is given twice"),
        (lambda: pm.Hand([52, 1]), "52 is not a card code: 0 to 51"),
        (lambda: pm.Hand("Ah"), "a hand has 2 to 7"),
        (lambda: pm.cards("Xx"), "'Xx' is not a card"),
    ],
)
def test_wrong_values_say_what_is_wrong(wrong: Callable[[], object], says: str) -> None:
    with pytest.raises(ValueError, match=says.replace("(", r"\(")):
        wrong()


def test_wrong_types_are_type_errors() -> None:
    for wrong in (5, None, b"AA", object()):
        with pytest.raises(TypeError):
            pm.Range(wrong)  # type: ignore[arg-type]
        with pytest.raises(TypeError):
            pm.Range("AA") | wrong  # type: ignore[operator]
    with pytest.raises(TypeError):
        pm.Hand(3.5)  # type: ignore[arg-type]
    assert pm.Range("AA") != "AA"


def test_damaged_pickles_are_refused() -> None:
    for state in (
        ("holdem", "", 0, b"12345"),
        ("chess", "", 0, b""),
        ("holdem", "", 1 << 60, b""),
        ("holdem", "", 0, bytes(12)),
        ("holdem", "", 0, b"\3" + bytes(7) + b"\xff\xff\xff\xff"),
        ("omaha", "", 0, b"\3" + bytes(7) + b"\1\0\0\0"),
    ):
        with pytest.raises(ValueError, match="pickled"):
            pm._core.unpickled_range(*state)
    wrong: tuple[tuple[Any, ...], ...] = ((3, "", 0, b""), ("holdem", b"AA", 0, b""))
    for types in (*wrong, ("holdem", "", "", b"")):
        with pytest.raises(TypeError):
            pm._core.unpickled_range(*types)


def test_no_object_becomes_another() -> None:
    hand, held = pm.Hand("AhKd"), pm.Range("AA:0.5,KK")
    for protocol in range(pickle.HIGHEST_PROTOCOL + 1):
        assert pickle.loads(pickle.dumps(held, protocol)) == held
        assert pickle.loads(pickle.dumps(hand, protocol)) == hand
    base: Any = pm.Range.__base__
    metaclass: Any = type(pm.Range)
    claims = type("Claims", (), {"__slots__": (), "__class__": property(lambda it: pm.Range)})
    forbidden: tuple[Callable[[], object], ...] = (
        lambda: setattr(hand, "__class__", pm.Range),
        lambda: setattr(pm.Range, "__len__", None),
        lambda: type("Child", (pm.Range,), {}),
        lambda: type("Child", (base,), {})(),
        lambda: metaclass("Child", (), {})(),
        base,
        lambda: base.__new__(pm.Range),
        lambda: pm.equity(claims(), "AA"),
        lambda: pm.Range("AA") | claims(),
    )
    for way in forbidden:
        with pytest.raises(TypeError):
            way()


def test_destructors_at_the_end_of_the_program() -> None:
    program = (
        "import pokermath as pm\n"
        "class Late:\n"
        "    def __del__(self): print(len(pm.Range('AA') | pm.Range('KK')))\n"
        "late = Late()\n"
    )
    run = subprocess.run([sys.executable, "-c", program], capture_output=True, timeout=60)
    assert (run.returncode, run.stdout) == (0, b"12\n")


def test_what_was_never_made_is_no_object() -> None:
    kinds: tuple[Any, ...] = (pm.Range, pm.Hand, pm.Answer, pm.Player)
    for kind in kinds:
        with pytest.raises(TypeError):
            kind.__new__(kind)
        with pytest.raises(TypeError):
            kind()


def test_matrix_is_well_formed() -> None:
    for held in (pm.Range("TT+,AQs+:0.5"), pm.Range(""), pm.Range("random", game="shortdeck")):
        root = ElementTree.fromstring(held._repr_svg_() or "")
        assert root.tag.endswith("svg")
    assert ">0.5</text>" in (pm.Range("AQs:0.5")._repr_svg_() or "")
