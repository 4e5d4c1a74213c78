#!/usr/bin/env bash
# Tests the guard with tables of THIRD-PARTY-NOTICES that lack a built part or have one that is not built.
# Usage: third_party.sh BUILD_FOLDER TABLE linux OBJECT...
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"
build=$1 table=$2
shift 3

# without PATTERN: the table without a line.
without() { grep -v "$1" "$table" >less.txt; }

keeps 'the table as it is' "$build" "$table" linux "$@"
without libz.so.1
breaks 'a library without its line' 'libz.so.1 is loaded' "$build" less.txt linux "$@"
breaks 'a library that the linker sees' 'libz.so is linked' "$build" less.txt linux "$@"
without libstb-dev
breaks 'headers without their line' 'headers of libstb-dev' "$build" less.txt linux "$@"
without DejaVu
breaks 'a font without its line' 'DejaVuSans.ttf is embedded' "$build" less.txt linux "$@"
{ cat "$table"; echo 'dynamic linux libx libx.so.1 a library'; } >more.txt
breaks 'a library that is not loaded' 'libx.so.1 stands as dynamic' "$build" more.txt linux "$@"
{ cat "$table"; echo 'headers any libx-dev libx-dev headers'; } >more.txt
breaks 'headers that are not read' 'libx-dev stands as headers' "$build" more.txt linux "$@"
{ cat "$table"; echo 'file any libx x.ttf a font'; } >more.txt
breaks 'a font that is not embedded' 'x.ttf stands as file' "$build" more.txt linux "$@"
breaks 'a build that does not exist' 'no commands of the build' missing "$table" linux "$@"
finish
