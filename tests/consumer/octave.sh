#!/usr/bin/env bash
# Builds the example for GNU Octave against an installation, runs it, and compares its numbers with the program's.
# Usage: octave.sh EXAMPLES PREFIX SCRATCH
set -euo pipefail
examples=$1 prefix=$2 scratch=$3
rm -rf "$scratch"
mkdir -p "$scratch"
PKG_CONFIG_LIBDIR=$(dirname "$(find "$prefix" -name orvanel-c.pc)")
export PKG_CONFIG_LIBDIR
read -ra flags <<<"$(pkg-config --cflags --libs orvanel-c)"
cp "$examples"/octave/orvanel_metrics.c "$examples"/octave/metrics_of_eyes.m "$scratch"
cd "$scratch"
mkoctfile --mex orvanel_metrics.c "${flags[@]}" -Wl,-rpath,"$(pkg-config --variable=libdir orvanel-c)"
octave-cli --no-init-file --no-history --quiet metrics_of_eyes.m >output
diff "$examples/octave/metrics_of_eyes.output" output
# The C example has the same eyes.
diff <(awk '/^ *[1-3] / {print $1, $2, $(NF - 1)}' "$examples/metrics_of_eyes.output") \
  <(awk '/^ *[1-3] / {print $1, $2, $(NF - 1)}' output)

# All digits are the program's.
cat >compare.m <<'OCTAVE'
modes = [zeros(4, 3), reshape(sin (1:32), 4, 8) / 20];
file = fopen ("eyes.csv", "w");
fprintf (file, "unit,normalisation,order,y_axis,eye,pupil_diameter_mm");
fprintf (file, ",Z%d", 0:10);
fprintf (file, "\n");
fprintf (file, ["um,orthonormal,osa,up,OD,4" repmat(",%.17g", 1, 11) "\n"], modes');
fclose (file);
printf ("%.17g\n", orvanel_metrics (modes, 4, "VSX"));
OCTAVE
octave-cli --no-init-file --no-history --quiet compare.m >octave.txt
"$prefix/bin/orvanel" batch eyes.csv -o results.csv --metrics VSX --jobs 1 >log 2>&1 || { cat log; exit 1; }
python3 - <<'PYTHON'
import csv

rows = csv.DictReader(open("results.csv", newline=""))
program = [float(row[column]) for row in rows for column in row if column.startswith("VSX_")]
octave = [float(line) for line in open("octave.txt")]
assert len(octave) == 4 and program == octave, (program, octave)
print("VSX of 4 eyes by Octave and by the program:", *octave)
PYTHON
