#!/usr/bin/env bash
# Tests the guard with a library that needs the C library, and one that needs another library.
# Usage: dependencies.sh CC
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

echo 'int f(void) { return 1; }' >f.c
"$1" -shared -fPIC f.c -o plain.so
keeps 'the C library alone' plain.so
"$1" -shared -fPIC f.c -Wl,--no-as-needed -lm -o more.so
breaks 'a library more' 'needs libm.so.6' more.so
breaks 'a library that does not exist' 'missing.so' missing.so
finish
