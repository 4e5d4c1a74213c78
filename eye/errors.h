// Lists the errors of this layer that a host words itself: their fields say what is wrong, the host says what to do.
#ifndef ORVANEL_EYE_ERRORS_H
#define ORVANEL_EYE_ERRORS_H

#include <string>

#include "base/error.h"
#include "base/layers.h"
#include "base/number_text.h"
#include "base/units.h"
#include "eye/conventions/mode.h"

namespace orvanel::eye {

// A pupil is wanted that is larger than the measured one, and extrapolation is not allowed.
class PupilLargerThanMeasured : public ErrorWithFix {
 public:
  PupilLargerThanMeasured(Millimetres wantedPupil, Millimetres measuredPupil)
      : ErrorWithFix("the pupil of " + ShortestText(wantedPupil.value()) + " mm is larger than the " +
                         ShortestText(measuredPupil.value()) +
                         " mm over which the eye was measured; what lies outside is not known. ",
                     "Ask for a smaller one, or allow extrapolation"),
        wanted(wantedPupil),
        measured(measuredPupil) {}

  Millimetres wanted, measured;
};

// A term that is not 0 is above the highest radial order of a model.
class OrderAboveHighest : public ErrorWithFix {
 public:
  //   unitText   of the number
  //   modelText  "classic"
  OrderAboveHighest(ZernikeTerm theTerm, double theNumber, const std::string& unitText, int highestOrder,
                    const std::string& modelText)
      : ErrorWithFix("the term " + Symbol(theTerm) + ", " + Name(theTerm) + ", is " + ShortestText(theNumber) + " " +
                         unitText + ", but the " + modelText + " model takes the radial orders 0 to " +
                         std::to_string(highestOrder) + "; ",
                     "drop what is above"),
        term(theTerm),
        number(theNumber),
        highest(highestOrder) {}

  ZernikeTerm term;
  double number;  // in the convention that the eye states
  int highest;
};

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_ERRORS_H
