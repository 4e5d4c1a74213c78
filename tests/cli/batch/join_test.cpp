// Tests joining the shards of small runs.
#include "cli/batch/join.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "tests/cli/batch/tables_of_eyes.h"

namespace orvanel::cli {
namespace {

std::vector<std::string> RunShards(const TemporaryFolder& folder, std::size_t of) {
  std::vector<std::string> names;
  for (std::size_t number = 1; number <= of; ++number) {
    BatchRequest request = RequestIn(folder);
    request.record.shard = {number, of};
    request.results = (folder / ("shard_" + std::to_string(of + 1 - number) + ".csv")).string();
    RunBatch(request);
    names.push_back(request.results);
  }
  return names;
}

std::string Refusal(const std::vector<std::string>& shards, const std::string& results) {
  try {
    JoinShards(shards, results, false);
  } catch (const Error& error) {
    return error.what();
  }
  return "accepted";
}

TEST(Join, GivesTheBytesOfASingleRun) {
  for (const int rows : {0, 5, 8, 41}) {
    const TemporaryFolder folder;
    Write(folder / "eyes.csv", TableOfEyes(rows));
    const BatchRequest single = RequestIn(folder);
    RunBatch(single);
    std::vector<std::string> shards = RunShards(folder, 3);
    std::swap(shards[0], shards[2]);
    const std::string joined = (folder / "joined.csv").string();
    JoinShards(shards, joined, false);
    EXPECT_EQ(Read(joined), Read(single.results)) << rows;
    EXPECT_EQ(Read(RecordFileOf(joined)), Read(RecordFileOf(single.results))) << rows;
  }
}

TEST(Join, NoticesRowsThatWereChanged) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(41));
  const std::vector<std::string> shards = RunShards(folder, 3);
  const std::string joined = (folder / "joined.csv").string();
  const std::string text = Read(shards[1]);
  const std::size_t digit = text.find_last_of("123456789");
  std::string changed = text;
  changed[digit] = changed[digit] == '1' ? '2' : '1';
  for (const std::string& wrong : {changed, text + "torn", text + "torn,\"\n"}) {
    Write(shards[1], wrong);
    EXPECT_NE(Refusal(shards, joined).find("was changed after its run had written it"), std::string::npos);
  }
  EXPECT_FALSE(std::filesystem::exists(joined));
  std::string header = text;
  header.replace(0, 3, "ID,");
  Write(shards[1], header);
  EXPECT_NE(Refusal(shards, joined).find("its first row differs from that of the other shards"), std::string::npos);
  Write(shards[1], text);
  EXPECT_EQ(Refusal(shards, joined), "accepted");
}

TEST(Join, RefusesShardsOfTablesOfDifferentLength) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(41));
  const std::vector<std::string> shards = RunShards(folder, 3);
  RunRecord record = *ReadRecord(shards[1]);
  --record.end->tableRows;
  WriteRecord(shards[1], record);
  EXPECT_NE(Refusal(shards, (folder / "joined.csv").string()).find("belongs to another table than"), std::string::npos);
}

TEST(Join, ReplacesNoneOfItsShards) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(20));
  const std::vector<std::string> shards = RunShards(folder, 2);
  const std::string text = Read(shards[1]);
  for (const std::string& place : {shards[1], (folder / "." / std::filesystem::path(shards[1]).filename()).string()}) {
    try {
      JoinShards(shards, place, true);
      FAIL() << "replaced";
    } catch (const Error& error) {
      EXPECT_NE(std::string(error.what()).find("is one of the shards"), std::string::npos);
    }
  }
  EXPECT_EQ(Read(shards[1]), text);
}

TEST(Join, OfManyShardsThatAreMissingItNamesSome) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(3));
  const std::vector<std::string> shards = RunShards(folder, 2);
  RunRecord record = *ReadRecord(shards[1]);
  record.shard = {1, kMaxShards};
  WriteRecord(shards[1], record);
  EXPECT_EQ(Refusal({shards[1]}, (folder / "joined.csv").string()),
            "of 1000000 shards these are missing: 2, 3, 4, 5, 6, 7, 8, 9, 10, 11 and more");
}

TEST(Join, RefusesWhatDoesNotBelongTogether) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(41));
  const std::vector<std::string> shards = RunShards(folder, 3);
  const std::string joined = (folder / "joined.csv").string();
  EXPECT_NE(Refusal({shards[0], shards[2]}, joined).find("of 3 shards these are missing: 2"), std::string::npos);
  EXPECT_NE(Refusal({shards[0], shards[1], shards[1]}, joined).find("leave one out"), std::string::npos);

  const std::string text = Read(shards[1]), record = Read(RecordFileOf(shards[1]));
  Write(shards[1], text.substr(0, text.rfind('\n', text.size() - 2) + 1));
  EXPECT_NE(Refusal(shards, joined).find("fewer rows than its record states"), std::string::npos);
  Write(shards[1], text + "a,,,,,,\n");
  EXPECT_NE(Refusal(shards, joined).find("more rows than its record states"), std::string::npos);
  Write(shards[1], text);

  RunRecord changed = *ReadRecord(shards[1]);
  changed.tableHash = "of another";
  WriteRecord(shards[1], changed);
  EXPECT_NE(Refusal(shards, joined).find("the table of eyes differs"), std::string::npos);
  changed = *ReadRecord(shards[0]);
  changed.shard.number = 2;
  changed.end.reset();
  WriteRecord(shards[1], changed);
  EXPECT_NE(Refusal(shards, joined).find("is not complete"), std::string::npos);
  std::filesystem::remove(RecordFileOf(shards[1]));
  EXPECT_NE(Refusal(shards, joined).find("is missing"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(joined));
}

}  // namespace
}  // namespace orvanel::cli
