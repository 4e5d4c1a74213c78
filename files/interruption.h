// Records requests to stop, which end reading and long work, so that temporary files are still removed.
#ifndef ORVANEL_FILES_INTERRUPTION_H
#define ORVANEL_FILES_INTERRUPTION_H

#include "base/error.h"
#include "base/layers.h"

namespace orvanel::files {

// Thrown after a request to stop.
class Interrupted : public Error {
 public:
  Interrupted() : Error("interrupted; nothing is written") {}
};

// Requests the program to stop: ends waits for input from now on. A signal handler may call it.
void RequestStop();

// Whether the program has been requested to stop.
bool IsInterrupted();

// Throws Interrupted if the program has been requested to stop.
void StopIfInterrupted();

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_INTERRUPTION_H
