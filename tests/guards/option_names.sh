#!/usr/bin/env bash
# Tests that messages of the layers below the program name none of its options. The program adds them
# (cli/error_text.cpp).
# Usage: option_names.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
layers='base matrix optics eye targets models metrics evaluation interface files drawing'
present=()
for layer in $layers; do
  [ -d "$layer" ] || { echo "there is no folder $layer"; exit 1; }
  present+=("$layer")
done
# A literal with two hyphens before a letter; a decrement stands outside of quotes or is followed by no letter.
if grep -rnE --include='*.h' --include='*.c' --include='*.cpp' '"([^"]*[^"a-zA-Z0-9_])?--[a-z]' "${present[@]}"; then
  echo "names an option of the program; throw an error with fields, and let the program name it"
  exit 1
fi
