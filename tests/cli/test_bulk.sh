#!/usr/bin/env bash
# pokermath bulk: answers in order and to the byte, shards, schedulers, faults.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

unset SLURM_ARRAY_TASK_ID OMPI_COMM_WORLD_RANK PARALLEL_SEQ
job=$work/questions.jsonl
cat >"$job" <<'QUESTIONS'
{"id":"first","players":["AhKd","7s7c"]}
# a comment, and an empty line

{"id":{"a":1},"players":["15%","TT+"],"board":"2c7dTh","detail":"class"}
{"id":3,"players":["AhKd"]}
{"players":["AhKd","random","random"],"method":"sampled","trials":20000}
{"players":["AhKd","random","random"],"method":"sampled","trials":20000,"seed":9}
no object
{"id":7,"players":["AhKd","random"],"time_ms":5}
{"id":8,"players":["AhAdKhKd","JsTs9c8c"],"game":"omaha","board":"2c7dTh"}
QUESTIONS
# without_time: answers of `equity -`, but for the time.
without_time() { sed -E 's/,"elapsed_ms":[0-9.e-]+//'; }

run bulk "$job" --out "$work/one" --threads 1
expect_code 1
same "$asked" "$out" "$work/one/answers.jsonl: 8 answers, 3 of them errors"
answers=$(<"$work/one/answers.jsonl")
# What `equity -` says; samples start from the number of the line.
"$POKERMATH" equity - 2>/dev/null < <(sed '6s/}$/,"seed":6}/; 9d' "$job") >"$work/lines"
same "the answers" "$(sed 7d "$work/one/answers.jsonl")" \
  "$(without_time <"$work/lines" | sed '6s/.*/{"schema":2,"line":8,"error":"'"'no object' is no JSON object at byte 2"'"}/')"
same "a limit of time" "$(sed -n 7p <<<"$answers")" \
  '{"schema":2,"id":7,"line":9,"error":"time_ms: the answer would depend on the machine","field":"time_ms"}'

# Shards of any count and threads; what is finished is left alone.
for count in 3 20; do
  folder=$work/in$count
  for ((i = count; i > 0; --i)); do
    run bulk "$job" --out "$folder" --shard "$i/$count" --threads $((i % 3 + 1))
    ((code < 2)) || fail "$asked: exit code $code"
  done
  written=$(stat -c %y "$folder/1-of-$count.shard")
  run bulk "$job" --out "$folder" --shard "1/$count" --json
  has "$asked" "$out" '"shard":1,"shards":'"$count"',"answers":'
  same "a finished shard" "$(stat -c %y "$folder/1-of-$count.shard")" "$written"
  run bulk merge "$folder" --json
  expect_code 1
  same "$asked" "$out" \
    '{"schema":1,"result":"'"$folder"'/answers.jsonl","shards":'"$count"',"answers":8,"failed":3}'
  same "merged of $count" "$(<"$folder/answers.jsonl")" "$answers"
done
run bulk verify "$work/in3" --sample 5 --seed 1
expect_code 0
same "$asked" "$out" "5 questions answered again: all answers are the same"
sed -i '2s/"wins":[0-9]*/"wins":1/' "$work/in3/answers.jsonl"
run bulk verify "$work/in3" --sample 100
expect_code 1
same "$asked" "$out$err" "8 questions answered again: 1 differ""pokermath: the answer to line 4 is another one"
sed -i 2d "$work/in3/answers.jsonl"
refuses 1 "ends before the answer to line 10" bulk verify "$work/in3"

# What schedulers say.
shard_of() { env "$@" "$POKERMATH" bulk "$job" --out "$work/by" $shards 2>&1; }
shards=
has "Slurm" "$(shard_of SLURM_ARRAY_TASK_ID=15 SLURM_ARRAY_TASK_MIN=5 SLURM_ARRAY_TASK_MAX=20 \
  SLURM_ARRAY_TASK_STEP=5)" "shard 3 of 4 is done"
