// Merges the results of shards to one table.
#ifndef ORVANEL_CLI_BATCH_JOIN_H
#define ORVANEL_CLI_BATCH_JOIN_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "cli/batch/run_record.h"

namespace orvanel::cli {

// Writes the bytes that a single run would have written, and returns the record of such a run. Throws Error if a shard
// is missing, incomplete, or from another run.
//   names  tables of results, in any order
RunRecord JoinShards(const std::vector<std::string>& names, const std::string& results, bool replace);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_JOIN_H
