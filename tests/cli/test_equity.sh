#!/usr/bin/env bash
# pokermath equity: golden figures, the forms of an answer, sampling, bad questions.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

# The time an answer took is the one thing that may differ.
without_time() { sed -E 's/("elapsed_ms":)[0-9.e-]+/\1T/; s/, [0-9.]+ m?s\.$/, T./' <<<"$1"; }
# value KEY [PLACE]: the value of a key in $out, where it stands for that time.
value() { grep -oE "\"$1\":[^],}]*" <<<"$out" | sed -n "${2:-1}s/[^:]*://p"; }
# near WHAT VALUE EXPECTED STANDARD_ERROR
near() {
  awk -v a="$2" -v b="$3" -v e="$4" 'BEGIN { exit !(e > 0 && (a - b)^2 < (4.5 * e)^2) }' ||
    fail "$1: $2 +- $4 instead of $3"
}

# golden FILE WORDS: every line of the file as a question with these words, against its counts.
golden() {
  tail -n +2 "$POKERMATH_TEST_DATA/$1" >"$work/golden"
  run equity - < <(awk -F, -v words="$2" '{ print $1, $2, words }' "$work/golden")
  expect_code 0
  same "$1" "$(sed -E 's/ equity [0-9.]+ [0-9.]+//' <<<"$out")" \
    "$(awk -F, -v words="$2" '{
      print $1, $2 words, "wins", $4, $6, "ties", $5, $5, "of", $3, "cases exact" }' "$work/golden")"
}
golden holdem_hand_vs_hand.csv ""
golden holdem_hand_vs_hand_turn.csv " --to turn"
golden shortdeck_hand_vs_hand.csv " --game shortdeck"
tail -n +2 "$POKERMATH_TEST_DATA/shortdeck_vs_random.csv" >"$work/golden"
run equity - --game shortdeck --exact < <(awk -F, '{ print $1, "random" }' "$work/golden")
same "shortdeck_vs_random.csv" "$(sed -E 's/ (--game|equity) [^w]*/ /; s/(wins|ties) ([0-9]+) [0-9]+/\1 \2/g' <<<"$out")" \
  "$(awk -F, '{ print $1, "random wins", $3, "ties", $4, "of", $2, "cases exact" }' "$work/golden")"

run equity AhKd QcJs
expect_code 0
same "$asked" "$(without_time "$out")" "\
AhKd against QcJs, Texas Hold'em, before the flop to the river

         equity            wins alone              ties                losses
AhKd   64.296 %   1,097,621   64.10 %   6,652    0.39 %     608,031   35.51 %
QcJs   35.704 %     608,031   35.51 %   6,652    0.39 %   1,097,621   64.10 %

1,712,304 cases of board and hands, counted exactly (counting takes less than a second), T.
Equity is the share of the pot: a tie counts one half."

run equity AhKd QcJs --to turn --json
expect_code 0
same "$asked" "$(without_time "$out")" \
  '{"schema":2,"game":"holdem","board":[],"dead":[],"to":"turn","method":"exact",'\
'"reason":"counting takes less than a second","cases":194580,"players":['\
'{"range":"AhKd","hands":1,"equity":0.6884417720217906,"wins":133957,"ties":0,"shared":[133957,0]},'\
'{"range":"QcJs","hands":1,"equity":0.3115582279782095,"wins":60623,"ties":0,"shared":[60623,0]}],'\
'"elapsed_ms":T}'

# A board that plays, and the last card of one.
run equity 2c3d 4h5s random --board AhKhQhJhTh --json
has "$asked" "$out" '"board":["Ah","Kh","Qh","Jh","Th"],"dead":[],"to":"river","method":"exact"'
same "$asked" "$(value equity)" 0.3333333333333333
has "$asked" "$out" '"wins":0,"ties":903,"shared":[0,0,903]}'
run equity AhAd KhKd --board 2c3d4h5s
has "$asked" "$out" "on the turn 2c3d4h5s to the river"
has "$asked" "$out" "
44 cases of board"

