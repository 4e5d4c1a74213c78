// Sums the Zernike terms on every sample of the pupil.
#include "optics/wavefront.h"

#include <algorithm>
#include <vector>

#include "orvanel/sampling.h"
#include "orvanel/zernike.h"

namespace orvanel {
namespace {

constexpr int kLastOrder = 6;

bool IsInside(int dx, int dy, int radius) { return dx * dx + dy * dy <= radius * radius; }

double Spacing(int pupilSamples) { return 2.0 / (pupilSamples - 1); }

// Index of the first coefficient of a radial order.
constexpr std::size_t FirstOf(int order) { return static_cast<std::size_t>(order * (order + 1) / 2); }

// W at one point: terms are added in the order of their index, each as f * c + W. A term without coefficient would
// add zero, and is skipped.
double WavefrontAt(const Powers& x, const Powers& y, const SelectedTerms& terms) {
  double w = 0.0;
  for (int n = terms.firstOrder; n <= kLastOrder; ++n) {
    const ZernikeOrder row = ZernikeTermTable[static_cast<std::size_t>(n)];
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

void SynthesizeWavefront(const SelectedTerms& terms, PlaneView wavefront) {
  const int n = wavefront.side, samples = PupilSamples(n);
  const double spacing = Spacing(samples);
  std::vector<Powers> columnPowers;
  columnPowers.reserve(static_cast<std::size_t>(std::max(n, 0)));
  for (int c = 0; c < n; ++c) columnPowers.push_back(PowersOf((c - n / 2) * spacing));

  for (int r = 0; r < n; ++r) {
    const int dy = r - n / 2;
    const Powers y = PowersOf(dy * spacing);
    for (int c = 0; c < n; ++c) {
      const Powers& x = columnPowers[static_cast<std::size_t>(c)];
      wavefront(r, c) = IsInside(c - n / 2, dy, samples / 2) ? WavefrontAt(x, y, terms) : kWavefrontOutside;
    }
  }
}

void WriteCoordinate(Coordinate which, double diameter, PlaneView plane) {
  const int n = plane.side, centre = n / 2, samples = PupilSamples(n), radius = samples / 2;
  const double spacing = Spacing(samples);
  for (int r = 0; r < n; ++r) {
    const int dy = r - centre;
    int width = 0;  // columns inside the pupil, from the centre on
    while (IsInside(width, dy, radius)) ++width;
    const int end = std::min(centre + width, n);
    for (int c = std::max(centre - width + 1, 0); c < end; ++c) {
      Store(plane.samples, SampleIndex(r, c, n), (which == Coordinate::kColumn ? c - centre : dy) * spacing * diameter);
    }
  }
}

}  // namespace orvanel
