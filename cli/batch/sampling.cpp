// The library's formulas in its order of evaluation; the test compares every bit with the engine.
#include "cli/batch/sampling.h"

#include <algorithm>

#include "orvanel/optics_engine.h"
#include "orvanel/orvanel.h"

namespace orvanel::cli {
namespace {

constexpr double kFocalLength = 17.0;                           // mm
constexpr double kDegreesPerMillimetre = 0x1.aee82eda59c9fp+1;  // of retina: the arc tangent of 1/17
constexpr double kHalfMinuteOfArc = 0.000145444;                // radians
constexpr int kPupilRadius = ORVANEL_GRID_SIZE / 4;             // samples

// Samples that a ring takes up on the retina, where quotient is strokes over acuity.
double RawSize(Millimetres pupil, double quotient) {
  return quotient * ORVANEL_GRID_SIZE / PsfHalfWidth(pupil).value() * kFocalLength * kHalfMinuteOfArc;
}

}  // namespace

Millimetres PsfHalfWidth(Millimetres pupil) {
  return Millimetres(kPupilRadius / 2 * kFocalLength * kWavelength / pupil.value());
}

CyclesPerDegree MtfStep(Millimetres pupil) {
  return CyclesPerDegree(2 * ((ORVANEL_GRID_SIZE * 0.25) / PsfHalfWidth(pupil).value()) / kDegreesPerMillimetre /
                         (ORVANEL_GRID_SIZE - 1));
}

CyclesPerDegree FrequencyRange(Millimetres pupil) { return MtfStep(pupil) * ((ORVANEL_GRID_SIZE - 1) / 2.0); }

int RingDiameter(Millimetres pupil, double acuity) {
  constexpr double kLargest = 2147483000.0;  // still a whole number
  const double raw = RawSize(pupil, 5.0 / acuity);
  int diameter = static_cast<int>(std::min(raw, kLargest)) - 2;
  while (diameter % 5 != 0) ++diameter;
  return diameter;
}

double EffectiveAcuity(Millimetres pupil, int diameter) { return RawSize(pupil, 5.0 / diameter); }

}  // namespace orvanel::cli