# A range is the sum of its holdings; these two are the same up to the suits. Every player may be
# one, and what cards elsewhere block is left out.
run equity AhKd QcJs,QsJc --json
expect_code 0
has "$asked" "$out" '"range":"QcJs,QsJc","hands":2,'
has "$asked" "$out" '"wins":2195242,"ties":13304,'
has "$asked" "$out" '"cases":3424608,'
run equity AA 'QQ+ AK' 2c2d --board Ah3d4h --to turn
expect_code 0
has "$asked" "$out" "AA against QQ+,AK and 2c2d, Texas Hold'em, on the flop Ah3d4h to the turn

         hands "
for row in "AA           3 " "QQ+,AK      27 " "2c2d         1 "; do has "$asked" "$out" "$row"; done
has "$asked" "$out" "cases of board and hands, counted exactly"
has "$asked" "$out" "a pot shared by k players counts 1/k."
run equity AhAs QQ@1,22 --json
same "weights" "$(value equity | cut -c1-8) $(value hands 2)" "0.822101 12"
run equity AA:0.5,KK QQ --board 2c7dTh
has "$asked" "$out" "A case counts as often as its hands weigh."
has "$asked" "$out" "53,460.00 cases"
run equity AA:0.5,AhAd QQ
expect_code 0
has "a warning" "$err" "pokermath: warning: "
run equity random random --exact --json
same "random against random" "$(value equity) $(value hands 2)" "0.5 1326"
run equity AhKd QcJs --folded 7c7d --folded KcKh,KcKs --to turn --exact --json
has "$asked" "$out" '"folded":["7c7d","KcKh,KcKs"],'
expect_code 0
refuses 2 "folded player 1: Ah is in the hand of player 1 already" equity AhKd QcJs --folded AhAd
run equity AhKd QcJs --dead 2c2d --game shortdeck-straights --json
expect_code 2
has "$asked" "$err" "2c is not in the short deck"

# What would take long is sampled, to a standard error of 0.05 % or to other limits.
sampled() {
  run equity "$@" --json
  expect_code 0
  has "$asked" "$out" '"method":"sampled"'
}
sampled AhKd random random random --board 2c3d4h --trials 20000 --seed 7
same "keys" "$(grep -oE '"[a-z_]+":' <<<"$out" | sort -u | tr -d '":' | tr '\n' ' ')" \
  "board dead elapsed_ms equity game hands method players range reason schema shared standard_error ties to trials wins "
same "trials" "$(value trials)" 20000
first=$(without_time "$out")
for threads in 1 2 7; do
  sampled AhKd random random random --board 2c3d4h --trials 20000 --seed 7 --threads $threads
  same "the same seed" "$(without_time "$out")" "$first"
done
sampled AhKd random random random --board 2c3d4h --trials 20000 --seed 8
[[ $(value wins) != "$(out=$first value wins)" ]] || fail "another seed, the same wins"
sampled AhKd QcJs --sampled
near "$asked" "$(value equity)" 0.642962 "$(value standard_error)"
awk -v e="$(value standard_error)" 'BEGIN { exit !(e > 0.0004 && e <= 0.0005) }' || fail "$out"
few=$(value trials)
sampled AhKd QcJs --sampled --standard-error 0.1%
awk -v e="$(value standard_error)" 'BEGIN { exit !(e > 0.0008 && e <= 0.001) }' || fail "$out"
(($(value trials) * 3 < few)) || fail "$asked: $(value trials) trials, $few for half the error"
run equity AhKd 15% random random --trials 5000
has "$asked" "$out" "AhKd against 15% and 2 random hands, Texas Hold'em, before the flop to the river"
has "$asked" "$out" "standard error        wins alone   shares the pot "
has "$asked" "$out" "
5,000 random deals with seed 1, sampled (counting would take longer than a second), "
# Trials that are all alike have the standard error of one more that is not.
sampled 2c3d 4c5d 6c7d --board AhKhQhJhTh --trials 1000 --sampled
has "$asked" "$out" '"wins":0,"ties":1000,"shared":[0,0,1000],"standard_error":0.000999'

