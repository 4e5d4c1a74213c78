#!/usr/bin/env bash
# No installed file names a folder of the build, which is where all of these prefixes lie, too.
# Usage: no_path_inside.sh PREFIX SOURCE_FOLDER
set -euo pipefail
[ -d "$1/include" ]
if grep -rlF "$2" "$1"; then
  echo "name $2"
  exit 1
fi
