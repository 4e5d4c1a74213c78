// Allocates planes.
#include "orvanel/grid_plane.h"

#include <algorithm>
#include <utility>

#include "optics/samples_memory.h"

namespace orvanel {
namespace {

std::shared_ptr<double[]> Allocate(int side) noexcept {
  if (side < 1) return nullptr;
  return SamplesMemory(static_cast<std::uint64_t>(side) * static_cast<std::uint64_t>(side), kCacheLine);
}

}  // namespace

GridPlane::GridPlane(std::nothrow_t /*unused*/, int side) noexcept : GridPlane(side, Allocate(side)) {
  if (data() == nullptr) side_ = 0;
  std::fill(begin(), end(), 0.0);
}

GridPlane::GridPlane(int side) : GridPlane(std::nothrow, side) {
  if (side >= 1 && data() == nullptr) throw std::bad_alloc();
}

GridPlane::GridPlane(int side, std::shared_ptr<double[]> samples) noexcept
    : samples_(std::move(samples)), side_(std::max(side, 0)) {}

}  // namespace orvanel
