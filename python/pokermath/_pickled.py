"""What pickles name: they hold on to functions by their place, which those of the module have not."""

from __future__ import annotations

from . import _core
from ._core import Range


def unpickled_range(game: str, name: str, every: int, hands: bytes) -> Range:
    """The range of a pickle; ValueError or TypeError for what is none."""
    return _core.unpickled_range(game, name, every, hands)
