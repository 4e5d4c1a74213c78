// The scales, from the library's numbers and from the pupil and wavelength alone.
#include "cli/scales.h"

#include <numbers>

#include "optics/elementary.h"
#include "orvanel/constants.h"

namespace orvanel::cli {
namespace {

constexpr double kDegree = std::numbers::pi / 180.0;  // radians

// The visual angle of a length on the retina, by the library's rule: proportional, exact for 1 mm.
ArcMinutes VisualAngle(Millimetres onRetina) {
  return ArcMinutes(onRetina.value() * ArcTangent(1.0 / kFocalLength) / kDegree * 60.0);
}

}  // namespace

Scales ScalesOf(const Simulation& simulation) {
  constexpr double kIntervals = ORVANEL_GRID_SIZE - 1;  // the library's, where one more would be exact
  Scales scales;
  scales.library.halfWidth = simulation.psfHalfWidth;
  scales.library.halfWidthAngle = VisualAngle(simulation.psfHalfWidth);
  scales.library.pitch = 2.0 * scales.library.halfWidthAngle / kIntervals;
  scales.library.step = simulation.frequencyRange / (kIntervals / 2.0);

  // The padded pupil plane is two pupils wide, so that neighbouring samples of the PSF stand wavelength / (2 pupil)
  // apart and the cut-off falls on MTF sample 128.
  const double pupilInWaves = simulation.pupil / Wavelength();
  scales.optical.pitch = ArcMinutes(1.0 / (2.0 * pupilInWaves) / kDegree * 60.0);
  scales.optical.halfWidthAngle = ORVANEL_GRID_SIZE / 2 * scales.optical.pitch;
  scales.optical.halfWidth = Millimetres(ORVANEL_GRID_SIZE / 2 / (2.0 * pupilInWaves) * kFocalLength);
  scales.opticalCutOff = CyclesPerDegree(pupilInWaves * kDegree);
  scales.optical.step = scales.opticalCutOff / ORVANEL_SECTION_SAMPLES;
  scales.ratio = simulation.frequencyRange / scales.opticalCutOff;
  return scales;
}

ArcMinutes FieldOf(const Scale& scale) { return ORVANEL_GRID_SIZE * scale.pitch; }

double MtfAt(const Section& section, const Scale& library, CyclesPerDegree frequency) {
  const double position = frequency / library.step;
  if (!(position < ORVANEL_SECTION_SAMPLES)) return 0.0;
  const auto sample = static_cast<std::size_t>(position);
  const double next = sample + 1 < section.size() ? section[sample + 1] : 0.0;  // the cut-off is the sample behind
  const double share = position - static_cast<double>(sample);
  return (1.0 - share) * section[sample] + share * next;
}

double Acuity(int diameter, const Scale& scale) { return ArcMinutes(5.0) / (diameter * scale.pitch); }

}  // namespace orvanel::cli
