// Makes a file in memory, for readers that need a name.
#ifndef ORVANEL_TESTS_FUZZ_MEMORY_FILE_H
#define ORVANEL_TESTS_FUZZ_MEMORY_FILE_H

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/fuzz/require.h"

namespace orvanel::fuzz {

class MemoryFile {
 public:
  MemoryFile() : descriptor_(memfd_create("input", MFD_CLOEXEC)) { ORVANEL_REQUIRE(descriptor_ >= 0); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(descriptor_); }

  // Has these bytes from now on.
  void Hold(const std::uint8_t* data, std::size_t size) const {
    ORVANEL_REQUIRE(ftruncate(descriptor_, 0) == 0);
    ORVANEL_REQUIRE(pwrite(descriptor_, data, size, 0) == static_cast<ssize_t>(size));
  }

  std::string name() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

}  // namespace orvanel::fuzz

#endif  // ORVANEL_TESTS_FUZZ_MEMORY_FILE_H
