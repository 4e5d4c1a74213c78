// Allocation of planes.
#include "orvanel/grid_plane.h"

#include <algorithm>
#include <new>

namespace orvanel {

namespace {
constexpr std::align_val_t kAlignment{64};  // a cache line, and the widest vector register
}

GridPlane::GridPlane(int side, Unwritten) {
  if (side < 1) return;
  side_ = side;
  samples_.reset(static_cast<double*>(::operator new[](size() * sizeof(double), kAlignment)));
}

GridPlane::GridPlane(int side) : GridPlane(side, Unwritten{}) { std::fill(begin(), end(), 0.0); }

void GridPlane::Release::operator()(double* samples) const { ::operator delete[](samples, kAlignment); }

}  // namespace orvanel
