#!/usr/bin/env bash
# pokermath tables: the largest one, to the byte, stopped, and with an entry that leads out of it.
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

finish
