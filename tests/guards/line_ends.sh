#!/usr/bin/env bash
# Tests that text has the same bytes in every checkout: .gitattributes sets line ends, and sources have no others.
# Usage: line_ends.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
status=0
for line in '* text=auto eol=lf' 'tests/cli/cases/** -text' 'tests/fuzz/corpus/** -text'; do
  grep -Fx -- "$line" .gitattributes >/dev/null || { echo ".gitattributes lacks '$line'"; status=1; }
done
if find . \( -name build -o -name .git -o -path ./tests/cli/cases -o -path ./tests/fuzz/corpus \) -prune -o -type f \
  \( -name '*.cpp' -o -name '*.h' -o -name '*.c' -o -name '*.sh' -o -name '*.md' -o -name '*.cmake' -o -name '*.txt' \) -print0 |
  xargs -0 grep -l $'\r$'; then
  echo "The files above end lines with a carriage return."
  status=1
fi
exit $status
