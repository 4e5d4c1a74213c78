#!/usr/bin/env bash
# Tests that manual pages are valid roff with every option and example of the help, and that completion has every option
# and word.
# Usage: manuals.sh PROGRAM FOLDER
set -euo pipefail
program=$1 folder=$2
status=0

options_of() { "$program" "$@" --help | grep -oE '^ +(-[a-z],)?--[a-z-]+' | grep -oE '\--[a-z-]+'; }

# offered WORD...: what completion offers for the last word of a command line.
offered() {
  bash -c '
    source "$0"
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
    _orvanel
    printf "%s\n" "${COMPREPLY[@]}"' "$folder/orvanel.bash" "$@"
}

for page in "$folder"/*.1; do
  warnings=$(groff -man -ww -z -Tutf8 "$page" 2>&1)
  [ -z "$warnings" ] || { echo "$warnings"; status=1; }
done

subcommands=$("$program" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
for subcommand in $subcommands; do
  text=$(groff -man -Tascii -P-cbou "$folder/orvanel-$subcommand.1" | sed 's/\x1b\[[0-9;]*m//g')
  completion=$(offered orvanel "$subcommand" --)
  for option in $(options_of "$subcommand"); do
    grep -q -e "$option" <<<"$text" || { echo "the manual of $subcommand lacks $option"; status=1; }
    grep -qxe "$option" <<<"$completion" || { echo "completion of $subcommand lacks $option"; status=1; }
  done
  example=$("$program" "$subcommand" --help | sed -n '/^Examples:/,$p' | sed -n '2s/^ *//p')
  grep -qF -e "$example" <<<"$text" || { echo "the manual of $subcommand lacks: $example"; status=1; }
  grep -qx "$subcommand" <<<"$(offered orvanel '')" || { echo "completion lacks $subcommand"; status=1; }
done
[ "$(offered orvanel convert --unit '' | tr '\n' ' ')" = 'mm um nm waves ' ] || { echo "no units"; status=1; }
[ "$(offered orvanel focus --method o)" = optimise ] || { echo "no methods"; status=1; }
[ "$(offered orvanel simulate --format h)" = hdf5 ] || { echo "no formats"; status=1; }
[ "$(offered orvanel simulate --gaps '' | tr '\n' ' ')" = 'down up right left all ' ] || { echo "no gaps"; status=1; }
[ "$(offered orvanel simulate --fit p | tr '\n' ' ')" = 'pad pixels ' ] || { echo "no fits"; status=1; }
[ "$(offered orvanel simulate --format npy,h)" = npy,hdf5 ] || { echo "no formats behind a comma"; status=1; }
[ "$(offered orvanel simulate --format npy,png8,png | tr '\n' ' ')" = 'npy,png8,png16 ' ] || { echo "a format twice"; status=1; }
[ "$(offered orvanel simulate --gaps down, | tr '\n' ' ')" = 'down,up down,right down,left down,all ' ] || { echo "no gaps behind a comma"; status=1; }
[ "$(offered orvanel batch --metrics st | tr '\n' ' ')" = 'strehl strehl_axis strehl_peak ' ] || { echo "no metrics"; status=1; }
[ "$(offered orvanel batch --metrics = strehl,mtf)" = strehl,mtf_area ] || { echo "no metrics behind ="; status=1; }
[ "$(offered orvanel batch --metrics VS | tr '\n' ' ')" = 'VSX VSMTF VSOTF ' ] || { echo "no metrics of image quality"; status=1; }
[ "$(offered orvanel batch --refract SR | tr '\n' ' ')" = 'SRX SRMTF SROTF ' ] || { echo "no metrics of a lens"; status=1; }
[ "$(offered orvanel simulate --metrics VSX,VSO)" = VSX,VSOTF ] || { echo "no metrics of one eye"; status=1; }
[ -z "$(offered orvanel simulate --metrics strehl)" ] || { echo "metrics of a batch for one eye"; status=1; }
[ "$(offered orvanel batch --planes-of '' | tr '\n' ' ')" = 'wavefront psf mtf ' ] || { echo "no planes"; status=1; }
[ "$(offered orvanel batch --pictures-of psf,s)" = psf,star ] || { echo "no pictures"; status=1; }
# Every metric that the help lists is offered.
listed=$("$program" batch --help | sed -n -e '/^Metrics\. /,/^$/s/^[* ] \([a-z_]*\) .*/\1/p' \
  -e '/^Metrics (name/,/^$/s/^[+ ] \([A-Za-z0-9]*\) .*/\1/p')
[ "$(wc -w <<<"$listed")" -ge 40 ] || { echo "the help lists too few metrics"; status=1; }
for metric in $listed; do
  grep -qx "$metric" <<<"$(offered orvanel batch --metrics '')" || { echo "completion lacks $metric"; status=1; }
done
exit $status
