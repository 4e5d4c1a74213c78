// A coarse grid of cubic B-splines under a finer plane.
#ifndef ORVANEL_MODELS_PHYSICAL_IMAGE_SPLINE_GRID_H
#define ORVANEL_MODELS_PHYSICAL_IMAGE_SPLINE_GRID_H

#include <vector>

#include "models/physical/kernels/kernels.h"

namespace orvanel::physical {

// Cells of step x step pixels cover a plane. Node n is at the pixel coordinate (n - 1) step - 1/2; each pixel has the
// splines of the four nearest nodes in each direction.
class SplineGrid {
 public:
  SplineGrid(const ChordKernels& kernels, int columns, int rows, int step);

  int columns() const { return NodesFor(columns_); }
  int rows() const { return NodesFor(rows_); }
  int step() const { return step_; }

  // For each node the sum of its spline times the samples.
  //   samples  rows x columns pixels that begin `margin` pixels behind the plane's corner in both directions; those
  //            up to a whole block of columns are 0
  //   nodes    rows() x nodePitch doubles; columns beyond columns() become 0
  void Gather(const double* samples, int sampleColumns, int sampleRows, int samplePitch, int margin, double* nodes,
              int nodePitch) const;

  // Splines with these factors along rows of pixels: rows() x columns, in whole blocks.
  std::vector<double> Rows(const double* nodes, int pitch) const;

  // The sum of splines along columns, added to `count` rows of pixels from row `first` on; `first` is a multiple of the
  // step, and they belong to one cell.
  void AddTo(const std::vector<double>& lines, int first, int count, double* rows, int pitch) const;

  // The transform of a spline's samples at the nodes, at k / side cycles a node; dividing by it interpolates.
  static double Spectrum(int k, int side);

 private:
  int NodesFor(int pixels) const { return (pixels + step_ - 1) / step_ + 3; }

  const ChordKernels* kernels_;
  int columns_, rows_, step_;
  std::vector<double> weights_;  // of the four nodes, for each pixel of a cell
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_IMAGE_SPLINE_GRID_H
