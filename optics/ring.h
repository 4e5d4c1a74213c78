// Size and gap of the broken-ring optotype.
#ifndef ORVANEL_OPTICS_RING_H
#define ORVANEL_OPTICS_RING_H

namespace orvanel {

// The retinal sampling that a ring is drawn on: n samples of the plane to draw, gridSize of the engine's.
struct RingScale {
  int n;
  int gridSize;
  double psfHalfWidth;  // mm
  double focalLength;   // mm
};

// Outer diameter in samples for a decimal acuity: two less than the truncated raw size, rounded up to a multiple of
// five. Negative for a negative acuity, and at the ends of int where it would lie beyond.
int RingDiameter(const RingScale& scale, double acuity);

// The acuity whose raw size is exactly the diameter.
double EffectiveAcuity(const RingScale& scale, int diameter);

// First and last index across the gap of a ring in a plane of n samples a side; none if first > last.
struct GapRange {
  int first;
  int last;
};
GapRange GapAcross(int diameter, int n);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_RING_H
