#!/usr/bin/env bash
# Tests a batch whose file cannot grow beyond a limit: whole rows are kept, and with space the run continues to the same
# bytes.
# Usage: disk_full.sh PROGRAM MEAN COVARIANCE
set -euo pipefail
program=$1 mean=$2 covariance=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
"$program" population --mean "$mean" --cov "$covariance" -n 2000 --seed 3 -o eyes.csv >/dev/null
"$program" batch eyes.csv -o whole.csv --metrics rms,refraction >/dev/null
for limit in 1 33 64 100; do # KiB
  status=0
  (ulimit -f "$limit" && exec "$program" batch eyes.csv -o cut.csv --metrics rms,refraction --force >/dev/null 2>errors) || status=$?
  [ "$status" -eq 1 ] || { echo "status $status with $limit KiB"; exit 1; }
  grep -q 'cut.csv: cannot be written: File too large; all rows in it are complete, and --resume continues' errors || { cat errors; exit 1; }
  [ -z "$(tail -c 1 cut.csv)" ] || { echo "a row is torn with $limit KiB"; exit 1; }
  head -c "$(stat -c %s cut.csv)" whole.csv | cmp - cut.csv
  "$program" batch eyes.csv -o cut.csv --metrics rms,refraction --resume >/dev/null
  cmp cut.csv whole.csv
  cmp cut.csv.orvanel whole.csv.orvanel
done
