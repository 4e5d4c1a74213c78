#!/usr/bin/env bash
# Builds other C++17 programs with only the flags of orvanel-optics.pc.
# Usage: CXX=compiler pkg_config_cxx.sh EXAMPLES PREFIX SCRATCH
set -euo pipefail
examples=$1 prefix=$2 scratch=$3
here=$(dirname "$0")
rm -rf "$scratch"
mkdir -p "$scratch"
PKG_CONFIG_LIBDIR=$(dirname "$(find "$prefix" -name orvanel-optics.pc)")
export PKG_CONFIG_LIBDIR

declared=$(sed -n 's/^#define ORVANEL_VERSION "\(.*\)".*/\1/p' "$prefix/include/orvanel/orvanel.h")
pkg-config --exact-version="$declared" orvanel-optics || { echo "orvanel-optics.pc is not of version $declared"; exit 1; }
read -ra flags <<<"$(pkg-config --cflags --libs orvanel-optics)"

# builds NAME SOURCE
builds() { "$CXX" -std=c++17 -pedantic -Wall -Wextra -Werror "$2" "${flags[@]}" -o "$scratch/$1"; }

builds best_focus "$examples/best_focus.cpp"
"$scratch/best_focus" "$examples/standard_observer.txt" | diff "$examples/best_focus.output" -
builds engine_and_matrix "$here/engine_and_matrix/main.cpp"
"$scratch/engine_and_matrix"
builds tables_and_transforms "$here/tables_and_transforms.cpp"
"$scratch/tables_and_transforms"
builds objects_and_sampling "$here/objects_and_sampling.cpp"
printed=$("$scratch/objects_and_sampling") || { echo "$printed"; exit 1; }
[ "$(wc -l <<<"$printed")" -eq 1 ] || { echo "a function prints: $printed"; exit 1; }
