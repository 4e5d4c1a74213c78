// Compares the rings drawn with those requested, since a diameter is a multiple of 5 samples.
#ifndef ORVANEL_EVALUATION_RINGS_H
#define ORVANEL_EVALUATION_RINGS_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "models/results.h"

namespace orvanel::evaluation {

// The acuity drawn divided by the one requested, minus 1.
double Deviation(const Ring& ring);

// True if the deviation is more than a tenth, above or below.
bool IsFarOff(const Ring& ring);

// "12.5 % above" or "12.5 % below".
std::string DeviationText(const Ring& ring);

// A ring, and the requested acuities for which it is drawn.
struct ShownRing {
  const Ring* ring;
  std::vector<double> requested;
};

// Each ring once, in the order of the first request for it.
std::vector<ShownRing> ShownRings(const std::vector<Ring>& rings);

// "requested 2.4, 2.5".
std::string RequestedText(const ShownRing& shown);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_RINGS_H
