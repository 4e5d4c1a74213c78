// Declares the parts of a drawn broken ring (Landolt ring).
#ifndef ORVANEL_OPTICS_RING_H
#define ORVANEL_OPTICS_RING_H

#include "optics/view.h"
#include "orvanel/ring.h"

namespace orvanel {

// The closed ring in a plane of n samples a side: the samples whose squared distance from (centre, centre) is at least
// innerSquared and at most outerSquared.
struct RingCircles {
  double centre;
  double innerSquared;
  double outerSquared;
};
RingCircles CirclesOf(int diameter, int n);

// First and last index across the gap of a ring in a plane of n samples a side; none if first > last.
struct GapRange {
  int first;
  int last;
};
GapRange GapAcross(int diameter, int n);

// Opens the gap of a closed ring: whitens a bar, as wide as the gap, from the centre to one edge of the plane.
// Directions other than 1 to 4 open none.
void OpenGap(PlaneView plane, int diameter, int gapDirection);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_RING_H
