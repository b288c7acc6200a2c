#!/usr/bin/env bash
# pokermath equity --game omaha: golden figures, the forms of an answer, sampling, bad questions.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

without_time() { sed -E 's/("elapsed_ms":)[0-9.e-]+/\1T/; s/, [0-9.]+ m?s\.$/, T./' <<<"$1"; }
# value KEY [PLACE]: the value of a key in $out, where it stands for that time.
value() { grep -oE "\"$1\":[^],}]*" <<<"$out" | sed -n "${2:-1}s/[^:]*://p"; }
# near WHAT VALUE EXPECTED STANDARD_ERROR
near() {
  awk -v a="$2" -v b="$3" -v e="$4" 'BEGIN { exit !(e > 0 && (a - b)^2 < (4.5 * e)^2) }' ||
    fail "$1: $2 +- $4 instead of $3"
}

# golden FILE PROGRAM: the awk program makes of every line a question, a tab, and the first player's
# part of its answer.
golden() {
  tail -n +2 "$POKERMATH_TEST_DATA/$1" | awk -F, "
    function words(board, dead) {
      return \" --game omaha\" (\$1 == 5 ? 5 : \"\") (board ? \" --board \" board : \"\") \\
        (dead ? \" --dead \" dead : \"\") }
    function counts(equity, wins, ties, cases) {
      return sprintf(\" equity %.6f wins %d ties %d of %d cases exact\", equity, wins, ties, cases) }
    $2" >"$work/golden"
  run equity - --exact < <(cut -f 1 "$work/golden")
  expect_code 0
  same "$1" "$(sed -E 's/(equity|wins|ties) ([0-9.]+)( [0-9.]+)*/\1 \2/g' <<<"$out")" \
    "$(tr -d '\t' <"$work/golden")"
}
golden omaha_hand_vs_hand.csv '
  { print $2, $3 words($4) "\t" counts(($6 + $7 / 2) / $5, $6, $7, $5) }'
golden omaha_multiway.csv '
  { for (k = ties = share = 0; k <= 5; ++k) { share += $(6 + k) / (k + 1); if (k) ties += $(6 + k) }
    print $2 words($4, $3) "\t" counts(share / $5, $6, ties, $5) }'
golden omaha_vs_random.csv '
  { print $2, "random" words($3) ($4 ~ /only/ ? " --to " substr($4, 1, 4) : "") \
    "\t" counts(($6 + $7 / 2) / $5, $6, $7, $5) }'

# Hi/Lo: golden shares of the first hand.
tail -n +2 "$POKERMATH_TEST_DATA/omaha_hilo_multiway.csv" | awk -F, '
  { print $2, "--game omaha" ($1 == 5 ? 5 : "") "-hilo" ($4 ? " --board " $4 : "") ($3 ? " --dead " $3 : "") >"'"$work/asked"'"
    printf "%.6f\n", $6 / $5 }' >"$work/golden"
run equity - <"$work/asked"
expect_code 0
same "omaha_hilo_multiway.csv" "$(sed -E 's/.* equity ([0-9.]+) .*/\1/' <<<"$out")" "$(<"$work/golden")"
run equity Ah2h3c4d random --game omaha-hilo --board 3s9dKc
same "$asked" "$(without_time "$out" | tail -n +3)" "\
             hands     equity   from lows              whole pot             part of it                nothing
Ah2h3c4d         1   44.098 %    11.793 %   44,543,185   36.46 %   18,372,649   15.04 %   59,260,066   48.50 %
random     148,995   55.902 %     1.062 %   59,260,066   48.50 %   18,372,649   15.04 %   44,543,185   36.46 %

122,175,900 cases of board and hands, counted exactly (counting takes less than a second), T.
Equity is the share of the pot; where somebody has a low, half of it is the low's."
run equity Ah2h3c4d random --game omaha-hilo --to turn --exact --json
exact=$(value equity)
low=$(value low)
run equity Ah2h3c4d random --game omaha-hilo --to turn --sampled --standard-error 0.1% --json
near "sampled Hi/Lo" "$(value equity)" "$exact" "$(value standard_error)"
near "its lows" "$(value low)" "$low" "$(value standard_error)"

# Every hand has a row of its own; the shares are those of one pot.
run equity Ah Ad 2c 3c AsAc2d3d KhKd Qh Qd --dead 4h5h --game omaha
expect_code 0
same "$asked" "$(without_time "$out")" "\
AhAd2c3c against AsAc2d3d and KhKdQhQd, Omaha, before the flop to the river, 4h5h dead

             equity          wins alone      shares the pot              losses
AhAd2c3c   28.407 %    38,057    7.58 %   209,057   41.65 %   254,828   50.77 %
AsAc2d3d   20.943 %       595    0.12 %   209,057   41.65 %   292,290   58.23 %
KhKdQhQd   50.650 %   254,233   50.65 %         0    0.00 %   247,709   49.35 %

501,942 cases of board and hands, counted exactly (counting takes less than a second), T.
Equity is the share of the pot: a pot shared by k players counts 1/k."
run equity AhKhQhJh AsKsQsJs AdKdQdJd --game omaha --json
same "$asked" "$(without_time "$out" | sed -E 's/(0\.[0-9]{6})[0-9]*/\1/g')" \
  '{"schema":2,"game":"omaha","board":[],"dead":[],"to":"river","method":"exact",'\
'"reason":"counting takes less than a second","cases":658008,"players":['\
'{"range":"AhKhQhJh","hands":1,"equity":0.333333,"wins":43092,"ties":528732,"shared":[43092,0,528732]},'\
'{"range":"AsKsQsJs","hands":1,"equity":0.333333,"wins":43092,"ties":528732,"shared":[43092,0,528732]},'\
'{"range":"AdKdQdJd","hands":1,"equity":0.333333,"wins":43092,"ties":528732,"shared":[43092,0,528732]}],'\
'"elapsed_ms":T}'
run equity - --game omaha5 --json <<<$'Ah2h3c4dKd As2s5d6dQc --dead 7c\nAhKd QcJs\n\nAhKdQcJsTs random --trials 5 --sampled'
expect_code 1
same "lines" "$(sed -E 's/"reason.*/.../' <<<"$out")" \
  '{"schema":2,"game":"omaha5","board":[],"dead":["7c"],"to":"river","method":"exact",...
{"schema":2,"line":2,"error":"'"'AhKd' has 2 cards: a hand of omaha5 has 5"'","field":"players/0"}
{"schema":2,"game":"omaha5","board":[],"dead":[],"to":"river","method":"sampled",...'

# Against a random hand, with cards dead; to the flop.
run equity AhAdKhKd random --game omaha --exact --json
expect_code 0
has "$asked" "$out" '"wins":148999832330,"ties":707700224,'
has "$asked" "$out" '"cases":211315436640,'
run equity AhAdKhKd random --game omaha --exact --to flop --json
has "$asked" "$out" '"equity":0.838'
run equity AhAdKhKd random --dead 2cAsAcKsKc --game omaha --exact --json
exact=$(value equity)
run equity AhAdKhKd random --dead 2cAsAcKsKc --game omaha --sampled --json
near "$asked" "$(value equity)" "$exact" "$(value standard_error)"

# Many random hands, some cards dead.
run equity 2c2dJhQd random random random random random random random --board AsKsQsJs9s \
  --dead TsTcTdTh --game omaha --json --trials 2000
expect_code 0
has "$asked" "$out" '"dead":["Ts","Tc","Td","Th"],"to":"river","method":"sampled"'
same "$asked" "$(value trials) $(value hands 8)" "2000 82251"
run equity AhKdQcJsTs random random --time-ms 30 --game omaha5
expect_code 0
has "$asked" "$out" "against 2 random hands, five-card Omaha, before the flop"
has "$asked" "$out" "So many deals were possible in 30 ms."

# A range is all of its hands; those that share a known card are left out.
hands=(JsTs9c8c 7h7d6h6d QsQdJhJd)
for options in "" "--board 2c3d4h" "--board 2c3d4h5s --dead 9h" "--board AsKs7c8h9d"; do
  # shellcheck disable=SC2086
  run equity - --game omaha $options < <(printf 'AhAdKhKd %s\n' "${hands[@]}")
  sums=$(sed -E '/^error/d; s/.* wins ([0-9]+) .* ties ([0-9]+) .* of ([0-9]+) .*/\1 \2 \3/' <<<"$out" |
    awk '{ w += $1; t += $2; c += $3 } END { print w, t, c }')
  # shellcheck disable=SC2086
  run equity AhAdKhKd JsTs9c8c,7h7d6h6d,QsQdJhJd,KdQsJh9s --game omaha $options --exact --json
  expect_code 0
  same "$asked" "$(value wins) $(value ties) $(value cases)" "$sums"
done
refuses 2 "player 2, 'KsKcxx': no combination of the range is left" \
  equity AhAdKhKd KsKcxx --game omaha --dead Ks
run equity AhAdKhKd AsAcKsKc,AsAcKsQd --game omaha --to flop
same "$asked" "$(without_time "$out")" "\
AhAdKhKd against AsAcKsKc,AsAcKsQd, Omaha, over all flops

                    hands     equity        wins alone               ties            losses
AhAdKhKd                1   51.527 %   1,502    5.67 %   24,293   91.71 %     693    2.62 %
AsAcKsKc,AsAcKsQd       2   48.473 %     693    2.62 %   24,293   91.71 %   1,502    5.67 %

26,488 cases of board and hands, counted exactly (counting takes less than a second), T.
Equity is the share of the pot: a tie counts one half."
# Ranges may be sampled, in any game, and there may be any number of them.
for words in 'AhAdKhQd AsAcxx --game omaha' 'AsAc2dx,AA33 KdKcxx --game omaha-hilo --board 2c7h8s'; do
  # shellcheck disable=SC2086
  run equity $words --exact --json
  expect_code 0
  exact=$(value equity)
  # shellcheck disable=SC2086
  run equity $words --sampled --seed 3 --json
  near "$asked" "$(value equity)" "$exact" "$(value standard_error)"
done
run equity 10% AAxx KKxx random --game omaha --trials 3000 --json
expect_code 0
same "shares add up" "$(awk -v a="$(value equity 1)" -v b="$(value equity 2)" -v c="$(value equity 3)" \
  -v d="$(value equity 4)" 'BEGIN { printf "%.6f", a + b + c + d }')" 1.000000

# Six cards: hands, a range and any hand, counted and sampled.
run equity AhAdKhKdQcJs JcTc9d8d7s6s --game omaha6 --exact --json
expect_code 0
same "$asked" "$(value cases)" 658008
for words in 'AAKKQJ random --board 2c7dTh4s5s' 'AhAdKhKdQcJs random --board 2c7dTh4s5s' \
  'AhAdKhKdQcJs AAxxxx:ts@50,KKQQJx --board 2c7dTh4s'; do
  for game in omaha6 omaha6-hilo; do
    # shellcheck disable=SC2086
    run equity $words --game $game --sampled --standard-error 0.1% --seed 3 --json
    expect_code 0
    sampled=$(value equity) error=$(value standard_error)
    [[ $words == AAKK* ]] && continue
    # shellcheck disable=SC2086
    run equity $words --game $game --exact --json
    expect_code 0
    near "$asked" "$sampled" "$(value equity)" "$error"
  done
done
refuses 2 "'15%' at position 1: expected six cards" equity random 15% --game omaha6

# Ctrl-C leaves no number of an exact count.
out=$(timeout --preserve-status -s INT 0.3 "$POKERMATH" equity AhKdQcJsTs random --exact \
  --game omaha5 2>&1)
same "exit code of a stopped count" $? 1
has "a stopped count" "$out" "pokermath: stopped after"
has "a stopped count" "$out" "steps: no exact answer"

# refuse PIECE ARGUMENT...: in Omaha with hands of four.
refuse() { refuses 2 "$1" equity "${@:2}" --game omaha; }
refuse "'AhKd' has 2 cards: a hand of omaha has 4" AhKd random
refuse "'AhKdQcJsTs' has 5 cards: a hand of omaha has 4" AhKdQcJsTs random
refuse "'7s7c' has 2 cards: a hand of omaha has 4" AhKdQcJs 7s7c
refuse "'7s7c8dZh' at position 7: expected a rank" AhKdQcJs 7s7c8dZh
refuse "'7s7c8d8c9h9d' has 6 cards: a hand of omaha has 4" AhKdQcJs 7s7c8d8c9h9d
refuse "1 player: expected 2 to 10" AhKd QcJs
refuse "'rand': a player is a hand, a range or the word random" AhKdQcJs rand
refuse "'random:dx' at position 8: expected a suit shape" AhKdQcJs random:dx
refuse "'AcKcQcJcTc' at position 18: expected no more than four cards" AhKdQdJs AsKsQsJs,AcKcQcJcTc
refuse "'2c3c,4c' has 3 cards: a hand of omaha has 4" AhKdQcJs 2c3c,4c
refuse "player 2, 'AhKc8d8c': Ah is in the hand of player 1 already" AhKdQcJs AhKc8d8c
refuse "player 2, '7s7c8d8c': 7s is a dead card" AhKdQcJs 7s7c8d8c --dead 7s
refuse "9c is on the board and dead" AhKdQcJs random --board 9c8c7c --dead 9c
refuse "'3c' stands behind --dead 2c: dead cards are one word" AhAdKhKd JsTs9c8c --dead 2c 3c 4c
refuses 2 "55 cards are needed for 10 players and the board, but the deck has 52 left" \
  equity AhKdQcJsTs random random random random random random random random random --game omaha5

finish
