// Counts chunks and rows of shards.
#include "cli/batch/shard.h"

#include <algorithm>
#include <string>

#include "base/error.h"
#include "base/number_text.h"

namespace orvanel::cli {

Shard ParseShard(std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos) {
    throw Error(Quoted(text) + " is not a shard; write its number and the number of shards, as 2/8");
  }
  Shard shard;
  shard.of = ParseCount(text.substr(slash + 1), 1, kMaxShards);
  shard.number = ParseCount(text.substr(0, slash), 1, shard.of);
  return shard;
}

std::size_t RowsOf(Shard shard, std::size_t chunkRows, std::size_t rows) {
  const std::size_t round = chunkRows * shard.of, before = chunkRows * (shard.number - 1);
  const std::size_t begun = rows % round;
  return rows / round * chunkRows + (begun > before ? std::min(begun - before, chunkRows) : 0);
}

}  // namespace orvanel::cli
