#!/usr/bin/env bash
# Tests that the library calls no mathematics of the C library, whose results differ between platforms, and has no fused
# multiply-add. Names that a static library needs are visible only in its parts.
# Usage: arithmetic.sh OBJDUMP NM LIBRARY STATIC_LIBRARY...
set -euo pipefail
objdump=$1 nm=$2 library=$3
status=0
code=$(mktemp)
trap 'rm -f "$code"' EXIT
mathematics='a?(sin|cos|tan)h?|sincos|atan2|exp|exp2|exp10|expm1|log|log2|log10|log1p|pow|hypot|cbrt|fma|sqrt|erfc?|[lt]gamma|c(abs|arg|exp|log|pow|sqrt|sinh?|cosh?|tanh?)'

# Whole files are read, never pipes: grep stops at its first find, and what would still write to it would fail.
for binary in "${@:3}"; do
  names=$("$nm" "$binary") || { echo "$binary cannot be read"; exit 1; }
  if grep -E " U _?($mathematics)[fl]?(@|$)" <<<"$names"; then
    echo "$binary uses mathematics of the C library"
    status=1
  fi
  "$objdump" -d --no-show-raw-insn "$binary" >"$code" || { echo "$binary cannot be read"; exit 1; }
  [ "$(grep -cE '^ *[0-9a-f]+:' "$code")" -gt 1000 ] || { echo "$binary holds no code"; status=1; }
  if grep -m 3 -E '\s(v?fn?m(add|sub)|fml[as])' "$code"; then
    echo "$binary contains fused multiply-adds"
    status=1
  fi
  # The part of the C library that is linked into the Windows library computes as it likes.
  if [ "$binary" != "$library" ] && grep -m 3 -E '\sf(add|sub|mul|div|sqrt|sin|cos|p?atan|ptan|yl2x|2xm1)[a-z0-9]*\s' "$code"; then
    echo "$binary computes with more digits than a double has"
    status=1
  fi
done
exit $status
