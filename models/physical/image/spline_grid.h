// A coarse grid of cubic B-splines under a finer plane.
#ifndef ORVANEL_MODELS_PHYSICAL_IMAGE_SPLINE_GRID_H
#define ORVANEL_MODELS_PHYSICAL_IMAGE_SPLINE_GRID_H

#include <array>
#include <cstddef>
#include <vector>

#include "models/physical/kernels/kernels.h"
#include "models/physical/plane_index.h"

namespace orvanel::physical {

// Cells of step x step pixels cover a plane. Node n is at the pixel coordinate (n - 1) step - 1/2; each pixel has the
// splines of the four nearest nodes in each direction.
class SplineGrid {
 public:
  SplineGrid(const ChordKernels& kernels, int columns, int rows, int step);

  int columns() const { return NodesFor(columns_); }
  int rows() const { return NodesFor(rows_); }
  int step() const { return step_; }

  // For each node the sum of its spline times the samples: along columns, for any rows at a time, and then along rows.
  //   samples  `count` rows from number firstRow on, of pixels that begin `margin` pixels behind the plane's corner in
  //            both directions; those up to a whole block of columns are 0
  //   lines    LinesFor doubles, 0 before the first rows
  //   nodes    rows() x nodePitch doubles; columns beyond columns() become 0
  std::size_t LinesFor(int sampleColumns) const { return At(rows(), 0, WholeBlocks(sampleColumns)); }
  void GatherRows(const double* samples, int sampleColumns, int firstRow, int count, int samplePitch, int margin,
                  double* lines) const;
  void GatherColumns(const double* lines, int sampleColumns, int margin, double* nodes, int nodePitch) const;

  // Splines with these factors along rows of pixels, for AddTo.
  std::vector<double> Rows(const double* nodes, int pitch) const;

  // The sum of splines along columns, added to `count` rows of pixels from row `first` on, and the surround. Returns
  // the sum of the pixels before the latter.
  //   rows  whole blocks of columns
  double AddTo(const std::vector<double>& lines, int first, int count, double* rows, int pitch,
               double surround = 0.0) const;

  // The transform of a spline's samples at the nodes, at k / side cycles a node; dividing by it interpolates.
  static double Spectrum(int k, int side);

 private:
  int NodesFor(int pixels) const { return (pixels + step_ - 1) / step_ + 3; }
  int LinesPitch() const { return (columns() - 3) * step_ + kChordBlock; }
  SplineWeights WeightsFrom(int inCell) const;

  const ChordKernels* kernels_;
  int columns_, rows_, step_;
  std::array<std::vector<double>, 4> weights_;  // of the four nodes, for each pixel of a cell
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_IMAGE_SPLINE_GRID_H
