#!/usr/bin/env bash
# Tests that the program runs from its prefix, needs no library of ours, and simulates an eye.
# Usage: program.sh PREFIX SCRATCH EYES
set -euo pipefail
prefix=$1 scratch=$2 eyes=$3
rm -rf "$scratch"
mkdir -p "$scratch"
if ldd "$prefix/bin/orvanel" | grep libOrvanelDll; then
  echo "the program needs the shared library, which it does not use"
  exit 1
fi
"$prefix/bin/orvanel" simulate "$(find "$eyes" -name '*.json' | sort | head -1)" -o "$scratch/results" >"$scratch/summary"
[ -s "$scratch/summary" ]
[ -n "$(ls "$scratch/results")" ]
