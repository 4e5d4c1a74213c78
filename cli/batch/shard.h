// The part of a table that one run of several takes.
#ifndef ORVANEL_CLI_BATCH_SHARD_H
#define ORVANEL_CLI_BATCH_SHARD_H

#include <cstddef>
#include <string_view>

#include "base/layers.h"

namespace orvanel::cli {

// Rows are taken together in chunks, and chunks are dealt to the shards like cards: the first to shard 1, the second to
// shard 2, and so on. Which row belongs to which shard thus depends on no other row.
struct Shard {
  std::size_t number = 1, of = 1;
  friend bool operator==(const Shard&, const Shard&) = default;
};

constexpr std::size_t kMostShards = 1000000, kMostChunkRows = 1000000;

// "2/8". Throws Error.
Shard ParseShard(std::string_view text);

// Whether a chunk, from 0, is the shard's.
inline bool Owns(Shard shard, std::size_t chunk) { return chunk % shard.of == shard.number - 1; }

// The row of the table, from 0, that is the shard's row `own`, from 0.
inline std::size_t RowOf(Shard shard, std::size_t chunkRows, std::size_t own) {
  return (own / chunkRows * shard.of + shard.number - 1) * chunkRows + own % chunkRows;
}

// How many of the first `rows` rows are the shard's.
std::size_t RowsOf(Shard shard, std::size_t chunkRows, std::size_t rows);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_SHARD_H
