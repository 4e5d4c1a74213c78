// Wavefront over the pupil.
#ifndef ORVANEL_OPTICS_WAVEFRONT_H
#define ORVANEL_OPTICS_WAVEFRONT_H

#include <array>

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

// The wavefront of these terms on the n x n samples of the grid; kWavefrontOutside outside the pupil.
void SynthesizeWavefront(const SelectedTerms& terms, int n, double* wavefront);

// The pupil of a synthesis, from which its coordinates follow.
struct SampledPupil {
  int gridSize;
  int samples;
  double diameter;
};

// The normalised coordinate along columns or rows times the pupil's diameter, on the samples inside the pupil; the
// others are left as they are.
enum class Coordinate { kColumn, kRow };
void WriteCoordinate(const SampledPupil& pupil, Coordinate which, double* plane);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_WAVEFRONT_H
