#!/usr/bin/env bash
# pokermath doctor: the machine, tables in every state, drivers, and what counts as broken.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

run tables build six-plus-5 --dir "$work/data"
run doctor --dir "$work/data"
expect_code 0
has "$asked" "$out" $'\nOperating system\n  name  '
has "$asked" "$out" "  kernel            $(uname -sr)"$'\n'
has "$asked" "$out" $'\n  kernels           for '
has "$asked" "$out" $'\n'"Tables in $work/data"$'\n  hand-ranks '
same "$asked: tables that are there" "$(grep ' ok$' <<<"$out")" \
  "  six-plus-5       six-plus-5.bin               248,720 bytes  crc32 0xc4c694ba  ok"
has "$asked" "$out" "VarnholtHR.dat                                                missing"
has "$asked" "$out" $'ODBC drivers\n'
has "$asked" "$out" $'\n  SQLite3\n'
has "$asked" "$out" $'\n\nNothing is broken.'

# A level of instructions by name, and one that there is not.
POKERMATH_ISA=baseline run doctor --dir "$work/data"
has "$asked" "$out" $'\n  kernels           for baseline\n'
POKERMATH_ISA=avx1024 run equity AhKd 7s7c
expect_code 2
has "$asked" "$err" "pokermath: POKERMATH_ISA is 'avx1024', which is no level of instructions of this machine (baseline"

truncate -s 5 "$work/data/six-plus-5.bin"
POKERMATH_DATA=$work/data run doctor --json
expect_code 1
same "$asked: lines" "$(wc -l <<<"$out")" 1
version=$("$POKERMATH" --version)
has "$asked" "$out" "{\"schema\":1,\"version\":\"${version#pokermath }\""
has "$asked" "$out" '"state":"damaged: its length is not 248,720 bytes"}'
has "$asked" "$out" '"broken":["six-plus-5"]}'
has "$asked" "$out" '"c_library":"glibc '

run doctor --dir "$work/data/six-plus-5.bin"
expect_code 1
has "$asked" "$out" $'\nTables\n  '"'$work/data/six-plus-5.bin' is no folder"$'\n'
has "$asked" "$out" $'\n\nBroken: tables'

# Without a folder for tables, and without drivers.
export ODBCSYSINI=$work
plain=$(env -u HOME "$POKERMATH" doctor) || fail "doctor without HOME: exit code $?"
has "without HOME" "$plain" $'Tables\n  HOME is not set: '
json=$(env -u HOME "$POKERMATH" doctor --json) || fail "doctor --json without HOME: exit code $?"
has "without HOME" "$json" '"dir":null,"tables":[],"dir_error":"HOME is not set: '
has "without drivers" "$plain" $'ODBC drivers\n  none\n'
refuses 2 "'x' is one word too many" doctor x

finish
