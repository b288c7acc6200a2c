#!/usr/bin/env bash
# pokermath tables: the largest one, and the one that takes longest: to the byte, stopped, damaged.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

timeout --preserve-status -s INT 1 "$POKERMATH" tables build omaha7 --dir "$work" 2>"$work/err" >/dev/null
same "after a stop" "$(ls "$work")" "err"
has "a stop" "$(<"$work/err")" "stopped before omaha7 was written"

run tables build omaha7 --dir "$work"
expect_code 0
same "the file" "$(sha256sum <"$work/omaha7.bin")" \
  "764addaf99189559ff33f1981a814539a8d9ec070b646a048aba008e55c6fad3  -"
printf '\x35' | dd of="$work/omaha7.bin" bs=1 seek=250 conv=notrunc status=none
run tables verify omaha7 --dir "$work"
expect_code 1
has "$asked" "$out" "damaged: its header is not right or an entry leads out of the table"

# Stopped, and gone on with; not with sums that are damaged.
unfinished=$work/omaha-strength.csv.unfinished
stop_after() {
  timeout --preserve-status -s INT "$1" "$POKERMATH" tables build omaha-strength --dir "$work" \
    2>"$work/err" >/dev/null
  has "a stop" "$(<"$work/err")" "stopped omaha-strength; the next build goes on from there"
  # The first unit that is not in the sums stands third in the header.
  done=$(od -An -t d8 -j 16 -N 8 "$unfinished/1-of-1.partial")
}
stop_after 1.5
first=$done
stop_after 0.2
((done >= first)) || fail "stopped after $first sets of boards, then after $done"
cp "$unfinished/1-of-1.partial" "$work/kept"
# A sum, and how many sets of boards are done.
for place in 1000 20; do
  printf '\xff' | dd of="$unfinished/1-of-1.partial" bs=1 seek=$place conv=notrunc status=none
  stop_after 0.2
  ((done < first)) || fail "gone on with byte $place damaged: $done sets of boards"
  cp "$work/kept" "$unfinished/1-of-1.partial"
done
run tables build omaha-strength --dir "$work"
expect_code 0
[[ ! -e $unfinished ]] || fail "the sums stayed"
same "the file" "$(sha256sum <"$work/omaha-strength.csv")" \
  "261cec9063c6af2ccff28511f975efba5fa01f3ddfa4e104e2b113b464c28f23  -"
same "hands" "$(awk -F, 'NR > 1 { hands += $2 } END { print NR - 1, hands }' "$work/omaha-strength.csv")" \
  "16432 270725"
# Golden hands in the suits that come first.
while read -r hand value; do
  has "$hand" "$(grep "^$hand," "$work/omaha-strength.csv")" ",$value,"
done <<'GOLDEN'
AsAhKsKh 298707364884
AsAhKdKc 274903830150
AsAhAdAc 219243849600
2s2h2d2c 39268278144
JsTs9h8h 235319856102
AsKsQsJs 237840727044
AsKhQdJc 231500437460
8s7h3d2c 151423159334
As4h3h2s 198679769230
QsQhJsJh 282120633330
6s5s4h3h 187622019345
KsKh7d2c 239602183411
GOLDEN
# The order that the library has comes out of that table.
written=$(stat -c %y "$work/omaha-strength.csv")
run tables build omaha-order --dir "$work"
expect_code 0
cmp "$work/omaha4.order" "$(dirname "$0")/../../ranges/data/omaha4.order" || fail "another order"
same "the table" "$(stat -c %y "$work/omaha-strength.csv")" "$written"
head -c 4 "$work/omaha4.order" | dd of="$work/omaha4.order" bs=1 seek=15 conv=notrunc status=none
run tables verify omaha-order --dir "$work"
expect_code 1
has "$asked" "$out" "damaged: entry 9 has the number"
has "$asked" "$out" "which was there before"
sed -i '5s/,.*/,6,1,0.5,1/' "$work/omaha-strength.csv"
truncate -s 769549 "$work/omaha-strength.csv"
run tables verify omaha-strength --dir "$work"
expect_code 1
has "$asked" "$out" "damaged: line 6 is not the next hand with its equity"

finish
