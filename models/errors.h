// Defines the errors of models. Each has its numbers as fields, for hosts with sentences of their own.
#ifndef ORVANEL_MODELS_ERRORS_H
#define ORVANEL_MODELS_ERRORS_H

#include "base/error.h"
#include "base/layers.h"
#include "base/number_text.h"
#include "base/units.h"

namespace orvanel::models {

// A Landolt ring of this acuity has no samples at the pupil.
class RingTooSmall : public Error {
 public:
  explicit RingTooSmall(double itsAcuity)
      : Error("a ring of acuity " + ShortestText(itsAcuity) +
              " would be too small for the samples at this pupil; ask for a lower acuity"),
        acuity(itsAcuity) {}

  double acuity;  // on the library scale
};

// The bound of a wavefront's height is beyond what a model computes with.
class WavefrontTooHigh : public Error {
 public:
  explicit WavefrontTooHigh(Millimetres itsBound)
      : Error("the wavefront may be a metre high; check the unit of the coefficients"), bound(itsBound) {}

  Millimetres bound;
};

// A result is not finite, because the pupil is so far from that of an eye.
class PupilOutOfRange : public Error {
 public:
  explicit PupilOutOfRange(Millimetres itsPupil)
      : Error("the pupil is so far from an eye's that nothing can be computed; check its unit"), pupil(itsPupil) {}

  Millimetres pupil;
};

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_ERRORS_H
