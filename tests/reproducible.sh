#!/usr/bin/env bash
# Builds the archives from copies of the sources in two folders, and compares them byte by byte.
# Usage: reproducible.sh SCRATCH
set -euo pipefail
mkdir -p "$1"
scratch=$(cd "$1" && pwd)
cd "$(dirname "$0")/.."
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH CCACHE_DISABLE=1  # a cache would hand the second build the objects of the first
folders=(one/first another/place/second)
# Both copies first: whoever edits meanwhile changes neither.
for folder in "${folders[@]}"; do
  rm -rf "${scratch:?}/$folder"
  mkdir -p "$scratch/$folder"
  git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents -t "$scratch/$folder"
done
for folder in "${folders[@]}"; do
  (
    cd "$scratch/$folder"
    cmake --preset release -DORVANEL_BUILD_TESTS=OFF -DORVANEL_BUILD_BENCHMARKS=OFF >/dev/null
    cmake --build --preset release >/dev/null
    cpack --config build/release/CPackConfig.cmake -B "$scratch/$folder/archives" >/dev/null
  )
done
count=0
for archive in "$scratch"/one/first/archives/*.tar.gz "$scratch"/one/first/archives/*.deb; do
  cmp "$archive" "$scratch/another/place/second/archives/$(basename "$archive")"
  sha256sum "$archive" | sed "s|  .*/|  |"
  count=$((count + 1))
done
[ "$count" -ge 2 ] || { echo "only $count archives were made" >&2; exit 1; }
echo "The same bytes from both folders."
