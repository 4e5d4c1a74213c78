#!/usr/bin/env bash
# Tests that docs/benchmarks.md shows the tables of one kept run, and the README its microseconds.
# Usage: benchmarks_quoted.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0

# quotes DOCUMENT LINES: the document has each of the lines.
quotes() {
  local line lines=0
  while IFS= read -r line; do
    lines=$((lines + 1))
    grep -qxF -- "$line" "$1" || { echo "$1 has not: $line"; status=1; }
  done <<<"$2"
  [ "$lines" -gt 5 ] || { echo "$results has no tables"; status=1; }
}

results=$(grep -oE 'bench/results/[a-z0-9-]+\.md' docs/benchmarks.md | head -n 1)
[ -e "$results" ] || { echo "docs/benchmarks.md names no results that exist"; exit 1; }
quotes docs/benchmarks.md "$(grep -E '^(\||In units|An engine)|load average' "$results")"
quotes README.md "$(sed -n '/^In microseconds/,/^| a process/ {/^| a process/d; /^|/p}' "$results")"
exit $status
