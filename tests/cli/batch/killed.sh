#!/usr/bin/env bash
# Kills a batch at random moments, repeatedly. Rows and files are always whole, and the final bytes are those of an
# uninterrupted run.
# Usage: killed.sh PROGRAM MEAN COVARIANCE
set -euo pipefail
program=$1 mean=$2 covariance=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
RANDOM=20261 # the same moments in each run of this test, as shares of the unbroken run's time

fail() {
  echo "$1"
  exit 1
}

# table ROWS: an eye a row, one of them at fault.
table() {
  "$program" population --mean "$mean" --cov "$covariance" -n "$1" --seed 3 -o eyes.csv --force >/dev/null
  sed -i '30s/,6,OD,/,0,OD,/' eyes.csv
}

# begin FOLDER OPTION...: a run into the folder, in the background.
begin() {
  local folder=$1
  shift
  (cd "$folder" && exec "$program" batch ../eyes.csv -o results.csv --jobs 2 --chunk 16 --resume "$@" >/dev/null 2>../errors) &
}

# ends: waits for the run and fails where it does not end as the table demands.
ends() {
  local status=0
  wait $! || status=$?
  [ "$status" -eq 3 ] || { cat errors; fail "a run ends with status $status"; }
}

# compare KILLS OPTION...
compare() {
  local kills=$1 died=0 rounds=0 cut=0 start moment status file
  shift
  mkdir whole killed
  start=$(date +%s%N)
  begin whole "$@"
  ends
  local milliseconds=$((($(date +%s%N) - start) / 1000000 + 1))
  while [ "$died" -lt "$kills" ] || [ "$cut" -eq 0 ]; do
    rounds=$((rounds + 1))
    [ "$rounds" -le $((20 * kills)) ] || fail "no run is killed while it writes"
    begin killed "$@"
    moment=$((RANDOM * milliseconds / 32768))
    sleep "$((moment / 1000)).$(printf '%03d' $((moment % 1000)))"
    kill -KILL $! 2>/dev/null || true
    status=0
    wait $! 2>/dev/null || status=$?
    if [ "$status" -ne 137 ]; then # it was done first; begin anew
      [ "$status" -eq 3 ] || { cat errors; fail "a run ends with status $status"; }
      diff -r whole killed
      rm -r killed
      mkdir killed
      continue
    fi
    died=$((died + 1))
    for file in killed/*.h5 killed/pictures/*.png; do
      [ ! -e "$file" ] || cmp "$file" "${file/#killed/whole}"
    done
    [ -s killed/results.csv ] || continue
    cut=$((cut + 1))
    [ -z "$(tail -c 1 killed/results.csv)" ] || fail "a row is torn"
    head -c "$(stat -c %s killed/results.csv)" whole/results.csv | cmp - killed/results.csv
  done
  begin killed "$@"
  ends
  diff -r whole killed
  rm -r whole killed
  echo "killed $died times, $cut of them with results"
}

table 200
compare 50 --model classic --metrics strehl,rms --mtf-at 5
table 40
compare 12 --model physical --metrics strehl_axis --planes planes.h5 --planes-of psf --pictures pictures --pictures-of star
