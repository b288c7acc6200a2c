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

{
  cat <<'HEAD'
# What was measured

Written by `bench/write_performance.sh`; run it to see your own machine's figures. Every time is the
median of five repetitions on one core of a release build. "Plain" rows are the loops as one would
write them first, in the same program, so that the ratio holds on any machine.

isa 0 is baseline x86-64, 1 is AVX2, 2 is AVX-512; the library chooses the best one that the machine
has. board 3 is the flop, 4 the turn, 5 the river. hands 0 is AhKd against QcJs, 1 is 7c7d against AsKs,
2 is AhKh against QdJd. flop 0 is 2c7dTh, 1 is 2c7cTh, 2 is 2c7cTc. Rates are hands a second.

HEAD
  printf 'Machine: %s, %s\n\n' \
    "$(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1)" \
    "$("${CXX:-g++}" --version | head -n 1)"
  echo '| benchmark | time | rate |'
  echo '|---|---|---|'
  awk -F, '
    function scaled(ns) {
      if (ns < 1e3) return sprintf("%.0f ns", ns)
      if (ns < 1e6) return sprintf("%.2f µs", ns / 1e3)
      if (ns < 1e9) return sprintf("%.2f ms", ns / 1e6)
      return sprintf("%.2f s", ns / 1e9)
    }
    /_median"/ {
      name = $1
      gsub(/"|^BM_|_median|\/iterations:[0-9]+|\/repeats:[0-9]+/, "", name)
      sub(/^BM_/, "", name)
      unit["ns"] = 1; unit["us"] = 1e3; unit["ms"] = 1e6; unit["s"] = 1e9
      rate = $7 == "" ? "" : sprintf("%.0f M/s", $7 / 1e6)
      printf "| %s | %s | %s |\n", name, scaled($4 * unit[$5]), rate
    }' "$results"
} >docs/performance.md
echo "docs/performance.md written" >&2
