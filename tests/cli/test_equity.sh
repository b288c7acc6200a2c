#!/usr/bin/env bash
# pokermath equity: golden figures, the forms of an answer, sampling, bad questions.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

# The time an answer took is the one thing that may differ.
without_time() { sed -E 's/("elapsed_ms":)[0-9.e-]+/\1T/; s/, [0-9.]+ m?s\.$/, T./' <<<"$1"; }

# golden FILE WORDS: every line of the file as a question with these words, against its counts.
golden() {
  tail -n +2 "$POKERMATH_TEST_DATA/$1" >"$work/golden"
  run equity - < <(awk -F, -v words="$2" '{ print $1, $2, words }' "$work/golden")
  expect_code 0
  same "$1" "$(sed -E 's/(.*) equity [0-9.]+ (wins.*)/\1 \2/' <<<"$out")" \
    "$(awk -F, -v words="$2" '{
      print $1, $2 words, "wins", $4, "ties", $5, "losses", $6, "of", $3, "boards exact" }' \
      "$work/golden")"
}
golden holdem_hand_vs_hand.csv ""
golden holdem_hand_vs_hand_turn.csv " --to turn"

run equity AhKd QcJs
expect_code 0
same "$asked" "$(without_time "$out")" "\
AhKd against QcJs, Texas Hold'em, before the flop to the river

            equity            wins alone               ties                losses
AhKd      64.296 %   1,097,621   64.10 %    6,652    0.39 %     608,031   35.51 %
QcJs      35.704 %     608,031   35.51 %    6,652    0.39 %   1,097,621   64.10 %

1,712,304 boards, exact, T.
Equity is the share of the pot: a tie counts one half."

run equity AhKd QcJs --to turn --json
expect_code 0
same "$asked" "$(without_time "$out")" \
  '{"schema":1,"game":"holdem","hand":["Ah","Kd"],"opponent":["Qc","Js"],"board":[],"to":"turn",'\
'"players":2,"equity":0.6884417720217906,"wins":133957,"ties":0,"cases":194580,'\
'"method":"exact","elapsed_ms":T}'

# A board that plays, and the last card of one.
run equity 2c3d 4h5s --board AhKhQhJhTh --json
has "$asked" "$out" '"board":["Ah","Kh","Qh","Jh","Th"],"to":"river","players":2,"equity":0.5,"wins":0,"ties":1,"cases":1,'
run equity AhAd KhKd --board 2c3d4h5s
has "$asked" "$out" "on the turn 2c3d4h5s to the river"
has "$asked" "$out" "44 boards, exact"

# sampled ARGUMENT...: the JSON answer of a sampled question, in $out.
sampled() {
  run equity "$@" --json
  expect_code 0
}
value() { sed -E "s/.*\"$1\":([^,}]*).*/\1/" <<<"$out"; }

sampled AhKd random --players 3 --board 2c3d4h --trials 20000 --seed 7
same "$asked" "$(grep -oE '"[a-z_]+":' <<<"$out" | tr -d '":\n')" \
  "schemagamehandopponentboardtoplayersequitywinstiescasesmethodstandard_errortrialsseedelapsed_ms"
has "$asked" "$out" '"opponent":"random","board":["2c","3d","4h"],"to":"river","players":3,'
has "$asked" "$out" '"cases":20000,"method":"sampled",'
first=$(without_time "$out")
sampled AhKd random --players 3 --board 2c3d4h --trials 20000 --seed 7
same "the same seed" "$(without_time "$out")" "$first"
sampled AhKd random --players 3 --board 2c3d4h --trials 20000 --seed 8
[[ $(value wins) != "$(sed -E 's/.*"wins":([0-9]*).*/\1/' <<<"$first")" ]] ||
  fail "another seed, the same wins"

# Two aces win 85.2037 % of the pot before the flop. Five hearts from the ten up are shared by all.
sampled AhAs random
awk -v equity="$(value equity)" -v error="$(value standard_error)" 'BEGIN {
  exit !(error > 0.0003 && error < 0.0004 && (equity - 0.852037)^2 < (5 * error)^2) }' ||
  fail "$asked: $out"
sampled 2c3d random --players 10 --board AhKhQhJhTh --trials 1000
has "$asked" "$out" '"players":10,"equity":0.1,"wins":0,"ties":1000,'
run equity 2c3d random --players 10 --board AhKhQhJhTh --trials 1000
has "$asked" "$out" "2c3d against 9 random hands, Texas Hold'em, on the river AhKhQhJhTh"
has "$asked" "$out" "a pot shared by k players counts 1/k."