has "Open MPI" "$(shard_of OMPI_COMM_WORLD_RANK=0 OMPI_COMM_WORLD_SIZE=4)" "shard 1 of 4 is done"
has "GNU parallel" "$(shards="--shards 4" shard_of PARALLEL_SEQ=4)" \
  "shard 4 of 4 is done"
run bulk status "$work/by"
expect_code 0
has "$asked" "$out" "missing      1   2"
has "$asked" "$out" "done         3"
run bulk status "$work/by" --json
has "$asked" "$out" '"finished":3,"running":[],"stopped":[],"missing":[2],"merged":false}'
refuses 1 "shard 2 of 4 is not finished" bulk merge "$work/by"
refuses 1 "is cut into 4 shards, not 1" bulk "$job" --out "$work/by"
export SLURM_ARRAY_TASK_ID=7 SLURM_ARRAY_TASK_MIN=1 SLURM_ARRAY_TASK_MAX=8
refuses 2 "--shards 3 does not go with the 8 tasks" bulk "$job" --out "$work/by" --shards 3
SLURM_ARRAY_TASK_MAX=6 refuses 2 "task 7 is none of 1-6:1" bulk "$job" --out "$work/by"
unset SLURM_ARRAY_TASK_MAX
refuses 2 "SLURM_ARRAY_TASK_MAX is not: say --shard" bulk "$job" --out "$work/by"
unset SLURM_ARRAY_TASK_ID SLURM_ARRAY_TASK_MIN

# One process at a time: the second leaves.
touch "$work/by/2-of-4.unfinished"
flock "$work/by/2-of-4.unfinished" sleep 2 &
sleep 0.2
refuses 1 "another process works on shard 2 of 4" bulk "$job" --out "$work/by" --shard 2/4
run bulk status "$work/by"
has "$asked" "$out" "running      1   2 (0.0 %)"
wait
run bulk "$job" --out "$work/by" --shard 2/4
run bulk merge "$work/by"
same "after a lock" "$(<"$work/by/answers.jsonl")" "$answers"

# Faults.
printf '\xff' | dd of="$work/by/3-of-4.shard" bs=1 seek=200 conv=notrunc status=none
refuses 1 "3-of-4.shard' is damaged" bulk merge "$work/by"
run bulk "$job" --out "$work/by" --shard 1/4
same "a shard beside a damaged one" "$code $out" "0 shard 1 of 4 is done: 1 answer"
cp "$work/in3/2-of-3.shard" "$work/by/3-of-4.shard"
refuses 1 "name of another shard" bulk merge "$work/by"
run bulk "$job" --out "$work/by" --shard 1/4
has "beside a damaged shard" "$out" "shard 1 of 4 is done"
sed 's/"AhKd","7s7c"/"AhKd","7s7d"/' "$job" >"$work/other.jsonl"
refuses 1 "was changed since the work began: lines 1 to 10" bulk "$work/other.jsonl" --out "$work/by" --shard 1/4
echo >>"$work/other.jsonl"
refuses 1 "was changed since the work began: it has" bulk "$work/other.jsonl" --out "$work/by" --shard 1/4
refuses 1 "has another job" bulk omaha-strength --out "$work/by"
refuses 1 "has another job" bulk flop-report AA KK --out "$work/by"
[[ ! -e $work/by/questions.jsonl ]] || fail "questions of another job"
refuses 1 "has no job" bulk merge "$work"
sed -i 's/bytes/bites/' "$work/by/job.json"
refuses 1 "job.json' is damaged" bulk status "$work/by"
refuses 1 "cannot make the folder" bulk "$job" --out "$job/folder"
refuses 2 "neither a file nor a job" bulk omaha7-strength --out "$work/x"
refuses 2 "--out FOLDER is missing" bulk "$job"
refuses 2 "--out is given twice" bulk "$job" --out "$work/x" --out "$work/y"
refuses 2 "'3' is one word too many" bulk "$job" 3 --out "$work/x"
refuses 2 "flop-report's" bulk "$job" --game omaha --out "$work/x"
refuses 2 "--shard '9' is not accepted: a whole number from 1 to 8" bulk "$job" --shard 9/8 --out "$work/x"
printf '{"id":1}\n{"id":1}\n' >"$work/twice"
refuses 2 "have the same id: '1'" bulk "$work/twice" --out "$work/x"
[[ ! -e $work/x ]] || fail "a folder was made for nothing"

