#!/usr/bin/env bash
# The program runs from its prefix, with the library from there, and simulates an eye.
# Usage: program.sh PREFIX SCRATCH EYE_FILE
set -euo pipefail
prefix=$1 scratch=$2 eye=$3
rm -rf "$scratch"
mkdir -p "$scratch"
unset LD_LIBRARY_PATH
library=$(ldd "$prefix/bin/orvanel" | awk '$1 ~ /^libOrvanelDll/ {print $3}')
[[ $(realpath "$library") == $(realpath "$prefix")/* ]] || { echo "takes the library from '$library'"; exit 1; }
"$prefix/bin/orvanel" simulate "$eye" -o "$scratch/results" >"$scratch/summary"
[ -s "$scratch/summary" ]
[ -n "$(ls "$scratch/results")" ]
