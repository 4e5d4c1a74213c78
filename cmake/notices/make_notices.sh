#!/usr/bin/env bash
# Writes THIRD-PARTY-NOTICES for a platform, from the table and the copyright files of Debian's packages. Also writes
# REQUIREMENTS, the libraries that a build needs to run.
# Usage: make_notices.sh TABLE linux|windows|wheel FOLDER
set -euo pipefail
table=$1 platform=$2 folder=$3
export LC_ALL=C.UTF-8

# rows HOW...: how, package, names and description for this platform, separated by tabs.
rows() {
  local how where package names what
  grep -vE '^(#|$)' "$table" | while read -r how where package names what; do
    if [[ $where == any || $where == "$platform" ]] && [[ " $* " == *" $how "* ]]; then
      printf '%s\t%s\t%s\t%s\n' "$how" "$package" "$names" "$what"
    fi
  done
}

# The libraries that a build loads, one line each.
needs() {
  rows dynamic | while IFS=$'\t' read -r _ package names what; do
    printf '  * %s: %s (Debian package %s)\n' "${names//,/, }" "$what" "$package"
  done
}

notices() {
  local rule
  rule=$(printf '=%.0s' {1..80})
  printf 'THIRD-PARTY NOTICES\n\nOrvanel itself is under the terms of the file LICENSE.\n\nIt contains, by others:\n\n'
  rows headers file static | while IFS=$'\t' read -r how package _ what; do
    case $how in
      headers) how="compiled in" ;;
      file) how="embedded" ;;
      static) how="linked in" ;;
    esac
    printf '  * %s (%s; Debian package %s)\n' "$what" "$how" "$package"
  done
  if [ -n "$(needs)" ]; then
    printf '\nIt contains none of the following, but needs them on the machine that runs it:\n\n'
    needs
  fi
  printf '\nThe terms of what it contains, as Debian has collected them:\n'
  rows headers file static | while IFS=$'\t' read -r _ package _ what; do
    copyright=/usr/share/doc/$package/copyright
    [ -r "$copyright" ] || { echo "$copyright is missing; is the package $package installed?" >&2; exit 1; }
    printf '\n%s\n%s\n%s\n\n' "$rule" "$what" "$rule"
    sed 's/[[:space:]]*$//' "$copyright"
  done
}

requirements() {
  if [ -z "$(needs)" ]; then
    if [ "$platform" = windows ]; then echo 'Orvanel needs nothing but Windows.'; else echo 'Orvanel needs only the C library.'; fi
    return
  fi
  printf 'What Orvanel needs on the machine that runs it: the program all of these libraries, the library\n'
  printf "libOrvanelDll.so only GCC's and the C library. These packages of Debian 12 have them:\n\n   "
  rows dynamic | cut -f 2 | tr '\n' ' ' | sed 's/^/ /; s/ $//'
  printf '\n\n'
  needs
}

mkdir -p "$folder"
notices >"$folder/notices.part"
requirements >"$folder/REQUIREMENTS"
mv "$folder/notices.part" "$folder/THIRD-PARTY-NOTICES"