# A disk that is full keeps what was done.
for ((i = 0; i < 400; ++i)); do
  printf '{"id":%d,"players":["15%%","20%%"],"board":"%s","detail":"hand"}\n' "$i" "$((i % 8 + 2))c7d9hTs"
done | sed 's/7c7d/6c7d/; s/9c7d9h/5c7d9h/' >"$work/large.jsonl"
(ulimit -f 3000 && "$POKERMATH" bulk "$work/large.jsonl" --out "$work/full" >"$work/out" 2>"$work/err")
same "a full disk" "$? $(<"$work/err")" \
  "1 pokermath: cannot write '$work/full/1-of-1.unfinished': File too large"
run bulk status "$work/full" --json
part=$(sed -E 's/.*"stopped":\[\{"shard":1,"part":([0-9.]+).*/\1/' <<<"$out")
awk -v part="$part" 'BEGIN { exit !(part > 0.01 && part < 1) }' || fail "a full disk: $out"
run bulk "$work/large.jsonl" --out "$work/full"
expect_code 0
run bulk "$work/large.jsonl" --out "$work/fresh" --threads 1
cmp "$work/full/answers.jsonl" "$work/fresh/answers.jsonl" || fail "after a full disk"

# Stopped by a signal.
for signal in TERM USR1 INT; do
  rm -rf "$work/stopped"
  "$POKERMATH" bulk omaha5-strength --out "$work/stopped" --threads 1 2>"$work/err" &
  until [[ -e $work/stopped/1-of-1.unfinished ]]; do sleep 0.01; done
  sleep 0.1
  # A shell's background job ignores SIGINT.
  [[ $signal != INT ]] || { kill -TERM $!; }
  kill -$signal $!
  wait $!
  same "$signal" "$? $(<"$work/err")" \
    "75 pokermath: stopped the job; started again, it goes on from there"
done

# Also while the questions are read, which are many.
yes '{"players":["AhKd","7s7c"],"board":"2c7dTh"}' | head -n 400000 >"$work/many"
rm -rf "$work/stopped"
"$POKERMATH" bulk "$work/many" --out "$work/stopped" 2>"$work/err" &
pid=$!
until [[ $(ls -l /proc/$pid/fd 2>/dev/null) == *"$work/many"* || ! -e /proc/$pid ]]; do
  sleep 0.002
done
kill -USR1 $pid
wait $pid
same "a signal at the start" "$? $(<"$work/err")" \
  "75 pokermath: stopped the job; started again, it goes on from there"
(ulimit -f 1 && "$POKERMATH" bulk merge "$work/fresh" 2>"$work/err")
same "a full disk for the merge" "$? $(<"$work/err")" \
  "1 pokermath: cannot write '$work/fresh/answers.jsonl': File too large"

run bulk flop-report 15% 'QQ+' --out "$work/report"
expect_code 0
same "$asked" "$out" "$work/report/answers.jsonl: 1,755 answers"
has "$asked" "$(head -1 "$work/report/answers.jsonl")" \
  '{"schema":2,"id":{"flop":"4c3c2c","alike":4},"game":"holdem","board":["4c","3c","2c"],"dead":[]'
refuses 1 "has other questions" bulk flop-report 16% 'QQ+' --out "$work/report"
refuses 2 "does not go with" bulk flop-report 16% 'QQ+' --exact --sampled --out "$work/x"

finish
