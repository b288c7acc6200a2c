"""How often seven random cards make what: a million hands, dealt and evaluated as an array."""

from __future__ import annotations

import numpy as np

import pokermath as pm

rng = np.random.default_rng(1)
# The seven smallest of 52 random numbers are a deal, and a few thousand deals fit into a cache.
hands = np.concatenate(
    [
        rng.random((10_000, 52), dtype=np.float32).argpartition(7, axis=1)[:, :7].astype(np.uint8)
        for _ in range(100)
    ]
)
values = pm.evaluate(hands)
# The largest value of each category.
LAST = {
    "high card": 1277,
    "one pair": 4137,
    "two pair": 4995,
    "three of a kind": 5853,
    "straight": 5863,
    "flush": 7140,
    "full house": 7296,
    "four of a kind": 7452,
    "straight flush": 7461,
    "royal flush": 7462,
}
categories = np.searchsorted(list(LAST.values()), values)
for name, count in zip(LAST, np.bincount(categories, minlength=10)):
    print(f"{name:16}{count:>9,}  {100 * count / len(values):7.3f} %")
