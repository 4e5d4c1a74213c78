// Locks ranges of bytes: a run over all chunks locks all of them, a shard its share.
#include "cli/batch/place_lock.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <system_error>
#include <utility>

#include "base/error.h"
#include "files/platform.h"

namespace orvanel::cli {
namespace {

constexpr std::uint64_t kAll = std::uint64_t{1} << 62U;

}  // namespace

PlaceLock::PlaceLock(std::filesystem::path file, Shard shard, const std::string& place) : file_(std::move(file)) {
  const std::uint64_t share = kAll / shard.of;
  for (;;) {
    descriptor_ = OpenForLocks(file_);
    if (descriptor_ == -1) throw Error(file_.string() + ": cannot be written: " + std::strerror(errno));
    const bool locked = LockRange(descriptor_, share * (shard.number - 1), shard.of == 1 ? kAll : share);
    // Another run may have ended and removed the file in the meantime. A lock on a removed file excludes nothing.
    if (locked && IsFileOf(descriptor_, file_)) return;
    Close(std::exchange(descriptor_, -1));
    if (!locked) throw Error(place + ": is being written by another run; wait for it, or give another name");
  }
}

PlaceLock::~PlaceLock() {
  std::error_code ignored;
  if (kOpenFilesStay) {
    Close(descriptor_);
    std::filesystem::remove(file_, ignored);
    return;
  }
  if (LockRange(descriptor_, 0, kAll)) std::filesystem::remove(file_, ignored);
  Close(descriptor_);
}

}  // namespace orvanel::cli
