// Sums B-splines along columns and rows, one after the other.
#include "models/physical/image/spline_grid.h"

#include <algorithm>
#include <cstddef>
#include <numbers>

#include "base/elementary.h"
#include "models/physical/plane_index.h"

namespace orvanel::physical {

SplineGrid::SplineGrid(const ChordKernels& kernels, int columns, int rows, int step)
    : kernels_(&kernels), columns_(columns), rows_(rows), step_(step) {
  for (std::vector<double>& weights : weights_) weights.resize(At(1, 0, WholeBlocks(step)));
  for (std::size_t i = 0; i < static_cast<std::size_t>(step); ++i) {
    const double t = (static_cast<double>(i) + 0.5) / step, u = 1.0 - t;
    weights_[0][i] = u * u * u / 6.0;
    weights_[1][i] = (3.0 * t * t * t - 6.0 * t * t + 4.0) / 6.0;
    weights_[2][i] = (3.0 * u * u * u - 6.0 * u * u + 4.0) / 6.0;
    weights_[3][i] = t * t * t / 6.0;
  }
}

SplineWeights SplineGrid::WeightsFrom(int inCell) const {
  return {{weights_[0].data() + inCell, weights_[1].data() + inCell, weights_[2].data() + inCell,
           weights_[3].data() + inCell}};
}

void SplineGrid::GatherRows(const double* samples, int sampleColumns, int firstRow, int count, int samplePitch,
                            int margin, double* lines) const {
  const int wide = WholeBlocks(sampleColumns);
  for (int r = 0; r < count;) {
    const int cell = (firstRow + r + margin) / step_, inCell = (firstRow + r + margin) % step_;
    const int together = std::min(step_ - inCell, count - r);
    kernels_->gatherRows(samples + At(r, 0, samplePitch), samplePitch, together, WeightsFrom(inCell), wide,
                         lines + At(cell, 0, wide), wide);
    r += together;
  }
}

void SplineGrid::GatherColumns(const double* lines, int sampleColumns, int margin, double* nodes, int nodePitch) const {
  std::fill(nodes, nodes + At(rows(), 0, nodePitch), 0.0);
  kernels_->gatherColumns(lines, WholeBlocks(sampleColumns), rows(), sampleColumns, WeightsFrom(0), step_,
                          margin % step_, nodes + margin / step_, nodePitch);
}

std::vector<double> SplineGrid::Rows(const double* nodes, int pitch) const {
  const int wide = LinesPitch();
  std::vector<double> lines(At(rows(), 0, wide));  // nodes along columns
  for (int n = 0; n < rows(); ++n) {
    kernels_->splinesAlongRow(nodes + At(n, 0, pitch), columns() - 3, WeightsFrom(0), step_,
                              lines.data() + At(n, 0, wide));
  }
  return lines;
}

double SplineGrid::AddTo(const std::vector<double>& lines, int first, int count, double* rows, int pitch,
                         double surround) const {
  const int wide = LinesPitch();
  double sum = 0.0;
  for (int r = first; r < first + count; ++r) {
    sum += kernels_->addSplines(lines.data() + At(r / step_, 0, wide), wide, WeightsFrom(r % step_), columns_, surround,
                                rows + At(r - first, 0, pitch));
  }
  return sum;
}

double SplineGrid::Spectrum(int k, int side) {
  return (2.0 + SineAndCosine(2.0 * std::numbers::pi * k / side).cosine) / 3.0;
}

}  // namespace orvanel::physical
