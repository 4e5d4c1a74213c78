#!/usr/bin/env bash
# Runs the Windows program as a command of this system: with line ends of one byte and names in UTF-8.
# Usage: program.sh WINE PROGRAM [ARGUMENT]...
set -uo pipefail
export LC_ALL=C.UTF-8
errors=$(mktemp)
trap 'rm -f "$errors"' EXIT
"$@" 2>"$errors" | tr -d '\r'
status=$?
tr -d '\r' <"$errors" >&2
exit "$status"
