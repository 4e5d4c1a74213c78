#!/usr/bin/env bash
# Tests the trace line on redirected standard output: it ends with a newline, while lines of the host keep their ends,
# and it is in its place among them.
# Usage: trace_line.sh WINE HOST LIBRARY
set -euo pipefail
# The host prints 1e-5 as its C runtime does; the library prints it as C has it everywhere.
expected='before 1e-005\r\nunfinished, 0.5\t80\nbetween\r\n1e-05\t3960625\n1e+06\t0\nafter\r\nunloaded\r\n'
seen=$("$1" "$2" "$3" trace | od -c)
diff <(printf '%b' "$expected" | od -c) <(echo "$seen") || { echo "< expected, > seen"; exit 1; }
