#!/usr/bin/env bash
# Counts the instructions of every measured call with callgrind. Unlike times, they do not depend on other work on the
# machine. Fails if a call costs more than a twentieth above the recorded count. Valgrind does not support AVX-512.
# Usage: instructions.sh PROGRAM check|renew
set -euo pipefail
program=$(realpath "$1") action=$2
cd "$(dirname "$0")/.."
recorded=bench/results/instructions.txt
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT

for kernels in baseline avx2; do
  valgrind --tool=callgrind --instr-atstart=no --callgrind-out-file="$folder/$kernels" "$program" "$kernels" \
    2>"$folder/messages" || { cat "$folder/messages" >&2; exit 1; }
  for dump in "$folder/$kernels".?; do
    awk -v kernels="$kernels" '/^desc: Trigger: Client Request:/ {call = $NF} /^totals:/ {print call "/" kernels, $2}' "$dump"
  done
done >"$folder/counts"

if [ "$action" = renew ]; then
  cp "$folder/counts" "$recorded"
  echo "recorded in $recorded"
  exit
fi
awk '
  NR == FNR {recorded[$1] = $2; next}
  {
    counted[$1] = $2
    verdict = !($1 in recorded) ? "NOT RECORDED" : $2 > 1.05 * recorded[$1] ? "COSTS MORE" : ""
    printf "%-28s %10d instructions, %10d recorded  %s\n", $1, $2, recorded[$1], verdict
    if (verdict != "") failed = 1
  }
  END {
    for (call in recorded) if (!(call in counted)) {print call " was not counted"; failed = 1}
    if (failed) print "If this is meant to be: ./dev instructions renew, and say why in the commit."
    exit failed
  }' "$recorded" "$folder/counts"
