// Records, written and read, and what tells two runs apart.
#include "cli/batch/run_record.h"

#include <gtest/gtest.h>

#include "cli/error.h"
#include "tests/cli/temporary_folder.h"

namespace orvanel::cli {
namespace {

RunRecord Sample() {
  return {"1.2.3", {{"--pupil", "4"}, {"--planes", "a.h5"}}, {"strehl_ratio"}, "0123456789abcdef", {2, 3}, 64, {}};
}

TEST(RunRecord, IsReadAsItWasWritten) {
  const TemporaryFolder folder;
  const std::string results = (folder / "r.csv").string();
  EXPECT_FALSE(ReadRecord(results));
  RunRecord record = Sample();
  Write(folder / "r.csv.orvanel.part", "what a killed run left");
  WriteRecord(results, record);
  EXPECT_EQ(Names(folder.path()), std::set<std::string>{"r.csv.orvanel"});
  EXPECT_EQ(Difference(*ReadRecord(results), record, false), "");
  EXPECT_FALSE(ReadRecord(results)->end);
  EXPECT_TRUE(ReadRecord(results)->constants.empty());
  record.constants = {{"cutoff_cpd_optical_scale", 118.8141}, {"a", -0.25}};
  record.end = RunRecord::End{1000, 7};
  WriteRecord(results, record);
  EXPECT_EQ(ReadRecord(results)->end, record.end);
  EXPECT_EQ(ReadRecord(results)->constants, record.constants);
}

TEST(RunRecord, WhatIsNoneIsRefused) {
  const TemporaryFolder folder;
  const std::string results = (folder / "r.csv").string();
  for (const char* text : {"", "{}", "[1]", "{\"record_of\": \"orvanel batch\"}"}) {
    Write(RecordFileOf(results), text);
    EXPECT_THROW(ReadRecord(results), Error) << text;
  }
}

TEST(RunRecord, TellsWhatIsDifferent) {
  const auto changed = [](const auto& change, bool anyShard) {
    RunRecord record = Sample();
    change(record);
    return Difference(Sample(), record, anyShard);
  };
  EXPECT_EQ(changed([](RunRecord& r) { r.version = "2"; }, true), "it was version 1.2.3 and is 2");
  EXPECT_EQ(changed([](RunRecord& r) { r.tableHash = "f"; }, true), "the table of eyes is another, or was changed");
  EXPECT_EQ(changed([](RunRecord& r) { r.chunkRows = 8; }, true), "--chunk was 64 and is 8");
  EXPECT_EQ(changed([](RunRecord& r) { r.shard.number = 1; }, false), "--shard was 2/3 and is 1/3");
  EXPECT_EQ(changed([](RunRecord& r) { r.shard.number = 1; }, true), "");
  EXPECT_EQ(changed([](RunRecord& r) { r.shard.of = 4; }, true), "--shard was 2/3 and is 2/4");
  EXPECT_EQ(changed([](RunRecord& r) { r.settings[0].second = "5"; }, true), "--pupil was '4' and is '5'");
  EXPECT_EQ(changed([](RunRecord& r) { r.settings.erase(r.settings.begin()); }, true),
            "--pupil was '4' and is not given");
  EXPECT_EQ(changed([](RunRecord& r) { r.settings.emplace_back("--mirror", "OD"); }, true),
            "--mirror was not given and is 'OD'");
  EXPECT_EQ(changed([](RunRecord& r) { r.settings[1].second = "b.h5"; }, true), "");
  EXPECT_EQ(changed([](RunRecord& r) { r.settings[1].second = "b.h5"; }, false), "--planes was 'a.h5' and is 'b.h5'");
  EXPECT_EQ(changed([](RunRecord& r) { r.columns.emplace_back("x"); }, false), "the columns of the results are others");
}

TEST(RunRecord, AHashKnowsEveryByte) {
  const TemporaryFolder folder;
  const std::string file = (folder / "t.csv").string();
  // Published values of the function.
  Write(file, "");
  EXPECT_EQ(HashOfFile(file), "cbf29ce484222325");
  Write(file, "foobar");
  EXPECT_EQ(HashOfFile(file), "85944171f73967e8");
  std::string text(200000, 'x');
  Write(file, text);
  const std::string hash = HashOfFile(file);
  text[150000] = 'y';
  Write(file, text);
  EXPECT_NE(HashOfFile(file), hash);
}

}  // namespace
}  // namespace orvanel::cli
