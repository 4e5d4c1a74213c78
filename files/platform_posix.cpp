// Implements platform.h for POSIX.
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "files/platform.h"

namespace orvanel::files {
namespace {

// Never read from. Its bytes end every wait for input, whatever the moment of the signal.
int endOfWaiting[2] = {-1, -1};

std::FILE* Opened(const std::filesystem::path& file, int flags, const char* mode) {
  constexpr mode_t kLessTheMask = 0666;
  const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC | flags, kLessTheMask);
  return descriptor == -1 ? nullptr : fdopen(descriptor, mode);
}

}  // namespace

std::FILE* CreateNewFile(const std::filesystem::path& file) { return Opened(file, O_EXCL, "wb"); }

std::FILE* OpenForAppending(const std::filesystem::path& file, bool isNew) {
  // Does not wait for the reader of a pipe.
  return Opened(file, O_APPEND | O_NONBLOCK | (isNew ? O_EXCL : 0), "ab");
}

void Synchronise(std::FILE* stream) { fsync(fileno(stream)); }

std::optional<FileState> StateOf(const std::filesystem::path& file) {
  struct stat status;
  if (stat(file.c_str(), &status) != 0) return std::nullopt;
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  return FileState{static_cast<std::uintmax_t>(status.st_size), static_cast<std::uintmax_t>(status.st_ino),
                   kNanoseconds * status.st_mtim.tv_sec + status.st_mtim.tv_nsec};
}

bool LockOutOthers(std::FILE* stream) { return flock(fileno(stream), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK; }

int OpenForLocks(const std::filesystem::path& file) {
  constexpr mode_t kLessTheMask = 0666;
  return open(file.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK, kLessTheMask);
}

bool LockRange(int descriptor, std::uint64_t first, std::uint64_t count) {
  struct flock range {};
  range.l_type = F_WRLCK;
  range.l_whence = SEEK_SET;
  range.l_start = static_cast<off_t>(first);
  range.l_len = static_cast<off_t>(count);
#ifdef F_OFD_SETLK
  constexpr int kLock = F_OFD_SETLK;
#else
  constexpr int kLock = F_SETLK;
#endif
  return fcntl(descriptor, kLock, &range) == 0 || (errno != EAGAIN && errno != EACCES);
}

bool IsFileOf(int descriptor, const std::filesystem::path& file) {
  struct stat open, named;
  return fstat(descriptor, &open) == 0 && stat(file.c_str(), &named) == 0 && open.st_dev == named.st_dev &&
         open.st_ino == named.st_ino;
}

const bool kOpenFilesStay = false;

int OpenForReading(const std::filesystem::path& file) {
  return open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
}

void PrepareEndWaiting() {
  if (endOfWaiting[0] == -1 && pipe2(endOfWaiting, O_CLOEXEC) == 0) fcntl(endOfWaiting[1], F_SETFL, O_NONBLOCK);
}

bool WaitForInput(int descriptor) {
  pollfd waiting[] = {{descriptor, POLLIN, 0}, {endOfWaiting[0], POLLIN, 0}};
  while (poll(waiting, 2, -1) == -1 && (errno == EINTR || errno == EAGAIN)) {
  }
  return waiting[1].revents == 0;
}

void EndWaiting() {
  const int before = errno;
  [[maybe_unused]] const ssize_t written = write(endOfWaiting[1], "", 1);
  errno = before;
}

int StandardInput() { return fcntl(0, F_DUPFD_CLOEXEC, 3); }
void Close(int descriptor) { close(descriptor); }
int ReadSome(int descriptor, char* bytes, std::size_t most) { return static_cast<int>(read(descriptor, bytes, most)); }

}  // namespace orvanel::files
