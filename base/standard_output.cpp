// Writes bytes to standard output, on Windows without the translation of line ends.
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
// Library and host share the C runtime's stdout. It translates line ends when its buffer is flushed, by a mode of the
// descriptor. During the lifetime of this object the mode is binary, and no other thread of the host can write.
class UntranslatedStdout {
 public:
  UntranslatedStdout() {
    _lock_file(stdout);
    if (descriptor_ < 0) return;  // a program with windows may have no standard output
    std::fflush(stdout);          // the host expects its own output to be translated
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
