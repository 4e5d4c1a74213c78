#!/usr/bin/env bash
# Tests the guard with empty files of the names of all sources, and one missing test or source.
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"
# shellcheck disable=SC2154
sources=$(cd "$(dirname "$guard")/../.." && pwd)

mkdir tree
(cd "$sources" && find base matrix optics eye targets models interface metrics evaluation files c_interface drawing cli tests -type f ! -path '*/cases/*' ! -path '*/corpus/*' -print0) |
  while IFS= read -r -d '' file; do put "tree/$file" x; done
keeps 'a tree with a test for each source' tree
rm tree/tests/optics/psf_test.cpp
breaks 'a source without its test' 'optics/psf.cpp has no tests/optics/psf_test.cpp' tree
put tree/tests/optics/psf_test.cpp x
put tree/models/physical/new.cpp x
breaks 'a new source of a model' 'models/physical/new.cpp has no tests/models/physical/new_test.cpp' tree
rm tree/models/physical/new.cpp
put tree/files/tables/new.cpp x
breaks 'a new source' 'files/tables/new.cpp has no tests/files/tables/new_test.cpp' tree
rm tree/files/tables/new.cpp tree/cli/main.cpp
breaks 'an exception for what has gone' 'cli/main.cpp, which needs no test of its own, does not exist' tree
put tree/cli/main.cpp x
: >tree/tests/cli/run_case.sh
breaks 'an exception whose test has gone' 'tests/cli/run_case.sh, which does not exist' tree
put tree/tests/cli/run_case.sh x
put tree/tests/guards/new.sh x
breaks 'a guard without its test' 'tests/guards/new.sh has no tests/guards/broken/new.sh' tree
rm tree/tests/guards/new.sh
put tree/tests/guards/new.py x
breaks 'a guard in Python without its test' 'tests/guards/new.py has no tests/guards/broken/new.sh' tree
finish
