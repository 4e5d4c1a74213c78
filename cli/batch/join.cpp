// Copies the chunks of the shards round-robin, as they were assigned.
#include "cli/batch/join.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <utility>

#include "base/error.h"
#include "cli/batch/whole_rows.h"
#include "files/input_file.h"
#include "files/interruption.h"
#include "files/new_file.h"
#include "files/path_of.h"

namespace orvanel::cli {
namespace {

struct ShardFile {
  explicit ShardFile(std::string its) : file(std::move(its)), stream(file) {
    std::optional<RunRecord> found = ReadRecord(file);
    if (!found) {
      throw Error(file + ": " + RecordFileOf(file) + " is missing, which describes its rows; keep both files together");
    }
    record = *std::move(found);
    if (!record.end) throw Error(file + ": is not complete; continue its run with --resume");
  }

  std::string file;
  InputFile stream;
  RowReader rows{stream};
  RunRecord record;
};

using ShardFiles = std::vector<std::unique_ptr<ShardFile>>;

// Opens the shards, ordered by number; all must belong to one run, with none missing or repeated.
ShardFiles OpenAll(const std::vector<std::string>& names) {
  ShardFiles shards;
  for (const std::string& name : names) shards.push_back(std::make_unique<ShardFile>(name));
  ShardFile& first = *shards.front();
  for (const auto& shard : shards) {
    const std::string difference = Difference(first.record, shard->record, true);
    // Not all shards name all spectra.
    first.record.lightFiles.insert(shard->record.lightFiles.begin(), shard->record.lightFiles.end());
    if (!difference.empty()) {
      throw Error(shard->file + ": belongs to another run than " + first.file + ": " + difference);
    }
    if (shard->record.end->tableRows != first.record.end->tableRows) {
      throw Error(shard->file + ": belongs to another table than " + first.file);
    }
  }
  std::sort(shards.begin(), shards.end(),
            [](const auto& a, const auto& b) { return a->record.shard.number < b->record.shard.number; });
  std::string named;
  std::size_t next = 0, missing = 0;
  for (std::size_t number = 1; number <= first.record.shard.of; ++number) {
    if (next == shards.size() || shards[next]->record.shard.number != number) {
      constexpr std::size_t kMaxNamed = 10;
      ++missing;
      if (missing <= kMaxNamed) named += (missing == 1 ? "" : ", ") + std::to_string(number);
      if (missing == kMaxNamed + 1) named += " and more";
      continue;
    }
    ++next;
    if (next < shards.size() && shards[next]->record.shard.number == number) {
      throw Error(shards[next]->file + ": is shard " + std::to_string(number) + ", and so is " +
                  shards[next - 1]->file + "; leave one out");
    }
  }
  if (missing > 0) {
    throw Error("of " + std::to_string(first.record.shard.of) + " shards these are missing: " + named);
  }
  return shards;
}

}  // namespace

RunRecord JoinShards(const std::vector<std::string>& names, const std::string& results, bool replace) {
  for (const std::string& name : names) {
    std::error_code ignored;
    if (std::filesystem::equivalent(PathOf(name), PathOf(results), ignored)) {
      throw Error(results + ": is one of the shards; give another name");
    }
  }
  const ShardFiles shards = OpenAll(names);
  RunRecord record = shards.front()->record;
  for (const auto& shard : shards) {
    record.lightFiles.insert(shard->record.lightFiles.begin(), shard->record.lightFiles.end());
  }
  NewFile file(results, replace);
  std::string header, row, pending;
  for (const auto& shard : shards) {
    if (!shard->rows.Next(row) || (!header.empty() && row != header)) {
      throw Error(shard->file + ": its first row differs from that of the other shards");
    }
    header = row;
  }
  pending = header;
  Fnv1a hash;
  std::uintmax_t bytes = 0;
  const auto flush = [&] {
    file.Write(pending);
    hash.Add(pending);
    bytes += pending.size();
    pending.clear();
  };
  std::size_t errors = 0;
  for (std::size_t i = 0; i < record.end->tableRows; ++i) {
    StopIfInterrupted();
    ShardFile& shard = *shards[i / record.chunkRows % shards.size()];
    if (!shard.rows.Next(row)) {
      throw Error(shard.file + ": has fewer rows than its record states; compute it again");
    }
    pending += row;
    if (HasError(row)) ++errors;
    constexpr std::size_t kBlock = 1 << 16;
    if (pending.size() >= kBlock) flush();
  }
  flush();
  for (const auto& shard : shards) {
    if (shard->rows.Next(row)) throw Error(shard->file + ": has more rows than its record states; compute it again");
    // Now all of it has been read.
    if (shard->stream.bytesRead() != shard->record.resultsBytes || shard->stream.hash() != shard->record.resultsHash) {
      throw Error(shard->file + ": was changed after its run had written it; compute it again");
    }
  }
  file.Commit();
  record.shard = {};
  record.end->errors = errors;
  record.resultsBytes = bytes;
  record.resultsHash = hash.Text();
  WriteRecord(results, record);
  return record;
}

}  // namespace orvanel::cli
