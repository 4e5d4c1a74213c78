#!/usr/bin/env bash
# Nothing is fetched but Debian packages, by name, in one place: the function `need` of ./dev.
# Usage: supply.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0
# This file, which has to spell what it looks for, is left out.
files=$(find dev .ci cmake CMakeLists.txt CMakePresets.json assets bench cli docs examples interface matrix optics tests \
  -type f \( -name dev -o -name run -o -name '*.sh' -o -name '*.py' -o -name 'CMake*' -o -name '*.cmake' -o -name '*.in' \
  -o -name command \) ! -path tests/guards/supply.sh)
fetching='\b(curl|wget|npm|npx|cargo|conan|vcpkg|gem) |\bpip3? |-m pip\b|FetchContent|ExternalProject|CPMAddPackage'
fetching+='|git (clone|submodule|fetch|pull)|DOWNLOAD|urllib|http\.client|requests\.get|go (get|install)'
# shellcheck disable=SC2086
if grep -nE "$fetching" $files; then
  echo "The lines above fetch something; name a Debian package in ./dev instead."
  status=1
fi
# A message that tells which packages are missing, in quotes on a line of its own, installs nothing.
# shellcheck disable=SC2086
if grep -nE '\b(apt|apt-get|aptitude|dpkg) (-[a-z]+ )*(install|update|-i)\b' $files | grep -vE '^dev:|:[0-9]+: *"'; then
  echo "The lines above install something; ./dev alone does."
  status=1
fi
exit $status
