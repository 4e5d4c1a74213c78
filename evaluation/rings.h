// Rings as they are drawn, beside what was asked for: diameters are multiples of 5 samples, and acuities follow them.
#ifndef ORVANEL_EVALUATION_RINGS_H
#define ORVANEL_EVALUATION_RINGS_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "models/results.h"

namespace orvanel::evaluation {

// How far the acuity drawn is above the one asked for, as a share of it.
double Deviation(const Ring& ring);

// Whether that is more than a tenth, above or below.
bool IsFarOff(const Ring& ring);

// "12.5 % above" or "12.5 % below".
std::string DeviationText(const Ring& ring);

// A ring, and the acuities for which it is drawn.
struct ShownRing {
  const Ring* ring;
  std::vector<double> asked;
};

// Each ring once, in the order of the first request for it.
std::vector<ShownRing> ShownRings(const std::vector<Ring>& rings);

// "asked for 2.4, 2.5".
std::string AskedText(const ShownRing& shown);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_RINGS_H
