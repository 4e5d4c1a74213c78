// Chooses the transform by the side of the plane.
#include "models/physical/plane_transform.h"

#include "optics/kernels/tables.h"
#include "orvanel/transforms.h"

namespace orvanel::physical {

PlaneTransform::PlaneTransform(const Kernels& kernels)
    : kernels_(&kernels), plane_(kPlaneBytes / sizeof(Line)), lines_(kLinesBytes / sizeof(Line)) {}

double PlaneTransform::operator()(double* re, double* im, int side) {
  constexpr int kKernelSide = 256;
  if (side == kKernelSide) {
    kernels_->transform(re, im, 1.0, TransformTables(), {plane_.data(), lines_.data()});
    return 1.0;
  }
  Zfft2dc(re, im, side, side, 1);
  return 1.0 / side / side;
}

}  // namespace orvanel::physical
