#!/usr/bin/env bash
# Tests that no installed file names a folder of the build. All of these prefixes are in that folder.
# Usage: no_path_inside.sh PREFIX SOURCE_FOLDER
set -euo pipefail
[ -d "$1/include" ]
if grep -rlF "$2" "$1"; then
  echo "name $2"
  exit 1
fi
