// Wavefront synthesis: the sum of the Zernike terms on every sample of the pupil.
#include "optics/wavefront.h"

#include <algorithm>
#include <vector>

#include "optics/workspace.h"
#include "optics/zernike.h"

namespace orvanel {
namespace {

constexpr int kLastOrder = 6;

// Index of the first coefficient of a radial order.
constexpr std::size_t FirstOf(int order) { return static_cast<std::size_t>(order * (order + 1) / 2); }

// W at one point: terms are added in the order of their index, each as f * c + W. A term without a coefficient adds
// zero, and is passed over.
double WavefrontAt(const Powers& x, const Powers& y, const SelectedTerms& terms) {
  double w = 0.0;
  for (int n = terms.firstOrder; n <= kLastOrder; ++n) {
    const auto row = ZernikeTermTable[static_cast<std::size_t>(n)];
    for (std::size_t k = 0; k < row.size(); ++k) {
      const double c = terms.coefficients[FirstOf(n) + k];
      if (c != 0.0) w = row[k](x, y) * c + w;
    }
  }
  return w;
}

}  // namespace

SelectedTerms SelectTerms(const double* coefficients, int includeAstigmatism, int includeAllSecondOrder,
                          int includeDefocus) {
  SelectedTerms terms{{}, 2};
  std::copy_n(coefficients, terms.coefficients.size(), terms.coefficients.begin());
  if (includeAllSecondOrder == 1) return terms;
  if (includeDefocus == 1 && includeAstigmatism == 1) return terms;
  if (includeDefocus == 1 && includeAstigmatism == 0) {
    terms.coefficients[3] = 0.0;
    terms.coefficients[5] = 0.0;
  } else if (includeDefocus == 0 && includeAstigmatism == 1) {
    terms.coefficients[4] = 0.0;
  } else {
    terms.firstOrder = 3;
  }
  return terms;
}

void OpticsEngine::synthesizeWavefront(const double* coefficients, double diameter, int includeAstigmatism,
                                       int includeAllSecondOrder, int includeDefocus) {
  const int n = gridSize;
  psfWavelength = 0.0;
  pupilDiameter = diameter;
  normaliseOutput = 1;
  pupilSamples = n / 2 + 1;

  const SelectedTerms terms = SelectTerms(coefficients, includeAstigmatism, includeAllSecondOrder, includeDefocus);
  if (workspace_->kernels != nullptr) {
    workspace_->kernels->synthesize(terms.coefficients.data(), terms.firstOrder, pupilDiameter, wavefrontPlane.data(),
                                    pupilXPlane.data(), pupilYPlane.data());
    return;
  }

  const int radius = pupilSamples / 2;
  const double spacing = 2.0 / (pupilSamples - 1);

  std::vector<Powers> columnPowers;
  columnPowers.reserve(static_cast<std::size_t>(std::max(n, 0)));
  for (int c = 0; c < n; ++c) columnPowers.push_back(PowersOf((c - n / 2) * spacing));

  for (int r = 0; r < n; ++r) {
    const int dy = r - n / 2;
    const Powers y = PowersOf(dy * spacing);
    for (int c = 0; c < n; ++c) {
      const int dx = c - n / 2;
      if (dx * dx + dy * dy > radius * radius) {
        wavefrontPlane(r, c) = kWavefrontOutside;
        continue;
      }
      const Powers& x = columnPowers[static_cast<std::size_t>(c)];
      wavefrontPlane(r, c) = WavefrontAt(x, y, terms);
      pupilXPlane(r, c) = x[1] * pupilDiameter;
      pupilYPlane(r, c) = y[1] * pupilDiameter;
    }
  }
}

}  // namespace orvanel
