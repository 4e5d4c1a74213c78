// Catches what the library writes to standard output, so that the program's own output stays clean.
#ifndef ORVANEL_CLI_TRACE_CAPTURE_H
#define ORVANEL_CLI_TRACE_CAPTURE_H

#include <string>
#include <string_view>

namespace orvanel::cli {

// While it lives, file descriptor 1 is a pipe. It must not be made twice at a time; what is written in the meantime
// must fit into a pipe (64 KiB).
class TraceCapture {
 public:
  TraceCapture();
  TraceCapture(const TraceCapture&) = delete;
  TraceCapture& operator=(const TraceCapture&) = delete;
  ~TraceCapture();

  // Gives standard output back and returns what was written to it meanwhile.
  std::string Finish();

 private:
  void Restore();

  int reader_ = -1;
  int standardOutput_ = -1;  // a duplicate of the true one; -1 once it is back in its place
};

// The ring's outer diameter in samples from the trace line "acuity<TAB>diameter<NEWLINE>". Throws Error on any other
// text.
int DiameterOfTrace(std::string_view line);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_TRACE_CAPTURE_H
