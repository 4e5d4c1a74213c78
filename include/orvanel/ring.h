// Draws the Landolt ring (broken ring) that tests visual acuity: outer diameter D, stroke and gap D/5, black on white.
// The proportions are those of ISO 8596.
//
// These functions print nothing; OpticsEngine::DrawRingOptotype draws the same ring and reports it on standard output.
#ifndef ORVANEL_RING_H
#define ORVANEL_RING_H

#include "orvanel/constants.h"

namespace orvanel {

// The retinal sampling for a ring: n samples of the plane to draw, gridSize samples of the engine's planes.
struct RingScale {
  int n;                              // samples a side of the plane to draw
  int gridSize;                       // samples a side of the engine's planes
  double psfHalfWidth;                // mm
  double focalLength = kFocalLength;  // mm
};

// The outer diameter in samples for a decimal acuity: two less than the truncated raw size, rounded up to a multiple of
// five. It is 0 if the ring is too small to draw, negative for a negative acuity, and limited to the range of int.
int RingDiameter(const RingScale& scale, double acuity);

// The acuity whose raw size is exactly the diameter. It is infinite for a diameter of 0.
double EffectiveAcuity(const RingScale& scale, int diameter);

// Draws the ring: n x n samples, 0.0 on the ring and 1.0 around it.
//   gapDirection  1 down, 2 up, 3 right, 4 left; any other value draws a closed ring
void DrawRing(double* plane, int n, int diameter, int gapDirection);

}  // namespace orvanel

#endif  // ORVANEL_RING_H
