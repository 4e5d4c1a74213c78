// Lists the errors of this layer that a host words itself.
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
      : ErrorWithFix("this system gives the program no more than " + std::to_string(startedThreads) + " threads; ",
                     "ask for fewer"),
        started(startedThreads) {}

  std::size_t started;
};

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_ERRORS_H
