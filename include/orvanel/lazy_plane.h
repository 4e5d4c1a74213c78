// A plane that its engine fills when somebody first looks at it.
#ifndef ORVANEL_LAZY_PLANE_H
#define ORVANEL_LAZY_PLANE_H

#include <cstddef>
#include <cstring>
#include <utility>

#include "orvanel/grid_plane.h"

namespace orvanel {

// Reads like a GridPlane, and always holds what the engine's operations have last put there. As long as nobody has
// looked, they only note what is due; from the first look on they write at once, since whoever looked may have kept the
// address. A copy is not a look. Moves, but does not copy.
class LazyPlane {
 public:
  // Samples a side, samples in all, and where they lie.
  int side() const { return plane_.side(); }
  std::size_t size() const { return plane_.size(); }
  double* data() { return Look().data(); }
  const double* data() const { return Look().data(); }
  double* begin() { return data(); }
  double* end() { return data() + size(); }
  const double* begin() const { return data(); }
  const double* end() const { return data() + size(); }

  // A sample by its element, or by its row and column. Neither is checked.
  double& operator[](std::size_t index) { return Look()[index]; }
  double operator[](std::size_t index) const { return Look()[index]; }
  double& operator()(int row, int column) { return Look()(row, column); }
  double operator()(int row, int column) const { return Look()(row, column); }

  // The same samples, written to side x side doubles of any alignment.
  void CopyTo(double* samples) const {
    if (const Writer due = due_; due != nullptr) {
      due(source_, samples);
    } else if (!written_) {
      std::memset(static_cast<void*>(samples), 0, size() * sizeof(double));
    } else {
      std::memcpy(static_cast<void*>(samples), plane_.data(), size() * sizeof(double));
    }
  }

  // The plane itself.
  operator const GridPlane&() const { return Look(); }

 private:
  friend class OpticsEngine;

  // In the memory of a plane, whatever that holds.
  explicit LazyPlane(GridPlane memory) : plane_(std::move(memory)) {}

  // What writes the plane, from what it finds in its source.
  using Writer = void (*)(void* source, double* plane);

  GridPlane& Look() const {
    if (due_ != nullptr) {
      const Writer due = due_;
      due_ = nullptr;
      due(source_, plane_.data());
    } else if (!written_) {
      std::memset(plane_.data(), 0, size() * sizeof(double));
    }
    written_ = true;
    looked_ = true;
    return plane_;
  }

  bool looked() const { return looked_; }

  // The plane is to be what the writer makes of the source: now, or when somebody looks.
  void Due(Writer writer, void* source) {
    due_ = writer;
    source_ = source;
    if (looked_) Look();
  }

  mutable GridPlane plane_;
  mutable Writer due_ = nullptr;
  mutable bool written_ = false;  // else the samples are still to become zero, so that many never take up memory
  mutable bool looked_ = false;
  void* source_ = nullptr;
};

}  // namespace orvanel

#endif  // ORVANEL_LAZY_PLANE_H
