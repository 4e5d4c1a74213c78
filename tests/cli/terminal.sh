#!/usr/bin/env bash
# Tests the program in a terminal: colours, no colours with NO_COLOR or a pipe, and a progress bar that is removed.
# Usage: terminal.sh PROGRAM EYES
set -euo pipefail
program=$1 eyes=$2
work=$(mktemp -d)
terminal=(tmux -L "orvanel-test-$$" -f /dev/null)
trap '"${terminal[@]}" kill-server 2>/dev/null || true; rm -rf "$work"' EXIT
status=0
escape=$'\e'

fail() {
  echo "$1"
  status=1
}

# in_terminal COMMAND: runs it in a terminal of 100 columns. All that it ever wrote is in $work/stream, the screen as
# it stands in the end in $work/screen.
in_terminal() {
  rm -f "$work/stream" "$work/done"
  "${terminal[@]}" new-session -d -s test -x 100 -y 60 "cat"
  "${terminal[@]}" pipe-pane -t test "cat >'$work/stream'"
  "${terminal[@]}" respawn-pane -k -t test "cd '$work' && { $1; }; echo finished; touch done; sleep 60"
  for _ in $(seq 2400); do
    [ -e "$work/done" ] && break
    sleep 0.1
  done
  [ -e "$work/done" ] || fail "does not end in a terminal: $1"
  for _ in $(seq 100); do
    grep -q finished "$work/stream" && break
    sleep 0.05
  done
  "${terminal[@]}" capture-pane -p -t test >"$work/screen"
  "${terminal[@]}" kill-session -t test
}

in_terminal "env -u NO_COLOR '$program' simulate nowhere.json -o out"
grep -qF "${escape}[1;31morvanel:${escape}[0m nowhere.json" "$work/stream" || fail "an error is not red in a terminal"
in_terminal "env NO_COLOR=1 '$program' simulate nowhere.json -o out"
grep -qF "orvanel: nowhere.json" "$work/stream" || fail "an error has colour in spite of NO_COLOR"
in_terminal "env -u NO_COLOR TERM=dumb '$program' simulate nowhere.json -o out"
grep -qF "orvanel: nowhere.json" "$work/stream" || fail "an error has colour on a dumb terminal"
in_terminal "env -u NO_COLOR '$program' simulate nowhere.json -o out 2>&1 | cat"
grep -qF "orvanel: nowhere.json" "$work/stream" || fail "an error has colour in a pipe"

in_terminal "env -u NO_COLOR '$program' convert '$eyes/perfect_3mm.json'"
grep -qF "${escape}[1mCoefficients${escape}[0m    over 3 mm" "$work/stream" || fail "a label is not bold in a terminal"
in_terminal "env NO_COLOR=1 '$program' convert '$eyes/perfect_3mm.json'"
grep -qF "Coefficients    over 3 mm" "$work/stream" || fail "a label is bold in spite of NO_COLOR"

# Control characters in names of files, columns and cells: the stream has them escaped, in errors, reports and rows.
sed '/"name": "Perf/d' "$eyes/perfect_3mm.json" >"$work/"$'evil\e]0;title\a\xc2\x9b31m\xe2\x80\xae.json'
{
  printf 'name,pupil_diameter_mm,eye,unit,normalisation,order,y_axis,Z4,a\e[36mb\n'
  printf 'c\e[36md,6,OD,um,orthonormal,osa,up,0.1,e\xe2\x80\xaef\n'
} >"$work/evil.csv"
in_terminal "env -u NO_COLOR '$program' convert evil*.json; '$program' convert evil.csv --row 1; '$program' convert evil.csv --to-order osa"
LC_ALL=C grep -qaP '\e\]0;|\e\[3[56]m|\x07|\xc2\x9b|\xe2\x80\xae' "$work/stream" && fail "control characters of the user reach a terminal"
grep -qF 'evil\x1b]0;title\x07\u009b31m\u202e.json, laterality' "$work/stream" || fail "no name of a file is escaped in a terminal"
grep -qF 'c\x1b[36md, laterality' "$work/stream" || fail "no name of an eye is escaped in a terminal"
grep -qF ',a\x1b[36mb,' "$work/stream" || fail "no column is escaped in a terminal"
grep -qF 'e\u202ef,' "$work/stream" || fail "no cell is escaped in a terminal"
in_terminal "cp evil*.json \"\$(printf 'bad\033]0;title\007.json')\"; echo >>bad*.json x; '$program' convert bad*.json"
LC_ALL=C grep -qaP '\e\]0;|\x07' "$work/stream" && fail "control characters of the user reach a terminal in an error"
grep -qF 'bad\x1b]0;title\x07.json: line' "$work/stream" || fail "no name of a file is escaped in an error"

in_terminal "env -u NO_COLOR '$program' simulate '$eyes/perfect_3mm.json' -o out --acuity 1"
grep -qF "Writing [......" "$work/stream" || fail "no progress bar at the start"
grep -qF "##############################] 13 of 13" "$work/stream" || fail "no full progress bar in the end"
grep -q "Writing" "$work/screen" && fail "the progress bar stays on the screen"
grep -q "^Pictures        13 files in out" "$work/screen" || fail "the summary is not on the screen"
in_terminal "env -u NO_COLOR '$program' simulate '$eyes/perfect_3mm.json' -o out2 --acuity 1 2>errors"
[ -s "$work/errors" ] && fail "a progress bar in a file"

# A batch that runs for more than the second after which its rate is shown.
{
  echo 'id,pupil_diameter_mm,eye,unit,normalisation,order,y_axis,Z4'
  for i in $(seq 1000); do echo "$i,6,OD,um,orthonormal,osa,up,0.$i"; done
} >"$work/eyes.csv"
in_terminal "env -u NO_COLOR '$program' batch eyes.csv -o results.csv --jobs 1"
grep -qE '\[#+\.+\] [0-9]+ %, [0-9]+ eyes, [0-9.]+/s, 0:00:[0-9]{2} left' "$work/stream" || fail "no rate of a batch in a terminal"
grep -q "left" "$work/screen" && fail "the rate of a batch stays on the screen"
in_terminal "env -u NO_COLOR '$program' batch eyes.csv -o results2.csv --jobs 1 2>errors"
# The note on the columns alone.
grep -qv "note: eyes.csv: read as coefficients" "$work/errors" && fail "the rate of a batch in a file"
exit $status
