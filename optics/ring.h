// The gap of the broken-ring optotype.
#ifndef ORVANEL_OPTICS_RING_H
#define ORVANEL_OPTICS_RING_H

#include "orvanel/ring.h"

namespace orvanel {

// First and last index across the gap of a ring in a plane of n samples a side; none if first > last.
struct GapRange {
  int first;
  int last;
};
GapRange GapAcross(int diameter, int n);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_RING_H
