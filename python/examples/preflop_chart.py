"""How every class of hands does against a range, as a frame of pandas and a CSV file."""

from __future__ import annotations

import sys

import pandas as pd

import pokermath as pm

villain = pm.Range(sys.argv[1] if len(sys.argv) > 1 else "15%")
answer = pm.equity(pm.Range.random(), villain, by="class")
classes = pd.DataFrame(answer.classes())
classes["equity"] = classes.equity.round(4)
print(f"against {villain}:")
print(classes[["class", "hands", "equity"]].head(10).to_string(index=False))
if len(sys.argv) > 2:
    classes.to_csv(sys.argv[2], index=False)
