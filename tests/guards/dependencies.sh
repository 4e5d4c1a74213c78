#!/usr/bin/env bash
# The library needs the C++ standard library and nothing else, and computes nothing with the C library's mathematics,
# whose results differ between platforms.
# Usage: dependencies.sh LIBRARY STATIC_LIBRARY...
set -euo pipefail
status=0
needed=$(readelf -d "$1" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
for library in $needed; do
  case "$library" in
    libstdc++.so.6 | libgcc_s.so.1 | libc.so.6 | ld-linux-x86-64.so.2) ;;
    *) echo "needs $library"; status=1 ;;
  esac
done
mathematics='sin|cos|tan|sincos|asin|acos|atan|atan2|exp|exp2|log|log2|log10|pow|hypot|cbrt|fma|sqrt'
if nm -D --undefined-only "$1" | grep -E " ($mathematics)[fl]?(@|$)"; then
  echo "uses mathematics of the C library"
  status=1
fi
for archive in "${@:2}"; do
  if nm "$archive" | grep -E " U ($mathematics)[fl]?$"; then
    echo "$archive uses mathematics of the C library"
    status=1
  fi
done
if objdump -d --no-show-raw-insn "$1" | grep -qE '\svfn?m(add|sub)'; then
  echo "contains fused multiply-adds"
  status=1
fi
exit $status
