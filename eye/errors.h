// Defines the errors of eyes, their adjustments and their prescriptions. Their fields describe the problem, so that a
// host can word its own messages.
#ifndef ORVANEL_EYE_ERRORS_H
#define ORVANEL_EYE_ERRORS_H

#include <string>
#include <string_view>

#include "base/error.h"
#include "base/layers.h"
#include "base/units.h"
#include "eye/conventions/convention.h"
#include "eye/conventions/mode.h"
#include "eye/refraction.h"

namespace orvanel::eye {

// ---- Adjustments

// The requested pupil is larger than the measured one, and extrapolation is not allowed.
class PupilLargerThanMeasured : public ErrorWithFix {
 public:
  PupilLargerThanMeasured(Millimetres wantedPupil, Millimetres measuredPupil);

  Millimetres wanted, measured;
};

// The eye is to be mirrored, but its laterality is unknown.
class LateralityUnknown : public Error {
 public:
  explicit LateralityUnknown(Side wantedSide);

  Side wanted;
};

// Only a wrong unit explains this pupil.
class ImplausiblePupil : public Error {
 public:
  explicit ImplausiblePupil(Millimetres thePupil);

  Millimetres pupil;
};

// Only a wrong unit explains coefficients of this RMS.
class ImplausibleWavefront : public Error {
 public:
  explicit ImplausibleWavefront(Micrometres itsRms);

  Micrometres rms;
};

// A term that is not 0 is above the highest radial order of a model.
class OrderAboveHighest : public ErrorWithFix {
 public:
  //   unitText   the unit of the number
  //   modelText  the name of the model: "classic"
  OrderAboveHighest(ZernikeTerm theTerm, double theNumber, const std::string& unitText, int highestOrder,
                    const std::string& modelText);

  ZernikeTerm term;
  double number;  // in the convention that the eye states
  int highest;
};

// ---- Prescriptions

enum class PrescriptionProblem {
  kMalformed,       // no prescription
  kMixedNotations,  // commas beside clinical notation
  kCylinderWithoutSign,
  kCylinderWithoutAxis,
  kMalformedVertex,   // no vertex distance
  kCylinderOrVertex,  // the second of two numbers may be either
};

// A text is not a prescription or vertex distance, or may mean two things.
class InvalidPrescription : public Error {
 public:
  InvalidPrescription(PrescriptionProblem theProblem, std::string_view theText);

  PrescriptionProblem problem;
  std::string text;
};

// An axis is outside 0 to 180 degrees.
class AxisOutOfRange : public Error {
 public:
  explicit AxisOutOfRange(Degrees theAxis);

  Degrees axis;
};

// A vertex distance is neither 0 nor that of spectacles.
class VertexOutOfRange : public Error {
 public:
  explicit VertexOutOfRange(Millimetres theVertex);

  Millimetres vertex;
};

// A lens is so strong that its focus is at the cornea or in front of it.
class FocusInFrontOfCornea : public Error {
 public:
  FocusInFrontOfCornea(Dioptres thePower, Millimetres theVertex);

  Dioptres power;  // of one principal meridian
  Millimetres vertex;
};

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_ERRORS_H
