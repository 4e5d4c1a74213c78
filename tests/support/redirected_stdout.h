// Redirects the file descriptor of standard output to a file, for every way of writing.
#ifndef ORVANEL_TESTS_SUPPORT_REDIRECTED_STDOUT_H
#define ORVANEL_TESTS_SUPPORT_REDIRECTED_STDOUT_H

#include <fcntl.h>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/temporary_folder.h"

namespace orvanel::test {

#ifdef _WIN32
// The names without an underscore are not part of the language.
inline int Duplicate(int descriptor) { return _dup(descriptor); }
inline void Replace(int from, int to) { _dup2(from, to); }
inline void Close(int descriptor) { _close(descriptor); }
// With translated line ends, as a shell redirects a host.
inline int Create(const std::filesystem::path& file) {
  return _wopen(file.c_str(), _O_WRONLY | _O_CREAT | _O_TEXT, 0600);
}
#else
inline int Duplicate(int descriptor) { return dup(descriptor); }
inline void Replace(int from, int to) { dup2(from, to); }
inline void Close(int descriptor) { close(descriptor); }
inline int Create(const std::filesystem::path& file) { return open(file.c_str(), O_WRONLY | O_CREAT, 0600); }
#endif

class RedirectedStdout {
 public:
  RedirectedStdout() : original_(Duplicate(kDescriptor)) {
    std::fflush(stdout);
    const int file = Create(folder_ / "stdout");
    Replace(file, kDescriptor);
    Close(file);
  }
  RedirectedStdout(const RedirectedStdout&) = delete;
  RedirectedStdout& operator=(const RedirectedStdout&) = delete;
  ~RedirectedStdout() {
    std::fflush(stdout);
    Replace(original_, kDescriptor);
    Close(original_);
  }

  // The bytes that have reached the file, without those that are still in a buffer.
  std::string Written() const {
    std::ifstream stream(folder_ / "stdout", std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

 private:
  static constexpr int kDescriptor = 1;

  TemporaryFolder folder_;
  int original_;
};

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_SUPPORT_REDIRECTED_STDOUT_H
