// Wavefront over the pupil.
#ifndef ORVANEL_OPTICS_WAVEFRONT_H
#define ORVANEL_OPTICS_WAVEFRONT_H

#include <array>

#include "orvanel/optics_engine.h"

namespace orvanel {

// Coefficients as the selection flags leave them, and the radial order at which the sum begins.
struct SelectedTerms {
  std::array<double, kCoefficients> coefficients;
  int firstOrder;
};

// Applies the flags of OpticsEngine::synthesizeWavefront to a copy of the 28 coefficients.
SelectedTerms SelectTerms(const double* coefficients, int includeAstigmatism, int includeAllSecondOrder,
                          int includeDefocus);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_WAVEFRONT_H
