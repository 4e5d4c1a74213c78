#!/usr/bin/env bash
# Tests that the table of THIRD-PARTY-NOTICES has exactly the third-party parts that are built: included headers,
# embedded files, and libraries that are linked or loaded.
# Usage: third_party.sh BUILD_FOLDER TABLE linux|windows OBJECT...
#   OBJECT  the program and the libraries, whose dynamic entries are read; none where there are no such entries
set -euo pipefail
build=$1 table=$2 platform=$3
shift 3
status=0
complain() { echo "$1"; status=1; }

# names HOW...: the names in the table, a line each.
names() {
  local how where package names rest
  grep -vE '^(#|$)' "$table" | while read -r how where package names rest; do
    if [[ $where == any || $where == "$platform" ]] && [[ " $* " == *" $how "* ]]; then tr , '\n' <<<"$names"; fi
  done
}
# stands WHAT HOW...: whether the table has it.
stands() { grep -Fx -- "$1" <<<"$(names "${@:2}")" >/dev/null; }

commands=$(ninja -C "$build" -t commands orvanel_program OrvanelDll orvanel_c 2>/dev/null || true)
[ -n "$commands" ] || { echo "no commands of the build"; exit 1; }

# Libraries on the command lines of the linker.
linked=$(tr ' ' '\n' <<<"$commands" | grep -E '^(/.*\.(a|so[0-9.]*)|-l.+)$' | sort -u || true)
while IFS= read -r library; do
  case "$library" in
    "" | "$build"/* | -luser32 | -lgdi32 | -lkernel32 | -lwinspool | -lshell32 | -lole32 | -loleaut32 | -luuid | \
      -lcomdlg32 | -ladvapi32) continue ;;  # ours, and those of Windows itself
    *.so*) stands "$(basename "$(readlink -f "$library")" | sed -E 's/(\.so\.[0-9]+).*/\1/')" dynamic ||
      stands "$(objdump -p "$library" | awk '/SONAME/ {print $2}')" dynamic ||
      complain "$library is linked, and stands nowhere as dynamic" ;;
    *.a) stands "$(basename "$library")" static || complain "$library is linked, and stands nowhere as static" ;;
    *) stands "lib${library#-l}.a" static || complain "$library is linked, and stands nowhere as static" ;;
  esac
done <<<"$linked"

# Libraries that are loaded.
if [ $# -gt 0 ]; then
  needed=$(for object in "$@"; do readelf -d "$object" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p'; done |
    grep -v '^libOrvanelDll' | sort -u)
  while IFS= read -r library; do
    stands "$library" dynamic || complain "$library is loaded, and stands nowhere as dynamic"
  done <<<"$needed"
  while IFS= read -r library; do
    # What the loader itself is called is not in every object.
    [[ $library == ld-linux* ]] || grep -Fx -- "$library" <<<"$needed" >/dev/null || complain "$library stands as dynamic, and is not loaded"
  done <<<"$(names dynamic)"
fi

# Files that the assembler embeds, but our own.
sources=$(grep -oE '[^ ]+\.S\.(o|obj)( |$)' <<<"$commands" | sort -u || true)
[ -n "$sources" ] || complain "nothing is embedded"
embedded=$(find "$build" -name '*.S' -path '*/orvanel_*' -exec grep -hoE 'incbin "[^"]*"' {} + | cut -d'"' -f 2 | sort -u)
while IFS= read -r file; do
  case "$file" in
    */assets/* | */LICENSE | */THIRD-PARTY-NOTICES) ;;
    *) stands "$(basename "$file")" file || complain "$file is embedded, and stands nowhere as file" ;;
  esac
done <<<"$embedded"
while IFS= read -r file; do
  grep "/$file\$" <<<"$embedded" >/dev/null || complain "$file stands as file, and is not embedded"
done <<<"$(names file)"

# Headers that were read, by the packages that have them; those of the compilers and of dynamic libraries are no part.
# Built for another system, headers are read by way of links in the folder headers/ of the build.
headers=$(ninja -C "$build" -t deps | awk '/^[^ ]/ {ours = /^(base|matrix|optics|eye|targets|models|interface|metrics|evaluation|files|c_interface|drawing|cli)\//} ours && /^ / {print $1}' |
  sed 's|^headers/|/usr/include/|' | grep '^/usr/include/' | grep -vE '^/usr/include/(c\+\+|x86_64-linux-gnu/(c\+\+|bits|sys|gnu|asm)|bits|sys|asm|linux|asm-generic)/' |
  sort -u)
[ -n "$headers" ] || complain "no headers were read"
packages=$(xargs -r dpkg-query -S <<<"$headers" 2>/dev/null | cut -d: -f 1 | sort -u)
while IFS= read -r package; do
  case "$package" in
    libc6-dev | linux-libc-dev | libstdc++-*-dev | libgcc-*-dev) ;;
    libtiff-dev | libtiffxx* | libturbojpeg0-dev | libjpeg*-dev | libmatio-dev | libhdf5-dev | zlib1g-dev) ;;  # dynamic
    *) stands "$package" headers || complain "headers of $package are compiled in, and stand nowhere" ;;
  esac
done <<<"$packages"
while IFS= read -r package; do
  grep -Fx -- "$package" <<<"$packages" >/dev/null || complain "$package stands as headers, and none were read"
done <<<"$(names headers)"
exit $status
