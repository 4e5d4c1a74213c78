// Turns signals into requests to stop.
#ifndef ORVANEL_CLI_CONSOLE_SIGNALS_H
#define ORVANEL_CLI_CONSOLE_SIGNALS_H

namespace orvanel::cli {

// From now on a request to stop is recorded, and ends waits for input. SIGHUP stays ignored under nohup. A closed pipe
// and a file size limit make the write fail.
void NoteInterruptions();

// During its lifetime, a request to stop ends the program at once: for long work that does not check for requests and
// has nothing to clean up.
class StopAtOnce {
 public:
  StopAtOnce();
  StopAtOnce(const StopAtOnce&) = delete;
  StopAtOnce& operator=(const StopAtOnce&) = delete;
  ~StopAtOnce();
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_CONSOLE_SIGNALS_H
