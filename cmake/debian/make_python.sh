#!/usr/bin/env bash
# Makes the package python3-orvanel: the Python module, on the library of the package orvanel.
# Usage: make_python.sh SOURCE_FOLDER ORVANEL_DEB FOLDER
set -euo pipefail
source=$1 library=$2 folder=$3
version=$(dpkg-deb --field "$library" Version)
architecture=$(dpkg-deb --field "$library" Architecture)
shared=$(dpkg-deb --contents "$library" | sed -n 's|.* \./\(usr/lib/\(.*/\)\?liborvanel\.so\.[0-9]*\) -> .*|\1|p')
[ -n "$shared" ] || { echo "$library has no liborvanel.so" >&2; exit 1; }
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
root=$scratch/root modules=$scratch/root/usr/lib/python3/dist-packages documents=$scratch/root/usr/share/doc/python3-orvanel
metadata=$modules/orvanel-${version%-*}.dist-info
mkdir -p "$root/DEBIAN" "$metadata" "$documents"

(cd "$source/python" && find orvanel -name '*.py' -o -name py.typed | sort | tar -c --files-from=-) | tar -x -C "$modules"
# The module loads the library beside it.
ln -s "../../../${shared#usr/lib/}" "$modules/orvanel/liborvanel.so"
printf 'Metadata-Version: 2.1\nName: orvanel\nVersion: %s\nRequires-Python: >=3.9\nRequires-Dist: numpy\n' "${version%-*}" \
  >"$metadata/METADATA"
for name in copyright changelog.Debian.gz; do
  dpkg-deb --fsys-tarfile "$library" | tar -x -O "./usr/share/doc/orvanel/$name" >"$documents/$name"
done
# dpkg's own changelog names its package.
gunzip <"$documents/changelog.Debian.gz" | sed '1s/^orvanel /python3-orvanel /' | gzip -9n >"$scratch/changelog"
cp "$scratch/changelog" "$documents/changelog.Debian.gz"

# Debian's Python compiles the modules when they are installed.
cat >"$root/DEBIAN/postinst" <<'TEXT'
#!/bin/sh
set -e
if [ "$1" = configure ] && command -v py3compile >/dev/null; then py3compile -p python3-orvanel; fi
TEXT
cat >"$root/DEBIAN/prerm" <<'TEXT'
#!/bin/sh
set -e
if command -v py3clean >/dev/null; then py3clean -p python3-orvanel; fi
TEXT
cat >"$root/DEBIAN/control" <<TEXT
Package: python3-orvanel
Version: $version
Architecture: $architecture
Maintainer: $(dpkg-deb --field "$library" Maintainer)
Section: python
Priority: optional
Depends: python3 (>= 3.9), python3-numpy, orvanel (= $version)
Suggests: python3-matplotlib, python3-pandas, python3-xarray
Description: simulation of what an aberrated eye sees (Python module)
 Orvanel computes what an eye with a measured wavefront aberration sees: point
 spread function, modulation transfer function, metrics of image quality, best
 correction, and retinal images of charts.
 .
 This package has the Python module orvanel. It works on NumPy arrays, and uses
 the library of the package orvanel.
TEXT
(cd "$root" && find usr -type f -print0 | sort -z | xargs -0 md5sum >DEBIAN/md5sums)
find "$root" -type d -exec chmod 755 {} + -o -type f -exec chmod 644 {} +
chmod 755 "$root/DEBIAN/postinst" "$root/DEBIAN/prerm"
# The same bytes each time.
find "$root" -exec touch --no-dereference --date="@${SOURCE_DATE_EPOCH:-$(stat -c %Y "$source/CHANGELOG.md")}" {} +
mkdir -p "$folder"
dpkg-deb --root-owner-group --build "$root" "$folder" >/dev/null
echo "$folder/python3-orvanel_${version}_$architecture.deb"
