#!/usr/bin/env bash
# pokermath bulk, killed at a hundred moments: the bytes are always the same.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

unset SLURM_ARRAY_TASK_ID OMPI_COMM_WORLD_RANK PARALLEL_SEQ
RANDOM=11
# Answers of some 30 KB, so that a block is full now and then.
for ((i = 0; i < 1000; ++i)); do
  printf '{"id":%d,"players":["15%%","%d%%"],"board":"%dc7dTh","detail":"hand"}\n' \
    "$i" $((5 + i % 30)) $((i % 5 + 2))
done >"$work/job"
"$POKERMATH" bulk "$work/job" --out "$work/whole" >/dev/null || fail "the whole"
sum=$(sha256sum <"$work/whole/answers.jsonl")
took=0 kills=0 jobs=0
while ((kills < 100)); do
  folder=$work/job-$((++jobs))
  for ((done = 0; !done;)); do
    # Into the start, the work, the last block, the merge.
    "$POKERMATH" bulk "$work/job" --out "$folder" --threads $((RANDOM % 3 + 1)) >/dev/null 2>"$work/err" &
    sleep "0.$(printf %03d $((RANDOM % 250)))"
    if kill -9 $! 2>/dev/null; then ((++kills)); fi
    wait $! 2>/dev/null
    case $? in
      0) done=1 ;;
      137) ;;
      *) fail "exit code $? after a kill: $(<"$work/err")" && done=1 ;;
    esac
    ((++took < 2000)) || { fail "no end is in sight" && break 2; }
  done
  same "job $jobs" "$(sha256sum <"$folder/answers.jsonl")" "$sum"
  same "what is left" "$(ls -A "$folder" | tr '\n' ' ')" "1-of-1.shard answers.jsonl job.json "
  rm -rf "$folder"
done

finish