# A word too many is never taken for a part of the question.
joins="there is one opponent; a comma joins the pieces of a range (TT+,AQs+), and a board is one word (2c3d4h)"
for words in 'QsQc JdTd' 'QsQc random' '15% 20%' 'TT+, AQs+' '7s 7c Qc' 'random AA --by-class' \
  '7s7c 2c --board 3d4h5s'; do
  # shellcheck disable=SC2086
  refuses 2 " is one word too many: $joins" equity AhKd $words
done
for words in '--board 2c 3d 4h AhKd 7s7c' '--board 2c 3d 4h 7s7c' 'AhKd --board 2c 3d 4h' \
  '--board=2c3d 4h AhKd 7s7c' 'AhKd --to turn --board 2c 3d 7s7c'; do
  # shellcheck disable=SC2086
  refuses 2 ": a board is one word, like 2c3d4h, and a hand" equity $words
done
refuses 2 "'3c' stands behind --dead 2c: dead cards are one word" \
  equity AhAdKhKd JsTs9c8c --dead 2c 3c 4c 5c 6c --game omaha
for words in 'Ah Kd 7s 7c --board 2c3d4h' '--board 2c3d4h AhKd 7s 7c' 'Ah --board 2c3d4h --exact Kd 7s 7c'; do
  # shellcheck disable=SC2086
  run equity $words
  has "$asked" "$out" "AhKd against 7s7c, Texas Hold'em, on the flop 2c3d4h to the river"
done

# A question on a line is one on the command line; options beside '-' are for every line.
run equity - --players 4 --trials 500 <<'END'
# comment
AhKd random

