// Locks the place of numbered files for a run, since these come and go one by one.
#ifndef ORVANEL_CLI_BATCH_PLACE_LOCK_H
#define ORVANEL_CLI_BATCH_PLACE_LOCK_H

#include <filesystem>
#include <string>

#include "base/layers.h"
#include "cli/batch/shard.h"

namespace orvanel::cli {

// Holds the lock until its end. A file carries it, which the last of several runs removes; one that a killed run has
// left locks out nobody. Shards of one division share a place.
class PlaceLock {
 public:
  // Throws Error where another run has the place, or the file cannot be made.
  //   place  as messages name it
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
