#!/usr/bin/env bash
# pokermath equity --game omaha: golden figures, the forms of an answer, sampling, bad questions.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

without_time() { sed -E 's/("elapsed_ms":)[0-9.e-]+/\1T/; s/, [0-9.]+ m?s\.$/, T./' <<<"$1"; }
value() { sed -E "s/.*\"$1\":([^,}]*).*/\1/" <<<"$out"; }

# golden FILE PROGRAM: the awk program makes of every line a question, a tab, and its answer.
golden() {
  tail -n +2 "$POKERMATH_TEST_DATA/$1" | awk -F, "
    function words(board, dead) {
      return \" --game omaha\" (\$1 == 5 ? 5 : \"\") (board ? \" --board \" board : \"\") \\
        (dead ? \" --dead \" dead : \"\") }
    function counts(equity, wins, ties, cases, what) {
      return sprintf(\" equity %.6f wins %d ties %d losses %d of %d %s exact\",
        equity, wins, ties, cases - wins - ties, cases, what) }
    $2" >"$work/golden"
  run equity - < <(cut -f 1 "$work/golden")
  expect_code 0
  same "$1" "$(sed -E 's/ opponents .*//' <<<"$out")" "$(tr -d '\t' <"$work/golden")"
}
golden omaha_hand_vs_hand.csv '
  { print $2, $3 words($4) "\t" counts(($6 + $7 / 2) / $5, $6, $7, $5, "boards") }'
golden omaha_multiway.csv '
  { for (k = ties = share = 0; k <= 5; ++k) { share += $(6 + k) / (k + 1); if (k) ties += $(6 + k) }
    print $2 words($4, $3) "\t" counts(share / $5, $6, ties, $5, "boards") }'
golden omaha_vs_random.csv '
  { print $2, "random" words($3) ($4 ~ /only/ ? " --to " substr($4, 1, 4) : "") \
    "\t" counts(($6 + $7 / 2) / $5, $6, $7, $5, "cases of board and opponent\x27s hand") }'


# Hi/Lo: golden shares of the first hand.
tail -n +2 "$POKERMATH_TEST_DATA/omaha_hilo_multiway.csv" | awk -F, '
  { print $2, "--game omaha" ($1 == 5 ? 5 : "") "-hilo" ($4 ? " --board " $4 : "") ($3 ? " --dead " $3 : "") >"'"$work/asked"'"
    printf "%.6f\n", $6 / $5 }' >"$work/golden"
run equity - <"$work/asked"
expect_code 0
same "omaha_hilo_multiway.csv" "$(sed -E 's/.* equity ([0-9.]+) .*/\1/' <<<"$out")" "$(<"$work/golden")"
run equity Ah2h3c4d random --game omaha-hilo --board 3s9dKc
has "$asked" "$(without_time "$out")" "from lows              whole pot             part of it                nothing
Ah2h3c4d     44.098 %    11.793 %   44,543,185   36.46 %   18,372,649   15.04 %   59,260,066   48.50 %
random       55.902 %     1.062 %"
exact=$(run equity Ah2h3c4d random --game omaha-hilo --exact --json; value equity)
run equity Ah2h3c4d random --game omaha-hilo --json
near=$(awk -v a="$exact" -v b="$(value equity)" -v e="$(value standard_error)" \
  'BEGIN { d = (a - b) / e; print d * d < 25 && e < 0.001 }')
same "sampled Hi/Lo within five standard errors" "$near" 1

# Every hand has a row of its own; the shares are those of one pot.
run equity Ah Ad 2c 3c AsAc2d3d KhKd Qh Qd --dead 4h5h --game omaha
expect_code 0
same "$asked" "$(without_time "$out")" "\
AhAd2c3c against AsAc2d3d and KhKdQhQd, Omaha, before the flop to the river, 4h5h dead

               equity          wins alone                ties              losses
AhAd2c3c     28.407 %    38,057    7.58 %   209,057   41.65 %   254,828   50.77 %
AsAc2d3d     20.943 %       595    0.12 %   209,057   41.65 %   292,290   58.23 %
KhKdQhQd     50.650 %   254,233   50.65 %         0    0.00 %   247,709   49.35 %

501,942 boards, exact, T.
Equity is the share of the pot: a pot shared by k players counts 1/k."
run equity AhKhQhJh AsKsQsJs AdKdQdJd --game omaha --json
same "$asked" "$(without_time "$out" | sed -E 's/(0\.[0-9]{6})[0-9]*/\1/g')" \
  '{"schema":1,"game":"omaha","hand":["Ah","Kh","Qh","Jh"],"opponents":[["As","Ks","Qs","Js"],'\
'["Ad","Kd","Qd","Jd"]],"board":[],"dead":[],"to":"river","players":3,"equity":0.333333,'\
'"wins":43092,"ties":528732,"cases":658008,"method":"exact","hands":['\
'{"hand":["Ah","Kh","Qh","Jh"],"equity":0.333333,"wins":43092,"ties":528732},'\
'{"hand":["As","Ks","Qs","Js"],"equity":0.333333,"wins":43092,"ties":528732},'\
'{"hand":["Ad","Kd","Qd","Jd"],"equity":0.333333,"wins":43092,"ties":528732}],"elapsed_ms":T}'
run equity - --game omaha --exact <<<$'AhKdQcJs random --board 2c7dTh\nAhKdQcJs random --exact=1'
expect_code 1
has "lines" "$out" "--game omaha --board 2c7dTh equity 0.359751 wins"
has "lines" "$out" "error: --exact has no value"
run equity - --game omaha <<<'--board 2c3d4h'
expect_code 1
same "a line without hands" "$out" "error: a hand is needed, like AhKd"
run equity - --game omaha5 --json <<<$'Ah2h3c4dKd As2s5d6dQc --dead 7c\nAhKd QcJs\n\nAhKdQcJsTs random --trials 5'
expect_code 1
same "lines" "$(sed -E 's/"(hands|standard|elapsed).*/.../; s/"equity.*"method/..."method/' <<<"$out")" \
  '{"schema":1,"game":"omaha5","hand":["Ah","2h","3c","4d","Kd"],"opponent":["As","2s","5d","6d","Qc"],'\
'"board":[],"dead":["7c"],"to":"river","players":2,..."method":"exact",...
{"schema":1,"line":2,"error":"'"'AhKd QcJs' has 4 cards: a hand of omaha5 has 5"'"}
{"schema":1,"game":"omaha5","hand":["Ah","Kd","Qc","Js","Ts"],"opponent":"random",'\
'"board":[],"dead":[],"to":"river","players":2,..."method":"sampled",...'

# Before the flop a random hand is sampled, or counted when that is asked for.
run equity AhAdKhKd random --game omaha --exact --json
expect_code 0
has "$asked" "$out" '"wins":148999832330,"ties":707700224,"cases":211315436640,"method":"exact",'
for dead in 2c 2cAsAcKsKc; do
  run equity AhAdKhKd random --dead $dead --game omaha --exact --json
  exact=$(value equity)
  run equity AhAdKhKd random --dead $dead --game omaha --json
  expect_code 0
  has "$asked" "$out" '"cases":1000000,"method":"sampled",'
  awk -v exact="$exact" -v equity="$(value equity)" -v error="$(value standard_error)" 'BEGIN {
    exit !(error > 0.0003 && error < 0.0005 && (equity - exact)^2 < (5 * error)^2) }' ||
    fail "$asked: $out, exact $exact"
done
first=$(value wins)
run equity AhAdKhKd random --game omaha --json --seed 2
[[ $(value wins) != "$first" ]] || fail "another seed, the same wins"
run equity AhAdKhKd random --game omaha --exact --to flop --json
has "$asked" "$out" '"to":"flop","players":2,"equity":0.838'

# Many random hands, some cards dead; and no more of them than the time allows.
run equity 2c2dJhQd random --players 8 --board AsKsQsJs9s --dead TsTcTdTh --game omaha --json \
  --trials 2000
expect_code 0
has "$asked" "$out" '"dead":["Ts","Tc","Td","Th"],"to":"river","players":8,'
has "$asked" "$out" '"cases":2000,"method":"sampled",'
run equity AhKdQcJsTs random --players 9 --time-ms 30 --game omaha5
expect_code 0
has "$asked" "$out" "against 8 random hands, five-card Omaha, before the flop"
has "$asked" "$out" "So many trials were possible in 30 ms."

# A range is all of its hands; those that share a known card are left out.
hands=(JsTs9c8c 7h7d6h6d QsQdJhJd)
for options in "" "--board 2c3d4h" "--board 2c3d4h5s --dead 9h" "--board AsKs7c8h9d"; do
  # shellcheck disable=SC2086
  run equity - --game omaha $options < <(printf 'AhAdKhKd %s\n' "${hands[@]}")
  sums=$(sed -E '/^error/d; s/.* wins ([0-9]+) ties ([0-9]+) losses [0-9]+ of ([0-9]+) .*/\1 \2 \3/' <<<"$out" |
    awk '{ w += $1; t += $2; c += $3 } END { print "\"wins\":" w ",\"ties\":" t ",\"cases\":" c "," }')
  # shellcheck disable=SC2086
  run equity AhAdKhKd JsTs9c8c,7h7d6h6d,QsQdJhJd,KdQsJh9s --game omaha $options --exact --json
  expect_code 0
  has "$asked" "$out" "$sums"
  has "$asked" "$out" '"range_hands":4,"range_left":'
done
run equity AhAdKhKd KsKcxx --game omaha --dead Ks --json
expect_code 0
has "$asked" "$out" '"opponent":"KsKcxx","board":[],"dead":["Ks"],"to":"river","players":2,"equity":null,'
has "$asked" "$out" '"cases":0,"range_hands":1225,"range_left":0,"method":"exact"'
run equity - --game omaha <<<'AhAdKhKd KsKcxx --board 2cKc3d'
has "a range that is left out" "$out" "AhAdKhKd KsKcxx --game omaha --board 2cKc3d no hand left"

# Before the flop a range is sampled unless it is compared on the flop or the turn, or counted.
for game in omaha omaha5; do
  hero=AhAdKhQd words=AsAcxx
  [[ $game == omaha5 ]] && hero+=Jc words+=x
  run equity $hero $words --game $game --exact --json
  expect_code 0
  exact=$(value equity)
  run equity $hero $words --game $game --json --seed 3
  has "$asked" "$out" '"cases":1000000,'
  has "$asked" "$out" '"method":"sampled",'
  same "a sampled range within five standard errors" 1 "$(awk -v a="$exact" -v b="$(value equity)" \
    -v e="$(value standard_error)" 'BEGIN { d = (a - b) / e; print d * d < 25 && e < 0.001 }')"
done
run equity AhAdKhKd AsAcKsKc,AsAcKsQd --game omaha --to flop
same "$asked" "$(without_time "$out")" "\
AhAdKhKd against AsAcKsKc,AsAcKsQd, Omaha, over all flops

               equity         wins alone               ties             losses
AhAdKhKd     51.527 %    1,502    5.67 %   24,293   91.71 %      693    2.62 %
range        48.473 %      693    2.62 %   24,293   91.71 %    1,502    5.67 %

26,488 cases of board and opponent's hand, exact, T.
2 of 2 hands of the range are left beside the known cards.
Boards to come that leave none of them, and are not counted: 3,149.
Equity is the share of the pot: a tie counts one half."
run equity - --game omaha <<<'AhAdKhKd AsAcKsKc,AsAcKsQd --to flop'
has "lines" "$out" "of 26488 cases of board and opponent's hand exact range_left 2 of 2 blocked_boards 3149"
run equity AhAdKhKd 10% --game omaha --board As7c2d
expect_code 0
has "$asked" "$out" "hands of the range are left beside the known cards."

# Samples that are all alike have no standard error.
run equity AhAdKhKd 10% --game omaha --trials 1 --json
has "$asked" "$out" '"standard_error":null,'
run equity AhAdKhKd random --game omaha --trials 1
has "$asked" "$out" "1 trial sampled with seed 1, "
has "a line" "$("$POKERMATH" equity - --game omaha --trials 1 <<<'AhAdKhKd random')" "of 1 trial sampled standard_error none"
[[ $out != *"standard error"* ]] || fail "$asked: a standard error of one trial"

# Ctrl-C leaves nothing of an exact count.
out=$(timeout --preserve-status -s INT 0.3 "$POKERMATH" equity AhKdQcJsTs random --exact \
  --game omaha5 2>&1)
same "exit code of a stopped count" $? 1
same "a stopped count" "$out" "pokermath: stopped before the count was finished: no answer"

# refuse PIECE ARGUMENT...: in Omaha with hands of four.
refuse() { refuses 2 "$1" equity "${@:2}" --game omaha; }
refuse "'AhKd' has 2 cards: a hand of omaha has 4" AhKd random
refuse "'AhKdQcJsTs' has 5 cards: a hand of omaha has 4" AhKdQcJsTs random
refuse "'7s7c' has 2 cards: a hand of omaha has 4" AhKdQcJs 7s7c
refuse "'Zh' is not a card" AhKdQcZh 7s7c8d8c
refuse "'7s7c8dZh' at position 7: expected a rank" AhKdQcJs 7s7c8dZh
refuse "'7s7c8d8c9h9d' has 6 cards: a hand of omaha has 4" AhKdQcJs 7s7c8d8c9h9d
refuse "an opponent is needed: an Omaha opponent is a hand, a range or the word random" AhKd QcJs
refuse "'AAxx' is a range, which is the only opponent: commas join its pieces" AhKdQcJs AAxx KKxx
refuse "'AAxx' is a range, which is the only opponent" AhKdQcJs 7s7c8d8c AAxx
refuses 2 "'AAxx' is a range: in Hi/Lo" equity AhKdQcJs AAxx --game omaha-hilo
refuse "--players goes with the opponent 'random' only: a range is" AhKdQcJs AAxx --players 2
refuse "--trials does not go with a range on a board" AhKdQcJs AAxx --board 2c3c4c --trials 5
refuse "--seed does not go with --to flop" AhKdQcJs AAxx --to flop --seed 5
refuse "--time-ms does not go with --exact" AhKdQcJs AAxx --exact --time-ms 5
refuse "'rand' is no hand: an Omaha opponent is" AhKdQcJs rand
refuse "'random:dx' at position 8: expected a suit shape" AhKdQcJs random:dx
refuse "'AcKcQcJcTc' at position 18: expected no more than four cards" AhKdQdJs AsKsQsJs,AcKcQcJcTc
refuse "'2c3c,4c' has 3 cards: a hand of omaha has 4" AhKdQcJs 2c3c,4c
refuse "'random' does not go with other opponents" AhKdQcJs 7s7c8d8c random
refuse "Ah is given twice" AhKdQcJs AhKc8d8c
refuse "7s is given twice" AhKdQcJs 7s7c8d8c --dead 7s
refuse "9c is given twice" AhKdQcJs random --board 9c8c7c --dead 9c
refuse "'2c3c' has 2 cards: an Omaha board has 3, 4 or 5" AhKdQcJs random --board 2c3c
refuse "4 cards: a board has up to 3 with --to flop" AhKdQcJs random --board 2c3c4c5c --to flop
refuse "--to goes with a range or 'random': hands against each other" AhKdQcJs 7s7c8d8c --to turn
refuse "--to goes with exact answers only" AhKdQcJs random --to turn
refuse "--exact goes with one random hand, not with the 2 of --players 3" AhKdQcJs random --players 3 --exact
refuse "--trials does not go with --exact" AhKdQcJs random --exact --trials 5
refuse "--time-ms does not go with 'random' on a board" AhKdQcJs random --board 2c3c4c --time-ms 5
refuse "--players goes with the opponent 'random' only: hands are exact" AhKdQcJs 7s7c8d8c --players 2
refuse "--seed goes with the opponent 'random' only: hands are exact" AhKdQcJs 7s7c8d8c --seed 2
refuse "--by-class goes with holdem and shortdeck only" AhKdQcJs random --by-class
refuse "--svg goes with holdem and shortdeck only" AhKdQcJs random --svg "$work/x.svg"
deck=({2,3,4,5,6,7,8,9,T,J,Q,K,A}{c,d,h,s})
refuse "12 hands are too many: up to 11 can be compared" "${deck[@]:0:48}"
refuses 2 "10 hands of 5 and a board of 5 need 55 cards: the deck has 52" \
  equity AhKdQcJsTs random --players 10 --game omaha5
refuse "11 hands of 4 and a board of 5 beside 4 dead need 53 cards: the deck has 52" \
  "${deck[@]:0:44}" --dead AcAdAhAs
run equity "${deck[@]:0:44}" --dead AcAdAh --game omaha
expect_code 0
has "all cards but one board" "$out" "
1 board, exact, "

finish
