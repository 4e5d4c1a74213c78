// Converts the geometry of a screen to an angular resolution.
#ifndef ORVANEL_TARGETS_CHARTS_SCREEN_H
#define ORVANEL_TARGETS_CHARTS_SCREEN_H

#include "base/layers.h"
#include "base/units.h"

namespace orvanel::targets::charts {

// A flat screen, seen perpendicularly at its middle.
struct Screen {
  Millimetres pixelPitch;  // between the centres of neighbouring pixels
  Millimetres distance;    // from the eye
};

// The pixels in the degree around the middle of the screen: 2 distance tan(1/2 degree) / pitch. A degree away from the
// middle has more.
double PixelsPerDegree(const Screen& screen);

}  // namespace orvanel::targets::charts

#endif  // ORVANEL_TARGETS_CHARTS_SCREEN_H
