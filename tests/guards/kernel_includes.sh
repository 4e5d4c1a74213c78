#!/usr/bin/env bash
# Tests that code for one instruction set includes nothing of the C++ library. Otherwise its functions would be compiled
# for that instruction set, and the linker could keep them for all callers.
# Usage: kernel_includes.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0
declare -A seen=()
files=(optics/kernels/variant.cpp models/physical/kernels/variant.cpp)
while [ ${#files[@]} -gt 0 ]; do
  file=${files[0]}
  files=("${files[@]:1}")
  [ -z "${seen[$file]:-}" ] || continue
  seen[$file]=1
  while read -r include; do
    case "$include" in
      '"optics/kernels/'* | '"models/physical/kernels/'*) include=${include#\"} && files+=("${include%\"}") ;;
      '"orvanel/constants.h"') files+=(include/orvanel/constants.h) ;;
      '<immintrin.h>') ;;
      *) echo "$file includes $include"; status=1 ;;
    esac
  done < <(sed -n 's/^ *# *include *//p' "$file")
done
[ ${#seen[@]} -ge 6 ] || { echo "only these are kernels: ${!seen[*]}"; status=1; }
exit $status
