#!/usr/bin/env bash
# Tests the guard with mistakes whose quoted line has changed, that are listed twice, or are too few for a source.
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

# The guard checks the tree that it lies in, so a copy gets the sources that its list names.
root=$(cd "$(dirname "$guard")/../.." && pwd)
tree=$PWD/tree
list=$tree/tests/mutation/mutations.txt
mkdir -p "$tree"
(cd "$root" && sed -n 's/^\[\(.*\)\]$/\1/p' tests/mutation/mutations.txt |
  xargs cp --parents -t "$tree" tests/mutation/mutate.py tests/mutation/mutations.txt)
guard=$tree/tests/mutation/mutate.py
keeps 'the sources as they are' check

put tree/optics/new_stage.cpp '// A stage without mistakes.'
breaks 'a source without mistakes' 'optics/new_stage.cpp has 0 mistakes; give it at least 5' check
rm tree/optics/new_stage.cpp

cp tree/models/classic/brent.cpp kept
sed -i 's/[(;]/ &/g' tree/models/classic/brent.cpp
breaks 'a changed line' 'models/classic/brent.cpp has 0 times' check
cp kept tree/models/classic/brent.cpp

sed '/^$/q' <(sed -n '/^\[models\/classic\/brent.cpp\]/,$p' "$list") >block
cat block >>"$list"
breaks 'a mistake twice' 'is listed twice' check
finish
