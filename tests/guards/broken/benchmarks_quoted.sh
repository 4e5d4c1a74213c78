#!/usr/bin/env bash
# Tests the guard with two documents whose kept run has changed.
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

results=$'In microseconds:\n\n| call | us |\n|---|---|\n| a | 1 |\n| b | 2 |\n| c | 3 |\n| d | 4 |\n\nIn units:\n| e | 5 |\n| f | 6 |'
put tree/bench/results/cpu.md "$results"
put tree/docs/benchmarks.md "bench/results/cpu.md
$results"
put tree/README.md "$results"
keeps 'documents that show the run' tree
put tree/bench/results/cpu.md "${results/| f | 6 |/| f | 7 |}"
breaks 'another number in the documents' 'docs/benchmarks.md has not: | f | 7 |' tree
put tree/docs/benchmarks.md "bench/results/cpu.md
${results/| b | 2 |/| b | 9 |}"
put tree/bench/results/cpu.md "${results/| b | 2 |/| b | 9 |}"
breaks 'another number in the README' 'README.md has not: | b | 9 |' tree
put tree/docs/benchmarks.md 'bench/results/gone.md'
breaks 'results that are gone' 'names no results that exist' tree
finish