# The time ends what has no end; trials end what has time.
sampled AhKd random random --time-ms 60
awk -v ms="$(value elapsed_ms)" 'BEGIN { exit !(ms >= 60 && ms < 10000) }' || fail "$asked: $out"
has "its page" "$("$POKERMATH" equity AhKd 22 random --time-ms 5)" "So many deals were possible in 5 ms."
sampled AhKd random random --time-ms 86400000 --trials 1500
same "$asked" "$(value trials)" 1500

# A question on a line is one on the command line; options beside '-' are for every line.
run equity - --sampled --trials 500 <<'END'
# comment
AhKd random random

AhKd 7s7c --exact
Ah Kd 7s 7c --folded 22 --seed=3
AhKd random --board
AhKd random --to turn --to flop
AhKd 7s 7c 8d
--board 2c 3d 4h AhKd 7s7c
--board 2c3d4h
AhKd random --json
AhKd random --players 3
AhKd Qd7c
AhKd 7s7c --board 2c3d4h --trials 1000
END
expect_code 1
same "lines" "$(sed -E 's/ equity .* of / of /; s/ sampled .*//' <<<"$out")" "\
AhKd random random of 500 trials
AhKd 7s7c of 1712304 cases exact
AhKd 7s7c --folded 22 of 500 trials
error: --board needs a value
error: --to is given twice
error: '8d' has 1 card: a hand of holdem has 2
error: '3d' stands behind --board 2c: a board is one word, like 2c3d4h, and hands stand before --board or are one word
error: players are needed, like AhKd 7s7c
error: '--json' is not an option of a question: --game, --board, --dead, --to, --standard-error, --trials, --time-ms, --seed, --folded, --exact, --sampled
error: --players is no option: write 'random' once for each opponent
AhKd Qd7c of 500 trials
AhKd 7s7c --board 2c3d4h of 1000 trials"
has "errors" "$err" "pokermath: line 6: --board needs"
run equity - --json <<<$'AhKd 7s7c --to turn\nAhKd 10c\nAhKd Ah7c'
expect_code 1
same "lines as JSON" "$(sed -E 's/"game".*/.../' <<<"$out")" \
  '{"schema":2,...
{"schema":2,"line":2,"error":"'"'10c' has 1 card: a hand of holdem has 2"'","field":"players/1"}
{"schema":2,"line":3,"error":"'"player 2, 'Ah7c': Ah is in the hand of player 1 already"'","field":"players/1"}'

# A line may be an object, whose id comes back; cards are texts or lists.
run equity - --seed 4 <<'END'
{"id":"a","players":["AhKd",["Qc","Js"]],"to":"turn"}
 {"players":["AhKd","Q♣Js"],"board":["2c","3d","4h"],"dead":[],"folded":["7c7d",["8c","8d"]],"method":"exact"}
