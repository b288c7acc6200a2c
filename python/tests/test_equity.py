"""Answers as objects, long work, and what is refused."""

from __future__ import annotations

import json
import subprocess
import sys
import threading
from typing import Any
from xml.etree import ElementTree

import numpy as np
import pandas as pd
import pytest

import pokermath as pm

# Half an hour of counting.
LONG = "pm.equity('AhKd', 'random', 'random', 'random', method='exact', board='2c')"


def test_attributes() -> None:
    answer = pm.equity("AhKd", "7s7c")
    first, second = answer.players
    assert answer.method == "exact" and answer.cases == 1712304 and answer.game == "holdem"
    assert (first.range, first.hands, first.wins, first.ties) == ("AhKd", 1, 761478, 4826)
    assert first.wins + first.ties + first.losses == answer.cases
    assert first.shared == (first.wins, first.ties) and first.standard_error is None
    assert answer.equity == first.equity == (first.wins + first.ties / 2) / answer.cases
    assert first.equity + second.equity == pytest.approx(1)
    assert "44.612 %" in repr(answer) and str(answer) == repr(answer)
    json.dumps(answer.to_dict())


def test_ways_to_word_the_same_question() -> None:
    expected = pm.equity("AhKd", "QhQd", board="2c7dTh", dead="3c4c").equity
    wordings: tuple[Any, ...] = (
        (["AhKd", "QhQd"],),
        ((pm.Hand("AhKd"), pm.Range("QhQd")),),
        (pm.cards("AhKd"), ["Qh", "Qd"]),
        (np.array([38, 24]), np.array([36, 23], dtype=np.uint8)),
    )
    boards: tuple[Any, ...] = ("2c7dTh", "2c 7d Th", ["2c", "7d", "Th"], pm.cards("2c7dTh"))
    for players in wordings:
        for board in boards:
            answer = pm.equity(*players, board=board, dead=[1, 2])
            assert answer.equity == expected
    assert pm.equity("AhKd", "QhQd", board=[], dead=()).equity == pm.equity("AhKd", "QhQd").equity


def test_counts_are_ints_of_any_size() -> None:
    answer = pm.equity("random", "random", "AhKd", game="holdem", method="exact", board="2c7dTh")
    assert all(isinstance(player.wins, int) for player in answer.players)
    weighted = pm.equity("AA:0.5", "KK:0.25", board="2c7dTh9s")
    assert isinstance(weighted.cases, float) and weighted.players[0].shared[1] == 0


def test_arrays_go_into_frames() -> None:
    answer = pm.equity("AhKd", "QQ+,AK:0.5", board="2c7dTh", by=("hand", "class", "next", "made"))
    hands = pd.DataFrame(answer.hands(1))
    assert list(hands) == ["hand", "weight", "equity", "wins", "ties", "cases"]
    assert len(hands) == answer.players[1].hands and hands.equity.is_monotonic_decreasing
    told = {"".join(row["hand"]): row for row in answer.to_dict()["players"][1]["hands_detail"]}
    for row in hands.itertuples():
        assert told[row.hand]["weight"] == row.weight
        assert told[row.hand]["equity"] == row.equity and told[row.hand]["cases"] == row.cases
    assert hands.cases.sum() == pytest.approx(answer.cases)
    assert answer.by_hand["hand"].tolist() == ["AhKd"]
    classes = pd.DataFrame(answer.classes(-1))
    assert set(classes["class"]) == {"AA", "KK", "QQ", "AKs", "AKo"}
    assert classes.hands.sum() == len(hands)
    cards = pd.DataFrame(answer.next())
    assert len(cards) == 47
    # Two cards come, and either may be the next one.
    assert cards.cases.sum() == pytest.approx(2 * answer.cases)
    made = pd.DataFrame(answer.made())
    assert made.cases.sum() == pytest.approx(answer.cases) and "one pair" in set(made.made)
    low = pm.equity("Ah2h3c4d", "KKQQ", game="omaha-hilo", board="5c6dKh9s", by="hand").hands(1)
    assert low.dtype.names == ("hand", "weight", "equity", "low", "wins", "ties", "cases")
    assert low["hand"].dtype == "U8"


def test_details_that_were_not_asked_for() -> None:
    answer = pm.equity("AhKd", "7s7c", by="made", board="2c7dTh")
    for name in ("hands", "classes", "next"):
        with pytest.raises(ValueError, match="was not asked by="):
            getattr(answer, name)()
    with pytest.raises(IndexError, match="there is no player 2"):
        answer.made(2)
    with pytest.raises(ValueError, match="by 'suit' is not known"):
        pm.equity("AhKd", "7s7c", by="suit")


@pytest.mark.parametrize(
    "options",
    [
        {"board": 5},
        {"board": [3.5]},
        {"dead": object()},
        {"folded": 7},
        {"trials": "many"},
        {"trials": 1.5},
        {"seed": None, "threads": "two"},
        {"standard_error": "0.1"},
        {"by": 3},
        {"by": [3]},
        {"game": 3},
        {"method": None},
        {"progress": 5},
        {"speed": 9},
    ],
)
def test_wrong_types(options: dict[str, Any]) -> None:
    with pytest.raises(TypeError):
        pm.equity("AhKd", "7s7c", **options)


