#!/usr/bin/env bash
# Dependencies point one way: cli and bench -> include <- interface -> optics -> matrix. The benchmarks also choose the
# kernels, and share with the tests what loads the library and what it is compared with.
# Usage: includes.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0

# allowed FOLDER PATTERN: every quoted include of the folder's files begins with one of the pattern's.
allowed() {
  local found
  found=$(grep -rnE '^#include "' --include='*.h' --include='*.cpp' "$1" | grep -vE "#include \"($2)" || true)
  [ -z "$found" ] && return
  echo "$found"
  status=1
}

allowed include 'orvanel/'
allowed matrix 'matrix/|orvanel/matrix\.h'
allowed optics 'optics/|orvanel/|matrix/standard_output\.h'
allowed interface 'interface/|optics/|orvanel/'
allowed cli 'cli/|orvanel/'
allowed bench 'bench/|orvanel/|optics/kernels/dispatch\.h|tests/support/(loaded_library|plain)\.h'
exit $status
