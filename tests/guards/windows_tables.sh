#!/usr/bin/env bash
# Tests that the Windows library imports only from Windows, exports exactly the eight functions of its header under
# their plain names, and has its version and the star.
# Usage: windows_tables.sh OBJDUMP LIBRARY HEADER
set -euo pipefail
status=0
tables=$("$1" -p "$2")

imported=$(sed -n 's/^\tDLL Name: //p' <<<"$tables")
[ -n "$imported" ] || { echo "no import table"; status=1; }
for library in $imported; do
  case "$library" in
    KERNEL32.dll | USER32.dll | GDI32.dll | msvcrt.dll) ;;
    *) echo "needs $library"; status=1 ;;
  esac
done

exported=$(sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/s/^\t\[ *[0-9]*\] *//p' <<<"$tables" | sort)
declared=$(grep -oE '^ORVANEL_API [a-z]+ ORVANEL_CALL (Orvanel[A-Za-z]+)' "$3" | awk '{print $NF}' | sort)
[ "$(wc -l <<<"$declared")" -eq 8 ] || { echo "the header declares: $declared"; status=1; }
diff <(echo "$declared") <(echo "$exported") || { echo "< declared, > exported"; status=1; }

# Types and numbers of the resources, then the size of each.
resources=$(sed -n '/^The .rsrc Resource Directory/,/^ Resources start/p' <<<"$tables")
grep -A 99 'ID: 0x000002,' <<<"$resources" | grep -q 'ID: 0x0003e8,' || { echo "no bitmap 1000"; status=1; }
grep -q 'Size: 0x010428,' <<<"$resources" || { echo "nothing of 66,600 bytes"; status=1; }
grep -q 'ID: 0x000010,' <<<"$resources" || { echo "no version"; status=1; }
exit $status
