#!/usr/bin/env bash
# Dependencies point downwards: the files of a layer include its own headers and those of the layers named beside it.
# Layers that are to be compiled for hosts without threads, files and an operating system also keep off their headers.
# Usage: includes.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0

# Each layer, what its files include of this project, and whether it is 'pure': without threads, files, processes.
layers='
include     any   orvanel/
base        any   base/
matrix      any   base/ orvanel/matrix\.h
optics      any   base/ orvanel/(constants|grid_plane|line_spread|psf_peak|resampling|ring|sampling|transforms|zernike)\.h
eye         pure  base/ orvanel/
targets     pure  base/ orvanel/
models/classic   any  base/ optics/ orvanel/
models/physical  any  base/ matrix/ optics/ orvanel/
models      any   base/ matrix/ optics/ eye/ targets/ orvanel/
metrics     pure  base/ eye/ models/ orvanel/
evaluation  pure  base/ eye/ targets/ models/ metrics/ orvanel/
interface   any   base/ optics/ targets/ models/ orvanel/
files       any   base/ eye/ targets/ orvanel/
c_interface  any  base/ eye/ targets/ models/ metrics/ evaluation/ files/ orvanel/
drawing     any   base/ eye/ targets/ models/ evaluation/ files/ orvanel/
cli         any   base/ eye/ targets/ models/ metrics/ evaluation/ files/ drawing/ orvanel/
bench       any   models/physical/ metrics/quality/ eye/refraction\.h evaluation/ orvanel/ optics/kernels/dispatch\.h tests/support/(loaded_library|physical_truth|plain)\.h
'
impure='cstdio|stdio\.h|iostream|fstream|filesystem|thread|mutex|condition_variable|atomic|csignal|unistd\.h|windows\.h|sys/'
impure+='|fcntl\.h|io\.h'
# Many eyes on threads, which hosts without threads leave out.
threads='^evaluation/in_order\.h:'

folders=$(awk 'NF {printf "%s%s", separator, $1; separator = "|"}' <<<"$layers")
complain() { echo "$1"; status=1; }

# Everything in quotes is of this project; a name made by a macro is refused, and so is a way upwards.
while read -r layer purity allowed; do
  [ -n "$layer" ] || continue
  includes=$(grep -rnE '^\s*#\s*(include|include_next|import)\b' --include='*.h' --include='*.c' --include='*.cpp' "$layer") ||
    { complain "$layer includes nothing"; continue; }
  own=$layer/
  [ "$layer" != include ] || own=orvanel/
  pattern="(${own}|${allowed// /|})"
  found=$(grep -vE "#\s*include\s*[\"<]$pattern" <<<"$includes" | grep -vE "#\s*include\s*<" || true
    grep -E "#\s*include\s*<($folders|orvanel|tests)/" <<<"$includes" | grep -vE "#\s*include\s*<$pattern" || true
    grep -E '[/"<]\.\.?/' <<<"$includes" || true)
  if [ "$purity" = pure ]; then
    found+=$(grep -E "#\s*include\s*<($impure)" <<<"$includes" | grep -vE "$threads" || true)
  fi
  [ -z "$found" ] || complain "$found"
done <<<"$layers"
exit $status
