// Locks the place of numbered files for a run, since a run creates and removes these one by one.
#ifndef ORVANEL_CLI_BATCH_PLACE_LOCK_H
#define ORVANEL_CLI_BATCH_PLACE_LOCK_H

#include <filesystem>
#include <string>

#include "base/layers.h"
#include "cli/batch/shard.h"

namespace orvanel::cli {

// Holds the lock until destruction. The lock is on a file, which the last of several runs removes. A file that a killed
// run has left does not block other runs. Shards of one division share a place.
class PlaceLock {
 public:
  // Throws Error if another run uses the place, or if the file cannot be created.
  //   place  its name in messages
  PlaceLock(std::filesystem::path file, Shard shard, const std::string& place);
  PlaceLock(const PlaceLock&) = delete;
  PlaceLock& operator=(const PlaceLock&) = delete;
  ~PlaceLock();

 private:
  std::filesystem::path file_;
  int descriptor_ = -1;
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_PLACE_LOCK_H
