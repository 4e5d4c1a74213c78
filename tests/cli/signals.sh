#!/usr/bin/env bash
# Tests that one SIGINT or SIGTERM ends the program while it waits for input or reads an endless file, without temporary
# files left.
# Usage: signals.sh PROGRAM EYES
set -euo pipefail
program=$1 eyes=$2
work=$(mktemp -d)
trap 'exec 3>&-; rm -rf "$work"' EXIT
cd "$work"
header=id,pupil_diameter_mm,eye,unit,normalisation,order,y_axis,Z4

fail() {
  echo "$1"
  exit 1
}

# reads PID NAME: whether the process has a file of this name open, or one that a link of this name leads to.
reads() {
  local descriptor
  for descriptor in /proc/"$1"/fd/*; do
    [ "$descriptor" -ef "$2" ] && return 0
  done
  return 1
}

# ends SIGNAL NAME COMMAND...: the command, once it has opened the input and the process $writer has ended, ends after
# the signal as it should.
writer=none
ends() {
  local signal=$1 name=$2 status=0
  shift 2
  env --default-signal="$signal" "$@" <"${input:-/dev/null}" >output 2>errors 3>&- &
  local pid=$!
  for _ in $(seq 3000); do
    reads $pid "$name" && ! kill -0 "$writer" 2>/dev/null && break
    sleep 0.02
  done
  sleep 0.2 # so that it is within the wait; on a slow machine the signal comes before it, which must end it as well
  kill -"$signal" $pid || fail "ends before the signal: $*"
  for _ in $(seq 1500); do
    kill -0 $pid 2>/dev/null || break
    sleep 0.02
  done
  if kill -0 $pid 2>/dev/null; then
    kill -KILL $pid
    fail "goes on after SIG$signal: $*"
  fi
  wait $pid || status=$?
  [ "$status" -eq 1 ] || fail "status $status after SIG$signal: $* $(cat errors)"
  grep -q '^orvanel: interrupted; ' errors || fail "says nothing of SIG$signal: $* $(cat errors)"
  [ "$(ls -A)" = "$files" ] || fail "leaves files after SIG$signal: $* $(ls -A)"
}

for signal in INT TERM; do
  mkfifo waiting.csv waiting.json waiting.png
  ln -s /dev/zero endless.csv
  ln -s /dev/zero endless.ndjson
  cp "$eyes/perfect_3mm.json" eye.json
  touch output errors
  files=$(ls -A)

  # Pipes that nobody writes to.
  ends $signal waiting.json "$program" simulate waiting.json -o out
  ends $signal waiting.json "$program" focus waiting.json -o out.json
  ends $signal waiting.png "$program" simulate eye.json --picture waiting.png -o out
  ends $signal waiting.csv "$program" convert waiting.csv --to osa -o out.csv
  ends $signal waiting.csv "$program" batch waiting.csv -o out.csv
  ends $signal waiting.csv "$program" population --mean waiting.csv --cov waiting.csv -n 3 --seed 1 -o out.csv

  # A link to what never ends.
  ends $signal /dev/zero "$program" convert endless.csv -o out.csv

  # A writer that stalls: after the header, within a row; through the pipe's name and through standard input.
  exec 3<>waiting.csv
  printf '%s\na,6,OD,um,orthonormal,osa,up,0.1\nb,6' "$header" >&3
  ends $signal waiting.csv "$program" convert waiting.csv -o out.csv
  printf '%s\na,6' "$header" >&3
  ln -s /dev/stdin stdin.csv
  files=$(ls -A)
  input=waiting.csv ends $signal waiting.csv "$program" convert stdin.csv -o out.csv
  exec 3>&-
  rm -f waiting.* endless.* eye.json stdin.csv

  # A batch keeps the rows that it has. The table is read in blocks of 64 KiB, and as much fits into a pipe: where all
  # is written, the rows of two blocks are on their way.
  mkfifo waiting.csv
  touch out.csv out.csv.orvanel
  files=$(ls -A)
  exec 3<>waiting.csv
  {
    echo "$header"
    for i in $(seq 4500); do echo "$i,6,OD,um,orthonormal,osa,up,0.00000000000000001"; done
  } >&3 &
  writer=$!
  ends $signal waiting.csv "$program" batch waiting.csv -o out.csv --force --metrics rms --jobs 2
  grep -q 'all rows are complete' errors || fail "$(cat errors)"
  grep -q '^100,1e-17,0,0,$' out.csv || fail "no rows are kept: $(head -3 out.csv)"
  exec 3>&-
  writer=none
  rm -f ./*
done
