#!/usr/bin/env bash
# Runs the commands of docs/gallery.md at a quarter of their resolution, and compares hashes of the images and plots with
# those recorded beside this script. With ORVANEL_RENEW_CASES=1 it records them; look at the pictures before you commit.
# Usage: gallery.sh PROGRAM SOURCE_FOLDER
set -euo pipefail
program=$1 source=$2
recorded=$source/tests/cli/gallery.sha256
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$source"
# Numbers and text, whose bytes do not depend on the version of zlib.
sed -n 's/^    orvanel //p' docs/gallery.md |
  sed -e "s|-o |-o $work/|" -e 's/--pixels-per-degree 120/--pixels-per-degree 30/' \
    -e 's/--format svg .*/--format npy,svg --only chart_seen.npy,psf.npy,mtf_sections.svg/' >"$work/commands"
[ "$(grep -c 'pixels-per-degree 30 .*--only chart_seen.npy' "$work/commands")" -eq 5 ] || { echo "docs/gallery.md has other commands"; exit 1; }
while read -ra words; do
  "$program" "${words[@]}" --acuity 1 >"$work/output" 2>&1 || { echo "fails: ${words[*]}"; cat "$work/output"; exit 1; }
done <"$work/commands"
(cd "$work" && sha256sum ./*/*.npy ./*/*.svg) >"$work/seen"
[ "${ORVANEL_RENEW_CASES:-0}" = 0 ] || cp "$work/seen" "$recorded"
diff -u "$recorded" "$work/seen"
while read -r picture; do
  [ -s "docs/$picture" ] || { echo "not there: docs/$picture; run './dev gallery'"; exit 1; }
done < <(grep -o 'images/gallery/[^)]*' docs/gallery.md)
