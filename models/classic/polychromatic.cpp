// Computes the white-light point spread function.
#include <algorithm>
#include <array>

#include "models/classic/workspace.h"
#include "optics/samples.h"
#include "orvanel/resampling.h"

namespace orvanel {
namespace {

struct Light {
  double wavelength;  // mm
  double weight;
};

// contract: blue, yellow, red. The first sets the sampling, the second the half width.
constexpr std::array<Light, 3> kWhite = {{{0.000435835, 0.5}, {kSearchWavelength, 1.0}, {0.0006328, 0.5}}};

}  // namespace

void OpticsEngine::RescalePlane(double* plane, double factor) {
  double* const rescaled = workspace_->pipeline->Spare().samples;
  Rescale(plane, gridSize, factor, rescaled);
  StoreAll(plane, rescaled, SampleCount(gridSize));
}

void OpticsEngine::PolychromaticPsf(double* out, double* sampleSpacing, std::int32_t /*spare*/) {
  const int n = gridSize;
  std::array<GridPlane, kWhite.size()> planes = {GridPlane(n), GridPlane(n), GridPlane(n)};
  std::array<double, kWhite.size()> halfWidths{};
  for (std::size_t k = 0; k < kWhite.size(); ++k) {
    double pitch = 0.0;
    double strehl = 0.0;
    ComputePsf(kWhite[k].wavelength, planes[k].data(), &pitch, &strehl, n);
    halfWidths[k] = psfHalfWidth;
    if (k > 0) RescalePlane(planes[k].data(), halfWidths[k] / halfWidths[0]);
  }

  std::fill_n(out, SampleCount(n), 0.0);
  for (std::size_t k = 0; k < kWhite.size(); ++k) {
    for (std::size_t i = 0; i < SampleCount(n); ++i) out[i] += planes[k][i] * kWhite[k].weight;
  }

  // contract: the centre is read again for each sample. It is 1 once it has been divided by itself.
  const std::size_t centre = SampleIndex(n / 2, n / 2, n);
  for (std::size_t i = 0; i < SampleCount(n); ++i) {
    out[i] = out[i] / out[centre];
    psfPlane[i] = out[i];
  }
  psfHalfWidth = halfWidths[1];
  *sampleSpacing = (halfWidths[0] + halfWidths[0]) / (n - 1);
}

}  // namespace orvanel
