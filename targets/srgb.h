// Converts between the sRGB values of a picture file and light. Source: IEC 61966-2-1.
#ifndef ORVANEL_TARGETS_SRGB_H
#define ORVANEL_TARGETS_SRGB_H

#include "base/layers.h"

namespace orvanel::targets {

// Both map 0 to 1 onto 0 to 1, and 0 and 1 exactly to themselves.
double LightOfSrgb(double value);
double SrgbOfLight(double light);

}  // namespace orvanel::targets

#endif  // ORVANEL_TARGETS_SRGB_H
