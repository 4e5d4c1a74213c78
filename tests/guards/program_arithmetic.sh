#!/usr/bin/env bash
# Tests that the program calls no functions of the C library whose results differ between platforms. Third-party code
# that draws glyphs and reads pictures is excluded; it contains such functions but does not need them.
# Usage: program_arithmetic.sh NM STATIC_LIBRARY...
set -euo pipefail
nm=$1
status=0
mathematics='a?(sin|cos|tan)h?|sincos|atan2|exp|exp2|exp10|expm1|log|log2|log10|log1p|pow|hypot|cbrt|fma|erfc?|[lt]gamma|c(abs|arg|exp|log|pow|sqrt|sinh?|cosh?|tanh?)'
others='stb_truetype|stb_decoder'
for archive in "${@:2}"; do
  # Each name behind that of its part.
  names=$("$nm" -A "$archive") || { echo "$archive cannot be read"; exit 1; }
  [ "$(grep -c ' T ' <<<"$names")" -gt 0 ] || { echo "$archive holds no code"; status=1; }
  found=$(grep -E " U _?($mathematics)[fl]?(@|$)" <<<"$names" | grep -vE "[:/]($others)\.cpp\." || true)
  [ -z "$found" ] && continue
  echo "$found"
  echo "$archive uses mathematics of the C library"
  status=1
done
exit $status
