#!/usr/bin/env bash
# Tests that the objects of kernels define only the name of their table. They have no weak symbols, which the linker
# could keep for all callers, and run no code before main. They have no fused multiply-add, and the baseline has no wide
# registers.
# Usage: kernel_objects.sh OBJDUMP NM NAME TABLE OBJECT
set -euo pipefail
objdump=$1 nm=$2 name=$3 table=$4 object=$5
status=0
complain() { echo "$object $1"; status=1; }

defined=$("$nm" -g --defined-only "$object" | awk 'NF {print $NF}')
[ "$defined" = "_ZN7orvanel${#name}${name}${#table}${table}E" ] || complain "defines: $defined"
"$nm" "$object" | grep -E ' [VvWwu] ' && complain 'has weak symbols'
"$nm" -u "$object" | grep -vE ' U (_GLOBAL_OFFSET_TABLE_|mem(set|cpy|move))$' && complain 'needs these from elsewhere'
"$objdump" -h "$object" | grep -E '\.(init_array|ctors)' && complain 'has static initialisers'
code=$("$objdump" -d --no-show-raw-insn "$object")
[ "$(wc -l <<<"$code")" -gt 500 ] || complain 'holds no kernels'
grep -m 3 -E '\s(v?fn?m(add|sub)|fml[as])' <<<"$code" && complain 'fuses multiplications with additions'
if [ "$name" = baseline ]; then
  grep -m 3 -E '%[yz]mm|\sv(mov|add|sub|mul|div|sqrt|xor|and|or)' <<<"$code" && complain 'uses AVX'
else
  grep -q '%[yz]mm' <<<"$code" || complain 'uses no wide registers'
fi
exit $status
