// One eye through the library: every result that its exports give too, and the wavefront map.
#ifndef ORVANEL_EVALUATION_SIMULATION_H
#define ORVANEL_EVALUATION_SIMULATION_H

#include <vector>

#include "base/layers.h"
#include "base/units.h"
#include "eye/convention.h"
#include "models/section.h"
#include "orvanel/line_spread.h"
#include "targets/plane.h"
#include "targets/ring_request.h"

namespace orvanel::evaluation {

struct Wavefront {
  Plane map;                  // millimetres, not a number outside the pupil
  Micrometres rms;            // of the coefficients of orders 2 and above, without samples
  Micrometres peakToValley;   // over the pupil's samples, as what follows
  Micrometres steepestStep;   // the largest change between neighbouring samples of the pupil
  double aliasedShare = 0.0;  // of the pupil's samples: where that change exceeds half a wave, so that the transform
                              // takes the light's direction for another one
};

struct Ring {
  RingRequest request;
  int diameter = 0;              // samples
  double effectiveAcuity = 0.0;  // of the ring as drawn, on the library scale
  Plane original, seen;
};

struct Simulation {
  Millimetres pupil;
  LibraryCoefficients coefficients;
  Wavefront wavefront;
  Plane psf, mtf;
  double strehl = 0.0;      // of the brightest sample
  double strehlPeak = 0.0;  // of the peak between samples
  Millimetres psfHalfWidth;
  CyclesPerDegree frequencyRange;
  Section rowSection, columnSection, diffractionLimit;
  LineSpreads lineSpreads;
  Plane starOriginal, starStretched, starTotalLight;
  std::vector<Ring> rings;
};

// Computes all results, those of any number of rings among them. Throws Error where the numbers are so far from any
// eye's that the results would mean nothing, and where a ring is too small to be drawn.
Simulation Simulate(Millimetres pupil, const LibraryCoefficients& coefficients, const std::vector<RingRequest>& rings);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_SIMULATION_H
