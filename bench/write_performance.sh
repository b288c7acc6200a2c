#!/usr/bin/env bash
# Measures everything in the release build and writes docs/performance.md.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."

program=build/release/bench/pokermath_bench
if [[ ! -x $program ]]; then
  cmake --preset release -DPOKERMATH_BENCH=ON >/dev/null
  cmake --build --preset release >&2
fi
results=$(mktemp)
trap 'rm -f "$results"' EXIT
"$program" --benchmark_format=csv --benchmark_repetitions=5 "$@" 2>/dev/null >"$results"

# What a user asks, the rows that answer it, of which the fastest counts, and "rate" where the hands a
# second say more than the time.
questions=$(
  cat <<'QUESTIONS'
value of seven cards, one hand at a time | EvaluateCards | rate
value of seven cards, in a batch | EvaluateBatch/. | rate
all seven-card hands, card by card | AllHands<HandSum> | rate
value of seven short-deck cards, in a batch | ShortDeckBatch/. | rate
value of Omaha hands, each on its board, in a batch | OmahaBatch<4>/. | rate
value of Omaha hands on one board | OmahaOneBoard<4>/level:./flush:. | rate
Hold'em hand against hand, before the flop | KnownMatchup/hands:1
hand against hand, on the flop | MatchupOnFlop
hand against 15 % of all hands, before the flop | RangeOnEmptyBoard/percent:15
hand against any other, before the flop | RangeOnEmptyBoard/percent:100
hand against 15 % of all hands, on the flop | RangeOnFlop
each of 1,326 hands against 15 % of all hands, on the flop | EveryHandOnFlop/flop:0
hand against five unknown ones, 50,000 random deals | Trials/players:6
short-deck hand against hand, before the flop | ShortDeckMatchup
Omaha hand against hand, before the flop | OmahaMatchup/isa:./cards:4/hands:2
Omaha hand against 10 % of all hands, on the flop | OmahaAgainstRange<4>/isa:./board:3/to:5
Omaha hand against any other, on the flop | OmahaAgainstAll/cards:4/board:3
Omaha hand against any other, before the flop, 211 billion cases | OmahaAgainstAll/cards:4/board:0
Omaha Hi/Lo hand against hand, before the flop | HighLowMatchup/isa:./hands:2
15 % of all hands against 15 %, every hand of both, before the flop | Calculator/Preflop
any hand against any other, every hand of both, before the flop | Calculator/RandomPreflop
15 % against 15 % with weights, every hand of both, on the flop | Calculator/Flop
15 % against 15 % with weights, every hand of both, on the turn | Calculator/Turn
15 % against 15 %, after each of all 1,755 flops | Calculator/ByFlops
three hands, before the flop | Calculator/ThreeHands
three ranges of 15 % with weights, on the flop | Calculator/ThreeWeightedFlop
three ranges of 15 %, before the flop | Calculator/ThreeRangesPreflop
10 % against 10 % of Omaha hands with weights, every hand of both, on the flop | Calculator/OmahaFlop
10 % against 10 % of five-card Omaha hands with weights, every hand of both, on the turn | Calculator/FiveCardsTurn
two hands, random deals | Sampled/TwoHands | deals
six ranges of 15 %, random deals | Sampled/SixRanges | deals
six ranges of 15 %, to a standard error of 0.05 % | SampledToError/SixRanges
whether an Omaha hand is the nuts, on the flop | IsMyHandNutsOmaha
HandRanks table, 130 MB: built | BuildHandRanks
HandRanks table, 130 MB: loaded from its file | LoadHandRanks
QUESTIONS
)

{
  cat <<'HEAD'
# What was measured

Written by `bench/write_performance.sh`; run it to see your own machine's figures. Every time is the
median of five repetitions on one core of a release build. The tables that a program's first question
builds are not in them. `pokermath equity AhKd 7s7c` needs none: what it prints, some 0.1 ms, is what a
process takes to do anything for the first time.

HEAD
  printf 'Machine: %s, %s\n\n' \
    "$(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1)" \
    "$("${CXX:-g++}" --version | head -n 1)"
  questions=$questions awk -F, '
    function scaled(ns) {
      if (ns < 1e3) return sprintf("%.0f ns", ns)
      if (ns < 1e6) return sprintf("%.2f µs", ns / 1e3)
      if (ns < 1e9) return sprintf("%.2f ms", ns / 1e6)
      return sprintf("%.2f s", ns / 1e9)
    }
    # Of the fastest of the rows whose names match; empty if there is none.
    function answer(pattern, as_rate,   row, best) {
      for (row = 1; row <= rows; ++row) {
        if (name[row] ~ "^" pattern "$" && (!best || time[row] < time[best])) best = row
      }
      if (!best) return ""
      return as_rate ? sprintf("%.0f million a second", rate[best]) : scaled(time[best])
    }
    BEGIN { unit["ns"] = 1; unit["us"] = 1e3; unit["ms"] = 1e6; unit["s"] = 1e9 }
    /_median"/ {
      name[++rows] = $1
      gsub(/"|^BM_|_median|\/iterations:[0-9]+|\/repeats:[0-9]+/, "", name[rows])
      sub(/^BM_/, "", name[rows])
      time[rows] = $4 * unit[$5]
      rate[rows] = $7 == "" ? "" : $7 / 1e6
    }
    END {
      print "| question | time or rate |\n|---|---|"
      count = split(ENVIRON["questions"], lines, "\n")
      for (i = 1; i <= count; ++i) {
        fields = split(lines[i], parts, " [|] ")
        text = answer(parts[2], fields == 3)
        if (text != "") printf "| %s | %s |\n", parts[1], text
      }
      print "\n## Every benchmark\n"
      print "\"Plain\" rows are the loops as one would write them first, in the same program, so that the ratio"
      print "holds on any machine; \"Former\" rows are how it was done before. isa or level 0 is baseline"
      print "x86-64, 1 is AVX2, 2 is AVX-512; the library chooses the best"
      print "one that the machine has. board 3 is the flop, 4 the turn, 5 the river. hands 0 is AhKd against QcJs,"
      print "1 is 7c7d against AsKs, 2 is AhKh against QdJd. flop 0 is 2c7dTh, 1 is 2c7cTh, 2 is 2c7cTc. Rates are"
      print "hands, or deals, a second.\n"
      print "| benchmark | time | rate |\n|---|---|---|"
      for (row = 1; row <= rows; ++row) {
        printf "| %s | %s | %s |\n", name[row], scaled(time[row]),
          rate[row] == "" ? "" : sprintf("%.0f M/s", rate[row])
      }
    }' "$results"
} >docs/performance.md
echo "docs/performance.md written" >&2
