"""The command line and the package give the same answers, to the last digit."""

from __future__ import annotations

import json
import subprocess
import warnings
from pathlib import Path
from typing import Any

import pytest

import pokermath as pm


def ask(question: dict[str, Any]) -> dict[str, Any]:
    options = {key: value for key, value in question.items() if key not in ("id", "players")}
    if "detail" in options:
        options["by"] = options.pop("detail")
    return pm.equity(question["players"], threads=2, **options).to_dict()


def run(tool: str, *words: str, stdin: str = "") -> list[dict[str, Any]]:
    done = subprocess.run([tool, *words], input=stdin, capture_output=True, text=True)
    return [json.loads(line) for line in done.stdout.splitlines()]


def test_questions_of_equity(tool: str, data: Path) -> None:
    text = (data / "questions.jsonl").read_text()
    questions = [json.loads(line) for line in text.splitlines()]
    answers = run(tool, "equity", "-", stdin=text)
    assert len(answers) == len(questions) > 40
    for question, expected in zip(questions, answers):
        assert expected.pop("id") == question["id"]
        if "error" in expected:
            with pytest.raises((ValueError, RuntimeError)) as raised:
                ask(question)
            assert str(raised.value) == expected["error"], question
        else:
            answer = ask(question)
            assert answer.pop("elapsed_ms") >= 0 <= expected.pop("elapsed_ms")
            assert answer == expected, question


def test_ranges_are_taken_as_they_are() -> None:
    """Not through text: what a Range holds is what its text would have held."""
    for game, first, second in (
        ("holdem", "15%", "TT+:0.5,AQs+"),
        ("shortdeck", "random", "QQ+"),
        ("omaha", "AAxx:ds", "KKxx:ds"),
    ):
        board = "8c7dTh9h"
        as_text = pm.equity(first, second, game=game, board=board, by="hand").to_dict()
        ranges = [pm.Range(text, game=game) for text in (first, second)]
        answer = pm.equity(*ranges, game=game, board=board, by="hand").to_dict()
        del as_text["elapsed_ms"], answer["elapsed_ms"]
        assert answer == as_text


@pytest.mark.parametrize(
    "words, made",
    [
        (["eval", "AhKhQhJhTh2c3d"], lambda: pm.best_hand("AhKhQhJhTh2c3d")),
        (["eval", "5c4d3h2sAc"], lambda: pm.best_hand(pm.cards("5c4d3h"), board="2sAc")),
        (
            ["eval", "Ah6h7h8h9h", "--game", "shortdeck"],
            lambda: pm.best_hand("Ah6h7h8h9h", game="shortdeck"),
        ),
        (
            ["eval", "AhKhQsJs", "--board", "Th9h2h", "--game", "omaha"],
            lambda: pm.best_hand("AhKhQsJs", board="Th9h2h", game="omaha"),
        ),
        (["outs", "AhAdJcTc", "QhKd2s"], lambda: pm.outs("AhAdJcTc", "QhKd2s")),
        (["nuts", "8h7h6c5c4c", "9hTh2hJd"], lambda: pm.nuts("8h7h6c5c4c", "9hTh2hJd")),
        (["low", "Ah2dKsQc", "3c7d8h"], lambda: pm.low("Ah2dKsQc", "3c7d8h")),
        (["low", "Ah2dKsQc", "3cKd8hTd9s"], lambda: pm.low("Ah2dKsQc", "3cKd8hTd9s")),
        (
            ["pots", "--stakes", "100,50,100", "--scores", "5,9,7"],
            lambda: pm.pots([100, 50, 100], [5, 9, 7]),
        ),
        (["range", "15%"], lambda: pm.describe_range("15%")),
        (
            ["range", "15%,AK", "--table", "corvelle", "--bare-offsuit"],
            lambda: pm.describe_range("15%,AK", table="corvelle", bare_offsuit=True),
        ),
        (
            ["range", "AAxx:ds", "--game", "omaha", "--dead", "Ah7c"],
            lambda: pm.describe_range("AAxx:ds", game="omaha", dead="Ah7c"),
        ),
        (["range", "--rank", "AKs"], lambda: pm.rank("AKs")),
        (
            ["range", "--rank", "AhKd", "--game", "shortdeck"],
            lambda: pm.rank(pm.Hand("AhKd"), game="shortdeck"),
        ),
        (
            ["range", "--rank", "AsKsQhJh9c", "--game", "omaha5"],
            lambda: pm.rank("AsKsQhJh9c", game="omaha5"),
        ),
    ],
    ids=lambda value: value[0] if isinstance(value, list) else "",
)
def test_questions_of_one_hand_or_range(tool: str, words: list[str], made: Any) -> None:
    answer = made()
    assert answer.to_dict() == run(tool, *words, "--json")[0]
    page = subprocess.run([tool, *words], capture_output=True, text=True).stdout
    assert repr(answer) == page


def test_points_and_comparisons(tool: str) -> None:
    (answer,) = run(tool, "points", "AhAdKhKd", "2c3d7h8s", "--json")
    assert [pm.points(hand["hand"]) for hand in answer["hands"]] == [
        hand["points"] for hand in answer["hands"]
    ]
    (answer,) = run(tool, "points", "Ah2h3dKd", "--hilo", "--json")
    assert pm.points("Ah2h3dKd", hilo=True) == answer["hands"][0]["points"]
    for first, second, board, game in (
        ("AhKd", "QcJs", "2c7dTh", "holdem"),
        ("QcJs", "AhKd", None, "holdem"),
        ("AhKd", "AcKs", "2c7dTh", "holdem"),
        ("AhKh", "9c9d", "Th6h8h9sTd", "shortdeck"),
    ):
        words = ["eval", first, "--versus", second, "--game", game, "--json"]
        words += ["--board", board] if board else []
        assert pm.compare(first, second, board=board, game=game) == run(tool, *words)[0]["verdict"]


def test_warnings_are_warnings() -> None:
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always")
        pm.equity("AA:0.5,AhAd", "KK", board="2c7dTh")
        pm.Range("AA:0.5,AhAd")
    assert len(caught) == 2
    assert "AhAd" in str(caught[0].message) and caught[0].category is UserWarning
    assert caught[0].filename == __file__
