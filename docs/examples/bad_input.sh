#!/usr/bin/env bash
# bad_input.sh FOLDER: examples whose words come from a user refuse wrong ones, in one line that names
# the bad thing.
set -euo pipefail
failures=0

# refuses PIECE PROGRAM WORD...
refuses() {
  local piece=$1 program=$2 code=0 err
  err=$("$folder/$program" "${@:3}" 2>&1 >/dev/null) || code=$?
  [[ $code == 1 && $err == *"$piece"* && $err != *$'\n'* ]] && return
  echo "FAILED: ${*:2}: exit code $code, '$piece' is not in: $err"
  failures=$((failures + 1))
}

folder=$1
refuses "'Xd'" two_hands AhXd 7s7c
refuses "Ah is given twice" two_hands AhAh 7s7c
refuses "a hand of 3" two_hands AhKd2c 7s7c
refuses "Ah is in the hand of player 1 already" two_hands AhKd Ah2c
refuses "'A9s-Q5s'" ranges 15% A9s-Q5s 2c7dTh
refuses "expected 2 to 10" ranges 15% 2c7dTh
refuses "'Tx'" ranges 15% AA 2c7dTx
refuses "is on the board already" ranges AhKd QQ Ah2c7d
refuses "'AAxxx'" omaha AhAd2h3c AAxxx
refuses "a board of 6" omaha AhAd2h3c KKxx 2c3c4c5d6d7d
refuses "not in the short deck" short_deck 7d2s
refuses "nothing comes next" outcomes AhKd QQ 2c7dTh3s4d
refuses "expected 5 to 7 cards" evaluate AhKd
refuses "'1h'" evaluate 1hKdQdJdTd
refuses "'KJ-'" range_text KJ-
refuses "Ah is given twice" nuts AhAd2h3c Ah7h4s
refuses "expected a hand of 4" nuts AhAd2h 8h7h4s
((failures == 0))
