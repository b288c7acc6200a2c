# What the tests of the command-line tool share. Sourced; POKERMATH is the program.
# shellcheck shell=bash
set -u
: "${POKERMATH:?is to be the program under test}"
: "${POKERMATH_TEST_DATA:=$(dirname "${BASH_SOURCE[0]}")/../data}"
export LC_ALL=C TERM=dumb
unset NO_COLOR
work=$(mktemp -d)
unset POKERMATH_DATA XDG_DATA_HOME
export HOME=$work # without the tables of whoever tests
trap 'rm -rf "$work"' EXIT
failures=0

fail() {
  printf 'FAILED: %s\n' "$*"
  failures=$((failures + 1))
}

# run ARGUMENT...: leaves $out, $err and $code behind. Standard input is the caller's.
run() {
  asked="pokermath $*"
  "$POKERMATH" "$@" >"$work/out" 2>"$work/err"
  code=$?
  out=$(<"$work/out")
  err=$(<"$work/err")
}

expect_code() {
  ((code == $1)) || fail "$asked: exit code $code instead of $1: $err"
}

# same WHAT ACTUAL EXPECTED
same() {
  [[ $2 == "$3" ]] || fail "$1"$'\n'"$(diff <(echo "$3") <(echo "$2"))"
}

# has WHAT TEXT PIECE
has() {
  [[ $2 == *"$3"* ]] || fail "$1: '$3' is not in: $2"
}

# refuses CODE PIECE ARGUMENT...: nothing on standard output, and one line that has the piece on
# standard error.
refuses() {
  run "${@:3}" </dev/null
  expect_code "$1"
  same "$asked: standard output" "$out" ""
  [[ $err == "pokermath: "*"$2"* && $err != *$'\n'* ]] || fail "$asked: '$2' is not in: $err"
}

finish() {
  ((failures == 0)) || exit 1
  echo passed
}
