// Bytes to standard output; on Windows, past the translation of line ends.
#include "base/standard_output.h"

#include <cstdio>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace orvanel {
namespace {

void Write(std::string_view bytes) { std::fwrite(bytes.data(), 1, bytes.size(), stdout); }

#ifdef _WIN32
// The C runtime's stdout is one for library and host. It translates line ends when its buffer is flushed, by a mode of
// the descriptor; for as long as this lives, that mode is binary and no other thread of the host can write.
class UntranslatedStdout {
 public:
  UntranslatedStdout() {
    _lock_file(stdout);
    if (descriptor_ < 0) return;  // a program with windows may have no standard output
    std::fflush(stdout);          // what the host has written is translated as the host expects
    mode_ = _setmode(descriptor_, _O_BINARY);
  }
  UntranslatedStdout(const UntranslatedStdout&) = delete;
  UntranslatedStdout& operator=(const UntranslatedStdout&) = delete;
  ~UntranslatedStdout() {
    if (mode_ != -1) {
      std::fflush(stdout);
      _setmode(descriptor_, mode_);
    }
    _unlock_file(stdout);
  }

 private:
  const int descriptor_ = _fileno(stdout);
  int mode_ = -1;
};
#endif

}  // namespace

void WriteOutput(std::string_view bytes) {
#ifdef _WIN32
  if (bytes.find('\n') != std::string_view::npos) {
    const UntranslatedStdout untranslated;
    Write(bytes);
    return;
  }
#endif
  Write(bytes);
}

}  // namespace orvanel
