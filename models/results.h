// Holds the results of a model for one eye, with the scale of their samples.
#ifndef ORVANEL_MODELS_RESULTS_H
#define ORVANEL_MODELS_RESULTS_H

#include <optional>
#include <vector>

#include "base/layers.h"
#include "base/units.h"
#include "models/scales.h"
#include "models/section.h"
#include "orvanel/line_spread.h"
#include "targets/object_picture.h"
#include "targets/plane.h"
#include "targets/ring_request.h"

namespace orvanel::models {

struct Wavefront {
  Plane map;                 // millimetres, not a number outside the pupil
  Micrometres rms;           // of radial orders 2 and above, from the coefficients
  Micrometres peakToValley;  // over the pupil's samples
  Micrometres steepestStep;  // the largest change between neighbouring samples of the pupil
};

struct StarImages {
  Plane original, stretched, totalLight;
};

struct Ring {
  RingRequest request;
  int diameter = 0;              // samples
  double effectiveAcuity = 0.0;  // of the ring as drawn, on the library scale
  Plane original, seen;
};

// The user's picture and its retinal images, one plane for each channel; light, 0 to 1.
struct RetinalPicture {
  ObjectPicture object;
  std::vector<Plane> seen;          // with total light kept, as the image of the star
  std::vector<Plane> contrastKept;  // close to incoherent addition of light
};

// Pupil and scales are always set, other results only if they were needed. Otherwise planes are empty and numbers are
// 0.
struct Results {
  Millimetres pupil;
  Scales scales;
  double undersampled = 0.0;  // share of the pupil's samples that differ by more than half a wave from the next; the
                              // transform aliases the direction of their light
  Wavefront wavefront;
  double strehl = 0.0;      // of the brightest sample
  double strehlPeak = 0.0;  // of the peak between samples
  Plane psf, mtf;
  Section rowSection{}, columnSection{}, diffractionLimit{};
  LineSpreads lineSpreads{};
  StarImages star;
  std::vector<Ring> rings;
  std::optional<RetinalPicture> picture;
};

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_RESULTS_H
