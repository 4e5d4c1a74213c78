#!/usr/bin/env bash
# Tests the guard with parts of a program that have one forbidden call.
# Usage: program_arithmetic.sh CC NM
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"
cc=$1 nm=$2

# archive NAME PART CODE: NAME.a, of a part with the code and enough others.
archive() {
  { printf '%s\n' "$3"; for i in $(seq 30); do echo "int other$i(void) { return $i; }"; done; } >"$2.cpp.c"
  "$cc" -O1 -w -fno-builtin -c "$2.cpp.c" -o "$2.cpp.o"
  rm -f "$1.a"
  ar rcs "$1.a" "$2.cpp.o"
}
archive plain part 'double root(double x) { return x * x; }'
keeps 'no such call' "$nm" plain.a
for name in atan2 hypot pow log10 cosf; do
  archive calls part "double $name(); double first(double x) { return $name(x, x); }"
  breaks "a call of $name" 'calls.a uses mathematics' "$nm" plain.a calls.a
done
archive theirs stb_truetype 'double pow(); double first(double x) { return pow(x, x); }'
keeps 'a call in what is not ours' "$nm" theirs.a
breaks 'a part that does not exist' 'missing.a cannot be read' "$nm" missing.a
ar rcs empty.a
breaks 'a part without code' 'empty.a holds no code' "$nm" empty.a
