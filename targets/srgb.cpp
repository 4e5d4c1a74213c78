// Computes the sRGB curve: linear near black, then a power.
#include "targets/srgb.h"

#include "base/elementary.h"

namespace orvanel::targets {

double LightOfSrgb(double value) { return value <= 0.04045 ? value / 12.92 : Power((value + 0.055) / 1.055, 2.4); }

double SrgbOfLight(double light) {
  return light <= 0.0031308 ? 12.92 * light : 1.0 + 1.055 * (Power(light, 1.0 / 2.4) - 1.0);
}

}  // namespace orvanel::targets
