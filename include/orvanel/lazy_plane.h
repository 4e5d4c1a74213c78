// Defines a plane that its engine computes lazily, on first access.
#ifndef ORVANEL_LAZY_PLANE_H
#define ORVANEL_LAZY_PLANE_H

#include <cstddef>
#include <cstring>
#include <utility>

#include "orvanel/grid_plane.h"

namespace orvanel {

// Reads like a GridPlane, and always has the samples of the engine's last operation. Until the first access, an
// operation only records the pending computation. After it, operations write at once, since the host may have kept the
// address. CopyTo is not an access. Moves, but does not copy.
class LazyPlane {
 public:
  // NOLINTBEGIN(performance-noexcept-move-constructor): a pending computation may take memory
  // Moves the samples. A pending computation runs first, so that a plane moved out of an engine is independent of it.
  // The other plane is zero until its engine writes it again, and then takes new memory.
  LazyPlane(LazyPlane&& other) { *this = std::move(other); }
  LazyPlane& operator=(LazyPlane&& other) {
    if (this == &other) return *this;
    plane_ = std::move(other.Materialise());
    side_ = other.side_;
    pending_ = nullptr;
    written_ = true;
    exposed_ = true;
    other.written_ = false;
    other.exposed_ = false;
    return *this;
  }
  // NOLINTEND(performance-noexcept-move-constructor)
  LazyPlane(const LazyPlane&) = delete;
  LazyPlane& operator=(const LazyPlane&) = delete;
  ~LazyPlane() = default;

  // The number of samples a side, the number of all samples, and their address.
  int side() const { return side_; }
  std::size_t size() const { return static_cast<std::size_t>(side_) * static_cast<std::size_t>(side_); }
  double* data() { return Materialise().data(); }
  const double* data() const { return Materialise().data(); }
  double* begin() { return data(); }
  double* end() { return data() + size(); }
  const double* begin() const { return data(); }
  const double* end() const { return data() + size(); }

  // One sample, by its element or by its row and column. The index is not checked.
  double& operator[](std::size_t index) { return Materialise()[index]; }
  double operator[](std::size_t index) const { return Materialise()[index]; }
  double& operator()(int row, int column) { return Materialise()(row, column); }
  double operator()(int row, int column) const { return Materialise()(row, column); }

  // Writes the samples to side x side doubles of any alignment.
  void CopyTo(double* samples) const {
    if (pending_ != nullptr) {
      pending_(source_, samples);
    } else if (!written_) {
      std::memset(static_cast<void*>(samples), 0, size() * sizeof(double));
    } else {
      std::memcpy(static_cast<void*>(samples), plane_.data(), size() * sizeof(double));
    }
  }

  // Computes the plane if necessary, and returns it.
  operator const GridPlane&() const { return Materialise(); }

 private:
  friend class OpticsEngine;

  // Uses the memory of a plane; its values do not matter.
  explicit LazyPlane(GridPlane memory) : plane_(std::move(memory)), side_(plane_.side()) {}

  // Moves with its engine: a computation stays pending, since its source stays at its address.
  enum class WithEngine {};
  LazyPlane(LazyPlane&& other, WithEngine /*unused*/) noexcept
      : plane_(std::move(other.plane_)),
        side_(other.side_),
        pending_(other.pending_),
        source_(other.source_),
        written_(other.written_),
        exposed_(other.exposed_),
        eager_(other.eager_) {}

  // Computes the plane from its source.
  using Writer = void (*)(void* source, double* plane);

  // Runs the pending computation. From now on the plane is exposed: the host may have kept its address.
  GridPlane& Materialise() const {
    if (plane_.side() != side_) plane_ = GridPlane(side_);  // its samples were moved out
    if (pending_ != nullptr) {
      const Writer pending = pending_;
      pending_ = nullptr;
      pending(source_, plane_.data());
    } else if (!written_) {
      std::memset(plane_.data(), 0, size() * sizeof(double));
    }
    written_ = true;
    exposed_ = true;
    return plane_;
  }

  // True if operations write the plane at once, and read it again, since the host may have changed its samples.
  bool exposed() const { return exposed_ || eager_; }

  // Exposes the plane from the start, and again after its samples were moved out.
  void SetEager() { eager_ = true; }

  // Sets the pending computation; runs it now if the plane is exposed.
  void SetPending(Writer writer, void* source) {
    pending_ = writer;
    source_ = source;
    if (exposed()) Materialise();
  }

  mutable GridPlane plane_;
  int side_ = 0;
  mutable Writer pending_ = nullptr;
  void* source_ = nullptr;
  mutable bool written_ = false;  // false: the samples are not yet zeroed, so that unused planes take up no memory
  mutable bool exposed_ = false;
  bool eager_ = false;
};

}  // namespace orvanel

#endif  // ORVANEL_LAZY_PLANE_H
