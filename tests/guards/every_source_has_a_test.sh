#!/usr/bin/env bash
# Tests that each source has a test of the same name, as optics/psf.cpp has tests/optics/psf_test.cpp, and that each
# guard has a test that breaks its rule.
# Usage: every_source_has_a_test.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0
complain() { echo "$1"; status=1; }

# Sources, and the test that reaches them from elsewhere.
elsewhere='
cli/main.cpp                            tests/cli/run_case.sh
cli/commands/*.cpp                      tests/cli/run_case.sh
cli/console/report.cpp                  tests/cli/run_case.sh
cli/version.cpp                         tests/cli/run_case.sh
cli/console/process_*.cpp               tests/cli/run_case.sh
cli/console/signals.cpp                 tests/cli/signals.sh
files/interruption.cpp                  tests/cli/signals.sh
files/platform_*.cpp                    tests/files/input_file_test.cpp
cli/console/terminal.cpp                tests/cli/terminal.sh
cli/manual.cpp                          tests/cli/manuals.sh
cli/make_manuals.cpp                    tests/cli/manuals.sh
drawing/canvas/colour_tables.cpp        tests/drawing/canvas/colour_map_test.cpp
drawing/canvas/font.cpp                 tests/drawing/canvas/canvas_test.cpp
drawing/canvas/stb_truetype.cpp         tests/drawing/canvas/canvas_test.cpp
drawing/overview.cpp                    tests/drawing/figures_test.cpp
drawing/plane_figure.cpp                tests/drawing/figures_test.cpp
drawing/sections_figure.cpp             tests/drawing/figures_test.cpp
files/tiff_memory.cpp                   tests/files/planes/tiff_test.cpp
files/pictures/*_decoder.cpp            tests/files/pictures/picture_file_test.cpp
interface/pattern_asset_*.cpp           tests/interface/pattern_asset_test.cpp
interface/runtime_windows.cpp           tests/windows/host.c
'
while read -r pattern test; do
  [ -n "$pattern" ] || continue
  compgen -G "$pattern" >/dev/null || complain "$pattern, which needs no test of its own, does not exist"
  [ -s "$test" ] || complain "$pattern is tested by $test, which does not exist"
done <<<"$elsewhere"
is_elsewhere() {
  local pattern test
  while read -r pattern test; do
    # shellcheck disable=SC2254  # a pattern it is
    case $1 in $pattern) return 0 ;; esac
  done <<<"$elsewhere"
  return 1
}
layers='base matrix optics eye targets models interface metrics evaluation files c_interface drawing cli'
# shellcheck disable=SC2086  # words
sources=$(find $layers -name '*.cpp')
while read -r source; do
  if is_elsewhere "$source"; then continue; fi
  test="tests/${source%.cpp}_test.cpp"
  [ -e "$test" ] || complain "$source has no $test"
done <<<"$sources"

for guard in tests/guards/*.sh tests/guards/*.py; do
  name=$(basename "${guard%.*}").sh
  [ -e "tests/guards/broken/$name" ] || complain "$guard has no tests/guards/broken/$name"
done
exit $status
