// Computes the library scale by the formulas of the library, and the optical scale from pupil and wavelength.
#include "models/scales.h"

#include <numbers>

#include "models/sampling.h"
#include "orvanel/orvanel.h"

namespace orvanel::models {

Scales ScalesOf(Millimetres pupil) {
  constexpr double kDegree = std::numbers::pi / 180.0;   // radians
  constexpr double kHalfSide = ORVANEL_GRID_SIZE / 2.0;  // samples

  // The padded pupil plane is two pupils wide. So the spacing of the PSF samples is wavelength / (2 pupil), and the
  // cut-off is at MTF sample 128.
  const double pupilInWaves = pupil / Wavelength();
  const Millimetres halfWidth = PsfHalfWidth(pupil);
  Scales scales;
  scales.frequencyRange = FrequencyRange(pupil);
  scales.opticalCutOff = CyclesPerDegree(pupilInWaves * kDegree);
  scales.ratio = scales.frequencyRange / scales.opticalCutOff;
  scales.optical.pitch = ArcMinutes(1.0 / (2.0 * pupilInWaves) / kDegree * 60.0);
  scales.optical.step = scales.opticalCutOff / kHalfSide;
  scales.optical.halfWidth = scales.ratio * halfWidth;
  scales.library.pitch = scales.optical.pitch / scales.ratio;
  scales.library.step = scales.frequencyRange / kHalfSide;
  scales.library.halfWidth = halfWidth;
  for (Scale* const scale : {&scales.library, &scales.optical}) scale->halfWidthAngle = kHalfSide * scale->pitch;
  return scales;
}

ArcMinutes FieldOf(const Scale& scale) { return ORVANEL_GRID_SIZE * scale.pitch; }

double MtfAt(const LineSpread& lineSpread, const Scale& library, CyclesPerDegree frequency) {
  return MtfBetweenSamples(lineSpread, frequency / library.step);
}

double OpticalAcuity(double effectiveAcuity, const Scales& scales) { return effectiveAcuity / scales.ratio; }

}  // namespace orvanel::models
