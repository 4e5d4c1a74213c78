// Defines the errors of models. Their fields have the numbers, so that a host can word its own messages.
#ifndef ORVANEL_MODELS_ERRORS_H
#define ORVANEL_MODELS_ERRORS_H

#include "base/error.h"
#include "base/layers.h"
#include "base/number_text.h"
#include "base/units.h"

namespace orvanel::models {

// A Landolt ring of this acuity is smaller than the samples at this pupil.
class RingTooSmall : public Error {
 public:
  explicit RingTooSmall(double itsAcuity)
      : Error("a ring of acuity " + ShortestText(itsAcuity) +
              " would be too small for the samples at this pupil; use a lower acuity"),
        acuity(itsAcuity) {}

  double acuity;  // on the library scale
};

// The bound of the height of a wavefront is too large for a model.
class WavefrontTooHigh : public Error {
 public:
  explicit WavefrontTooHigh(Millimetres itsBound)
      : Error("the wavefront may be a metre high; check the unit of the coefficients"), bound(itsBound) {}

  Millimetres bound;
};

// A result is not finite, because the pupil is too far from that of an eye.
class PupilOutOfRange : public Error {
 public:
  explicit PupilOutOfRange(Millimetres itsPupil)
      : Error("the results cannot be computed, since the pupil is too far from that of an eye; check its unit"),
        pupil(itsPupil) {}

  Millimetres pupil;
};

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_ERRORS_H
