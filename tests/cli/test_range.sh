#!/usr/bin/env bash
# pokermath range: counts, canonical text that reads back, the matrix, the picture, one hand's rank.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

value_of() { sed -E "s/.*\"$1\":(\"[^\"]*\"|\[[^]]*\]|[^,}]*).*/\1/" <<<"$out"; }

run range AA,AKs KQo 'AhKd' --game shortdeck
expect_code 0
same "$asked" "$out" "AA,AKs,KQo,AhKd

  AA   AKs  .    .    .    .    .    .    .
  AKo* .    .    .    .    .    .    .    .
  .    KQo  .    .    .    .    .    .    .
  .    .    .    .    .    .    .    .    .
  .    .    .    .    .    .    .    .    .
  .    .    .    .    .    .    .    .    .
  .    .    .    .    .    .    .    .    .
  .    .    .    .    .    .    .    .    .
  .    .    .    .    .    .    .    .    .

23 of 630 holdings, 3.65 %"

# What is written reads back to the same range, under the same options.
for text in AK 'AK KQ-K9' 'AhKd,KdAh,7c7d' '22+ A5s-A2s 0.9%' random '37.3%'; do
  for options in '' --bare-offsuit; do
    # shellcheck disable=SC2086
    run range "$text" $options --json
    expect_code 0
    first=$out
    # shellcheck disable=SC2086
    run range "$(value_of text | tr -d '"')" $options --json
    same "$asked" "$out" "$first"
  done
done

run range AK --json
same "combos" "$(value_of combos)" 16
same "text" "$(value_of text)" '"AKs,AKo"'
same "cells" "$(value_of matrix | tr -cd '01' | wc -c)" 169
same "cells set" "$(value_of matrix | tr -cd 1)" 11
run range 3.8% --table corvelle --json
same "Corvelle" "$(value_of text)" '"TT+,AQs+,AKo"'

echo old >"$work/range.svg"
run range 15% --svg "$work/range.svg" --json
expect_code 0
same "boxes" "$(grep -c '<rect .*</text>' "$work/range.svg")" 169
has "title" "$(<"$work/range.svg")" "<title>77+,A7s+"

run range --rank 87s --json
same "$asked" "$out" '{"schema":1,"game":"holdem","hand":"87s","class_order":50,"table":"equilibrium",'\
'"enters_at_percent":34.9,"sklansky_group":5}'
run range --rank 87s --game shortdeck --json
has "$asked" "$out" '"class_order":59,"table":"equilibrium","enters_at_percent":64.45}'
run range --rank K8s --game shortdeck
has "$asked" "$out" "at 39.69 %"
run range --rank 7h2d --table corvelle
has "$asked" "$out" "in none of its ranges"

refuses 2 "'KX' at position 5: expected" range AA,KX
refuses 2 "'55' at position 1: expected ranks of the short deck" range 55 --game shortdeck
refuses 2 "'omaha' is not known: holdem or shortdeck" range AA --game omaha
refuses 2 "'AK' names 2 classes" range --rank AK
refuses 2 "a range is needed" range
refuses 2 "--svg needs a value" range AA --svg ""
refuses 2 "--rank needs a value" range --rank ""
refuses 1 "cannot write '$work/none/x.svg'" range AA --svg "$work/none/x.svg"

finish
