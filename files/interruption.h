// Requests to stop, which end reading and long work, so that what is staged is still cleared away.
#ifndef ORVANEL_FILES_INTERRUPTION_H
#define ORVANEL_FILES_INTERRUPTION_H

#include "base/error.h"
#include "base/layers.h"

namespace orvanel::files {

// The program is asked to stop.
class Interrupted : public Error {
 public:
  Interrupted() : Error("interrupted; nothing is written") {}
};

// Asks the program to stop: ends waiting for input, now and from now on. A signal handler may call it.
void RequestStop();

// Whether the program has been asked to stop.
bool IsInterrupted();

// Throws Interrupted where the program has been asked to stop.
void StopIfInterrupted();

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_INTERRUPTION_H
