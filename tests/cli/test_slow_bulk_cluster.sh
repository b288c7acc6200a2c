#!/usr/bin/env bash
# Shards under Slurm, with a task that is killed and one that is told to stop, under GNU parallel and
# under MPI: the bytes of one process with one thread.
# shellcheck source-path=SCRIPTDIR disable=SC2013
. "$(dirname "$0")/expect.sh"
. "$(dirname "$0")/slurm.sh"

questions="$work/ques'tions.jsonl"
folder="$work/an swers"
program=$(readlink -f "$POKERMATH")

# Shards 1 and 2 of 8 are long enough to be hit in the middle, with answers that fill some blocks.
awk 'BEGIN {
  ranks = "23456789TJQKA"
  for (i = 0; i < 1600; ++i) {
    printf "{\"id\":\"%d\",\"players\":[\"8%%\",\"8%%\"],\"board\":\"%sc%sd%sh\",", i,
      substr(ranks, i % 13 + 1, 1), substr(ranks, int(i / 13) % 13 + 1, 1),
      substr(ranks, int(i / 169) % 13 + 1, 1)
    printf "\"method\":\"sampled\",\"trials\":%d,\"detail\":[\"hand\"]}\n", i < 400 ? 120000 : 1000
  }
}' >"$questions"

run bulk "$questions" --out "$work/alone" --threads 1
expect_code 0
expected=$(sha256sum <"$work/alone/answers.jsonl")
same_answers() { same "the answers of $1" "$(sha256sum <"$2/answers.jsonl")" "$expected"; }

# part SHARD: of it that is done and kept; 0 before it has begun.
part() {
  local part
  part=$("$POKERMATH" bulk status "$folder" --json 2>/dev/null |
    grep -o "\"shard\":$1,\"part\":[^,}]*")
  part=${part##*:}
  echo "${part:-0}"
}
is_more() { awk "BEGIN { exit !($1 > $2) }"; }
has_begun() { is_more "$(part "$1")" 0; }
has_ended() { [[ -s $folder/$1-of-8.shard ]]; }
waits_again() { [[ $(squeue -h -j "$1" -o '%T %r') == "PENDING BeginTime" ]]; }
waits_no_more() { ! waits_again "$1"; }
# A cluster waits two minutes before it starts a task again. Two seconds is the least that it can do
# with: what was killed within the same second could be the task that is started.
start_again() {
  scontrol update JobId="$1" StartTime=now+2
  slurm_wait 10 waits_no_more "$1"
}
# has_gone_on SHARD PART: it has ended; meanwhile never less is there than was kept.
has_gone_on() {
  local now
  now=$(part "$1")
  has_ended "$1" || { ! is_more "$2" "$now" || fail "shard $1 is made anew"; false; }
}
is_merged() { [[ -s $folder/answers.jsonl ]]; }
process_of() {
  local file
  for file in $(grep -lzxF -- "$folder" /proc/[0-9]*/cmdline 2>/dev/null); do
    [[ $(readlink "${file%cmdline}exe") == "$program" ]] || continue
    file=${file#/proc/}
    ! grep -qzxF -- "$1/8" "/proc/$file" || echo "${file%/cmdline}"
  done
}

slurm_start
cd / || exit 1
refuses 2 "the highest number of an array's task is 100 here (MaxArraySize is 101)" \
  bulk submit "$questions" --out "$folder" --slurm --shards 101
run bulk submit "$questions" --out "$folder" --slurm --shards 8 --now
expect_code 0
array=$(sed -n 's/^# job \([0-9]*\): 8 shards$/\1/p' <<<"$out")
slurm_wait 60 has_begun 1 || fail "shard 1 does not begin"
kill -9 "$(process_of 1)" || fail "shard 1 cannot be killed"
slurm_wait 60 has_begun 2 || fail "shard 2 does not begin"
# The step, which srun has started; for a whole task the signal is sent again and again. It is sent
# twice: an error says that the step has ended already.
scancel --signal=USR1 "${array}_2.0" 2>/dev/null
for shard in 1 2; do
  slurm_wait 60 waits_again "${array}_$shard" || fail "shard $shard was not put back: $(squeue)"
  ! has_ended $shard || fail "shard $shard was hit too late"
  kept=$(part $shard)
  is_more "$kept" 0 || fail "nothing of shard $shard was kept"
  slurm_wait 60 start_again "${array}_$shard" || fail "shard $shard is not started again"
  slurm_wait 120 has_gone_on $shard "$kept" || fail "shard $shard does not end"
done
slurm_wait 120 is_merged || fail "not merged: $(squeue; tail -n 5 "$folder"/*.log)"
same_answers Slurm "$folder"
same "merges" "$(grep -c answers "$folder/merge.log")" 1

parallel --will-cite -n0 -j2 "'$POKERMATH' bulk \"$questions\" --out '$work/parallel' --shards 4 --threads 1" \
  ::: 1 2 3 4 >"$work/out" 2>&1 || fail "GNU parallel: $(<"$work/out")"
run bulk merge "$work/parallel"
expect_code 0
same_answers "GNU parallel" "$work/parallel"

mpirun -n 4 --oversubscribe --allow-run-as-root \
  "$POKERMATH" bulk "$questions" --out "$work/mpi" --threads 1 >"$work/out" 2>&1 ||
  fail "mpirun: $(<"$work/out")"
run bulk merge "$work/mpi"
expect_code 0
same_answers mpirun "$work/mpi"

finish
