#!/usr/bin/env bash
# Tests that the library needs only the C++ standard library.
# Usage: dependencies.sh LIBRARY
set -euo pipefail
status=0
needed=$(readelf -d "$1" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
for library in $needed; do
  case "$library" in
    libstdc++.so.6 | libgcc_s.so.1 | libc.so.6 | ld-linux-x86-64.so.2) ;;
    *) echo "needs $library"; status=1 ;;
  esac
done
exit $status
