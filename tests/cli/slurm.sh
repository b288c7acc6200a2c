# A Slurm of our own for a test: a controller and one node of two CPUs on loopback, in $work, without
# munge and accounting, as whoever runs the test. Sourced behind expect.sh. After slurm_start all
# commands of Slurm speak to it; it ends with the test, and so do its jobs.
# shellcheck shell=bash disable=SC2154,SC2013

slurm_folder=$work/slurm
slurm_daemons=()

slurm_config() {
  local user ports
  user=$(id -un)
  mapfile -t ports < <(
    for port in $(shuf -i 20000-32000 -n 50); do
      (: <"/dev/tcp/127.0.0.1/$port") 2>/dev/null || echo "$port"
    done
  )
  cat <<CONFIG
ClusterName=test
SlurmctldHost=localhost
SlurmctldPort=${ports[0]}
SlurmdPort=${ports[1]}
SlurmUser=$user
SlurmdUser=$user
AuthType=auth/none
CredType=cred/none
MpiDefault=none
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SwitchType=switch/none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
JobCompType=jobcomp/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SlurmdParameters=config_overrides
SchedulerType=sched/builtin
SchedulerParameters=batch_sched_delay=0,sched_interval=1,sched_min_interval=0
StateSaveLocation=$slurm_folder/state
SlurmdSpoolDir=$slurm_folder/spool
SlurmctldPidFile=$slurm_folder/slurmctld.pid
SlurmdPidFile=$slurm_folder/slurmd.pid
KillWait=5
MaxArraySize=101
ReturnToService=2
NodeName=node NodeHostname=$(hostname -s) NodeAddr=127.0.0.1 CPUs=2 RealMemory=1000
PartitionName=all Nodes=node Default=YES MaxTime=INFINITE
CONFIG
}

# slurm_wait SECONDS COMMAND...: until it is true.
slurm_wait() {
  local end=$((SECONDS + $1))
  until "${@:2}"; do
    ((SECONDS < end)) || return 1
    sleep 0.05
  done
}

slurm_node_is_idle() { [[ $(sinfo -h -o %T 2>/dev/null) == idle ]]; }

slurm_start() {
  local program
  mkdir -p "$slurm_folder"/{state,spool}
  export SLURM_CONF=$slurm_folder/slurm.conf
  slurm_config >"$SLURM_CONF"
  trap 'slurm_stop; rm -rf "$work"' EXIT
  for program in slurmctld 'slurmd -N node'; do
    # A test that is killed cannot end them.
    # shellcheck disable=SC2086
    PATH=$PATH:/usr/sbin:/sbin timeout -k 5 900 $program -D -f "$SLURM_CONF" \
      >"$slurm_folder/${program%% *}.log" 2>&1 &
    slurm_daemons+=($!)
  done
  slurm_wait 30 slurm_node_is_idle && return
  fail "no Slurm can be started here: $(tail -n 5 "$slurm_folder"/*.log)"
  finish
}

slurm_has_no_jobs() { [[ -z $(squeue -h 2>/dev/null) ]]; }

slurm_stop() {
  local process
  timeout 10 scancel --user "$(id -un)" 2>/dev/null
  slurm_wait 10 slurm_has_no_jobs
  kill "${slurm_daemons[@]}" 2>/dev/null
  wait "${slurm_daemons[@]}" 2>/dev/null
  # What is left of jobs that would not end was started with our configuration.
  for process in $(grep -lzF "SLURM_CONF=$SLURM_CONF" /proc/[0-9]*/environ 2>/dev/null); do
    process=${process#/proc/}
    kill -9 "${process%/environ}" 2>/dev/null
  done
}
