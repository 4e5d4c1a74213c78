#!/usr/bin/env bash
# Tests the unpacked Windows archive: the program makes its pictures, the host of the README prints the output of the
# README, and the C example links to the import library. No file names a folder of the build.
# Usage: package.sh BUILD_TREE SOURCE_FOLDER WINE C_COMPILER SCRATCH
set -euo pipefail
build=$1 source=$2 wine=$3 cc=$4 scratch=$5
export SOURCE_DATE_EPOCH=1600000000 ORVANEL_WINE_PREFIX=$build/wine
rm -rf "$scratch"
mkdir -p "$scratch"
cpack --config "$build/CPackConfig.cmake" -B "$scratch" >/dev/null
cd "$scratch"
cmake -E tar xf ./*.zip
cd ./*-windows-x86_64/

for name in README.md bin/OrvanelDll.dll bin/orvanel.exe include/orvanel/orvanel.h lib/libOrvanelDll.dll.a \
  lib/OrvanelDll.def LICENSE THIRD-PARTY-NOTICES; do
  [ -s "$name" ] || { echo "no $name in the archive"; exit 1; }
done
if grep -rlF "$source" .; then
  echo "name a folder of the build"
  exit 1
fi

# block FENCE: what the README fences so, the first time.
block() {
  awk -v fence="$1" '/^```/ { if (inside) exit; open = !open; inside = open && $0 == fence; next } inside' README.md
}
block '```c' >host.c
block '```' >expected
"$cc" -std=c99 -Wall -Wextra -Werror host.c -o bin/host.exe
"$wine" bin/host.exe | tr -d '\r' | diff expected -

"$cc" -std=c99 -Wall -Wextra -Werror -Iinclude share/doc/orvanel/examples/strehl_and_ring.c -Llib -lOrvanelDll \
  -o bin/example.exe
"$wine" bin/example.exe share/doc/orvanel/examples/standard_observer.txt ring.pgm | tr -d '\r' |
  diff share/doc/orvanel/examples/strehl_and_ring.output -

"$wine" bin/orvanel.exe simulate "$source/assets/eyes/standard_observer_6mm.json" -o seen >/dev/null
[ "$(find seen -name '*.png' | wc -l)" -ge 10 ] || { echo "too few pictures"; exit 1; }
for picture in seen/*.png; do
  file "$picture" | grep -qE 'PNG image data, [0-9]+ x [0-9]+, 8-bit' || { echo "$picture is none"; exit 1; }
done
