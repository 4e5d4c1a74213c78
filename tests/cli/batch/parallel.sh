#!/usr/bin/env bash
# Runs the example with GNU parallel in docs/batch.md, and tests that it gives the bytes of a single run.
# Usage: parallel.sh PROGRAM SOURCE_FOLDER
set -euo pipefail
program=$1 source=$2
command -v parallel >/dev/null || { echo "GNU parallel is missing: install parallel"; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir bin home
ln -s "$program" bin/orvanel
export PATH=$work/bin:$PATH HOME=$work/home
example=$(sed -n 's/^    \(parallel .*\|orvanel merge shard.*\)$/\1/p' "$source/docs/batch.md")
[ "$(wc -l <<<"$example")" -eq 2 ] || { echo "docs/batch.md has no example with parallel: $example"; exit 1; }
orvanel population --mean "$source/examples/mean.csv" --cov "$source/examples/covariance.csv" -n 700 --seed 5 -o eyes.csv
bash -euc "$example" </dev/null
orvanel batch eyes.csv -o single.csv
cmp results.csv single.csv
cmp results.csv.orvanel single.csv.orvanel
