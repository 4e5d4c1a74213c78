// Defines a plane of samples that owns its memory and cannot be copied by accident.
#ifndef ORVANEL_GRID_PLANE_H
#define ORVANEL_GRID_PLANE_H

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace orvanel {

// side x side doubles, row-major, row 0 at the top: sample (row r, column c) is element r * side + c. Zero when made.
// Moves, but does not copy; a moved-from plane and one with a side below 1 hold nothing. Aligned to 64 bytes.
class GridPlane {
 public:
  // The first plane has no samples, the others have side x side of them. The one with std::nothrow throws nothing: if
  // memory runs out, it has no samples.
  GridPlane() = default;
  explicit GridPlane(int side);
  GridPlane(std::nothrow_t, int side) noexcept;
  GridPlane(const GridPlane&) = delete;
  GridPlane& operator=(const GridPlane&) = delete;
  GridPlane(GridPlane&& other) noexcept : samples_(std::move(other.samples_)), side_(std::exchange(other.side_, 0)) {}
  GridPlane& operator=(GridPlane&& other) noexcept {
    samples_ = std::move(other.samples_);
    side_ = std::exchange(other.side_, 0);
    return *this;
  }
  ~GridPlane() = default;

  // The number of samples a side, the number of all samples, and their address.
  int side() const { return side_; }
  std::size_t size() const { return static_cast<std::size_t>(side_) * static_cast<std::size_t>(side_); }
  double* data() { return samples_.get(); }
  const double* data() const { return samples_.get(); }
  double* begin() { return data(); }
  double* end() { return data() + size(); }
  const double* begin() const { return data(); }
  const double* end() const { return data() + size(); }

  // One sample, by its element or by its row and column. The index is not checked.
  double& operator[](std::size_t index) { return data()[index]; }
  double operator[](std::size_t index) const { return data()[index]; }
  double& operator()(int row, int column) { return data()[Index(row, column)]; }
  double operator()(int row, int column) const { return data()[Index(row, column)]; }

 private:
  friend class OpticsEngine;

  // Uses the given memory for its samples and keeps their values.
  GridPlane(int side, std::shared_ptr<double[]> samples) noexcept;

  std::size_t Index(int row, int column) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(side_) + static_cast<std::size_t>(column);
  }

  std::shared_ptr<double[]> samples_;  // never shared by two planes; those of an engine are parts of one block
  int side_ = 0;
};

}  // namespace orvanel

#endif  // ORVANEL_GRID_PLANE_H
