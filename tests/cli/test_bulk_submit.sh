#!/usr/bin/env bash
# pokermath bulk submit: the scripts, with programs of our own in the place of Slurm's.
# shellcheck source-path=SCRIPTDIR disable=SC2016
. "$(dirname "$0")/expect.sh"

mkdir "$work/bin"
PATH=$work/bin:$PATH
# fake NAME: the rest of what it does is on standard input.
fake() {
  { printf '#!/bin/bash\n'; cat; } >"$work/bin/$1"
  chmod +x "$work/bin/$1"
}
fake scontrol <<<'if [[ $1 == show ]]; then echo "MaxArraySize            = 9"; else echo "$@"; fi'
# What it starts: a word a line; and it ends with $ends.
fake srun <<<'while [[ $1 == --* ]]; do shift; done; printf "%s\n" "$@"; exit "$ends"'
# A task of its own state, as squeue has it.
fake squeue <<<'echo "$state"'
fake sbatch <<<'printf "%s\n" "$@" >>"${0%/*}/taken"; wc -l <"${0%/*}/taken" | sed "s/\$/;here/"'

folder="$work/it's 100%a #1 \"\$HOME\" "
questions="$work/its \`id\` 'file'"
echo '{"players":["AhKd","QcJs"]}' >"$questions"
cd "$work" || exit 1

# Everything reaches the program as it was typed, paths from anywhere.
run bulk submit "${questions##*/}" --out "${folder##*/}" --slurm --shards 8 --running 3 --cpus 2 \
  --time 1-0 --mem 4G --partition a,b --account x
expect_code 0
for line in --array=1-8%3 --cpus-per-task=2 --time=1-0 --mem=4G --partition=a,b --account=x \
  --requeue --open-mode=append --signal=USR1@120; do
  has "the array" $'\n'"$(<"$folder/shards.sbatch")" $'\n#SBATCH '"$line"$'\n'
done
has "the pages" "$out" "$(<"$folder/shards.sbatch")"
has "the pages" "$out" "$(<"$folder/merge.sbatch")"
started() { (cd / && env SLURM_CPUS_PER_TASK=4 SLURM_ARRAY_JOB_ID=77 SLURM_ARRAY_TASK_ID=5 "$@"); }
same "a task" "$(started ends=0 bash "$folder/shards.sbatch")" \
  "$(printf '%s\n' "$(readlink -f "$POKERMATH")" bulk "$questions" --out "$folder" --shard 5/8 --threads 4)"
# A name of a log, as Slurm reads it.
log="$(sed -n 's/^#SBATCH --output=//p' "$folder/shards.sbatch")"
same "the log" "$(eval "printf %s $log")" "${folder//\%/%%}/shard-%a.log"

# Who stopped goes on, and who was killed, but not for ever; who failed or was cancelled does not.
while read -r ends restarts state expected; do
  last=$(started ends="$ends" state="$state" SLURM_RESTART_COUNT="$restarts" bash "$folder/shards.sbatch" | tail -n 1
    exit "${PIPESTATUS[0]}")
  same "the end of $ends, $state" "$? $last" "$ends $expected"
done <<'ENDS'
75 99 RUNNING requeue 77_5
137 9 RUNNING requeue 77_5
137 10 RUNNING 4
75 0 COMPLETING 4
1 0 RUNNING 4
ENDS

run bulk submit omaha-strength --out t --slurm --shards 8 --now
expect_code 0
has "$asked" "$out" "# job 2: 8 shards"$'\n'"# job 5: the merge"
same "submitted" "$(<bin/taken)" "$(printf '%s\n' --parsable "$work/t/shards.sbatch" \
  --parsable --dependency=afterany:2 "$work/t/merge.sbatch")"
has "a name" "$(<t/shards.sbatch)" " bulk 'omaha-strength' "
has "a merge" "$(<t/merge.sbatch)" " bulk merge '$work/t'"

asks=(omaha-strength --out t --slurm)
refuses 2 "--shards 9 is too many: the highest number of an array's task is 8 here (MaxArraySize is 9)" \
  bulk submit "${asks[@]}" --shards 9
for time in 4 4:59 0:04:59 0-0:4; do
  refuses 2 "too short" bulk submit "${asks[@]}" --shards 2 --time "$time"
done
for time in 5 5:00 0:5:0 0-0:5 1-0; do
  run bulk submit "${asks[@]}" --shards 2 --time "$time"
  expect_code 0
done
for option in --time=x --time=1-2-3 --time=1:2:3:4 --mem=4x $'--partition=a\nb' --account=-x \
  --cpus=0 --running=0; do
  refuses 2 "is not accepted" bulk submit "${asks[@]}" --shards 2 "$option"
done
refuses 2 "control character" bulk submit omaha-strength --out $'a\nb' --slurm --shards 2
refuses 2 "--slurm is missing" bulk submit omaha-strength --out t --shards 2
refuses 2 "'no.jsonl' is neither a file nor a job" bulk submit no.jsonl --out t --slurm --shards 2

# A report's questions are made once; a folder that is cut otherwise is refused before any task is.
run bulk submit flop-report AhAd 'KK,QQ' --game shortdeck --out report --slurm --shards 4
expect_code 0
has "a report" "$(<report/shards.sbatch)" " bulk '$work/report/questions.jsonl' "
run bulk report/questions.jsonl --out report --shard 1/4
expect_code 0
refuses 1 "'$work/report' is cut into 4 shards already, not 5" \
  bulk submit report/questions.jsonl --out report --slurm --shards 5

# What the scheduler says is shown, and what it has taken before.
fake sbatch <<<'[[ $2 == /* ]] && echo 5 || { echo "no such partition" >&2; exit 3; }'
run bulk submit "${asks[@]}" --shards 2 --now
expect_code 1
has "$asked" "$err" "no such partition"
has "$asked" "$err" "did not take '$work/t/merge.sbatch' (the array is job 5): exit code 3"
rm bin/sbatch
PATH=$work/bin run bulk submit "${asks[@]}" --shards 2 --now
expect_code 1
has "$asked" "$err" "cannot start 'sbatch': No such file or directory"

finish
