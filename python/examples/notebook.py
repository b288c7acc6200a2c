# %% [markdown]
# # A hand, street by street
# Cells as notebooks and editors know them. What stands last in a cell is drawn: a range is its
# matrix, an answer a table and a picture.

# %%
import pandas as pd

import pokermath as pm

villain = pm.Range("TT+,AQs+,AKo,KQs:0.5,76s:0.25")
villain

# %% [markdown]
# Before the flop, against the whole range.

# %%
before = pm.equity("AhKd", villain)
before

# %% [markdown]
# The flop comes: which hands of the range are ahead?

# %%
flop = pm.equity("AhKd", villain, board="2c7dTh", by=["class", "next"])
flop

# %%
hands = pd.DataFrame(pm.equity("AhKd", villain, board="2c7dTh", by="hand").hands(1))
print(hands.groupby(hands.equity > 0.5).weight.sum())

# %% [markdown]
# He bets, and we believe that he would not do that with less than a pair.

# %%
bets = villain & pm.Range("TT+,77,22")
print(bets, f"{bets.combos:g} combinations")
pm.equity("AhKd", bets, board="2c7dTh")

# %% [markdown]
# Without the hands that hold an ace or king of hearts, and three ways.

# %%
pm.equity("AhKd", bets.without("Kh"), "QJs", board="2c7dTh", standard_error=0.001)
