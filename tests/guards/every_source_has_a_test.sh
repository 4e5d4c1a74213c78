#!/usr/bin/env bash
# From any source file its test is one substitution away: optics/psf.cpp, tests/optics/psf_test.cpp.
# Usage: every_source_has_a_test.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0
for source in matrix/*.cpp optics/*.cpp interface/*.cpp cli/*.cpp; do
  [ -e "$source" ] || continue
  # A program's main is tested from outside.
  [ "$source" = cli/main.cpp ] && continue
  test="tests/${source%.cpp}_test.cpp"
  [ -e "$test" ] || { echo "$source has no $test"; status=1; }
done
exit $status
