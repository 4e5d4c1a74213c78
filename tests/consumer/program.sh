#!/usr/bin/env bash
# The program runs from its prefix, with the library from there, and simulates an eye.
# Usage: program.sh PREFIX SCRATCH EYES
set -euo pipefail
prefix=$1 scratch=$2 eyes=$3
rm -rf "$scratch"
mkdir -p "$scratch"
unset LD_LIBRARY_PATH
library=$(ldd "$prefix/bin/orvanel" | awk '$1 ~ /^libOrvanelDll/ {print $3}')
[[ $(realpath "$library") == $(realpath "$prefix")/* ]] || { echo "takes the library from '$library'"; exit 1; }
"$prefix/bin/orvanel" simulate "$(find "$eyes" -name '*.json' | sort | head -1)" -o "$scratch/results" >"$scratch/summary"
[ -s "$scratch/summary" ]
[ -n "$(ls "$scratch/results")" ]
