// What is done to an eye before it is used: refraction added, another pupil, the other side.
#ifndef ORVANEL_CLI_EYES_PREPARATION_H
#define ORVANEL_CLI_EYES_PREPARATION_H

#include <optional>
#include <string>
#include <vector>

#include "cli/eyes/eye.h"
#include "cli/refraction.h"

namespace orvanel::cli {

struct Preparation {
  std::optional<PowerVector> refraction;
  std::optional<Millimetres> pupil;
  bool extrapolate = false;    // allows a pupil larger than measured
  std::optional<Side> mirror;  // the side as which eyes are wanted
};

// The eye after all that, in its own convention; with nothing to do, the same bits. Throws Error where the pupil is
// larger than measured without `extrapolate`, where the side is to be changed and not known, and where pupil or
// coefficients are so far from any eye's that their unit must be wrong.
Eye Prepared(Eye eye, const Preparation& preparation);

// The eye's coefficients in the convention of OSA/ANSI Z80.28.
Coefficients OsaCoefficients(const Eye& eye);

// What was done, a sentence each: "mirrored from OS to OD".
std::vector<std::string> Changes(const Eye& measured, const Preparation& preparation);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_EYES_PREPARATION_H
