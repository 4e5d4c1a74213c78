// Solves the definitions of contrast for the darker luminance.
#include "targets/charts/contrast.h"

#include <limits>

namespace orvanel::targets::charts {

double LargestContrast(const Contrast& contrast) {
  const bool limited = contrast.kind == Contrast::Kind::kMichelson || contrast.polarity == Polarity::kDarkOnLight;
  return limited ? 1.0 : std::numeric_limits<double>::infinity();
}

Luminances LuminancesOf(const Contrast& contrast) {
  const double c = contrast.value;
  const bool dark = contrast.polarity == Polarity::kDarkOnLight;
  const double darker = contrast.kind == Contrast::Kind::kMichelson ? (1.0 - c) / (1.0 + c)
                        : dark                                      ? 1.0 - c
                                                                    : 1.0 / (1.0 + c);
  return dark ? Luminances{darker, 1.0} : Luminances{1.0, darker};
}

}  // namespace orvanel::targets::charts
