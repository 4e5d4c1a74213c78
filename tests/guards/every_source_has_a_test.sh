#!/usr/bin/env bash
# From any source file its test is one substitution away: optics/psf.cpp, tests/optics/psf_test.cpp.
# Usage: every_source_has_a_test.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0
for source in matrix/*.cpp optics/*.cpp interface/*.cpp cli/*.cpp; do
  [ -e "$source" ] || continue
  case "$source" in
    cli/main.cpp | cli/command_line.cpp) continue ;;                                 # from outside, by tests/cli/cases
    cli/colour_tables.cpp) continue ;;                                               # data of colour_map
    cli/font.cpp | cli/stb_truetype.cpp) continue ;;                                 # what canvas writes with
    cli/overview.cpp | cli/plane_figure.cpp | cli/sections_figure.cpp) continue ;;   # in figures_test
  esac
  test="tests/${source%.cpp}_test.cpp"
  [ -e "$test" ] || { echo "$source has no $test"; status=1; }
done
exit $status
