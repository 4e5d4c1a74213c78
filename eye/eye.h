// Holds one eye: its pupil, laterality and coefficients, and the texts of its file or row.
#ifndef ORVANEL_EYE_EYE_H
#define ORVANEL_EYE_EYE_H

#include <optional>
#include <string>

#include "base/layers.h"
#include "base/units.h"
#include "eye/conventions/convention.h"
#include "eye/eye_coefficients.h"
#include "eye/refraction.h"

namespace orvanel::eye {

struct Eye {
  std::string file;  // as the user named it
  std::string name, source, note;
  Millimetres pupil;  // diameter over which the coefficients are given
  Side side = Side::kUnknown;
  EyeCoefficients coefficients;
  std::optional<Nanometres> referenceWavelength;  // at which the coefficients hold; empty if it is not stated
  std::optional<PowerVector> prescription;        // stated in addition to the coefficients, and added to them
};

// "OD", "OS", "not stated".
inline std::string SideText(Side side) { return side == Side::kUnknown ? "not stated" : std::string(Word(side)); }

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_EYE_H
