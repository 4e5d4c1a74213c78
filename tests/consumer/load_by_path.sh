#!/usr/bin/env bash
# Builds a host without our header and flags, which loads the library by its path at run time.
# Usage: CC=compiler load_by_path.sh PREFIX SCRATCH
set -euo pipefail
prefix=$1 scratch=$2
rm -rf "$scratch"
mkdir -p "$scratch"
"$CC" -std=c99 -pedantic -Wall -Wextra -Werror "$(dirname "$0")/load_by_path.c" -ldl -o "$scratch/host"
"$scratch/host" "$(find "$prefix" -name libOrvanelDll.so)"
