#!/usr/bin/env bash
# Tests the guard with kernels that include kernels and compiler vectors, and one that includes more.
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

put tree/optics/kernels/variant.cpp '#include "optics/kernels/a.h"'
for pair in a:b b:c c:d d:e; do
  put "tree/optics/kernels/${pair%:*}.h" "#include \"optics/kernels/${pair#*:}.h\""
done
put tree/optics/kernels/e.h '#include <immintrin.h>'
put tree/models/physical/kernels/variant.cpp '#include "optics/kernels/b.h"'
keeps 'kernels that include kernels' tree
for include in '#include <vector>' ' #  include <cmath>' '#include "optics/samples.h"' '#include <cstdint>'; do
  put tree/optics/kernels/e.h "$include"
  breaks "$include" 'optics/kernels/e.h includes' tree
done
put tree/models/physical/kernels/variant.cpp '#include <vector>'
breaks 'a model that includes more' 'models/physical/kernels/variant.cpp includes' tree
put tree/models/physical/kernels/variant.cpp '#include <immintrin.h>'
put tree/optics/kernels/a.h '#include <immintrin.h>'
breaks 'kernels that are not reached' 'only these are kernels' tree
finish
