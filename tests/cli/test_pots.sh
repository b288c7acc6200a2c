#!/usr/bin/env bash
# pokermath pots: who gets what, pot by pot; bad lists.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

run pots --stakes 100,50,100 --scores 5,9,7
expect_code 0
same "$asked" "$out" "pot 1: 150 chips, seat 1 wins 150
pot 2: 100 chips, seat 2 wins 100

seat            stake        score           gets
0                 100            5              0
1                  50            9            150
2                 100            7            100"
run pots --stakes "30, 30, 31" --scores " 8,8,3 "
has "$asked" "$out" "pot 1: 90 chips, seat 0 wins 45, seat 1 wins 45
pot 2: 1 chip, seat 2 gets 1 back"
run pots --stakes 10,20,5 --scores -1,-1,3
has "$asked" "$out" "pot 2: 20 chips, seat 0 gets 5 back, seat 1 gets 15 back"
run pots --stakes 2000000000,2000000000,1 --scores=8,8,-3 --json
same "$asked" "$out" '{"schema":1,"winnings":[2000000001,2000000000,0],"pots":[{"chips":4000000001,'\
'"winners":[0,1],"paid":[2000000000,2000000000,1],"won":[2000000001,2000000000,0]}]}'

refuses 2 "--stakes has 2 and --scores has 1 numbers" pots --stakes 1,2 --scores 3
for bad in 1,,2 -1,2 2147483648,1 1.5,2 a,1 1,2,; do
  refuses 2 "is not accepted: whole numbers from 0 to 2147483647 with commas" \
    pots --stakes "$bad" --scores 3,3
done
refuses 2 "--scores is required" pots --stakes 1

finish
