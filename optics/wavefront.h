// Declares the wavefront over the pupil and the coordinates of its samples.
#ifndef ORVANEL_OPTICS_WAVEFRONT_H
#define ORVANEL_OPTICS_WAVEFRONT_H

#include <array>

#include "optics/view.h"
#include "orvanel/constants.h"

namespace orvanel {

// Coefficients as the selection flags leave them, and the radial order at which the sum begins.
struct SelectedTerms {
  std::array<double, kCoefficients> coefficients;
  int firstOrder;
};

// Applies the flags of OpticsEngine::synthesizeWavefront to a copy of the 28 coefficients.
SelectedTerms SelectTerms(const double* coefficients, int includeAstigmatism, int includeAllSecondOrder,
                          int includeDefocus);

// The wavefront of these terms inside the pupil; kWavefrontOutside outside.
void SynthesizeWavefront(const SelectedTerms& terms, PlaneView wavefront);

// The normalised coordinate along columns or rows times the pupil's diameter, on the samples inside the pupil. The
// other samples keep their values.
enum class Coordinate { kColumn, kRow };
void WriteCoordinate(Coordinate which, double diameter, PlaneView plane);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_WAVEFRONT_H
