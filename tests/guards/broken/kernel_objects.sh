#!/usr/bin/env bash
# Tests the guard with an object of a table and code, and with symbols that leak from it.
# Usage: kernel_objects.sh CXX OBJDUMP NM
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"
cxx=$1 tools=("$2" "$3")

# object NAME SPACE FLAGS CODE [LENGTH]: one kernel, as long as many.
object() {
  put "$1.cpp" "namespace orvanel::$2 {
typedef double V __attribute__((vector_size(32)));
namespace { void Kernel(V* x) { *x = *x * *x + (3.0 + *x); __asm__ volatile(\".rept ${5:-2000}\nnop\n.endr\"); } }
$4
extern void (*const kKernels[])(V*);
void (*const kKernels[])(V*) = {Kernel};
}"
  # shellcheck disable=SC2086
  "$cxx" -std=c++17 -O1 -w -Wno-psabi -fPIC -ffp-contract=off $3 -c "$1.cpp" -o "$1.o"
}
object baseline baseline '' ''
keeps 'a table of the baseline' "${tools[@]}" baseline kKernels baseline.o
breaks 'another name than its own' 'defines' "${tools[@]}" other kKernels baseline.o
breaks 'another table than its own' 'defines' "${tools[@]}" baseline kOthers baseline.o
object more baseline '' 'int helper(int x) { return x; }'
breaks 'one name more' 'defines' "${tools[@]}" baseline kKernels more.o
object weak baseline '' 'inline __attribute__((noinline)) int w(int x) { return x * x; } extern const int y; const int y = w(3);'
breaks 'a function that the linker may keep for everybody' 'has weak symbols' "${tools[@]}" baseline kKernels weak.o
object needs baseline '' '} extern "C" int outside(); namespace orvanel::baseline { static int here() { return outside(); } static int (*volatile use)() = here; '
breaks 'a call to elsewhere' 'needs these from elsewhere' "${tools[@]}" baseline kKernels needs.o
object initialises baseline '' 'static volatile int seed = 3; static volatile int y = seed + 1;'
breaks 'code before main' 'has static initialisers' "${tools[@]}" baseline kKernels initialises.o
object few baseline '' '' 20
breaks 'hardly any code' 'holds no kernels' "${tools[@]}" baseline kKernels few.o
if [[ $("$cxx" -dumpmachine) = x86_64-* ]]; then
  object wide avx2 -mavx2 ''
  keeps 'a table for AVX2' "${tools[@]}" avx2 kKernels wide.o
  object narrow avx2 '' ''
  breaks 'AVX2 without its registers' 'uses no wide registers' "${tools[@]}" avx2 kKernels narrow.o
  object leaks baseline -mavx ''
  breaks 'a baseline for AVX' 'uses AVX' "${tools[@]}" baseline kKernels leaks.o
  object fused avx2 '-O2 -mavx2 -mfma -ffp-contract=fast' ''
  breaks 'fused multiply-adds' 'fuses multiplications' "${tools[@]}" avx2 kKernels fused.o
fi
breaks 'an object that does not exist' 'missing.o' "${tools[@]}" baseline kKernels missing.o
finish
