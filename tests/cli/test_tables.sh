#!/usr/bin/env bash
# pokermath tables: the files to the byte, damage, and that nothing half written is ever left.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"
dir=$work/new/folder

sums="ad00f3976ad278f2cfd8c47b008cf4dbdefac642d70755a9f20707f8bbeb3c7e  VarnholtHR.dat
714bae0937550371745e018ba4a3c39cb2d63e512e3089b9ffff4b92429238a5  holdem-river-equity.bin
08065f563b9c80b248d7a912031212455c5021908d3f4e31219ae462a605b8d7  holdem-turn-equity.bin"
holdem=(hand-ranks river-equity turn-equity)

run tables build --dir "$dir" "${holdem[@]}"
expect_code 0
same "$asked: errors" "$err" ""
same "the files" "$(cd "$dir" && sha256sum -- *)" "$sums"

# What is there and good is left alone.
written=$(stat -c %y "$dir"/*)
run tables build --dir "$dir" "${holdem[@]}"
expect_code 0
same "$asked" "$(grep -c 'is there already$' <<<"$out")" 3
same "times" "$(stat -c %y "$dir"/*)" "$written"
run tables build --dir "$dir" --force turn-equity turn-equity --json
expect_code 0
same "$asked" "$out" '{"schema":1,"dir":"'"$dir"'","tables":[{"name":"turn-equity",'\
'"file":"holdem-turn-equity.bin","bytes":19492200,"crc32":"0xebb462ff","state":"ok","built":true}]}'
[[ $(stat -c %y "$dir"/*) != "$written" ]] || fail "--force built nothing"
same "the file" "$(cd "$dir" && sha256sum -- holdem-turn*)" "$(tail -1 <<<"$sums")"

run tables verify --dir "$dir" "${holdem[@]}"
expect_code 0
same "$asked" "$out" "$dir
hand-ranks       VarnholtHR.dat           129,951,336 bytes  crc32 0x7808da57  ok
river-equity     holdem-river-equity.bin   19,492,200 bytes  crc32 0x85b22b4d  ok
turn-equity      holdem-turn-equity.bin    19,492,200 bytes  crc32 0xebb462ff  ok"

# The short deck's, and what the library has in it; an entry that leads out of a table, and a record
# for a card below six.
short=$work/short
run tables build --dir "$short" six-plus-5 six-plus-7 six-plus-equity matchups six-plus-matchups \
  six-plus-straights-matchups combinations
expect_code 0
same "the files" "$(cd "$short" && sha256sum -- *)" "\
c470f0a2bd501e74c7542d07fee9f8ee498400efeacdba981a9b385f9295dc00  VarnholtPC.dat
$(cd "$(dirname "$0")/../../kernels/data" && sha256sum -- *.matchups)
aa42c8658aa726ba05254138517c9715cef4e10e2ab34da178153f9098618b4f  six-plus-5.bin
0d974edb6ea49b631a03aa48639be3214d75d52d5b3bba625ad8d839b352cb50  six-plus-7.bin
6b498a0d250177b814f8dfa65b2073a0ea31a9f90a4f05ed6f6d8099679bf038  six-plus-equity.bin"
printf '\xff\xff\xff' | dd of="$short/six-plus-7.bin" bs=1 seek=200 conv=notrunc status=none
printf '\0' | dd of="$short/six-plus-equity.bin" bs=1 seek=0 conv=notrunc status=none
printf '\0' | dd of="$short/VarnholtPC.dat" bs=1 seek=8 conv=notrunc status=none
printf '\xff\xff\xff' | dd of="$short/holdem.matchups" bs=1 seek=6 conv=notrunc status=none
run tables verify --dir "$short" six-plus-5 six-plus-7 six-plus-equity matchups combinations omaha7
expect_code 1
has "$asked" "$out" "crc32 0xc4c694ba  ok"
has "$asked" "$out" "damaged: its header is not right or an entry leads out of the table"
has "$asked" "$out" "damaged: record 1 is for hands 256 and "
has "$asked" "$out" "damaged: record 2 has more wins and ties than boards"
has "$asked" "$out" "damaged: record 2 is for the key "
has "$asked" "$out" "missing"

# patch FILE OFFSET BYTES: overwrites bytes, given as for printf.
patch() {
  # shellcheck disable=SC2059
  printf "$3" | dd of="$dir/$1" bs=1 seek="$2" conv=notrunc status=none
}
# Damage that only a look at the entries can name: a hand value changed for another one, an entry
# that points outside, a record for a wrong hand, a value below 1.
patch VarnholtHR.dat 129951332 '\x01\x10'
run tables verify --dir "$dir" hand-ranks
expect_code 1
has "$asked" "$out" "damaged: its checksum is not 0x7808da57"
patch VarnholtHR.dat 4000 '\xff\xff\xff\xff'
patch holdem-river-equity.bin 12000 '\xff\x7f'
patch holdem-turn-equity.bin 20 '\x00\x00\x00\x00'
run tables verify --dir "$dir" "${holdem[@]}"
expect_code 1
has "$asked" "$out" "damaged: an entry is neither a row nor a hand value"
has "$asked" "$out" "damaged: record 1001 is for hands 32767 and "
has "$asked" "$out" "damaged: record 2 has the value 0"

# list compares length and checksum only; a file that is cut short, none, and no file at all.
truncate -s -4 "$dir/holdem-river-equity.bin"
rm "$dir/VarnholtHR.dat" "$dir/holdem-turn-equity.bin"
mkdir "$dir/holdem-turn-equity.bin"
run tables list --dir "$dir" "${holdem[@]}" --json
expect_code 0
same "$asked" "$(sed -E 's|("bytes":19492196),"crc32":"0x[0-9a-f]{8}"|\1,...|' <<<"$out")" \
  '{"schema":1,"dir":"'"$dir"'","tables":[{"name":"hand-ranks","file":"VarnholtHR.dat","bytes":null,"crc32":null,'\
'"state":"missing"},{"name":"river-equity","file":"holdem-river-equity.bin","bytes":19492196,...,'\
'"state":"damaged: its length is not 19,492,200 bytes"},{"name":"turn-equity",'\
'"file":"holdem-turn-equity.bin","bytes":null,"crc32":null,"state":"damaged: it is not a regular file"}]}'

# A build repairs what is damaged, and stops at what it must not replace.
run tables build --dir "$dir" river-equity turn-equity
expect_code 1
same "$asked" "$err" "pokermath: cannot write '$dir/holdem-turn-equity.bin': Is a directory"
rmdir "$dir/holdem-turn-equity.bin"
same "repaired" "$(cd "$dir" && sha256sum -- *)" "$(sed -n 2p <<<"$sums")"

# No room: what was there stays, and nothing else is left.
mkdir "$work/full"
echo "kept" >"$work/full/holdem-river-equity.bin"
(
  ulimit -f 1000
  run tables build --dir "$work/full" river-equity --json
  expect_code 1
  same "$asked" "$err" "pokermath: cannot write '$work/full/holdem-river-equity.bin': File too large"
  has "$asked" "$out" '"state":"failed: cannot write '
  ((failures == 0))
) || failures=$((failures + 1))
same "after a build without room" "$(cd "$work/full" && grep -r .)" "holdem-river-equity.bin:kept"

# Stopped or killed at any moment: whole tables and nothing else.
for moment in 0.02 0.06 0.12 0.2 0.3; do
  for signal in INT TERM KILL; do
    rm -rf "$work/stopped"
    mkdir "$work/stopped"
    {
      timeout --preserve-status -s "$signal" "$moment" \
        "$POKERMATH" tables build --dir "$work/stopped" river-equity turn-equity >"$work/out" 2>"$work/err"
      code=$?
    } 2>/dev/null # the shell says when somebody is killed
    (cd "$work/stopped" && find . -type f -printf '%P\0' | sort -z | xargs -0r sha256sum) >"$work/left"
    grep -vxF "$sums" "$work/left" && fail "SIG$signal after $moment s left these files"
    # A signal may come when both are there and the program has not ended yet.
    ((code != 0 || 2 == $(wc -l <"$work/left"))) ||
      fail "SIG$signal after $moment s: exit code $code, $(<"$work/err"), $(<"$work/left")"
  done
done

# Which folder it is.
for setting in "POKERMATH_DATA=$work/data" "XDG_DATA_HOME=$work/xdg HOME=/" "HOME=$work/home"; do
  # shellcheck disable=SC2086
  found+=$(env $setting "$POKERMATH" tables list river-equity | head -1)$'\n'
done
same "folders" "$found" "$work/data
$work/xdg/pokermath
$work/home/.local/share/pokermath
"
# A folder that is not there: the usual one may be, one that is named may not.
has "no folder yet" "$(POKERMATH_DATA=$work/data "$POKERMATH" tables list river-equity)" \
  "The folder is not there yet: 'pokermath tables build' makes it."
for verb in list verify; do
  refuses 1 "cannot read the folder '$work/data': No such file or directory" tables $verb --dir "$work/data"
  refuses 1 "cannot read the folder '$0': Not a directory" tables $verb --dir "$0" --json
done
refuses 1 "cannot create the folder '/dev/null/x': Not a directory" tables build --dir /dev/null/x
refuses 2 "--dir needs a value" tables list --dir ""
refuses 2 "'ranks' is not a table: hand-ranks, river-equity, turn-equity, six-plus-5" tables verify ranks --json
refuses 2 "a subcommand is missing: build, list, verify" tables

finish
