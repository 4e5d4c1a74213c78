// Words the errors of eyes.
#include "eye/errors.h"

#include "base/number_text.h"
#include "eye/prescription.h"

namespace orvanel::eye {
namespace {

std::string TextOf(PrescriptionProblem problem, std::string_view text) {
  const std::string quoted = Quoted(text);
  switch (problem) {
    case PrescriptionProblem::kMalformed:
      break;
    case PrescriptionProblem::kMixedNotations:
      return quoted + " mixes commas with clinical notation; write -2.25,-0.75,170 or -2.25/-0.75x170";
    case PrescriptionProblem::kCylinderWithoutSign:
      return quoted + " has a cylinder without a sign; write + or - before it";
    case PrescriptionProblem::kCylinderWithoutAxis:
      return quoted + " has a cylinder without an axis; write it as -2.25/-0.75x170";
    case PrescriptionProblem::kMalformedVertex:
      return quoted + " is not a vertex distance; write it in mm, as 12";
    case PrescriptionProblem::kCylinderOrVertex:
      return quoted +
             " may be sphere and cylinder, or sphere and vertex distance; write -10,-0.75,170 or, with the unit, "
             "-10,12mm";
  }
  return quoted + " is not a prescription; write sphere, or sphere,cylinder,axis as -2.25,-0.75,170 or -2.25/-0.75x170";
}

}  // namespace

PupilLargerThanMeasured::PupilLargerThanMeasured(Millimetres wantedPupil, Millimetres measuredPupil)
    : ErrorWithFix("the pupil of " + ShortestText(wantedPupil.value()) + " mm is larger than the " +
                       ShortestText(measuredPupil.value()) +
                       " mm over which the eye was measured; the wavefront outside is not known. ",
                   "Use a smaller one, or allow extrapolation"),
      wanted(wantedPupil),
      measured(measuredPupil) {}

LateralityUnknown::LateralityUnknown(Side wantedSide)
    : Error("the eye cannot be mirrored to " + std::string(Word(wantedSide)) +
            ", since its laterality is not known; state the eye"),
      wanted(wantedSide) {}

ImplausiblePupil::ImplausiblePupil(Millimetres thePupil)
    : Error("a pupil of " + ShortestText(thePupil.value()) + " mm is not that of an eye; check its unit"),
      pupil(thePupil) {}

ImplausibleWavefront::ImplausibleWavefront(Micrometres itsRms)
    : Error("the wavefront would be higher than a metre; check the unit of the coefficients"), rms(itsRms) {}

OrderAboveHighest::OrderAboveHighest(ZernikeTerm theTerm, double theNumber, const std::string& unitText,
                                     int highestOrder, const std::string& modelText)
    : ErrorWithFix("the term " + Symbol(theTerm) + ", " + Name(theTerm) + ", is " + ShortestText(theNumber) + " " +
                       unitText + ", but the " + modelText + " model accepts radial orders 0 to " +
                       std::to_string(highestOrder) + "; ",
                   "drop the orders above"),
      term(theTerm),
      number(theNumber),
      highest(highestOrder) {}

InvalidPrescription::InvalidPrescription(PrescriptionProblem theProblem, std::string_view theText)
    : Error(TextOf(theProblem, theText)), problem(theProblem), text(theText) {}

AxisOutOfRange::AxisOutOfRange(Degrees theAxis)
    : Error("the axis " + ShortestText(theAxis.value()) + " is outside 0 to 180 degrees"), axis(theAxis) {}

VertexOutOfRange::VertexOutOfRange(Millimetres theVertex)
    : Error("the vertex distance " + ShortestText(theVertex.value()) +
            " is neither 0, for a contact lens, nor from 1 to 30 mm; write it in mm, as 12"),
      vertex(theVertex) {}

FocusInFrontOfCornea::FocusInFrontOfCornea(Dioptres thePower, Millimetres theVertex)
    : Error("a lens of " + SignedText(thePower) + " D at " + ShortestText(theVertex.value()) +
            " mm has its focus in front of the cornea; check its power and its vertex distance"),
      power(thePower),
      vertex(theVertex) {}

}  // namespace orvanel::eye
