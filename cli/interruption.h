// Signals that ask the program to stop, so that it still clears away what it has staged.
#ifndef ORVANEL_CLI_INTERRUPTION_H
#define ORVANEL_CLI_INTERRUPTION_H

#include "cli/error.h"

namespace orvanel::cli {

// The program is asked to stop.
class Interrupted : public Error {
 public:
  Interrupted() : Error("interrupted; nothing is written") {}
};

// From now on a request to stop is noted, and ends waiting for input. Not under nohup, whose wish is kept. A pipe that
// nobody reads and a file that may not grow become failures of the write.
void NoteInterruptions();

// Whether the program has been asked to stop.
bool IsInterrupted();

// Throws Interrupted where the program has been asked to stop.
void StopIfInterrupted();

// While it lives, the program ends as soon as it is asked to stop: for long work that asks nobody and has nothing to
// clear away.
class StopAtOnce {
 public:
  StopAtOnce();
  StopAtOnce(const StopAtOnce&) = delete;
  StopAtOnce& operator=(const StopAtOnce&) = delete;
  ~StopAtOnce();
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_INTERRUPTION_H
