#!/usr/bin/env bash
# Builds other C99 projects, the examples in C, with only the flags of orvanel.pc and orvanel-c.pc.
# Usage: CC=compiler pkg_config.sh EXAMPLES PREFIX SCRATCH
set -euo pipefail
examples=$1 prefix=$2 scratch=$3
rm -rf "$scratch"
mkdir -p "$scratch"
PKG_CONFIG_LIBDIR=$(dirname "$(find "$prefix" -name orvanel.pc)")
export PKG_CONFIG_LIBDIR

declared=$(sed -n 's/^#define ORVANEL_VERSION "\(.*\)".*/\1/p' "$prefix/include/orvanel/orvanel.h")
pkg-config --exact-version="$declared" orvanel || { echo "orvanel.pc is not of version $declared"; exit 1; }

read -ra flags <<<"$(pkg-config --cflags --libs orvanel)"
"$CC" -std=c99 -pedantic -Wall -Wextra -Werror "$examples/strehl_and_ring.c" "${flags[@]}" \
  -Wl,-rpath,"$(pkg-config --variable=libdir orvanel)" -o "$scratch/strehl_and_ring"
readelf -d "$scratch/strehl_and_ring" | grep -qF "[libOrvanelDll.so.${declared%%.*}]" ||
  { echo "the library's own name is not of the major version"; exit 1; }
"$scratch/strehl_and_ring" "$examples/standard_observer.txt" "$scratch/ring.pgm" >"$scratch/output"
diff "$examples/strehl_and_ring.output" "$scratch/output"
[ "$(head -c 15 "$scratch/ring.pgm")" = $'P5\n256 256\n255' ] || { echo "no PGM picture"; exit 1; }
[ "$(wc -c <"$scratch/ring.pgm")" -eq $((15 + 256 * 256)) ] || { echo "a PGM picture of another size"; exit 1; }

pkg-config --exact-version="$declared" orvanel-c || { echo "orvanel-c.pc is not of version $declared"; exit 1; }
read -ra flags <<<"$(pkg-config --cflags --libs orvanel-c)"
"$CC" -std=c99 -pedantic -Wall -Wextra -Wno-missing-field-initializers -Werror "$examples/metrics_of_eyes.c" "${flags[@]}" \
  -Wl,-rpath,"$(pkg-config --variable=libdir orvanel-c)" -o "$scratch/metrics_of_eyes"
interface=$(sed -n 's/^#define ORVANEL_INTERFACE \([0-9]*\).*/\1/p' "$prefix/include/orvanel/c_interface.h")
readelf -d "$scratch/metrics_of_eyes" | grep -qF "[liborvanel.so.$interface]" ||
  { echo "liborvanel's own name is not of the version of its interface"; exit 1; }
"$scratch/metrics_of_eyes" | diff "$examples/metrics_of_eyes.output" -
