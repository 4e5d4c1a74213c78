#!/usr/bin/env bash
# Lists the skipped tests with their reasons. Fails for a test that skips.txt does not list.
# Usage: skips.sh RESULTS PRESET, with RESULTS as ctest writes them by --output-junit
set -euo pipefail
results=$1 preset=$2
list=$(dirname "$0")/skips.txt
status=0
[ -s "$results" ] || { echo "no results of tests in $results"; exit 1; }
skipped=$(awk -F '"' '/<testcase name="/ {name = $2} /<skipped/ {print name}' "$results")
while IFS= read -r name; do
  [ -n "$name" ] || continue
  reason=$(awk -v name="$name" -v preset="$preset" \
    '$1 == name && ($2 == "*" || $2 == preset) {$1 = $2 = ""; sub(/^ */, ""); print}' "$list")
  if [ -n "$reason" ]; then
    echo "skipped in $preset: $name: $reason"
  else
    echo "skipped in $preset: $name, for which $list has no reason"
    status=1
  fi
done <<<"$skipped"
exit $status
