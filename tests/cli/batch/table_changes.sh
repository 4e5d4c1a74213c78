#!/usr/bin/env bash
# Changes a table while a batch reads it. The run reports this and is incomplete, and no run continues its results. A
# table with a new time, or replaced by an equal one, has not changed.
# Usage: table_changes.sh PROGRAM MEAN COVARIANCE
set -euo pipefail
program=$1 mean=$2 covariance=$3
work=$(mktemp -d)
pid=
trap '[ -z "$pid" ] || kill -KILL $pid 2>/dev/null || true; rm -rf "$work"' EXIT
cd "$work"
"$program" population --mean "$mean" --cov "$covariance" -n 6000 --seed 3 -o table.csv >/dev/null

fail() {
  echo "$1"
  exit 1
}

# changes EXPECTED_STATUS CHANGE...: stops a run that has written rows, runs the command, and lets the run go on.
changes() {
  local expected=$1 status=0
  shift
  rm -f eyes.csv results.csv*
  head -n "$rows" table.csv >eyes.csv
  "$program" batch eyes.csv -o results.csv --metrics strehl_axis --jobs 1 >/dev/null 2>errors &
  pid=$!
  until [ "$(head -c 2000 results.csv 2>/dev/null | wc -l)" -gt 2 ]; do
    kill -0 $pid 2>/dev/null || fail "ends before the change: $(cat errors)"
    sleep 0.02
  done
  kill -STOP $pid
  "$@"
  kill -CONT $pid
  wait $pid || status=$?
  pid=
  [ "$status" -eq "$expected" ] || fail "status $status after $*: $(cat errors)"
}

refused() {
  grep -q '^orvanel: eyes.csv: was changed while it was read' errors || fail "$(cat errors)"
  grep -q '"complete": false' results.csv.orvanel || fail "the record says complete"
  head -n "$rows" table.csv >eyes.csv # even where it is as it was
  "$program" batch eyes.csv -o results.csv --metrics strehl_axis --resume 2>errors && fail "a run goes on"
  grep -q 'the table of eyes differs or was changed' errors || fail "$(cat errors)"
}

half() { truncate -s $(($(stat -c %s eyes.csv) / 2)) eyes.csv; }
rewritten() { head -n "$rows" table.csv | sed '$s/OD/OS/' >eyes.csv; }
longer() { tail -n 1 table.csv >>eyes.csv; }
replaced() { sed -n '2,51p' table.csv >other && mv other eyes.csv; }
like() { cp eyes.csv other && mv other eyes.csv; }

rows=6001
for change in half rewritten longer replaced 'rm eyes.csv'; do
  # shellcheck disable=SC2086 # words
  changes 1 $change
  refused
done
rows=1500
changes 0 touch eyes.csv
cp results.csv first.csv
changes 0 like
cmp results.csv first.csv
"$program" batch eyes.csv -o whole.csv --metrics strehl_axis >/dev/null
cmp results.csv whole.csv
cmp results.csv.orvanel whole.csv.orvanel
