#!/usr/bin/env bash
# Tests that a folder of sources has at most 25 files, so that a newcomer can survey it.
# Usage: folders.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
most=25
layers='include base matrix optics eye targets models interface metrics evaluation files c_interface drawing cli bench'
# shellcheck disable=SC2086  # words
counts=$(find $layers -type f -printf '%h\n' | sort | uniq -c)
[ -n "$counts" ] || { echo "no sources are here"; exit 1; }
status=0
while read -r count folder; do
  [ "$count" -le $most ] && continue
  echo "$folder has $count files, at most $most; group some of them in a folder"
  status=1
done <<<"$counts"
exit $status
