from __future__ import annotations
from . import _core
from ._core import Answer, Hand, Player, Range


def equity(*players, game="holdem", board=None, dead=None, folded=None, to=None, method="auto", standard_error=None, trials=None, time_ms=None, seed=None, threads=None, by=None, progress=None):
    if len(players) == 1 and isinstance(players[0], (list, tuple)):
        players = tuple(players[0])
    return _core.equity(players, game, board, dead, folded, to, method, standard_error, trials, time_ms, seed, threads, by, progress)
