#!/bin/sh
# run_case.sh CASE PROGRAM EYES: runs CASE/command and compares; a command that ends with 77 cannot be run here, for a
# reason that tests/guards/skips.txt has.
# With ORVANEL_RENEW_CASES=1 it writes what it has seen into CASE instead, to be read before it is committed.
set -u
case=$1
ORVANEL=$2
EYES=$3
PICTURES=$(cd "$(dirname "$0")/../files/pictures/files" && pwd)
export ORVANEL EYES PICTURES LC_ALL=C
seen=$(mktemp -d) || exit 1
trap 'chmod -R u+w "$seen"; rm -rf "$seen"' EXIT
mkdir "$seen/work"
(cd "$seen/work" && exec sh "$case/command" >"$seen/stdout" 2>"$seen/stderr")
status=$?
[ "$status" -eq 77 ] && exit 77
echo "$status" >"$seen/status"
if [ "${ORVANEL_RENEW_CASES:-0}" = 1 ]; then
  cp "$seen/stdout" "$seen/stderr" "$seen/status" "$case/"
fi
failed=0
for stream in stdout stderr status; do
  diff -u "$case/$stream" "$seen/$stream" || failed=1
done
exit $failed
