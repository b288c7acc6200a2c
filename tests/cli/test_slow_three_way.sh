#!/usr/bin/env bash
# pokermath tables build three-way, and what equity makes of it: to the byte, stopped, damaged.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"
export POKERMATH_DATA=$work/data
table=$POKERMATH_DATA/holdem.three-way

# Without the table three ranges are counted only if somebody insists.
three=(equity 10% 12% 'QQ+,AKs:0.5,KhJh' --json)
without_time() { sed -E 's/"(elapsed_ms|reason)":[^,}]*,?//g' <<<"$1"; }
run "${three[@]}"
has "$asked" "$out" '"method":"sampled"'
sampled=$out
run "${three[@]}" --exact
expect_code 0
exact=$out

timeout --preserve-status -s INT 1 "$POKERMATH" tables build three-way 2>"$work/err" >/dev/null
has "a stop" "$(<"$work/err")" "stopped three-way; the next build goes on from there"
same "after a stop" "$(ls "$POKERMATH_DATA")" "holdem.three-way.unfinished"
run tables build three-way
expect_code 0
same "the file" "$(sha256sum <"$table")" \
  "2916ece576b82a6b46731ee177c1cc1344fe5b45f02778033c8cf54547d9aaff  -"
run tables verify three-way
expect_code 0
same "after a build" "$(ls "$POKERMATH_DATA")" "holdem.three-way"

# The same counts, whoever asks and how many threads there are.
for threads in 1 2; do
  run "${three[@]}" --threads $threads
  expect_code 0
  same "$asked" "$(without_time "$out")" "$(without_time "$exact")"
done
# As the sweep of all boards has counted it.
run equity 15% 15% 15% --json
has "$asked" "$out" '"method":"exact"'
has "$asked" "$out" '"cases":5391997934400,'
has "$asked" "$out" '"wins":1690162740600,"ties":226718486016,"shared":[1690162740600,189582453168,37136032848]}'
run equity random random random --json
has "$asked" "$out" '"method":"exact"'
has "$asked" "$out" '"equity":0.33333333333333'
run equity AA AKs QQ --by class --json
has "$asked" "$out" '"method":"exact"'

# A table that is damaged is one that is not there, and is said where tables are looked at.
expect_unused() {
  run "${three[@]}"
  expect_code 0
  same "$asked: errors" "$err" ""
  same "$asked: $1" "$(without_time "$out")" "$(without_time "$sampled")"
  run doctor --json
  expect_code 1
  has "$asked" "$out" '"broken":["three-way"]'
  run tables verify three-way
  expect_code 1
}
cp "$table" "$work/good"
printf '\xff' | dd of="$table" bs=1 seek=20000000 conv=notrunc status=none
expect_unused "a byte changed"
has "$asked" "$out" "damaged: its length or checksum is not right"
printf 'P' | dd of="$table" bs=1 seek=0 conv=notrunc status=none
expect_unused "another header"
has "$asked" "$out" "damaged: its header is not right"
head -c 30000000 "$work/good" >"$table"
expect_unused "cut short"
: >"$table"
expect_unused "empty"
rm "$table"
mkfifo "$table"
expect_unused "no file"

finish
