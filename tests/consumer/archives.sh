#!/usr/bin/env bash
# Builds the archives twice at different times, compares them byte for byte, and unpacks the .deb into SCRATCH/root.
# Usage: archives.sh BUILD_FOLDER SCRATCH
set -euo pipefail
build=$1 scratch=$2
export SOURCE_DATE_EPOCH=1600000000
rm -rf "$scratch"
for made in first second; do
  cpack --config "$build/CPackConfig.cmake" -B "$scratch/$made" >/dev/null
  sleep 1
done
for archive in "$scratch"/first/*.tar.gz "$scratch"/first/*.deb; do
  cmp "$archive" "$scratch/second/$(basename "$archive")"
done

depends=$(dpkg-deb --field "$scratch"/first/*.deb Depends)
for package in libc6 libstdc++6; do
  [[ $depends == *"$package (>= "* ]] || { echo "depends on '$depends', not on $package"; exit 1; }
done
[[ $depends != *orvanel* ]] || { echo "depends on itself: $depends"; exit 1; }
contents=$(tar tzf "$scratch"/first/*.tar.gz)
for name in LICENSE THIRD-PARTY-NOTICES REQUIREMENTS; do
  [[ $contents == */share/doc/orvanel/$name* ]] || { echo "no $name in the archive"; exit 1; }
done
dpkg-deb --extract "$scratch"/first/*.deb "$scratch/root"
for name in copyright changelog.Debian.gz; do
  [ -s "$scratch/root/usr/share/doc/orvanel/$name" ] || { echo "no $name in the package"; exit 1; }
done
