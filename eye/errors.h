// Defines the errors of this layer. Their fields describe the problem, so that a host can name its own fix.
#ifndef ORVANEL_EYE_ERRORS_H
#define ORVANEL_EYE_ERRORS_H

#include <string>

#include "base/error.h"
#include "base/layers.h"
#include "base/number_text.h"
#include "base/units.h"
#include "eye/conventions/mode.h"

namespace orvanel::eye {

// The requested pupil is larger than the measured one, and extrapolation is not allowed.
class PupilLargerThanMeasured : public ErrorWithFix {
 public:
  PupilLargerThanMeasured(Millimetres wantedPupil, Millimetres measuredPupil)
      : ErrorWithFix("the pupil of " + ShortestText(wantedPupil.value()) + " mm is larger than the " +
                         ShortestText(measuredPupil.value()) +
                         " mm over which the eye was measured; the wavefront outside is not known. ",
                     "Use a smaller one, or allow extrapolation"),
        wanted(wantedPupil),
        measured(measuredPupil) {}

  Millimetres wanted, measured;
};

// A term that is not 0 is above the highest radial order of a model.
class OrderAboveHighest : public ErrorWithFix {
 public:
  //   unitText   the unit of the number
  //   modelText  the name of the model: "classic"
  OrderAboveHighest(ZernikeTerm theTerm, double theNumber, const std::string& unitText, int highestOrder,
                    const std::string& modelText)
      : ErrorWithFix("the term " + Symbol(theTerm) + ", " + Name(theTerm) + ", is " + ShortestText(theNumber) + " " +
                         unitText + ", but the " + modelText + " model accepts radial orders 0 to " +
                         std::to_string(highestOrder) + "; ",
                     "drop the orders above"),
        term(theTerm),
        number(theNumber),
        highest(highestOrder) {}

  ZernikeTerm term;
  double number;  // in the convention that the eye states
  int highest;
};

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_ERRORS_H
