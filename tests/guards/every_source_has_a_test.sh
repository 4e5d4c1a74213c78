#!/usr/bin/env bash
# From any source file its test is one substitution away: optics/psf.cpp, tests/optics/psf_test.cpp.
# Usage: every_source_has_a_test.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0
for source in matrix/*.cpp optics/*.cpp optics/kernels/*.cpp interface/*.cpp cli/*.cpp cli/*/*.cpp; do
  [ -e "$source" ] || continue
  case "$source" in
    cli/main.cpp | cli/commands/*.cpp | cli/report.cpp) continue ;;                  # from outside, by tests/cli/cases
    cli/version.cpp | cli/interruption.cpp) continue ;;                              # likewise
    cli/terminal.cpp) continue ;;                                                    # by tests/cli/terminal.sh
    cli/manual.cpp | cli/make_manuals.cpp) continue ;;                               # by tests/cli/manuals.sh
    interface/pattern_asset_*.cpp) continue ;;                                       # in pattern_asset_test
    interface/runtime_windows.cpp) continue ;;                                        # tests/windows/host.c
    cli/platform_*.cpp) continue ;;                                                  # through trace_capture and cases
    cli/colour_tables.cpp) continue ;;                                               # data of colour_map
    cli/font.cpp | cli/stb_truetype.cpp) continue ;;                                 # what canvas writes with
    cli/overview.cpp | cli/plane_figure.cpp | cli/sections_figure.cpp) continue ;;   # in figures_test
    cli/sheet.cpp) continue ;;                                                       # in chart_sheet_test
    cli/tiff_memory.cpp) continue ;;                                                 # in tiff_test, picture_file_test
    cli/pictures/*_decoder.cpp) continue ;;                                          # in picture_file_test
  esac
  test="tests/${source%.cpp}_test.cpp"
  [ -e "$test" ] || { echo "$source has no $test"; status=1; }
done
exit $status
