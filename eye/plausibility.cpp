// Compares pupils and refractions with the ranges of human eyes.
#include "eye/plausibility.h"

#include <cmath>

#include "base/number_text.h"
#include "eye/refraction.h"

namespace orvanel::eye {
namespace {

constexpr Millimetres kSmallestPupil{0.5}, kLargestPupil{12.0};  // no living human eye is outside
constexpr double kLargestRefraction = 30.0;                      // dioptres, of mean sphere or any meridian

}  // namespace

std::vector<std::string> EyeWarnings(const Eye& eye) {
  std::vector<std::string> warnings;
  if (eye.pupil < kSmallestPupil || eye.pupil > kLargestPupil) {
    warnings.push_back("the pupil of " + NumberText(eye.pupil.value(), 6) +
                       " mm is unlike that of a human eye, which is 2 to 8 mm");
  }
  const PowerVector powers = LeastSquaresRefraction(eye.coefficients.osa(), eye.pupil);
  const double m = powers.m.value(), j0 = powers.j0.value(), j45 = powers.j45.value();
  const double astigmatism = std::sqrt(j0 * j0 + j45 * j45);
  const double strongest = m < 0.0 ? m - astigmatism : m + astigmatism;
  if (std::abs(strongest) > kLargestRefraction) {
    warnings.push_back("the refraction of " + FixedText(strongest, 1) + " D in its strongest meridian is beyond " +
                       NumberText(kLargestRefraction, 2) + " D; check unit, normalisation and pupil");
  }
  return warnings;
}

void TableDoubts::Add(const Eye& eye, const std::string& place) {
  ++eyes_;
  const std::vector<std::string> warnings = EyeWarnings(eye);
  if (warnings.empty()) return;
  if (doubtful_ == 0) first_ = place + ": " + warnings.front();
  ++doubtful_;
}

std::string TableDoubts::Summary() const {
  if (doubtful_ == 0) return {};
  return std::to_string(doubtful_) + " of " + std::to_string(eyes_) + (eyes_ == 1 ? " eye is" : " eyes are") +
         " unlike a human eye; the first in " + first_;
}

}  // namespace orvanel::eye
