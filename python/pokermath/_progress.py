"""What may be given as `progress=`."""

from __future__ import annotations

from typing import Any, Callable, Protocol, Union


class Bar(Protocol):
    """A progress bar, like tqdm's."""

    total: Any
    n: Any

    def update(self, n: Any) -> Any: ...


Progress = Union[Callable[[int, float], object], Bar]


def watcher(progress: Progress) -> Callable[[int, float], object]:
    """The callable behind an argument: a bar is driven to its total, or to 100 if it has none."""
    if not hasattr(progress, "update"):
        if not callable(progress):
            raise TypeError(
                "progress is a callable or has total, n and update(), not "
                + type(progress).__name__
            )
        return progress
    bar: Any = progress
    if bar.total is None:
        bar.total = 100

    def look(done: int, part: float) -> None:
        more = part * bar.total - bar.n
        if more > 0:
            bar.update(more)

    return look
