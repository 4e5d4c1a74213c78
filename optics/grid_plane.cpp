// Allocation of planes.
#include "orvanel/grid_plane.h"

#include <algorithm>
#include <new>
#include <utility>

namespace orvanel {

GridPlane::GridPlane(int side) : GridPlane(side, Allocate(side)) { std::fill(begin(), end(), 0.0); }

GridPlane::GridPlane(int side, std::shared_ptr<double[]> samples)
    : samples_(std::move(samples)), side_(std::max(side, 0)) {}

std::shared_ptr<double[]> GridPlane::Allocate(int side) {
  if (side < 1) return nullptr;
  constexpr std::align_val_t kAlignment{64};  // a cache line, and the widest vector register
  const std::size_t count = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
  return {static_cast<double*>(::operator new(count * sizeof(double), kAlignment)),
          [](double* samples) { ::operator delete(samples, kAlignment); }};
}

}  // namespace orvanel
