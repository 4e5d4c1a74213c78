#!/usr/bin/env bash
# Tests the guard with libraries of realistic size that have one forbidden instruction or call.
# Usage: arithmetic.sh CC OBJDUMP NM
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"
cc=$1 tools=("$2" "$3")

# Behind what the guard has to find stands more than a pipe holds.
put rest.c 'void rest(void) { __asm__ volatile(".rept 20000\nnop\n.endr"); }'

# library NAME CODE: NAME.so and NAME.a, which begin with the code.
library() {
  { printf '%s\n' "$2"; cat rest.c; } >"$1.c"
  "$cc" -O1 -w -fno-builtin -ffp-contract=off -fPIC -c "$1.c" -o "$1.o"
  "$cc" -shared "$1.o" -o "$1.so" -lm
  ar rcs "$1.a" "$1.o"
}
library plain ''
keeps 'neither of both' "${tools[@]}" plain.so plain.a

case $("$cc" -dumpmachine) in
  x86_64-*) fused='vfmadd231sd %xmm0, %xmm1, %xmm2' ;;
  *) fused='fmadd d0, d1, d2, d3' ;;
esac
library fused "void first(void) { __asm__ volatile(\"$fused\"); }"
breaks 'one fused multiply-add in a library' 'contains fused multiply-adds' "${tools[@]}" fused.so plain.a
breaks 'one fused multiply-add in a part' 'contains fused multiply-adds' "${tools[@]}" plain.so fused.a
for name in sin atan2 hypot expm1 powf logl tgamma cabs; do
  library calls "double $name(); double first(double x) { return $name(x, x); }"
  breaks "a call of $name" "calls.so uses mathematics" "${tools[@]}" calls.so plain.a
  breaks "a part that calls $name" "calls.a uses mathematics" "${tools[@]}" plain.so calls.a
done
if [[ $("$cc" -dumpmachine) = x86_64-* ]]; then
  library wide 'void first(volatile long double* x) { *x = *x * *x; }'
  breaks 'arithmetic of the x87' 'wide.a computes with more digits' "${tools[@]}" plain.so wide.a
fi

breaks 'a library that does not exist' 'missing.so cannot be read' "${tools[@]}" missing.so plain.a
breaks 'a part that does not exist' 'missing.a cannot be read' "${tools[@]}" plain.so missing.a
: >empty.c
"$cc" -shared -nostdlib empty.c -o empty.so
breaks 'a library without code' 'empty.so holds no code' "${tools[@]}" empty.so plain.a
breaks 'a disassembler that fails' 'cannot be read' false "$3" plain.so plain.a
finish
