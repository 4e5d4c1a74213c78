#!/usr/bin/env bash
# Builds other CMake projects: the examples, and a project of engine and matrix that checks itself.
# Usage: CC=compiler CXX=compiler cmake.sh EXAMPLES PREFIX SCRATCH
set -euo pipefail
examples=$1 prefix=$2 scratch=$3
rm -rf "$scratch"

# project NAME SOURCE: configured with no flags of ours, built.
project() {
  cmake -G Ninja -S "$2" -B "$scratch/$1" -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/$1.log" ||
    { cat "$scratch/$1.log"; exit 1; }
  grep -q "^Orvanel_DIR:PATH=$prefix/" "$scratch/$1/CMakeCache.txt" || { echo "$1 found another Orvanel"; exit 1; }
  cmake --build "$scratch/$1" >"$scratch/$1.log" || { cat "$scratch/$1.log"; exit 1; }
}

mkdir -p "$scratch"
project examples "$examples"
"$scratch/examples/strehl_and_ring" "$examples/standard_observer.txt" "$scratch/ring.pgm" |
  diff "$examples/strehl_and_ring.output" -
"$scratch/examples/metrics_of_eyes" | diff "$examples/metrics_of_eyes.output" -
"$scratch/examples/best_focus" "$examples/standard_observer.txt" | diff "$examples/best_focus.output" -

project engine_and_matrix "$(dirname "$0")/engine_and_matrix"
"$scratch/engine_and_matrix/stranger"
