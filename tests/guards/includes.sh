#!/usr/bin/env bash
# Dependencies point one way: cli and bench -> include <- interface -> models/classic -> optics and matrix -> base, and
# models/physical -> optics and matrix. The stages in optics do not include the engine. The benchmarks also choose the
# kernels, and share with the tests what loads the library and what it is compared with.
# Usage: includes.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0
layers='include|orvanel|base|matrix|optics|models|interface|cli|bench|tests'

# allowed FOLDER PATTERN: what the folder's files include of this project, in quotes or in angles, begins with one of the
# pattern's and takes no way upwards. Everything in quotes is of this project; a name made by a macro is refused.
allowed() {
  local includes found
  includes=$(grep -rnE '^\s*#\s*(include|include_next|import)\b' --include='*.h' --include='*.c' --include='*.cpp' "$1") ||
    { echo "$1 includes nothing"; status=1; return; }
  found=$(grep -vE "#\s*include\s*[\"<]($2)" <<<"$includes" | grep -vE "#\s*include\s*<" || true
    grep -E "#\s*include\s*<($layers)/" <<<"$includes" | grep -vE "#\s*include\s*<($2)" || true
    grep -E '[/"<]\.\.?/' <<<"$includes" || true)
  [ -z "$found" ] && return
  echo "$found"
  status=1
}

allowed include 'orvanel/'
allowed base 'base/'
allowed matrix 'base/|matrix/|orvanel/matrix\.h'
allowed optics 'base/|optics/|orvanel/(constants|grid_plane|line_spread|psf_peak|resampling|ring|sampling|transforms|zernike)\.h'
allowed models/classic 'base/|models/classic/|optics/|orvanel/'
allowed models/physical 'base/|models/physical/|optics/|orvanel/|matrix/'
allowed interface 'base/|interface/|models/classic/|optics/|orvanel/'
allowed cli 'base/|cli/|orvanel/'
allowed bench 'bench/|orvanel/|optics/kernels/dispatch\.h|tests/support/(loaded_library|plain)\.h'
exit $status
