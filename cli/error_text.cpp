// Adds the program's options to the errors of the layers below.
#include "cli/error_text.h"

#include "evaluation/errors.h"
#include "eye/errors.h"

namespace orvanel::cli {

std::string TextOf(const Error& error) {
  if (const auto* const pupil = dynamic_cast<const PupilLargerThanMeasured*>(&error)) {
    return pupil->fact + "Ask for a smaller one, or let --extrapolate continue the polynomials";
  }
  if (const auto* const order = dynamic_cast<const OrderAboveHighest*>(&error)) {
    return order->fact + "let --highest-order " + std::to_string(order->highest) + " drop what is above";
  }
  if (const auto* const threads = dynamic_cast<const TooFewThreads*>(&error)) {
    return threads->fact + "ask for so many with --jobs";
  }
  return error.what();
}

}  // namespace orvanel::cli
