// Fourier transforms of square planes: by the engine's kernels where they have the side, else by the general transform.
#ifndef ORVANEL_MODELS_PHYSICAL_PLANE_TRANSFORM_H
#define ORVANEL_MODELS_PHYSICAL_PLANE_TRANSFORM_H

#include <cstddef>
#include <vector>

#include "optics/kernels/kernels.h"

namespace orvanel::physical {

class PlaneTransform {
 public:
  explicit PlaneTransform(const Kernels& kernels);

  // X[p][q] = scale * sum over j, k of x[j][k] * exp(+2 pi i (j p + k q) / side), in place. Returns the scale.
  //   re, im  side x side doubles, side a power of two
  double operator()(double* re, double* im, int side);

 private:
  struct alignas(64) Line {
    std::byte bytes[64];
  };

  const Kernels* kernels_;
  std::vector<Line> plane_, lines_;
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_PLANE_TRANSFORM_H
