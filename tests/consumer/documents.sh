#!/usr/bin/env bash
# Tests that the installed documents are complete, and that every link in them leads to a file of the prefix.
# Usage: documents.sh PREFIX
set -euo pipefail
prefix=$1
status=0
complain() { echo "$1"; status=1; }
folder=$(dirname "$(find "$prefix" -name CHANGELOG.md)")
for name in README.md LICENSE THIRD-PARTY-NOTICES REQUIREMENTS docs/conventions.md docs/batch.md docs/windows.md \
  docs/images/conventions.svg examples/best_focus.cpp assets/eyes/perfect_3mm.json; do
  [ -s "$folder/$name" ] || complain "no $name"
done
[ ! -e "$folder/HACKING.md" ] || complain "HACKING.md is for those who have the sources"
links=0
while IFS= read -r page; do
  while IFS= read -r target; do
    links=$((links + 1))
    [ -e "$(dirname "$page")/${target%%#*}" ] || complain "${page#"$folder/"} refers to $target"
  done < <(grep -oE '\]\([^)]*\)' "$page" | sed -E 's/^\]\((.*)\)$/\1/' | grep -vE '^(#|[a-z]+:)| ' || true)
done < <(find "$folder" -name '*.md')
[ "$links" -gt 20 ] || complain "only $links links"
exit $status
