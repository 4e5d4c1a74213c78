// Implements process.h for POSIX.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "cli/console/process.h"

namespace orvanel::cli {

std::vector<std::string> Arguments(int argc, char** argv) { return {argv + (argc > 0 ? 1 : 0), argv + argc}; }

void ShowUtf8() {}

void OpenStandardDescriptors() {
  for (int descriptor = 0; descriptor <= 2; ++descriptor) {
    if (fcntl(descriptor, F_GETFD) != -1 || errno != EBADF) continue;
    // open returns the lowest free descriptor, this one. It has the wrong direction, so that using it remains an error.
    if (open("/dev/null", descriptor == 0 ? O_WRONLY : O_RDONLY) == -1) _exit(1);
  }
}

void HandleSignals(void (*handler)(int)) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    if (std::signal(signal, SIG_IGN) == SIG_IGN) continue;  // as under nohup
    std::signal(signal, handler);
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

bool IsTerminal(int descriptor) { return isatty(descriptor) == 1; }

}  // namespace orvanel::cli
