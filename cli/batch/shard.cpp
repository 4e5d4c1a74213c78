// Counting of chunks.
#include "cli/batch/shard.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "cli/error.h"
#include "cli/number_text.h"

namespace orvanel::cli {

std::size_t ParseCount(std::string_view text, std::size_t least, std::size_t most) {
  std::size_t count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc() || end != text.data() + text.size() || count < least || count > most) {
    throw Error(Quoted(text) + " is no whole number from " + std::to_string(least) + " to " + std::to_string(most));
  }
  return count;
}

Shard ParseShard(std::string_view text) {
  constexpr std::size_t kMost = 1000000;
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos) {
    throw Error(Quoted(text) + " is no shard; write its number and how many there are, as 2/8");
  }
  Shard shard;
  shard.of = ParseCount(text.substr(slash + 1), 1, kMost);
  shard.number = ParseCount(text.substr(0, slash), 1, shard.of);
  return shard;
}

std::size_t RowsOf(Shard shard, std::size_t chunkRows, std::size_t rows) {
  const std::size_t round = chunkRows * shard.of, before = chunkRows * (shard.number - 1);
  const std::size_t begun = rows % round;
  return rows / round * chunkRows + (begun > before ? std::min(begun - before, chunkRows) : 0);
}

}  // namespace orvanel::cli
