#!/usr/bin/env bash
# Tests that every piece of C and C++ in the README is in an example, and every output of an example is in the README.
# Usage: readme_quotes.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0
examples=$(cat examples/*.c examples/*.cpp)
pieces=0
piece=''
inside=false
while IFS= read -r line; do
  case "$line" in
    '```c' | '```cpp') inside=true piece='' ;;
    '```')
      if $inside; then
        pieces=$((pieces + 1))
        [[ $examples == *"$piece"* ]] || { echo "not in an example: $piece"; status=1; }
      fi
      inside=false
      ;;
    *) if $inside; then piece+=$line$'\n'; fi ;;
  esac
done <README.md
[ "$pieces" -gt 0 ] || { echo "the README quotes nothing"; status=1; }
readme=$(cat README.md)
for output in examples/*.output; do
  [[ $readme == *"$(cat "$output")"* ]] || { echo "not in the README: $output"; status=1; }
done
exit $status
