#!/usr/bin/env bash
# The library computes nothing with the C library's mathematics, whose results differ between platforms, and fuses no
# multiplication with an addition. In a library that is linked statically the names that it asks for are seen in its
# parts alone.
# Usage: arithmetic.sh OBJDUMP NM LIBRARY STATIC_LIBRARY...
set -euo pipefail
objdump=$1 nm=$2 library=$3
status=0
mathematics='sin|cos|tan|sincos|asin|acos|atan|atan2|exp|exp2|log|log2|log10|pow|hypot|cbrt|fma|sqrt'
for binary in "${@:3}"; do
  if "$nm" "$binary" | grep -E " U _?($mathematics)[fl]?(@|$)"; then
    echo "$binary uses mathematics of the C library"
    status=1
  fi
done
for archive in "${@:4}"; do
  if "$objdump" -d --no-show-raw-insn "$archive" | grep -E '\sf(add|sub|mul|div|sqrt|sin|cos|patan)[a-z]*\s' | sort | uniq -c; then
    echo "$archive computes with more digits than a double has"
    status=1
  fi
done
if "$objdump" -d --no-show-raw-insn "$library" | grep -qE '\s(v?fn?m(add|sub)|fml[as])'; then
  echo "contains fused multiply-adds"
  status=1
fi
exit $status