@pytest.mark.parametrize(
    "options, says",
    [
        ({"board": "2c2c"}, "2c is given twice"),
        ({"board": [52]}, "52 is not a card code"),
        ({"board": [10**30]}, "not a card code"),
        ({"to": "showdown"}, "to 'showdown' is not known"),
        ({"method": "guess"}, "method 'guess' is not known"),
        ({"standard_error": 2}, "standard_error '2' is not accepted"),
        ({"trials": -1}, "trials '-1' is not accepted"),
        ({"time_ms": 10**10}, "time_ms '10000000000' is not accepted"),
        ({"seed": 2**64}, "seed '18446744073709551616' is not accepted"),
        ({"threads": 0}, "threads '0' is not accepted"),
    ],
)
def test_wrong_values(options: dict[str, Any], says: str) -> None:
    with pytest.raises(ValueError, match=says):
        pm.equity("AhKd", "7s7c", **options)


def test_a_range_of_another_game_is_refused() -> None:
    with pytest.raises(ValueError, match="a range of shortdeck is no player of holdem"):
        pm.equity("AhKd", pm.Range("AA", game="shortdeck"))


def test_threads_do_not_matter() -> None:
    one, two = (
        pm.equity("AhKd", "random", "random", trials=300_000, threads=threads).to_dict()
        for threads in (1, 2)
    )
    del one["elapsed_ms"], two["elapsed_ms"]
    assert one == two


def test_callers_on_threads_of_their_own() -> None:
    expected = pm.equity("15%", "22+", board="2c7dTh").equity
    sampled = pm.equity("15%", "22+", board="2c7d", trials=100).equity
    found: list[tuple[float, float]] = []

    def work() -> None:
        for _ in range(10):
            counted = pm.equity("15%", "22+", board="2c7dTh", threads=1).equity
            found.append((counted, pm.equity("15%", "22+", board="2c7d", trials=100).equity))

    threads = [threading.Thread(target=work) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert found == [(expected, sampled)] * 40


class Bar:
    """What of tqdm is used."""

    total = None
    n = 0.0

    def update(self, n: float) -> None:
        self.n += n


def test_progress() -> None:
    looks: list[tuple[int, float]] = []
    answer = pm.equity(
        "AhKd", "random", "random", time_ms=300, progress=lambda *look: looks.append(look)
    )
    assert len(looks) > 1 and looks[-1] == (answer.cases, 1.0)
    assert looks == sorted(looks) and all(0 <= part <= 1 for _, part in looks)
    bar = Bar()
    pm.equity("AhKd", "random", "random", time_ms=100, progress=bar)
    assert bar.total == 100 and bar.n == pytest.approx(100)

    def fail(done: int, part: float) -> None:
        raise KeyError("enough")

    with pytest.raises(KeyError, match="enough"):
        pm.equity("AhKd", "random", "random", time_ms=10_000, progress=fail)


def run_program(program: str) -> subprocess.CompletedProcess[str]:
    """Ends long before the questions in it would be answered."""
    words = [sys.executable, "-c", program]
    return subprocess.run(words, capture_output=True, text=True, timeout=120)


def run_interrupted(call: str, end: str) -> subprocess.CompletedProcess[str]:
    """A program that is interrupted in a long call, and goes on from there."""
    program = f"""
import os, signal, threading, time
import pokermath as pm
def interrupt():
    time.sleep(0.3)
    os.kill(os.getpid(), signal.SIGINT)
threading.Thread(target=interrupt).start()
try:
    {call}
except KeyboardInterrupt:
    print("interrupted", pm.equity("AhKd", "7s7c").cases)
{end}
"""
    return run_program(program)


@pytest.mark.parametrize(
    "call",
    [
        LONG,
        LONG.replace("board", "threads=1, board"),
        "pm.equity('AAxx', 'KKxx', 'QQxx', game='omaha', time_ms=60000, method='sampled')",
        "pm.equity('random', 'random', game='omaha6', method='exact')",
        "[pm.equity('AhKd', '7s7c') for _ in range(10**9)]",
    ],
)
def test_interrupt_ends_a_call_and_leaves_nothing_broken(call: str) -> None:
    # What was left behind still runs when the program ends.
    done = run_interrupted(call, "")
    assert done.returncode == 0, done.stderr
    assert done.stdout == "interrupted 1712304\n"


def test_work_that_was_left_behind_ends() -> None:
    threads = "len(os.listdir('/proc/self/task'))"
    done = run_interrupted(LONG, f"while {threads} > 1: time.sleep(0.01)")
    assert done.returncode == 0 and done.stdout, done.stderr


def test_a_daemon_in_a_long_call_does_not_keep_the_program() -> None:
    program = f"""
import threading, time
import pokermath as pm
threading.Thread(target=lambda: {LONG}, daemon=True).start()
time.sleep(0.2)
"""
    done = run_program(program)
    assert done.returncode == 0 and not done.stderr


def test_pictures_are_well_formed() -> None:
    answers = [
        pm.equity("AhKd", "15%", board="2c7dTh", by="class"),
        pm.equity("AhKd", "15%", board="2c7dTh", by=["made", "next"]),
        pm.equity("AhKd", "22+", board="2c7dTh", by="hand"),
        pm.equity("AhKd", "7s7c", "random", trials=100),
        pm.equity("Ah2h3c4d", "AsAdKsQd", game="omaha-hilo", board="5c6dKh"),
    ]
    for answer in answers:
        assert ElementTree.fromstring(answer._repr_svg_()).tag.endswith("svg")
        page = ElementTree.fromstring(f"<div>{answer._repr_html_()}</div>")
        rows = page.findall(".//tbody/tr")
        assert len(rows) == len(answer.players)
        assert rows[0].findall("td")[0].text == answer.players[0].range
    assert "<svg" in answers[0]._repr_html_() and "<svg" not in answers[3]._repr_html_()

