#!/usr/bin/env bash
# Runs every example of every help text, unchanged, in a folder with the files that they name.
# Usage: examples.sh PROGRAM ASSETS EXAMPLES PHOTOGRAPH
set -euo pipefail
program=$1 assets=$2 examples=$3 photograph=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cp -r "$assets" assets
cp "$examples"/*.json "$examples"/*.csv .
cp "$photograph" photograph.jpg
mkdir bin
ln -s "$program" bin/orvanel
export PATH=$work/bin:$PATH

# examples_of [SUBCOMMAND]: one a line, those that go over several lines joined.
examples_of() {
  orvanel "$@" --help | sed -n '/^Examples:/,$p' | sed -n 's/^  *//p' | sed -e ':a' -e '/\\$/N' -e 's/\\\n//' -e 'ta'
}

subcommands=$(orvanel --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
[ -n "$subcommands" ] || { echo "help lists no subcommand"; exit 1; }
status=0
for subcommand in '' $subcommands; do
  # shellcheck disable=SC2086 # none, where it is empty
  list=$(examples_of $subcommand)
  [ "$(grep -c '^orvanel ' <<<"$list")" -ge 1 ] || { echo "no example in the help of '$subcommand'"; status=1; }
  rm -rf out && mkdir out
  # Each help's examples are tried in a copy, since several write the same names.
  cp -r assets ./*.json ./*.csv photograph.jpg out
  while IFS= read -r example; do
    [[ $example == 'orvanel '* ]] || { echo "not an example: $example"; status=1; continue; }
    (cd out && bash -euc "$example" </dev/null >output 2>&1) || { echo "fails: $example"; cat out/output; status=1; }
  done <<<"$list"
done
exit $status
