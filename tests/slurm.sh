#!/usr/bin/env bash
# Runs the job array of docs/batch.md with Slurm, on one node on this machine, and compares the merged shards with a single
# run. Where Slurm cannot be started, the test says why and is skipped.
# Usage: slurm.sh PROGRAM SOURCE_FOLDER WORK_FOLDER
set -euo pipefail
program=$(realpath "$1") source=$(realpath "$2")
rm -rf "$3"
mkdir -p "$3"
work=$(realpath "$3")
host=$(hostname -s)
processes=()

stop() {
  local process
  for process in "${processes[@]}"; do kill "$process" 2>/dev/null || true; done
  wait
}
trap stop EXIT

# skip REASON: with the last lines of what the daemons wrote. The status 77 means skipped.
skip() {
  tail -n 3 "$work"/*.out >&2
  echo "skipped: Slurm.JobArray: $1"
  exit 77
}

# soon COMMAND...: within 30 seconds it succeeds.
soon() {
  local tries
  for ((tries = 0; tries < 300; ++tries)); do
    "$@" >/dev/null 2>&1 && return
    sleep 0.1
  done
  return 1
}

# Its own key and socket: an installed munge of this machine is left alone.
start_munge() {
  local folder=$work/munge
  mkdir -m 700 "$folder"
  head -c 128 /dev/urandom >"$folder/key"
  chmod 600 "$folder/key"
  munged --foreground --force --key-file="$folder/key" --socket="$folder/socket" --pid-file="$folder/pid" \
    --log-file="$work/munged.log" --seed-file="$folder/seed" >"$work/munged.out" 2>&1 &
  processes+=($!)
  soon munge -n --socket="$folder/socket"
}

start_slurm() {
  mkdir "$work/state" "$work/spool"
  cat >"$work/slurm.conf" <<CONFIGURATION
ClusterName=test
SlurmctldHost=$host(127.0.0.1)
SlurmctldPort=26817
SlurmdPort=26818
SlurmUser=$(id -un)
SlurmdUser=$(id -un)
AuthType=auth/munge
AuthInfo=socket=$work/munge/socket
CredType=cred/munge
StateSaveLocation=$work/state
SlurmdSpoolDir=$work/spool
SlurmctldPidFile=$work/slurmctld.pid
SlurmdPidFile=$work/slurmd.pid
SlurmctldLogFile=$work/slurmctld.log
SlurmdLogFile=$work/slurmd.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SwitchType=switch/none
MpiDefault=none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
ReturnToService=2
# The array of the page asks for more processors than this machine may have.
SlurmdParameters=config_overrides
NodeName=$host NodeAddr=127.0.0.1 CPUs=16 State=UNKNOWN
PartitionName=all Nodes=$host Default=YES MaxTime=INFINITE State=UP
CONFIGURATION
  export SLURM_CONF=$work/slurm.conf
  slurmctld -D >"$work/slurmctld.out" 2>&1 &
  processes+=($!)
  slurmd -D -N "$host" >"$work/slurmd.out" 2>&1 &
  processes+=($!)
  soon idle
}
idle() { [ "$(sinfo --noheader --format=%t)" = idle ]; }

start_munge || skip "munged does not start"
start_slurm || skip "slurmctld and slurmd do not start"

cd "$work"
"$program" population --mean "$source/examples/mean.csv" --cov "$source/examples/covariance.csv" -n 200 --seed 7 -o eyes.csv
"$program" batch eyes.csv -o whole.csv --jobs 1 2>whole.err

# The script of the page, unchanged.
sed -n 's/^    //; /^#!\/bin\/bash$/,/--resume$/p' "$source/docs/batch.md" >array.sh
grep -q '^#SBATCH --array=' array.sh || { echo "docs/batch.md has no job array"; exit 1; }
mkdir bin
ln -s "$program" bin/orvanel
export PATH=$work/bin:$PATH
job=$(sbatch --parsable array.sh)
merge=$(sbatch --parsable --dependency="afterok:$job" --kill-on-invalid-dep=yes --wrap 'orvanel merge shard_*.csv -o results.csv')

finished() { [ -z "$(squeue --noheader)" ]; }
ended=no
for ((tries = 0; tries < 20; ++tries)); do
  if soon finished; then
    ended=yes
    break
  fi
done
[ $ended = yes ] || { squeue; echo "the jobs do not end"; exit 1; }
[ -e results.csv ] || { cat slurm-*.out; echo "job $merge has not merged the shards"; exit 1; }
cmp results.csv whole.csv
echo "Slurm.JobArray: $(find . -name "shard_*.csv" | wc -l) shards of $(($(wc -l <whole.csv) - 1)) eyes, merged to the bytes of a single run"
