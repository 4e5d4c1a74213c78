#!/usr/bin/env bash
# Tests the guard with texts of lower layers that name an option of the program.
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

for layer in base matrix optics eye targets models metrics evaluation interface files drawing; do
  put "tree/$layer/a.cpp" 'const char* text = "ask for fewer"; int b = c--; // "c--"'
done
put tree/cli/a.cpp 'const char* text = "say --jobs";'
keeps 'texts without options' tree
put tree/eye/b.cpp 'throw Error("let --extrapolate continue");'
breaks 'an option within a text' '--extrapolate' tree
put tree/eye/b.cpp '                "--extrapolate continue");'
breaks 'an option at the beginning of a text' '--extrapolate' tree
rm tree/eye/b.cpp
put tree/evaluation/b.h 'constexpr const char* kOption = "--jobs";'
breaks 'an option in a header' '--jobs' tree
rm -r tree/evaluation
breaks 'a folder that is gone' 'no folder evaluation' tree
finish
