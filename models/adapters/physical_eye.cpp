// Copies modes, pupil and reference wavelength.
#include "models/adapters/physical_eye.h"

#include <algorithm>

#include "models/physical/pupil/wavefront_polynomial.h"

namespace orvanel::models {

physical::Eye PhysicalEyeOf(const Eye& eye) {
  RequireOrdersUpTo(physical::kHighestOrder, eye.coefficients, "physical");
  const Coefficients& modes = eye.coefficients.osa();
  physical::Eye physical;
  physical.diameterMm = eye.pupil.value();
  std::copy_n(modes.begin(), std::min(modes.size(), physical.modesUm.size()), physical.modesUm.begin());
  if (eye.referenceWavelength) physical.referenceNm = eye.referenceWavelength->value();
  return physical;
}

physical::Eye PhysicalEyeOf(const Eye& eye, const PhysicalSettings& settings) {
  physical::Eye physical = PhysicalEyeOf(eye);
  physical.outline = settings.outline;
  physical.stilesCrawford = settings.stilesCrawford;
  physical.achromaticAxisXmm = settings.achromaticAxisXmm;
  physical.achromaticAxisYmm = settings.achromaticAxisYmm;
  return physical;
}

}  // namespace orvanel::models
