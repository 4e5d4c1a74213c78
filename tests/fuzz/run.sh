#!/usr/bin/env bash
# Runs fuzzing targets side by side, one for each core. Inputs with new coverage stay in FOLDER/found/TARGET;
# FOLDER/found/runs.txt has what each run executed.
# Usage: run.sh FOLDER SECONDS TARGET...
set -euo pipefail
export FUZZ_FOLDER=$1 FUZZ_SECONDS=$2 FUZZ_CORPUS
FUZZ_CORPUS=$(dirname "$0")/corpus
shift 2

# A fault ends the fuzzer with the input that shows it. Freed memory is kept for less long than usual, which would fill the
# machine's; who allocated it is asked when a finding is looked at, since keeping that takes half of the time.
one() {
  local target=$1 found=$FUZZ_FOLDER/found/$1
  # Files of the user's are long where depth and numbers of things matter; of the others, the rest would not be looked at.
  local longest=2048
  case $target in eye_file | eye_table | picture) longest=262144 ;; esac
  local log=$found.log
  mkdir -p "$found"
  ASAN_OPTIONS=quarantine_size_mb=16:malloc_context_size=0 "$FUZZ_FOLDER/bin/orvanel_fuzz_$target" \
    -max_total_time="$FUZZ_SECONDS" -timeout=30 -max_len="$longest" -print_final_stats=1 \
    -artifact_prefix="$found-" \
    "$found" "$FUZZ_CORPUS/$target" 2>"$log" || { tail -n 40 "$log" >&2; return 1; }
  local executions
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  echo "$(date -u +%F) $target $executions" >>"$FUZZ_FOLDER/found/runs.txt"
  printf '%s: %s runs in %s s, %s in all; %s\n' "$target" "$executions" "$FUZZ_SECONDS" \
    "$(awk -v target="$target" '$2 == target { sum += $3 } END { print sum }' "$FUZZ_FOLDER/found/runs.txt")" \
    "$(grep -o 'cov: [0-9]* ft: [0-9]*' "$log" | tail -n 1)"
}
export -f one
printf '%s\n' "$@" | xargs -P "$(nproc)" -I{} bash -c 'one {}'
