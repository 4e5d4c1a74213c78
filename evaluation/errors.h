// Defines the errors of this layer. Their fields describe the problem, so that a host can name its own fix.
#ifndef ORVANEL_EVALUATION_ERRORS_H
#define ORVANEL_EVALUATION_ERRORS_H

#include <cstddef>
#include <string>

#include "base/error.h"
#include "base/layers.h"

namespace orvanel::evaluation {

// The system refuses to start more threads.
class TooFewThreads : public ErrorWithFix {
 public:
  explicit TooFewThreads(std::size_t startedThreads)
      : ErrorWithFix("this system allows the program at most " + std::to_string(startedThreads) + " threads; ",
                     "request fewer"),
        started(startedThreads) {}

  std::size_t started;
};

// A prescription that is stated in addition to the coefficients has not been added: the eye is not adjusted.
class PrescriptionPending : public Error {
 public:
  PrescriptionPending() : Error("the prescription of the eye has not been added to its coefficients; adjust the eye") {}
};

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_ERRORS_H
