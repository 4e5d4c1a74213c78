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
  for (int i = 0; i < step; ++i) {
    const double t = (i + 0.5) / step, u = 1.0 - t;
    weights_.push_back(u * u * u / 6.0);
    weights_.push_back((3.0 * t * t * t - 6.0 * t * t + 4.0) / 6.0);
    weights_.push_back((3.0 * u * u * u - 6.0 * u * u + 4.0) / 6.0);
    weights_.push_back(t * t * t / 6.0);
  }
}

void SplineGrid::Gather(const double* samples, int sampleColumns, int sampleRows, int samplePitch, int margin,
                        double* nodes, int nodePitch) const {
  const int wide = WholeBlocks(sampleColumns);
  std::vector<double> lines(At(rows(), 0, wide));  // nodes along columns
  for (int r = 0; r < sampleRows;) {
    const int cell = (r + margin) / step_, inCell = (r + margin) % step_;
    const int count = std::min(step_ - inCell, sampleRows - r);
    kernels_->gatherRows(samples + At(r, 0, samplePitch), samplePitch, count, weights_.data() + At(inCell, 0, 4), wide,
                         lines.data() + At(cell, 0, wide), wide);
    r += count;
  }
  for (int n = 0; n < rows(); ++n) {
    double* const to = nodes + At(n, 0, nodePitch);
    std::fill(to, to + nodePitch, 0.0);
    const double* const from = lines.data() + At(n, 0, wide);
    int cell = margin / step_, inCell = margin % step_;
    for (int i = 0; i < sampleColumns; ++i) {
      const double* const w = weights_.data() + At(inCell, 0, 4);
      for (int k = 0; k < 4; ++k) to[cell + k] += w[k] * from[i];
      if (++inCell == step_) {
        inCell = 0;
        ++cell;
      }
    }
  }
}

std::vector<double> SplineGrid::Rows(const double* nodes, int pitch) const {
  const int wide = WholeBlocks(columns_);
  std::vector<double> lines(At(rows(), 0, wide));  // nodes along columns
  for (int n = 0; n < rows(); ++n) {
    const double* node = nodes + At(n, 0, pitch);
    double* const to = lines.data() + At(n, 0, wide);
    int inCell = 0;
    for (int i = 0; i < columns_; ++i) {
      const double* const w = weights_.data() + At(inCell, 0, 4);
      to[i] = (w[0] * node[0] + w[1] * node[1]) + (w[2] * node[2] + w[3] * node[3]);
      if (++inCell == step_) {
        inCell = 0;
        ++node;
      }
    }
  }
  return lines;
}

void SplineGrid::AddTo(const std::vector<double>& lines, int first, int count, double* rows, int pitch) const {
  const int wide = WholeBlocks(columns_);
  kernels_->addSplines(lines.data() + At(first / step_, 0, wide), wide, count, weights_.data(), wide, rows, pitch);
}

double SplineGrid::Spectrum(int k, int side) {
  return (2.0 + SineAndCosine(2.0 * std::numbers::pi * k / side).cosine) / 3.0;
}

}  // namespace orvanel::physical
