// Computes the pixels in one degree.
#include "targets/charts/screen.h"

#include "base/elementary.h"

namespace orvanel::targets::charts {

double PixelsPerDegree(const Screen& screen) {
  constexpr double kHalfDegree = 0x1.1df46a2529d39p-7;  // radians
  const SineCosine half = SineAndCosine(kHalfDegree);
  return 2.0 * (screen.distance / screen.pixelPitch) * (half.sine / half.cosine);
}

}  // namespace orvanel::targets::charts
