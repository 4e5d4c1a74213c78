// Converts contrast and polarity to luminances.
#ifndef ORVANEL_TARGETS_CHARTS_CONTRAST_H
#define ORVANEL_TARGETS_CHARTS_CONTRAST_H

#include "base/layers.h"

namespace orvanel::targets::charts {

enum class Polarity { kDarkOnLight, kLightOnDark };

struct Contrast {
  // Michelson: (lighter - darker) / (lighter + darker), up to 1.
  // Weber: |target - background| / background, up to 1 for a dark target, without limit for a light one.
  enum class Kind { kMichelson, kWeber } kind = Kind::kMichelson;
  double value = 1.0;  // above 0
  Polarity polarity = Polarity::kDarkOnLight;
};

// Relative to the lighter of the two, which is 1.
struct Luminances {
  double target, background;
};

// The largest value; infinite for the Weber contrast of a light target.
double LargestContrast(const Contrast& contrast);

Luminances LuminancesOf(const Contrast& contrast);

}  // namespace orvanel::targets::charts

#endif  // ORVANEL_TARGETS_CHARTS_CONTRAST_H
