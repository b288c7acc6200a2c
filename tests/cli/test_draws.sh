#!/usr/bin/env bash
# pokermath nuts, outs, low and points: golden figures, text, the picture, wrong cards.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

number_of() { sed -E "s/.*\"$1\":([^,}]*).*/\1/" <<<"$out"; }

rows=0
while IFS=, read -r hand board _ hands pairs; do
  run nuts "$hand" "$board" --json
  expect_code 0
  same "$asked" "$(number_of beaten_by) $(number_of beaten_by_pairs)" "$hands $pairs"
  rows=$((rows + 1))
done < <(tail -n +2 "$POKERMATH_TEST_DATA/omaha_nuts.csv")
same "rows of nuts" "$rows" 14

categories=("" "high card" "one pair" "two pair" "three of a kind" straight flush "full house"
  "four of a kind" "straight flush" "royal flush")
rows=0
while IFS=, read -r hand board category outs nut_outs; do
  run outs "$hand" "$board" --json
  expect_code 0
  read -ra counts <<<"$outs"
  read -ra nut_counts <<<"$nut_outs"
  expected="${categories[category]}"
  for i in "${!counts[@]}"; do
    ((counts[i] == 0)) || expected+=$'\n'"${categories[i]} ${counts[i]} ${nut_counts[i]}"
  done
  found=$(sed -E 's/.*"category":"([^"]*)".*/\1/' <<<"$out"
    grep -oE '"[a-z ]*":\{"outs":[0-9]+,"nut_outs":[0-9]+' <<<"$out" | grep -v '^"all"' |
      sed -E 's/"([^"]*)":\{"outs":([0-9]+),"nut_outs":/\1 \2 /')
  same "$asked" "$found" "$expected"
  rows=$((rows + 1))
done < <(tail -n +2 "$POKERMATH_TEST_DATA/omaha_outs_fsm5.csv")
same "rows of outs" "$rows" 13

run nuts '8h 7h 6c 5c' '9h Th 2h Jd'
expect_code 0
same "$asked" "$out" "8h7h6c5c on 9hTh2hJd: flush, 8h7h from the hand and 9hTh2h from the board
  flush 10 high

Not the nuts.
  beaten by   15,801 of 135,751 hands of four    11.64 %
  beaten by       22 of     946 holdings of two   2.33 %

The best that two unseen cards make, flush Ace high:
  AKs  AhKh"

# The nuts of a river, and that they read back to as many holdings.
run nuts Qc2cJd4d Ts9d6cKh3h --json
has "$asked" "$out" '"value":5862,"category":"straight","words":"King high straight","is_nuts":true'
same "$asked" "$(number_of of_pairs) $(number_of nut_value)" "903 5862"
nuts=$(sed -E 's/.*"nuts":\[(.*)\].*/\1/; s/"//g' <<<"$out")
run range "$nuts" --json
same "holdings of $nuts" "$(number_of combos)" 9

run outs AhAdJcTc QhKd2s --svg "$work/deck.svg"
expect_code 0
same "$asked" "$out" "AhAdJcTc on QhKd2s: one pair, AhAd from the hand and QhKd2s from the board
  pair of Ace kicker King kicker Queen

                outs  nut outs   cards, those with * make the nuts
two pair           9         0   Ks Kh Kc Qs Qd Qc 2h 2d 2c
straight          12        12   As* Ac* Js* Jh* Jd* Ts* Th* Td* 9s* 9h* 9d* 9c*
together          21        12

The next card is one of 45 unseen ones, an out with 46.67 %.

    A  K  Q  J  T  9  8  7  6  5  4  3  2
s   *  +  +  *  *  *  .  .  .  .  .  .  B
h   H  +  B  *  *  *  .  .  .  .  .  .  +
d   H  B  +  *  *  *  .  .  .  .  .  .  +
c   *  +  +  H  H  *  .  .  .  .  .  .  +
H hand, B board, + out, * nut out"
same "boxes" "$(grep -c '<rect .*</text>$' "$work/deck.svg")" 52
same "nut outs drawn" "$(grep -c '>nut out</text>$' "$work/deck.svg")" 12
same "closed" "$(tail -n 1 "$work/deck.svg")" "</svg>"
run outs AhAdJcTc QhKd2s --svg -
same "--svg -" "$out" "$(<"$work/deck.svg")"
run outs 8h7h6c5c9c 9hTh2hJd --json
has "$asked" "$out" '"unseen":43,"chance":0.046511627906976744,"straights":{"ranks":["KQ","Q8","87"],"held":["Q8","87"],'
has "$asked" "$out" '"flush_draws":[{"suit":"h","hand_cards":2,"board_cards":3}]'
# Queen and jack beat it, with any four of 39 cards.
run nuts 7s6sKhKdAcAd Ts9s8s2d3h
has "$asked" "$out" "
  beaten by     82,251 of 4,496,388 hands of six      1.83 %
  beaten by          1 of       820 holdings of two   0.12 %
