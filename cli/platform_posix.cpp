// The operating system where it is POSIX.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "cli/platform.h"

namespace orvanel::cli {

std::vector<std::string> Arguments(int argc, char** argv) { return {argv + (argc > 0 ? 1 : 0), argv + argc}; }

void ShowUtf8() {}

void HandleSignals(void (*handler)(int)) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    if (std::signal(signal, SIG_IGN) == SIG_IGN) continue;  // as under nohup
    std::signal(signal, handler);
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

bool IsTerminal(int descriptor) { return isatty(descriptor) == 1; }

std::FILE* OpenForWriting(const std::filesystem::path& file) { return std::fopen(file.c_str(), "wb"); }
std::FILE* OpenForAppending(const std::filesystem::path& file) { return std::fopen(file.c_str(), "abe"); }

bool LockOutOthers(std::FILE* stream) { return flock(fileno(stream), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK; }

int MakePipe(int ends[2]) { return pipe2(ends, O_CLOEXEC); }
int Duplicate(int descriptor) { return fcntl(descriptor, F_DUPFD_CLOEXEC, 3); }
int Replace(int from, int to) { return dup2(from, to); }
void Close(int descriptor) { close(descriptor); }
int Read(int descriptor, char* bytes, std::size_t most) { return static_cast<int>(read(descriptor, bytes, most)); }

}  // namespace orvanel::cli