AhKd QcJs --to turn
{"id":7,"game":"omaha","players":["AhAdKhKd","random"],"method":"sampled","trials":300,"seed":1,"time_ms":5000}
{"id":8,"players":["AhKd","random"],"standard_error":0.002,"method":"sampled"}
{"id":[9],"players":["AhKd","Ah7c"]}
{"id":10,"players":"AhKd"}
{"players":["AhKd","QcJs"],"boards":"2c3d4h"}
{"players":["AhKd","QcJs"],"trials":0.5}
{"players":["AhKd",
{"id":1e400}
[]
END
expect_code 1
same "objects" "$(sed -E 's/"players":\[.*"elapsed.*/.../; s/(trials":1[0-9])[0-9]*/\1.../' <<<"$out")" "\
{\"schema\":2,\"id\":\"a\",\"game\":\"holdem\",\"board\":[],\"dead\":[],\"to\":\"turn\",\"method\":\"exact\",\"reason\":\"counting takes less than a second\",\"cases\":194580,...
{\"schema\":2,\"game\":\"holdem\",\"board\":[\"2c\",\"3d\",\"4h\"],\"dead\":[],\"to\":\"river\",\"method\":\"exact\",\"reason\":\"as asked for\",\"folded\":[\"7c7d\",\"8c8d\"],\"cases\":820,...
AhKd QcJs --to turn equity 0.688442 0.311558 wins 133957 60623 ties 0 0 of 194580 cases exact
{\"schema\":2,\"id\":7,\"game\":\"omaha\",\"board\":[],\"dead\":[],\"to\":\"river\",\"method\":\"sampled\",\"reason\":\"as asked for\",\"trials\":300,...
{\"schema\":2,\"id\":8,\"game\":\"holdem\",\"board\":[],\"dead\":[],\"to\":\"river\",\"method\":\"sampled\",\"reason\":\"as asked for\",\"trials\":65536,...
{\"schema\":2,\"id\":[9],\"line\":6,\"error\":\"player 2, 'Ah7c': Ah is in the hand of player 1 already\",\"field\":\"players/1\"}
{\"schema\":2,\"id\":10,\"line\":7,\"error\":\"the value of 'players' is '\\\"AhKd\\\"': expected a list with a text or a list of cards for each\",\"field\":\"players\"}
{\"schema\":2,\"line\":8,\"error\":\"'boards' is not a key of a question: id, game, players, folded, board, dead, to, method, standard_error, trials, time_ms, seed, detail\",\"field\":\"boards\"}
{\"schema\":2,\"line\":9,\"error\":\"trials '0.5' is not accepted: a whole number from 1 to 1000000000000\",\"field\":\"trials\"}
{\"schema\":2,\"line\":10,\"error\":\"'{\\\"players\\\":[\\\"AhKd\\\",' is no JSON object at byte 20\"}
{\"schema\":2,\"line\":11,\"error\":\"'{\\\"id\\\":1e400}' has a number that is too large\"}
error: '[]' at position 2: expected a weight in percent, like 50 or 12.5"
# Any number of threads answer in the order of the lines.
for ((i = 0; i < 700; ++i)); do
  echo "{\"id\":$i,\"players\":[\"AhKd\",\"$((i % 8 + 2))s$((i % 7 + 2))c\"],\"method\":\"exact\"}"
done >"$work/many"
run equity - --threads 5 <"$work/many"
expect_code 0
many=$(sed -E 's/,"elapsed.*//' <<<"$out")
same "order" "$(grep -oE '"id":[0-9]+' <<<"$out" | cut -d: -f2)" "$(seq 0 699)"
run equity - --threads 1 <"$work/many"
same "one thread" "$(sed -E 's/,"elapsed.*//' <<<"$out")" "$many"

# By hand, by class, by what comes next and what is made: parts that add up to the whole.
run equity AhKd,7s7c TT+:0.5,AK --board 2c7dTh --exact --json
whole="$(value cases) $(value wins 1) $(value wins 2)"
for by in hand class next made; do
  run equity AhKd,7s7c TT+:0.5,AK --board 2c7dTh --by $by --csv "$work/rows" --exact --json
  expect_code 0
  # The range between its quotes has commas.
  sed -E 's/"[^"]*"/range/' "$work/rows" | awk -F, -v by=$by -v whole="$whole" '
    NR == 1 { if ($0 !~ /^player,range,.*,cases,equity,wins,ties$/) exit bad = 1; next }
    { cases[$1] += $(NF - 3); wins[$1] += $(NF - 1) }
    END { split(whole, w, " ")
      times = by == "next" ? 2 : 1   # either card to come may be the next one
      exit bad || (cases[1] - times * w[1])^2 > 1 || (cases[2] - times * w[1])^2 > 1 ||
        (wins[1] - times * w[2])^2 > 1 || (wins[2] - times * w[3])^2 > 1 }' ||
    fail "$asked: $out, $(<"$work/rows")"
done
run equity AhKd QcQd,QQ@50 --board 2c7dTh --by hand
has "$asked" "$out" $'\nplayer 2, QcQd,QQ@50\nhand              weight      equity    wins alone      ties    losses\n'
has "$asked" "$out" $'\nQhQc                 0.5 '
run equity AhKd 15% --board 2c7dTh --by class
has "$asked" "$out" $'\n\nplayer 2, 15%: equity in % of every class, suited above the diagonal\n      A     K '
has "$asked" "$out" $'\nA  98.1  51.1'
[[ $out != *"player 1, AhKd"* ]] || fail "$asked: a matrix of one hand"
run equity AhKd QQ --board 2c7dTh --by next
has "$asked" "$out" $'\nplayer 1, AhKd: equity in % with each card that comes next\n      A     K '
has "$asked" "$out" $'\nh     .  95.5'
run equity AhKd QcQd --by next --exact --to flop
same "flops" "$(awk 'length($1) == 6 && $2 ~ /^[0-9]+$/ { n += $2; ++k } END { print n, k }' <<<"$out")" "17296 1754"
# Names of what is made follow the order of strength, which short decks have their own of.
run equity AhKd 7s7c --board QsJdTc6h7d --game shortdeck --by made --csv -
same "$asked" "$out" "\
player,range,made,cases,equity,wins,ties
1,AhKd,straight,1,0.0,0,0
2,7s7c,three of a kind,1,1.0,1,0"
run equity AsKs 7h7c --board QsJs7s6h6d --game shortdeck-straights --by made --csv -
has "$asked" "$out" "1,AsKs,flush,1,1.0,1,0
2,7h7c,full house,1,0.0,0,0"
run equity AhKd QQ --by hand --csv - --board 2c7dTh
has "$asked" "$out" "player,range,hand,weight,cases,equity,wins,ties
1,AhKd,AhKd,1,5940,"
run equity - <<<'{"players":["AhKd","AA"],"board":"2c7dTh9s","detail":["class","made"]}'
has "$asked" "$out" '"classes":[{"class":"AA","hands":3,"cases":132,"equity":'
has "$asked" "$out" '"made":[{"category":"high card","cases":'
# Pictures: a heat map for each player, a deck for each, or a curve for each.
run equity AhKd 15% --board 2c7dTh --by class --svg "$work/heat.svg" --json
expect_code 0
same "boxes" "$(grep -c '<rect .*</text>' "$work/heat.svg")" 338
same "equities" "$(grep -o '</text><text [^>]*>[0-9.]*</text>' "$work/heat.svg" | wc -l)" \
  $((1 + $(grep -o '"class":' <<<"$out" | wc -l) - 1))
has "title" "$(<"$work/heat.svg")" "<title>15% on the flop 2c7dTh to the river: 45.75 %</title>"
run equity AhKd 15% 20% --board 2c7dTh9s --by next --svg -
expect_code 0
[[ $out == '<svg '*'</svg>' ]] || fail "$asked: $out"
same "cards" "$(grep -o '>[2-9TJQKA][cdhs]</text><text' <<<"$out" | wc -l)" $((3 * 46))
run equity 15% 'random!AA' QQ --board 2c7dTh --by hand --svg "$work/curves.svg" --trials 20000
same "curves" "$(grep -c '<polyline .*stroke' "$work/curves.svg")" 3
same "pictures that end" "$(grep -oh '</svg>' "$work"/{heat,curves}.svg | wc -l)" \
  "$(grep -oh '<svg ' "$work"/{heat,curves}.svg | wc -l)"
# Omaha's classes are what `range` calls hands; with lows their share is told of every row.
run equity AhAdKhKd QQxx:ds,9xx8:r --game omaha-hilo --board AsKs7c2d --by class --csv "$work/rows" --json --exact
expect_code 0
names=$("$POKERMATH" range --game omaha QQxx:ds,9xx8:r --dead AhAdKhKdAsKs7c2d --json)
same "types" "$(sed -nE 's/^2,[^"]*"[^"]*","([^,]*), .*/\1/p' "$work/rows" | sort -u)" \
  "$(sed -E 's/.*"types":\{([^}]*)\}.*/\1/; s/:[0-9]+//g; s/,/\n/g; s/"//g' <<<"$names" | sort)"
same "hands of classes" "$(grep -c '^2,' "$work/rows") $(value hands 3)" \
  "$(grep -o '"class":' <<<"$out" | wc -l | awk '{ print $1 - 1 }') $(sed -E 's/.*"hands":([0-9]+).*/\1/' <<<"$names")"
has "low" "$(head -1 "$work/rows")" ",class,hands,cases,equity,wins,ties,low"
sed -E 's/"[^"]*"/name/g' "$work/rows" | awk -F, -v low="$(value low 3)" '
  $1 == 2 { cases += $5; of_low += $5 * $9 } END { exit (of_low / cases - low)^2 > 1e-12 }' ||
  fail "$asked: $(<"$work/rows")"
run equity AhAdKhKd QQxx:ds,9xx8:r --game omaha-hilo --board AsKs7c2d --by class --svg "$work/types.svg"
has "$asked" "$out" $'\nplayer 2, QQxx:ds,9xx8:r\nclass  '
has "$asked" "$out" "equity   from lows     whole pot  part of it   nothing"
same "boxes" "$(grep -o '<rect x=[^>]*/><text [^>]*>[0-9]' "$work/types.svg" | wc -l)" \
  "$(sed 1d "$work/rows" | wc -l)"
# What takes little is counted: a hand and a range before the flop, every hand of both; what comes
# next for hands; what ranges make on a turn.
for words in 'AhAdKhKd AAxx --by hand' 'AhAdKhKd2c AAxxx --game omaha5-hilo' \
  'AhAdKhKd JsTs9c8c --by hand --game omaha-hilo' 'AhAdKhKd JsTs9c8c --by next --to turn' \
  'AAxx:ds QQxx:ds --board AsKs7c2d --by made'; do
  [[ $words == *--game* ]] || words+=' --game omaha'
  # shellcheck disable=SC2086
  run equity $words --json
  has "$asked" "$out" '"method":"exact","reason":"counting takes less than a second"'
done
refuses 2 "--svg draws --by hand, --by class, and --by next where one card" equity AhKd QQ --by made --svg x
refuses 2 "--svg draws" equity AhKd QQ --by next --svg x
refuses 2 "--svg needs --by" equity AhKd QQ --svg x
refuses 2 "--csv - and --svg - do not go together" equity AhKd QQ --by hand --csv - --svg -
refuses 2 "--by 'suit' is not known: hand, class, next or made" equity AhKd QQ --by suit
refuses 2 "nothing comes next on a board of 5 cards" equity AhKd QQ --board 2c7dTh9s8s --by next
refuses 2 "--csv needs --by" equity AhKd QQ --csv x
refuses 2 "--by is for one question" equity - --by hand
refuses 2 "--csv - and --json do not go together" equity AhKd QQ --by hand --csv - --json
refuses 1 "cannot write '$work/none/x.csv'" equity AhKd QQ --by hand --csv "$work/none/x.csv" --board 2c3d4h

# Cards of a hand may be apart, whatever stands between them.
for words in 'Ah Kd 7s 7c --board 2c3d4h' '--board 2c3d4h AhKd 7s 7c' 'Ah --board 2c3d4h --exact Kd 7s 7c'; do
  # shellcheck disable=SC2086
  run equity $words
  has "$asked" "$out" "AhKd against 7s7c, Texas Hold'em, on the flop 2c3d4h to the river"
done
run equity Ah Kd 10s 7c --board "2c,3d 4h"
expect_code 0
has "cards in separate words" "$out" "AhKd against Ts7c"
for words in '--board 2c 3d 4h AhKd 7s7c' '--board 2c 3d 4h 7s7c' 'AhKd --board 2c 3d 4h' \
  '--board=2c3d 4h AhKd 7s7c' 'AhKd --to turn --board 2c 3d 7s7c' '--board 2c 3d4h AhKd 7s7c' \
  'AhKd 7s7c --board 2c3d 4h5s'; do
  # shellcheck disable=SC2086
  refuses 2 ": a board is one word, like 2c3d4h, and hands" equity $words
done

# Ctrl-C: what was sampled so far is the answer; of an exact count nothing is left.
endless=(equity AhKd random random --trials 1000000000000)
interrupt() { timeout --preserve-status -s INT "$1" "$POKERMATH" "${@:2}" 2>&1; }
out=$(interrupt 1 "${endless[@]}" --json)
same "exit code of an interrupted run" $? 0
[[ $out == '{"schema":2,'*'"interrupted":true,'*'}' ]] || fail "interrupted: $out"
has "interrupted" "$(interrupt 1 "${endless[@]}")" "Stopped early: fewer deals than were asked for."
out=$(interrupt 0.3 equity random random random --exact)
same "exit code of a stopped count" $? 1
[[ $out == "pokermath: stopped after "*" steps: no exact answer" ]] || fail "a stopped count: $out"

# On a terminal there are progress and colours, unless they are unwanted.
export -f interrupt
show() { SHELL=/bin/bash script -qec "interrupt 2.5 ${endless[*]}" /dev/null </dev/null; }
out=$(TERM=xterm show)
has "progress" "$out" "million trials/s, "
has "colours" "$out" $'\e[31mAh'
out=$(TERM=xterm NO_COLOR=1 show)
[[ $out == *AhKd* && $out != *$'\e[31m'* ]] || fail "NO_COLOR: $out"

refuses 2 "'Xh' at position 3: expected" equity Xh 7s7c
refuses 2 "player 2, '7sAh': Ah is in the hand of player 1 already" equity AhKd 7sAh --json
refuses 2 "player 2, '7s7c': 7c is on the board already" equity AhKd 7s7c --board 2c3d7c
refuses 2 "player 2, 'AKs': no combination of the range is left beside" equity AhKd AKs --dead AsAcAdKh
refuses 2 "the ranges leave no deal" equity AA AA AA
refuses 2 "'AhKdQc' has 3 cards: a hand of holdem has 2" equity AhKdQc 7s7c
refuses 2 "'rand': a player is a hand, a range or the word random" equity AhKd rand
refuses 2 "'': a player is a hand" equity AhKd ""
refuses 2 "1 player: expected 2 to 10" equity AhKd
refuses 2 "11 players: expected 2 to 10" equity {,,,,,,,,,,}random
refuses 2 "'KY' at position 5: expected" equity AhKd AA,KY
refuses 2 "a board of 6 cards: expected 5" equity AhKd 7s7c --board 2c3c4c5c6c8c
refuses 2 "a board of 5 cards: expected 4" equity AhKd 7s7c --board 2c3c4c5c6c --to turn
refuses 2 "--to 'showdown' is not known: flop, turn or river" equity AhKd 7s7c --to showdown
refuses 2 "--game 'omaha4' is not known: holdem, shortdeck, shortdeck-straights, omaha, omaha5, omaha6, " \
  equity AhKd QQ --game omaha4
refuses 2 "--exact does not go with --sampled" equity AhKd QQ --exact --sampled
refuses 2 "--time-ms '0' is not accepted: a whole number from 1 to 86400000" \
  equity AhKd random --time-ms 0
refuses 2 "--threads 'x' is not accepted: a whole number from 1 to 1024" equity AhKd QQ --threads x
for error in 0 2 x 200% 0.1x ''; do
  refuses 2 "--standard-error " equity AhKd QQ --standard-error "$error"
done
refuses 2 "write 'random' once for each opponent" equity AhKd random --players 6
refuses 2 "--by-class is written --by class" equity AhKd random --by-class

finish
