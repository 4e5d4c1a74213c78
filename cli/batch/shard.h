// The part of a table that one of several runs computes.
#ifndef ORVANEL_CLI_BATCH_SHARD_H
#define ORVANEL_CLI_BATCH_SHARD_H

#include <cstddef>
#include <string_view>

#include "base/layers.h"

namespace orvanel::cli {

// Rows form chunks, and chunks are assigned to the shards round-robin: the first to shard 1, the second to shard 2, and
// so on. So the shard of a row depends on no other row.
struct Shard {
  std::size_t number = 1, of = 1;
  friend bool operator==(const Shard&, const Shard&) = default;
};

constexpr std::size_t kMaxShards = 1000000, kMaxChunkRows = 1000000;

// Parses "2/8". Throws Error.
Shard ParseShard(std::string_view text);

// Whether a chunk, counted from 0, belongs to the shard.
inline bool Owns(Shard shard, std::size_t chunk) { return chunk % shard.of == shard.number - 1; }

// The row of the table, from 0, that is row `own` of the shard, from 0.
inline std::size_t RowOf(Shard shard, std::size_t chunkRows, std::size_t own) {
  return (own / chunkRows * shard.of + shard.number - 1) * chunkRows + own % chunkRows;
}

// The number of the first `rows` rows that belong to the shard.
std::size_t RowsOf(Shard shard, std::size_t chunkRows, std::size_t rows);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_SHARD_H
