#!/usr/bin/env bash
# Tests that the library exports exactly the eight functions of its header.
# Usage: exported_names.sh LIBRARY HEADER
set -euo pipefail
exported=$(nm -D --defined-only "$1" | awk '{print $NF}' | sort)
declared=$(grep -oE '^ORVANEL_API [a-z]+ ORVANEL_CALL (Orvanel[A-Za-z]+)' "$2" | awk '{print $NF}' | sort)
[ "$(wc -l <<<"$declared")" -eq 8 ] || { echo "the header declares: $declared"; exit 1; }
diff <(echo "$declared") <(echo "$exported") || { echo "< declared, > exported"; exit 1; }