"
run nuts 7s6sKhKdAcAd Ts9s8s2d3h --game omaha6 --json
has "$asked" "$out" '"game":"omaha6",'
run outs AsKsQsJs8c7d Ts9s2d --json
has "$asked" "$out" '"game":"omaha6",'

run low Ah2dKsQc 3c7d8h
same "$asked" "$out" "Ah2dKsQc on 3c7d8h: 8-7-3-2-A, value 87321

The nut low.
  better lows     0 of 990 holdings of two   0.00 %
  nut outs       39 of 45 next cards"
run low Ah3dKsQc Ac2dKh4c7d --json
has "$asked" "$out" '{"schema":1,"game":"omaha-hilo","hand":'
has "$asked" "$out" '"standing":"made","low":"7-4-3-2-A","value":74321,"is_nuts":false,"beaten_by_pairs":40,"of_pairs":903,"unseen":43}'
run low Ah2dKsQc 3c7dKh
has "$asked" "$out" "outs           16 of 45 next cards   35.56 %"
run low Ah2dKsQc3s TcTdKh --json
has "$asked" "$out" '"standing":"board too high","low":null,"value":0,"is_nuts":false,"beaten_by_pairs":null'
run low AhTdKsQc Tc2d3h
has "$asked" "$out" "no low: the hand has not two different low ranks"
run low Ah2dKsQc Ac2h7d
has "$asked" "$out" "no low: the board repeats the low ranks of the hand"

run points AhAdKhKd '10c 9c 8d 7d' 2c3d7h8s
same "$asked" "$out" "AhAdKhKd      54
Tc9c8d7d      30
2c3d7h8s      19"
run points Ah2h3dKd KhKdTcTs --hilo --json
same "$asked" "$out" '{"schema":1,"count":"hilo","hands":[{"hand":["Ah","2h","3d","Kd"],"points":38.0},'\
'{"hand":["Kh","Kd","Tc","Ts"],"points":1000.0}]}'

for question in nuts outs low; do
  refuses 2 "'Jx' is not a card" "$question" AhKhQsJx Th9h2h
  refuses 2 "'AhKhQs' has 3 cards: an Omaha hand has 4 to 6" "$question" AhKhQs Th9h2h
  refuses 2 "'AhKhQsJs' has 4 cards: a hand of this game has 5" "$question" AhKhQsJs Th9h2h --game omaha5
  refuses 2 "--game 'holdem' is not for this question: omaha, omaha5, omaha6" "$question" AhKhQsJs Th9h2h --game holdem
  refuses 2 "Ah is given twice" "$question" AhKhQsJs Th9hAh
  refuses 2 "'Th9h' has 2 cards: a board " "$question" AhKhQsJs Th9h
  refuses 2 "BOARD is required" "$question" AhKhQsJs
done
for question in nuts outs; do
  refuses 2 "'omaha-hilo' is not for this question: omaha, omaha5" "$question" AhKhQsJs Th9h2h --game omaha-hilo
done
run low Ah2dKsQc3s 3c7d8h --game omaha5-hilo
has "$asked" "$out" "The nut low."
run low Ah2dKsQc3sJh 3c7d8h --game omaha6-hilo
has "$asked" "$out" "The nut low."
refuses 2 "'stud' is not known: omaha, omaha5, omaha6, omaha-hilo, omaha5-hilo, omaha6-hilo" low Ah2dKsQc 3c7d8h --game stud
refuses 2 "'9h' is one word too many" nuts AhKhQsJs Th 9h 2h
refuses 2 "'Th9h2h3c4c' has 5 cards: a board with a card to come has 3 or 4" outs AhKhQsJs Th9h2h3c4c
refuses 1 "cannot write '$work/none/x.svg'" outs AhKhQsJs Th9h2h --svg "$work/none/x.svg"
refuses 2 "'AhKhQsJs2c' has 5 cards: a starting hand has 4" points AhKhQsJs AhKhQsJs2c

finish
