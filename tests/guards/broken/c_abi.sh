#!/usr/bin/env bash
# Tests the guard with a struct that grows, a function whose arguments change, and names that are missing or too many.
# Usage: c_abi.sh CC NM
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

guard=${guard%.sh}.py
cc=$1 nm=$2
cat >one.h <<'HEADER'
#include <stddef.h>
#define ORVANEL_INTERFACE 1
#define ORVANEL_C_API
#define ORVANEL_C_CALL
#define ORVANEL_C_NOEXCEPT
enum { ORVANEL_OK = 0 }; /* fine */
typedef struct orvanel_thing {
  double first;
  int second[2];
} orvanel_thing;
ORVANEL_C_API int ORVANEL_C_CALL orvanel_make(orvanel_thing* thing) ORVANEL_C_NOEXCEPT;
HEADER
echo 'int orvanel_make(void* thing) { return thing != 0; }' >one.c
"$cc" -shared -fPIC one.c -o one.so
"$guard" "$cc" "$nm" one.so one.h record.txt renew
keeps 'what is recorded' "$cc" "$nm" one.so one.h record.txt
sed 's/int second/double second/' one.h >grown.h
breaks 'a struct that grows' '+struct orvanel_thing 24' "$cc" "$nm" one.so grown.h record.txt
sed 's/orvanel_make(orvanel_thing\* thing)/orvanel_make(void)/' one.h >changed.h
breaks 'a function with other arguments' '-int orvanel_make(orvanel_thing* thing)' "$cc" "$nm" one.so changed.h record.txt
sed 's/ORVANEL_OK = 0/ORVANEL_OK = 1/' one.h >constant.h
breaks 'a constant with another value' '+constant ORVANEL_OK 1' "$cc" "$nm" one.so constant.h record.txt
{ cat one.c; echo 'int helper(void) { return 1; }'; } >two.c
"$cc" -shared -fPIC two.c -o two.so
breaks 'a helper that is exported' "exported but not declared: ['helper']" "$cc" "$nm" two.so one.h record.txt
echo 'static int unused;' >none.c
"$cc" -shared -fPIC -Wno-unused none.c -o none.so
breaks 'a function that is not exported' "declared but not exported: ['orvanel_make']" "$cc" "$nm" none.so one.h record.txt
finish
