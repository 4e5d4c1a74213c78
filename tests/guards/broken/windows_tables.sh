#!/usr/bin/env bash
# Tests the guard with the shipped library and another header, and with libraries that lack a name or need more.
# Usage: windows_tables.sh CC OBJDUMP LIBRARY HEADER
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"
cc=$1 objdump=$2 library=$3 header=$4

keeps 'the library that is shipped' "$objdump" "$library" "$header"
{ cat "$header"; echo 'ORVANEL_API int ORVANEL_CALL OrvanelNinth(void);'; } >nine.h
breaks 'a header of nine functions' '< OrvanelNinth' "$objdump" "$library" nine.h
echo '__declspec(dllexport) int helper(void) { return 1; }' >helper.c
"$cc" -shared helper.c -o helper.dll
breaks 'another export' '> helper' "$objdump" helper.dll "$header"
breaks 'no resources' 'no bitmap 1000' "$objdump" helper.dll "$header"
breaks 'no version' 'no version' "$objdump" helper.dll "$header"
echo '#include <winsock2.h>
__declspec(dllexport) int helper(void) { return WSAGetLastError(); }' >sockets.c
"$cc" -shared sockets.c -o sockets.dll -lws2_32
breaks 'a library more' 'needs WS2_32.dll' "$objdump" sockets.dll "$header"
breaks 'a library that does not exist' 'missing.dll' "$objdump" missing.dll "$header"
finish
