#!/bin/sh
# Runs the command of a case and compares its output, errors and exit status with the files in the case. A command that
# exits with 77 cannot run here, for a reason in tests/guards/skips.txt. With ORVANEL_RENEW_CASES=1 it writes the
# results into the case instead; read them before you commit.
# Usage: run_case.sh CASE PROGRAM EYES
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
