#!/usr/bin/env bash
# pokermath eval: values, words and the five cards that play; bad hands; many hands on standard
# input.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

run eval A♥ KhQh,Jh 10H 2c 3D
expect_code 0
same "$asked" "$out" "AhKhQhJhTh2c3d: royal flush, Ah Kh Qh Jh Th

  in words    royal flush
  descending      1   of 7462, smaller is better
  ascending    7462   of 7462, larger is better
  hand_ranks  36874   category * 4096 + place in it, larger is better"

run eval --json 2s5c4dKh3hAcKd
expect_code 0
same "$asked" "$out" '{"schema":1,"game":"holdem","hand":["2s","5c","4d","Kh","3h","Ac","Kd"],"category":"straight",'\
'"words":"5 high straight","cards":["5c","4d","3h","2s","Ac"],"descending":1609,"ascending":5854,"hand_ranks":20481}'

# The ends of every category; bad lines in between must not shift the answers.
hands='
# best and worst of each category
AhKhQhJhTh KsQsJsTs9s2c2d 5d4d3d2dAdKc
AsAhAdAcKd 3c2h2s2d2c
KcAsAhAdKd 2c3h2s3c2d

AhKhQhJh9h2c3c 7s5s4s3s2s
AhKdQsJhTc 5h4d3sAh2c
AhAdAsKhQc 2c2d2h4s3s
AhAdKhKsQc 3h3s2d2c4d
AdAhKcQhJs 2h2d5h4c3s
AhKdQcJh9s 7c5d4h3s2c'
values='1 royal flush, 2 straight flush, 10 straight flush,
11 four of a kind, 166 four of a kind, 167 full house, 322 full house, 323 flush, 1599 flush,
1600 straight, 1609 straight, 1610 three of a kind, 2467 three of a kind, 2468 two pair,
3325 two pair, 3326 one pair, 6185 one pair, 6186 high card, 7462 high card'
run eval - < <(sed '/^#/!s/ /\n/g' <<<"$hands")
expect_code 0
same "every category" \
  "$(sed -E 's/.* descending ([0-9]+) ascending ([0-9]+) .* [0-9]+ (.*): .*/\1 \3/' <<<"$out")" \
  "$(sed -z 's/,[ \n]/\n/g' <<<"$values")"
same "the scales add up" "$(awk '$3 + $5 != 7463 || $7 % 4096 == 0' <<<"$out")" ""
same "the worst hand" "${out##*$'\n'}" \
  "7c5d4h3s2c descending 7462 ascending 1 hand_ranks 4097 high card: 7c 5d 4h 3s 2c"
has "a full house" "$out" "full house: As Ah Ad Kc Kd"$'\n'

bad_lines=$'AhKhQhJhTh\n\nAhKhQhJhXh\r\n9c8c\n7c5d4h3s2c\nAhAh2c3c4c\n2c2d2h2s3c'
expected="AhKhQhJhTh descending 1 ascending 7462 hand_ranks 36874 royal flush: Ah Kh Qh Jh Th
error: 'Xh' is not a card: rank 23456789TJQKA (or 10), suit cdhs
error: '9c8c' has 2 cards: 5 to 7 have a value
7c5d4h3s2c descending 7462 ascending 1 hand_ranks 4097 high card: 7c 5d 4h 3s 2c
error: Ah is given twice
2c2d2h2s3c descending 166 ascending 7297 hand_ranks 32769 four of a kind: 2c 2d 2h 2s 3c"
run eval - <<<"$bad_lines"
expect_code 1
same "bad lines" "$out" "$expected"
same "errors" "$err" "pokermath: line 3: 'Xh' is not a card: rank 23456789TJQKA (or 10), suit cdhs
pokermath: line 4: '9c8c' has 2 cards: 5 to 7 have a value
pokermath: line 6: Ah is given twice"

run eval - --json <<<"$bad_lines"
expect_code 1
same "bad lines as JSON" "$(sed -n '3p;5p' <<<"$out")" \
  '{"schema":1,"line":4,"error":"'"'9c8c'"' has 2 cards: 5 to 7 have a value"}
{"schema":1,"line":6,"error":"Ah is given twice"}'
same "lines of JSON" "$(grep -c '^{"schema":1,.*}$' <<<"$out")" 6

# A line longer than any buffer, bytes that are no text, no line end at the end.
printf '%0200000d\n7c5d4h\377\001\n7c5d4h3s2c' 0 >"$work/odd"
run eval - --json <"$work/odd"
expect_code 1
same "odd lines" "$(grep -oE 'too long|is not a card|"category":"[a-z ]*"' <<<"$out")" \
  $'too long\nis not a card\n"category":"high card"'

# Another program may wait for each answer before it asks again.
coproc asked_by_hand { exec "$POKERMATH" eval -; }
echo AhKhQhJhTh >&"${asked_by_hand[1]}"
read -r -t 10 answer <&"${asked_by_hand[0]}" || fail "no answer while the input is open"
has "an answer at once" "${answer:-}" "royal flush"
eval "exec ${asked_by_hand[1]}>&-"
wait

refuses_closed() {
  run "$@" <&-
  expect_code 1
  same "$asked" "$out$err" "pokermath: cannot read standard input: Bad file descriptor"
}
refuses_closed eval -
refuses_closed equity - --json

# Two hands.
run eval AhKd --versus QcJs --board 2c7dTh
expect_code 0
same "$asked" "$out" "AhKd2c7dTh: high card, Ah Kd Th 7d 2c
  high card Ace high
