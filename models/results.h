// Holds the results of a model for one eye, with the scale of their samples.
#ifndef ORVANEL_MODELS_RESULTS_H
#define ORVANEL_MODELS_RESULTS_H

#include <optional>
#include <vector>

#include "base/layers.h"
#include "base/units.h"
#include "eye/view.h"
#include "models/model_kind.h"
#include "models/physical/eye.h"
#include "models/physical/light.h"
#include "models/physical/point_spread.h"
#include "models/scales.h"
#include "orvanel/line_spread.h"
#include "targets/object_picture.h"
#include "targets/plane.h"
#include "targets/ring_request.h"

namespace orvanel::models {

// The places of samples: sample i of a row is (i - centre) * step to the right of zero, and sample i of a column as far
// below it.
template <class Unit>
struct SampleAxis {
  Unit step;
  double centre = 0.0;
};

struct Wavefront {
  Plane map;                 // millimetres, without piston and tilt; not a number outside the pupil
  Micrometres rms;           // of radial orders 2 and above, from the coefficients
  Micrometres peakToValley;  // over the pupil's samples
  Micrometres steepestStep;  // the largest change between neighbouring samples of the pupil
};

struct StarImages {
  Plane original, stretched, totalLight;
};

struct Ring {
  RingRequest request;
  ArcMinutes pixel;              // side of a sample
  int diameter = 0;              // samples
  double effectiveAcuity = 0.0;  // of the ring as drawn, on the library scale
  Plane original, seen;
};

// The user's picture and its retinal images, one plane for each channel; light, 0 to 1.
struct RetinalPicture {
  ObjectPicture object;
  ArcMinutes pixel;                 // side of a sample
  std::vector<Plane> seen;          // with total light kept, as the image of the star
  std::vector<Plane> contrastKept;  // close to incoherent addition of light
};

// A curve over frequency: value i is at i times the step of its results.
using Curve = std::vector<double>;

// MTF at one frequency of interest.
struct MtfAtFrequency {
  CyclesPerDegree frequency;
  double horizontal = 0.0, vertical = 0.0;  // along these directions of frequency
  double mean = 0.0;                        // over all directions
};

// What only the physical model gives.
struct PhysicalResults {
  physical::Light light;
  bool ofDisplay = false;         // the light is the white of a display, whose primaries show objects of true size
  Nanometres reference;           // at which the coefficients hold
  bool referenceAssumed = false;  // the eye does not state it, and the one wavelength of the light is taken
  View view = View::kPatient;     // of PSF, MTF and images
  physical::StilesCrawford stilesCrawford;
  physical::Origin origin = physical::Origin::kAxis;  // of the PSF's window, and its place from the axis in the view
  ArcMinutes originX, originY;
  physical::StrehlRatios strehl;
  double psfLight = 0.0;   // share of the light within the window of the PSF, as the sum of its samples
  CyclesPerDegree cutOff;  // of the shortest wavelength
  std::vector<MtfAtFrequency> mtfAt;
  Curve mean;  // MTF averaged over all directions; empty if the blur is too wide for the lattice of frequencies
};

// Pupil and scales are always set, other results only if they were needed. Otherwise planes are empty and numbers are
// 0.
struct Results {
  ModelKind model = ModelKind::kClassic;
  Millimetres pupil;
  SampleAxis<Millimetres> pupilAxis;          // of the wavefront
  SampleAxis<ArcMinutes> retinaAxis;          // of the PSF
  SampleAxis<CyclesPerDegree> frequencyAxis;  // of the MTF
  CyclesPerDegree sectionStep;                // of the sections
  ArcMinutes objectSide;                      // visual angle of the side of the star and of the user's picture
  Scales scales;                              // of the classic model
  std::optional<PhysicalResults> physical;
  double undersampled = 0.0;  // share of the pupil's samples that differ by more than half a wave from the next; the
                              // transform aliases the direction of their light
  Wavefront wavefront;
  double strehl = 0.0;      // of the brightest sample
  double strehlPeak = 0.0;  // of the peak between samples
  Plane psf, mtf;
  Curve rowSection, columnSection, diffractionLimit;  // through the MTF, from frequency 0 on
  LineSpreads lineSpreads{};
  StarImages star;
  std::vector<Ring> rings;
  std::optional<RetinalPicture> picture;
};

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_RESULTS_H
