#!/usr/bin/env bash
# Tests the guard with results of tests that were partly skipped.
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

# results FILE NAME...: the named tests were skipped, another one was not.
results() {
  local file=$1 name
  shift
  {
    echo '<testsuite name="(empty)">'
    echo '<testcase name="program.version" status="run"><system-out>&lt;skipped</system-out></testcase>'
    for name in "$@"; do printf '<testcase name="%s" status="notrun">\n<skipped message="x"/>\n</testcase>\n' "$name"; done
    echo '</testsuite>'
  } >"$file"
}
results none.xml
keeps 'no test skipped' none.xml release
results one.xml program.read-only-place
keeps 'a test that may be skipped' one.xml release
# shellcheck disable=SC2154,SC2034
"$guard" one.xml release | grep -qx 'skipped in release: program.read-only-place: root may write everywhere' || failures=1
results two.xml program.read-only-place program.version
breaks 'a test that may not' 'skipped in release: program.version, for which' two.xml release
results preset.xml program.batch-memory-limit
keeps 'a test that sanitizers may skip' preset.xml sanitize
breaks 'the same without a sanitizer' 'program.batch-memory-limit, for which' preset.xml release
breaks 'results that are missing' 'no results of tests' missing.xml release
finish