QcJs2c7dTh: high card, Qc Js Th 7d 2c
  high card Queen high

AhKd wins."
run eval --versus 2s3s Ah Kd --board QcJcTcQdJd --json
has "$asked" "$out" '{"hand":["Ah","Kd"],"category":"straight","words":"Ace high straight"'
has "$asked" "$out" '"words":"two pair Queen Jack kicker 10"'
has "$asked" "$out" '"verdict":1}'
run eval 2c2d --versus 2h2s --board QcJcTcAcKc
has "$asked" "$out" "The hands are equal."
run eval KdAh --versus 2s2c
same "$asked" "$out" "2s2c is the better starting hand."
run eval KdAh --versus KcAs --json
same "$asked" "$out" '{"schema":1,"board":[],"hands":[{"hand":["Kd","Ah"]},{"hand":["Kc","As"]}],"verdict":0}'
run eval AhKd --board 2c7dTh
has "$asked" "$out" "high card Ace high"

# The short deck.
run eval Ah6d7h8h9hAdAc --game shortdeck --json
same "$asked" "$out" '{"schema":1,"game":"shortdeck","hand":["Ah","6d","7h","8h","9h","Ad","Ac"],'\
'"category":"three of a kind","cards":["Ah","Ad","Ac","9h","8h"],"value":1112}'
run eval Ah6h7h8h9hKd --game shortdeck
same "$asked" "$out" "Ah6h7h8h9hKd: straight flush, 9h 8h 7h 6h Ah

  value        1399   of 1404, larger is better"
run eval AhAd --versus KdQd --board Ac7d8d9d9h --game shortdeck
has "$asked" "$out" "full house, Ah Ad Ac 9d 9h"
has "$asked" "$out" "KdQd wins."
run eval - --game shortdeck <<<$'6c6d6h7d7h\n6c6d6h7d2h'
expect_code 1
same "$asked" "$out" "6c6d6h7d7h value 1135 full house: 6c 6d 6h 7d 7h
error: 2h is not in the short deck, which has six to ace"

# Omaha: which cards play.
run eval AhKhQsJs --board Th9h2h --game omaha
same "$asked" "$out" "AhKhQsJs on Th9h2h: flush, AhKh from the hand and Th9h2h from the board

  in words    flush Ace high
  descending    409   of 7462, smaller is better
  ascending    7054   of 7462, larger is better"
run eval AhAdKhKd7s --board AsKs7c2d9h --game omaha5 --json
has "$asked" "$out" '"category":"three of a kind","words":"three of a kind Ace kicker King kicker 9","hole_cards":["Ah","Ad"],"board_cards":["As","Ks","9h"]'
run eval AhAd7s6s5s4c --board As8s7c9s9h --game omaha6 --json
has "$asked" "$out" '"game":"omaha6",'
has "$asked" "$out" '"category":"full house",'
has "$asked" "$out" '"hole_cards":["Ah","Ad"],"board_cards":["As","9s","9h"]'
refuses 2 "'AhKhQs' has 3 cards: a hand of this game has 4" eval AhKhQs --board Th9h2h --game omaha
refuses 2 "'Th' has 1 card: a board has 3 to 5" eval AhKhQsJs --board Th --game omaha
refuses 2 "Ah is given twice" eval AhKhQsJs --board Th9hAh --game omaha
refuses 2 "--board is needed" eval AhKhQsJs --game omaha
refuses 2 "--versus is for holdem" eval AhKhQsJs --board Th9h2h --game omaha --versus AcKc
refuses 2 "--game 'stud' is not known: holdem, shortdeck, omaha, omaha5, omaha6" eval AhKhQhJhTh --game stud
refuses 2 "--game 'omaha-hilo' is not for this question: holdem, " eval AhKhQhJhTh --game omaha-hilo
refuses 2 "'2c7d' has 2 cards: a board has 3 to 5" eval AhKd --versus QcJs --board 2c7d
refuses 2 "'Ah' has 1 card: with --versus a hand has 2" eval AhKd --versus Ah
refuses 2 "Ah is given twice" eval AhKd --versus Ah2c
refuses 2 "'AhKd 7d Th' has 4 cards" eval AhKd --versus QcJs --board 2c 7d Th
refuses 2 "go with one question" eval - --versus AhKd

refuses 2 "'Xh' is not a card: rank 23456789TJQKA (or 10), suit cdhs" eval --json Xh
refuses 2 "Ah is given twice" eval Ah Kd 2c AH 3c
refuses 2 "'AhKdQc' has 3 cards: 5 to 7" eval AhKdQc
refuses 2 "8 cards" eval AhKhQhJhTh9h8h7h
refuses 2 "CARDS is required" eval
refuses 2 "'--fast' is not an option" eval --fast AhKhQhJhTh
refuses 2 "'evl' is not a subcommand: eval, equity, nuts, outs, low, points, range, pots" evl
"$POKERMATH" eval AhKhQhJhTh 2>"$work/err" >/dev/full && fail "a full disk is no success"
has "a full disk" "$(<"$work/err")" "cannot write to standard output"

run
expect_code 2
has "without arguments" "$err" "Examples:"
same "without arguments" "$out" ""
for words in "" eval equity nuts outs low points range pots tables "tables build"; do
  # shellcheck disable=SC2086
  run $words --help
  expect_code 0
  has "$asked" "$out" "Examples:"
done

finish
