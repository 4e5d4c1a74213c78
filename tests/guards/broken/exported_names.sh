#!/usr/bin/env bash
# Tests the guard with libraries of seven, eight and nine functions, and a header that declares others.
# Usage: exported_names.sh CC
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

for name in A B C D E F G H; do
  echo "ORVANEL_API int ORVANEL_CALL Orvanel$name(void);" >>eight.h
  echo "int Orvanel$name(void) { return 1; }" >>eight.c
done
"$1" -shared -fPIC eight.c -o eight.so
keeps 'eight functions' eight.so eight.h
{ cat eight.c; echo 'int helper(void) { return 1; }'; } >nine.c
"$1" -shared -fPIC nine.c -o nine.so
breaks 'a helper that is exported' '> helper' nine.so eight.h
grep -v OrvanelH eight.c >seven.c
"$1" -shared -fPIC seven.c -o seven.so
breaks 'a function that is not exported' '< OrvanelH' seven.so eight.h
grep -v OrvanelH eight.h >seven.h
breaks 'a header without it' 'the header declares' seven.so seven.h
breaks 'a library that does not exist' 'missing.so' missing.so eight.h
finish
