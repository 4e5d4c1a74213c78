#!/usr/bin/env bash
# Tests that each public header compiles alone: the headers for C as C99, C++98 and C++20, the others as C++17, which they
# promise, and as C++20, which we use.
# Usage: headers_alone.sh C_COMPILER CXX_COMPILER INCLUDE_FOLDER
set -euo pipefail
cc=$1 cxx=$2 include=$3
status=0

# compiles COMPILER LANGUAGE STANDARD HEADER
compiles() {
  echo "#include <orvanel/$4>" |
    "$1" -x "$2" -std="$3" -pedantic -Wall -Wextra -Werror -I"$include" -fsyntax-only - ||
    { echo "$4 is no $3"; status=1; }
}

for header in "$include"/orvanel/orvanel.h "$include"/orvanel/c_interface.h; do
  [ -e "$header" ] || continue
  compiles "$cc" c c99 "$(basename "$header")"
  compiles "$cxx" c++ c++98 "$(basename "$header")"
done
for path in "$include"/orvanel/*.h; do
  for standard in c++17 c++20; do compiles "$cxx" c++ "$standard" "$(basename "$path")"; done
done
exit $status
