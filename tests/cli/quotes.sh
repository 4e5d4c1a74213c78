#!/usr/bin/env bash
# Tests that the documents quote the output of the program correctly.
# Usage: quotes.sh PROGRAM SOURCE_FOLDER
set -euo pipefail
program=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cp -r "$source/assets" "$source/examples/my_eye.json" .
status=0

output=$("$program" simulate my_eye.json -o my_eye)
[[ $(<"$source/README.md") == *"$output"* ]] || { echo "not in README.md: $output"; status=1; }
[[ $(<"$source/README.md") == *"$(<my_eye.json)"* ]] || { echo "not in README.md: examples/my_eye.json"; status=1; }

command=$(sed -n 's/^    orvanel \(simulate .*\)/\1/p' "$source/docs/conventions.md")
[ -n "$command" ] || { echo "conventions.md quotes no command"; status=1; }
# shellcheck disable=SC2086 # its words
"$program" $command >output
quoted=$(sed -n '/^    PSF window/,/^    Rings/p' "$source/docs/conventions.md")
[ "$quoted" = "$(sed -n '/^PSF window/,/^Rings/s/^/    /p' output)" ] || { echo "conventions.md quotes: $quoted"; status=1; }
output=$("$program" refract assets/eyes/standard_observer_6mm.json)
[[ $(<"$source/docs/refraction.md") == *"$output"* ]] || { echo "not in refraction.md: $output"; status=1; }
output=$("$program" focus assets/eyes/standard_observer_6mm.json --through -1:1:0.125 --pupil 4 --metric VSX,MTF@10 |
  sed -n '/^Best focus/,$s/^/    /p')
[[ $(<"$source/docs/metrics.md") == *"$output"* ]] || { echo "not in metrics.md: $output"; status=1; }
output=$("$program" simulate assets/eyes/standard_observer_6mm.json -o standard_observer --metric all |
  sed -n '/^Image quality/,/^Pictures/s/^/    /p' | sed '$d')
[[ $(<"$source/docs/metrics.md") == *"$output"* ]] || { echo "not in metrics.md: $output"; status=1; }
cp "$source/examples/covariance.csv" .
for draws in '' '--draws 500'; do
  # shellcheck disable=SC2086 # two words, or none
  output=$("$program" uncertainty assets/eyes/watson_2015_example_6mm.json --cov covariance.csv --pupil 3 $draws |
    sed -n '/^Method/,/J45, D/s/^/    /p')
  [[ $(<"$source/docs/metrics.md") == *"$output"* ]] || { echo "not in metrics.md: $output"; status=1; }
done
exit $status
