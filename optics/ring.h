// The parts of a drawn broken ring.
#ifndef ORVANEL_OPTICS_RING_H
#define ORVANEL_OPTICS_RING_H

#include "orvanel/ring.h"

namespace orvanel {

struct Kernels;

// First and last index across the gap of a ring in a plane of n samples a side; none if first > last.
struct GapRange {
  int first;
  int last;
};
GapRange GapAcross(int diameter, int n);

// Draws a ring as DrawRing of orvanel/ring.h does, by these kernels if there are any.
void DrawRing(double* plane, int n, int diameter, int gapDirection, const Kernels* kernels);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_RING_H
