// Defines a plane: a rectangle of samples with its number of columns and rows.
#ifndef ORVANEL_TARGETS_PLANE_H
#define ORVANEL_TARGETS_PLANE_H

#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

#include "base/layers.h"

namespace orvanel::targets {

// Row-major, row 0 at the top. An empty plane has no columns and no rows.
class Plane {
 public:
  Plane() = default;
  Plane(int columns, int rows, double value = 0.0)
      : samples_(Area(columns, rows), value), columns_(columns), rows_(rows) {}

  // Takes columns * rows samples.
  Plane(int columns, int rows, std::vector<double> samples)
      : samples_(std::move(samples)), columns_(columns), rows_(rows) {}

  int columns() const { return empty() ? 0 : columns_; }
  int rows() const { return empty() ? 0 : rows_; }
  bool empty() const { return samples_.empty(); }
  std::size_t size() const { return samples_.size(); }

  double* data() { return samples_.data(); }
  const double* data() const { return samples_.data(); }
  auto begin() { return samples_.begin(); }
  auto begin() const { return samples_.begin(); }
  auto end() { return samples_.end(); }
  auto end() const { return samples_.end(); }
  double& operator[](std::size_t i) { return samples_[i]; }
  const double& operator[](std::size_t i) const { return samples_[i]; }
  double At(int row, int column) const { return samples_[Area(columns_, row) + static_cast<std::size_t>(column)]; }

  // Keeps the memory.
  void Clear() { Resize(0, 0); }

  // Leaves the samples unspecified.
  void Resize(int columns, int rows) {
    columns_ = columns;
    rows_ = rows;
    samples_.resize(Area(columns, rows));
  }

  friend bool operator==(const Plane&, const Plane&) = default;

 private:
  static std::size_t Area(int columns, int rows) {
    return static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
  }

  std::vector<double> samples_;
  int columns_ = 0, rows_ = 0;
};

// The sum of all samples, added row by row.
inline double SumOf(const Plane& plane) { return std::accumulate(plane.begin(), plane.end(), 0.0); }

}  // namespace orvanel::targets

#endif  // ORVANEL_TARGETS_PLANE_H