AhKd random --players=3
AhKd 7s7c
AhKd random --board
AhKd random --players 2 --players 3
AhKd 7s 7c 8d
--board 2c 3d 4h AhKd 7s7c
--board 2c3d4h
AhKd random --json
AhKd random --board 2c3d4h --trials 1000
END
expect_code 1
same "lines" "$(sed -E 's/ equity .* of / of /; s/ sampled .*//' <<<"$out")" "\
AhKd random --players 4 of 500 trials
AhKd random --players 3 of 500 trials
error: --players goes with the opponent 'random' only: hands and ranges are exact
error: --board needs a value
error: --players is given twice
error: '8d' is one word too many: $joins
error: '3d' stands behind --board 2c: a board is one word, like 2c3d4h, and a hand behind it is one too
error: a hand is needed, like AhKd
error: '--json' is not an option of a question: --game, --board, --dead, --to, --players, --trials, --seed, --time-ms, --exact
AhKd random --board 2c3d4h --players 4 of 1000 trials"
has "errors" "$err" "pokermath: line 5: --players goes with"
run equity - --json <<<$'AhKd 7s7c --to turn\nAhKd Qd7c\nAhKd Ah7c'
expect_code 1
same "lines as JSON" "$(sed -E 's/"(hand|elapsed).*/.../' <<<"$out")" \
  '{"schema":1,"game":"holdem",...
{"schema":1,"game":"holdem",...
{"schema":1,"line":3,"error":"Ah is given twice"}'

# The time ends what has no end; trials end what has time.
sampled AhKd random --time-ms 60
same "method" "$(grep -oE '"(trials|seed|time_ms)":[0-9]+|interrupted' <<<"$out" | tr '\n' ' ')" \
  '"trials":1000000000000 "seed":1 "time_ms":60 '
awk -v ms="$(value elapsed_ms)" 'BEGIN { exit !(ms >= 60 && ms < 10000) }' || fail "$asked: $out"
has "its page" "$("$POKERMATH" equity AhKd random --time-ms 5)" "So many trials were possible in 5 ms."
sampled AhKd random --time-ms 86400000 --trials 1500
same "$asked" "$(value cases)" 1500
refuses 2 "--time-ms '0' is not accepted: a whole number from 1 to 86400000" \
  equity AhKd random --time-ms 0
refuses 2 "--time-ms goes with the opponent 'random' only" equity AhKd QQ+ --time-ms 5
refuses 2 "--time-ms does not go with --by-class" equity AhKd random --by-class --time-ms 5

# What is exact anyway may be asked for by that name.
refuses 2 "--exact does not go with 'random' in this game: hands, ranges and --by-class are exact" \
  equity AhKd random --exact
run equity AhKd QQ+ --exact --json
has "$asked" "$out" '"method":"exact"'
refuses 2 "--dead goes with --game omaha and omaha5 only, not with shortdeck" \
  equity AhKd QQ --dead 9c --game shortdeck
refuses 2 "--game 'omaha4' is not known: holdem, shortdeck, omaha, omaha5, omaha-hilo, omaha5-hilo" \
  equity AhKd QQ --game omaha4

# Ctrl-C: what was sampled so far is the answer.
endless=(equity AhKd random --trials 1000000000000)
interrupt() { timeout --preserve-status -s INT "$1" "$POKERMATH" "${@:2}" 2>&1; }
out=$(interrupt 1 "${endless[@]}" --json)
same "exit code of an interrupted run" $? 0
[[ $out == '{"schema":1,'*'"interrupted":true,'*'}' ]] || fail "interrupted: $out"
has "interrupted" "$(interrupt 1 "${endless[@]}")" "Stopped early: 1,000,000,000,000 trials"

# On a terminal there are progress and colours, unless they are unwanted.
export -f interrupt
show() { SHELL=/bin/bash script -qec "interrupt 2.5 ${endless[*]}" /dev/null </dev/null; }
out=$(TERM=xterm show)
has "progress" "$out" "million trials/s, "
has "colours" "$out" $'\e[31mAh'
out=$(TERM=xterm NO_COLOR=1 show)
[[ $out == *AhKd* && $out != *$'\e[31m'* ]] || fail "NO_COLOR: $out"

refuses 2 "'Xh' is not a card: rank" equity Xh 7s7c
refuses 2 "Ah is given twice" equity AhKd 7sAh --json
refuses 2 "7c is given twice" equity AhKd 7s7c --board 2c3d7c
refuses 2 "'AhKdQc' has 3 cards: a hand has 2" equity AhKdQc 7s7c
refuses 2 "'rand' is not an opponent: two cards, a range, or the word random" equity AhKd rand
refuses 2 "an opponent is needed: two cards, a range, or the word random" equity AhKd
run equity Ah Kd 10s 7c --board "2c,3d 4h"
expect_code 0
has "cards in separate words" "$out" "AhKd against Ts7c"
refuses 2 "6 cards: a board has up to 5" equity AhKd 7s7c --board 2c3c4c5c6c8c
refuses 2 "5 cards: a board has up to 4 with --to turn" equity AhKd 7s7c --board 2c3c4c5c6c --to turn
refuses 2 "--to 'showdown' is not known: flop, turn or river" equity AhKd 7s7c --to showdown
refuses 2 "--to goes with a hand or a range only" equity AhKd random --to turn
refuses 2 "'KX' at position 5: expected" equity AhKd AA,KX
refuses 2 "hands and ranges are exact" equity AhKd AA --players 3

# A range is the sum of its holdings; these two are the same up to the suits.
run equity AhKd QcJs,QsJc --json
expect_code 0
has "range" "$out" '"opponent":"QcJs,QsJc"'
has "range" "$out" '"wins":2195242,"ties":13304,"cases":3424608,"method":"exact"'
run equity AhKd 'QQ+ AK' --board 2c3d4h --to turn
has "$asked" "$out" "cases of board and holding, exact"
run equity AhAd AA --board AsAc2d --json
expect_code 0
has "a blocked range" "$out" '"equity":null,"wins":0,"ties":0,"cases":0'
run equity AhKd QcJs --to flop --json
has "to the flop" "$out" '"to":"flop","players":2,'
has "to the flop" "$out" '"cases":17296'
refuses 2 "--trials goes with the opponent 'random' only" equity AhKd 7s7c --trials 5
for players in 1 11 2.5 two; do
  refuses 2 "--players '$players' is not accepted: a whole number from 2 to 10" \
    equity AhKd random --players "$players"
done
refuses 2 "--board is given twice" equity AhKd 7s7c --board 2c --board 3c

# The word random is a piece of any list; alone it is random hands, in any letters.
run equity AhKd 'random; AA' --json
has "$asked" "$out" '"opponent":"random,AA",'
has "$asked" "$out" '"cases":2097572400,'
run equity AhKd ' Random,' --trials 10 --json
has "$asked" "$out" '"opponent":"random",'
refuses 2 "an opponent is needed: two cards, a range, or the word random" equity AhKd ' , '
refuses 2 "an opponent is needed" equity AhKd
refuses 2 "--board needs a value" equity AhKd QQ --board ""
refuses 2 "--players needs a value" equity AhKd random --players ""
refuses 2 "--players '99' is not accepted" equity - --players 99

# The short deck, against golden figures.
tail -n +2 "$POKERMATH_TEST_DATA/shortdeck_hand_vs_hand.csv" >"$work/golden"
run equity - --game shortdeck < <(awk -F, '{ print $1, $2 }' "$work/golden")
expect_code 0
same "short deck" "$(sed -E 's/ equity [0-9.]+//' <<<"$out")" \
  "$(awk -F, '{ print $1, $2, "--game shortdeck wins", $4, "ties", $5, "losses", $6, "of", $3, "boards exact" }' \
    "$work/golden")"
run equity AhKd random --game shortdeck --by-class --json --svg "$work/heat.svg"
has "$asked" "$out" '"game":"shortdeck","hand":["Ah","Kd"],"opponent":"random",'
has "$asked" "$out" '"wins":64652250,"ties":4992999,"cases":112971936,'
same "boxes" "$(grep -c '<rect .*</text>' "$work/heat.svg")" 81
run equity AhKd random --game shortdeck --players 10 --trials 20000 --json
has "$asked" "$out" '"players":10,'
same "near" "$(awk '{ print ($1 > 0.1 && $1 < 0.2) }' <<<"$(value equity)")" 1
refuses 2 "5c is not in the short deck, which has six to ace" equity AhKd 5c5d --game shortdeck
refuses 2 "2c is not in the short deck" equity AhKd TT --board 2c7d8h --game shortdeck
refuses 2 "expected ranks of the short deck, 6 to A" equity AhKd 55 --game shortdeck

# Class by class: the classes sum up to the range, the hand's worst come first.
run equity AhKd TT+,AQs+ --by-class
expect_code 0
has "$asked" "$out" "
class       equity    holdings      wins alone      ties    losses
AA         6.828 %           3          6.17 %    1.32 %   92.51 %
KK "
same "holdings" "$(awk '/^[AKQJT][AKQJT]s? / { sum += $4 } END { print sum }' <<<"$out")" 29
run equity AhKd random --by-class --board 2c7dTh --json --svg "$work/heat.svg"
expect_code 0
same "classes" "$(grep -o '"class"' <<<"$out" | wc -l)" 169
for key in wins ties cases; do
  mapfile -t counts < <(grep -o "\"$key\":[0-9]*" <<<"$out" | cut -d: -f2)
  same "$key" "$(printf '%s\n' "${counts[@]:1}" | awk '{ sum += $1 } END { print sum }')" "${counts[0]}"
done
same "boxes" "$(grep -c '<rect .*</text>' "$work/heat.svg")" 169
has "title" "$(<"$work/heat.svg")" "<title>AhKd against random, on the flop 2c7dTh to the river: 54.08 %</title>"
run equity AhKd TT+,AQs+ --by-class --svg -
expect_code 0
[[ $out == '<svg '*'</svg>' ]] || fail "$asked: $out"
run equity AhKd QcJs,2c3d --board 2c7dTh9s8c
has "$asked" "$out" $'\n1 case of board and holding, exact, '
run equity AhKd AhKh,AhQh --by-class --json
has "$asked" "$out" '"equity":null,'
has "$asked" "$out" '"by_class":[]}'
refuses 2 "--by-class goes with a range: 'QcJs' is a hand" equity AhKd QcJs --by-class
refuses 2 "--by-class answers one question" equity - --by-class
refuses 2 "--svg goes with --by-class" equity AhKd QQ+ --svg "$work/heat.svg"
refuses 2 "--trials does not go with --by-class" equity AhKd random --by-class --trials 5
run equity AhAd AA --board AsAc2d --by-class --svg "$work/heat.svg"
has "a blocked range" "$(<"$work/heat.svg")" ": no holding left</title>"
run equity AhKd 'TT+,AQs+,AKo,KQs,A5s-A2s,98s,87s,76s' --board 2c7dTh --to turn --by-class --svg "$work/heat.svg"
has "a long range" "$(<"$work/heat.svg")" "<title>AhKd against a range, on the flop 2c7dTh to the turn: 4"
refuses 1 "cannot write '$work/none/x.svg'" equity AhKd QQ+ --by-class --svg "$work/none/x.svg"

finish
