// Turns signals into requests to stop.
#ifndef ORVANEL_CLI_SIGNALS_H
#define ORVANEL_CLI_SIGNALS_H

namespace orvanel::cli {

// From now on a request to stop is noted, and ends waiting for input. SIGHUP stays ignored under nohup. A pipe that
// nobody reads and a file that may not grow become failures of the write.
void NoteInterruptions();

// While it lives, the program ends as soon as it is asked to stop: for long work that does not check for requests and
// has nothing to clear away.
class StopAtOnce {
 public:
  StopAtOnce();
  StopAtOnce(const StopAtOnce&) = delete;
  StopAtOnce& operator=(const StopAtOnce&) = delete;
  ~StopAtOnce();
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_SIGNALS_H
