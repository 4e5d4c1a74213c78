#!/usr/bin/env bash
# Tests that every test file contains a test and is built.
# Usage: every_test_is_built.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0
complain() { echo "$1"; status=1; }

# is_built TEST: a CMakeLists.txt of its folder, or of one above, names it.
is_built() {
  local folder
  folder=$(dirname "$1")
  while [ "$folder" != . ]; do
    if [ -e "$folder/CMakeLists.txt" ] &&
      grep -qE "^[^#]*(^|[ :>(])${1#"$folder"/}([ >)]|$)" "$folder/CMakeLists.txt"; then
      return 0
    fi
    folder=$(dirname "$folder")
  done
  return 1
}
tests=$(find tests -name '*_test.cpp')
[ -n "$tests" ] || complain "no file of tests is here"
while IFS= read -r test; do
  [ -n "$test" ] || continue
  grep -qE '^(TEST|TEST_F|TEST_P|TYPED_TEST)\(' "$test" || complain "$test holds no test"
  is_built "$test" || complain "$test is in no CMakeLists.txt"
done <<<"$tests"
exit $status
