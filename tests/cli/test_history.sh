#!/usr/bin/env bash
# pokermath history: lines, positions, games, a file that grows.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"
file=$work/hands.txt

printf "\xef\xbb\xbfHand 1: Hold'em No Limit (\xe2\x82\xac1)\r\n\r\nHand 2: 5 Card Omaha Hi/Lo Pot Limit\nunfin" >"$file"
run history "$file"
expect_code 0
same "$asked" "$out" "Hand 1: Hold'em No Limit (€1)

Hand 2: 5 Card Omaha Hi/Lo Pot Limit
unfin"
run history "$file" --json
same "$asked" "$out" "\
{\"schema\":1,\"line\":\"Hand 1: Hold'em No Limit (€1)\",\"game\":2}
{\"schema\":1,\"line\":\"\"}
{\"schema\":1,\"line\":\"Hand 2: 5 Card Omaha Hi/Lo Pot Limit\",\"game\":14}
{\"schema\":1,\"line\":\"unfin\",\"unfinished\":true}
{\"schema\":1,\"position\":75}"
printf 'ished\nHand 3: Omaha Hi/Lo Pot Limit\n' >>"$file"
run history "$file" --json --from 75
same "$asked" "$out" '{"schema":1,"line":"unfinished"}
{"schema":1,"line":"Hand 3: Omaha Hi/Lo Pot Limit"}
{"schema":1,"position":116}'

# While it grows and when it is replaced, until a signal comes.
"$POKERMATH" history "$file" --follow --from 116 >"$work/followed" &
sleep 0.5
printf 'fo' >>"$file"
sleep 0.5
printf 'llowed\n' >>"$file"
await() {
  for _ in {1..50}; do
    [[ $(<"$work/followed") == "$1" ]] && break
    sleep 0.1
  done
}
await followed
printf 'late\nlast' >>"$file" # perhaps not seen before it is replaced
mv "$file" "$work/old.txt"
sleep 0.5
printf "6+ Hold'em No Limit\n" >"$file"
await $'followed\nlate\nlast\n'"6+ Hold'em No Limit"
kill -TERM $!
wait $! || fail "--follow ends with exit code $?"
same "--follow" "$(<"$work/followed")" $'followed\nlate\nlast\n'"6+ Hold'em No Limit"
run history "$file" --json --from 999
same "$asked" "$out" "{\"schema\":1,\"line\":\"6+ Hold'em No Limit\"}
{\"schema\":1,\"position\":20}"

refuses 1 "cannot read '$work/none': No such file or directory" history "$work/none"
refuses 1 "cannot read '$work/none': No such file or directory" history "$work/none" --follow
refuses 1 "cannot read '$work': Is a directory" history "$work"
refuses 2 "FILE is required" history
for from in -3 x 1e3 9223372036854775808; do
  refuses 2 "--from '$from' is not accepted: a whole number from 0 to " history "$file" --from "$from"
done
refuses 2 "--from needs a value" history "$file" --from ""

finish
