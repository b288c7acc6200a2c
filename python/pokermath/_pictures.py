"""Answers as notebooks show them: a table, and a picture of it."""

from __future__ import annotations

from html import escape
from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from ._core import Answer

# Told apart by those who see colours otherwise, too.
_COLOURS = (
    "#0072b2", "#d55e00", "#009e73", "#cc79a7", "#e69f00",
    "#56b4e9", "#000000", "#999999", "#8b5a2b", "#6a3d9a",
)  # fmt: skip
_LONGEST = 40


def _short(name: str) -> str:
    return name if len(name) <= _LONGEST else name[: _LONGEST - 3] + "..."


def table(answer: Answer) -> str:
    """The players' results as an HTML table, and below it the picture of what else was asked."""
    high_low = answer.game.endswith("-hilo")
    sampled = answer.method == "sampled"
    titles = ["player", "hands", "equity"]
    titles += ["standard error"] if sampled else []
    titles += ["from lows", "whole pot", "part of it", "nothing"] if high_low else []
    titles += [] if high_low else ["wins", "ties", "losses"]
    head = "".join(f'<th style="text-align:right">{title}</th>' for title in titles)
    rows = ""
    for player in answer.players:
        cells = [f"{player.hands:,}", f"<b>{100 * player.equity:.3f} %</b>"]
        if sampled:
            error = player.standard_error
            cells.append("none" if error is None else f"± {100 * error:.3f} %")
        if high_low:
            cells.append(f"{100 * player.low:.3f} %")
        for count in (player.wins, player.ties, player.losses):
            cells.append(f"{count:,} ({100 * count / answer.cases:.2f} %)")
        name = f'<td style="text-align:left" title="{escape(player.range)}">'
        name += f"{escape(_short(player.range))}</td>"
        rows += f"<tr>{name}" + "".join(f"<td>{cell}</td>" for cell in cells) + "</tr>"
    what = "random deals" if sampled else "cases of board and hands"
    note = f"{answer.cases:,} {what}, {answer.method} ({escape(answer.reason)})"
    detail = answer._svg()
    return (
        f"<table><thead><tr>{head}</tr></thead><tbody>{rows}</tbody></table>"
        f"<p>{note}</p>" + (f"<div>{detail}</div>" if detail else "")
    )


def picture(answer: Answer) -> str:
    """The picture of what else was asked, or a bar with every player's share of the pot."""
    return answer._svg() or _bars(answer)


def _bars(answer: Answer) -> str:
    width, bar, line = 480, 34, 22
    height = bar + line * len(answer.players) + 34
    parts = []
    x = 12.0
    for i, player in enumerate(answer.players):
        wide = (width - 24) * player.equity
        colour = _COLOURS[i % len(_COLOURS)]
        y = bar + line * i + 36
        box = f'width="{wide:.1f}" height="{bar}" fill="{colour}"'
        parts.append(f'<rect x="{x:.1f}" y="12" {box}/>')
        parts.append(f'<rect x="12" y="{y - 11}" width="12" height="12" fill="{colour}"/>')
        parts.append(
            f'<text x="32" y="{y}" font-size="13" fill="#222">'
            f"{escape(_short(player.range))}: {100 * player.equity:.3f} %</text>"
        )
        x += wide
    return (
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" '
        f'height="{height}" font-family="Helvetica, Arial, sans-serif">\n'
        '<rect width="100%" height="100%" fill="#ffffff"/>\n' + "\n".join(parts) + "\n</svg>\n"
    )
