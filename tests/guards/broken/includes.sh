#!/usr/bin/env bash
# Tests the guard with a small tree of layers, and includes against its arrows.
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

put tree/include/orvanel/engine.h '#include <vector>
#include <orvanel/matrix.h>'
put tree/base/error.cpp '#include "base/error.h"'
put tree/matrix/matrix.cpp '#include "orvanel/matrix.h"'
put tree/optics/psf.cpp '#include <cmath>
#include "optics/psf.h"
#include "base/standard_output.h"'
put tree/models/classic/psf.cpp '#include "optics/psf.h"
#include <orvanel/matrix.h>'
put tree/models/physical/strehl.cpp '#include "models/physical/strehl.h"
#include "base/elementary.h"
#include "optics/kernels/kernels.h"'
put tree/eye/rms.cpp '#include "eye/rms.h"'
put tree/targets/plane.h '#include <vector>'
put tree/models/scales.cpp '#include "targets/plane.h"'
put tree/metrics/metrics.cpp '#include "models/scales.h"'
put tree/evaluation/evaluator.cpp '#include "metrics/metrics.h"'
put tree/evaluation/in_order.h '#include <thread>'
put tree/interface/exports.cpp '#  include <optics/psf.h>'
put tree/files/json.cpp '#include "eye/eye.h"'
put tree/c_interface/eye.cpp '#include "files/json.h"'
put tree/drawing/sheet.cpp '#include "evaluation/simulated_eye.h"'
put tree/cli/main.cpp '#include "cli/axis.h"'
put tree/bench/main.cpp '#include "tests/support/plain.h"'
keeps 'a tree with one direction' tree

n=0
# breach FILE LINE
breach() {
  n=$((n + 1))
  cp -r tree "breach$n"
  printf '%s\n' "$2" >>"breach$n/$1"
  breaks "$2 in $1" "${2#"${2%%[![:space:]]*}"}" "breach$n"
}
breach optics/psf.cpp '#include "cli/axis.h"'
breach optics/psf.cpp '#include <cli/axis.h>'
breach optics/psf.cpp '#  include "cli/axis.h"'
breach optics/psf.cpp '  # include <interface/exports.h>'
breach optics/psf.cpp '#include"cli/axis.h"'
breach optics/psf.cpp '#include "matrix/matrix.h"'
breach optics/psf.cpp '#include "optics/../cli/axis.h"'
breach optics/psf.cpp '#include ORVANEL_HEADER'
breach optics/psf.cpp '#include_next "cli/axis.h"'
breach optics/psf.h '#include "cli/axis.h"'
breach optics/psf.cpp '#include "models/classic/workspace.h"'
breach optics/psf.cpp '#include "orvanel/optics_engine.h"'
breach optics/psf.cpp '#include "orvanel/lazy_plane.h"'
breach models/classic/psf.cpp '#include "interface/exports.h"'
breach models/classic/psf.cpp '#include "matrix/matrix.h"'
breach models/classic/psf.cpp '#include "models/physical/strehl.h"'
breach models/physical/strehl.cpp '#include "models/classic/workspace.h"'
breach optics/psf.cpp '#include "models/physical/strehl.h"'
breach models/physical/strehl.cpp '#include <interface/exports.h>'
breach models/physical/strehl.cpp '#include "cli/axis.h"'
breach base/error.cpp '#include "eye/eye.h"'
breach base/error.cpp '#include "matrix/messages.h"'
breach matrix/matrix.cpp '#include <orvanel/optics_engine.h>'
breach matrix/matrix.cpp '#include "optics/psf.h"'
breach include/orvanel/engine.h '#include "optics/psf.h"'
breach include/orvanel/engine.h '#include <include/orvanel/engine.h>'
breach eye/rms.cpp '#include "targets/plane.h"'
breach eye/rms.cpp '#include <fstream>'
breach targets/plane.h '#include "models/scales.h"'
breach models/scales.cpp '#include "metrics/metrics.h"'
breach metrics/metrics.cpp '#include "evaluation/simulated_eye.h"'
breach metrics/metrics.cpp '#include <thread>'
breach evaluation/evaluator.cpp '#include "files/json.h"'
breach evaluation/evaluator.cpp '#include <thread>'
breach interface/exports.cpp '#include <cli/axis.h>'
breach files/json.cpp '#include "drawing/sheet.h"'
breach c_interface/eye.cpp '#include "drawing/sheet.h"'
breach drawing/sheet.cpp '#include "cli/main.h"'
breach cli/main.cpp '#include "optics/psf.h"'
breach cli/main.cpp '#include <tests/support/plain.h>'
breach bench/main.cpp '#include "optics/psf.h"'
mkdir -p empty/{include,base,matrix,optics,eye,targets,models/{classic,physical},metrics,evaluation,interface,files,c_interface,drawing,cli,bench}
breaks 'a tree without sources' 'optics includes nothing' empty
finish
