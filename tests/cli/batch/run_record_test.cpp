// Tests writing and reading records, and comparing the settings of two runs.
#include "cli/batch/run_record.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "tests/support/temporary_files.h"

namespace orvanel::cli {
namespace {

RunRecord Sample() {
  return {"1.2.3",
          {{"--pupil", "4"}, {"--planes", "a.h5"}},
          {"strehl_ratio"},
          "0123456789abcdef",
          {2, 3},
          64,
          77,
          "fedcba9876543210",
          {}};
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
  EXPECT_EQ(ReadRecord(results)->resultsBytes, 77U);
  EXPECT_EQ(ReadRecord(results)->resultsHash, "fedcba9876543210");
  record.constants = {{"cutoff_cpd_optical_scale", 118.8141}, {"a", -0.25}};
  record.end = RunRecord::End{1000, 7};
  record.eyeFiles = {{"b.json", "0123"}, {"a, \"b\".json", ""}};
  record.lightFiles = {{"a, \"b\".csv", "0123"}, {"c.csv", ""}};
  WriteRecord(results, record);
  EXPECT_EQ(ReadRecord(results)->end, record.end);
  EXPECT_EQ(ReadRecord(results)->eyeFiles, record.eyeFiles);
  EXPECT_EQ(ReadRecord(results)->constants, record.constants);
  EXPECT_EQ(ReadRecord(results)->lightFiles, record.lightFiles);
}

TEST(RunRecord, WhatIsNoneIsRefused) {
  const TemporaryFolder folder;
  const std::string results = (folder / "r.csv").string();
  for (const char* text : {"", "{}", "[1]", "{\"record_of\": \"orvanel batch\"}"}) {
    Write(RecordFileOf(results), text);
    EXPECT_THROW(ReadRecord(results), Error) << text;
  }
}

TEST(RunRecord, NumbersThatNoRunHasAreRefused) {
  const TemporaryFolder folder;
  const std::string results = (folder / "r.csv").string();
  RunRecord record = Sample();
  record.end = RunRecord::End{1000, 7};
  WriteRecord(results, record);
  const std::string text = Read(RecordFileOf(results));
  const auto with = [&text](const std::string& key, const std::string& value) {
    const std::size_t place = text.find("\"" + key + "\": ") + key.size() + 4, end = text.find_first_of(",\n", place);
    return text.substr(0, place) + value + text.substr(end);
  };
  Write(RecordFileOf(results), with("shard", "3"));
  EXPECT_EQ(ReadRecord(results)->shard, (Shard{3, 3}));
  const std::pair<const char*, const char*> kWrong[] = {{"shard", "0"},          {"shard", "4"},
                                                        {"shard", "-1"},         {"shard", "1.5"},
                                                        {"shard", "\"1\""},      {"shards", "0"},
                                                        {"shards", "1000001"},   {"shards", "1e18"},
                                                        {"shards", "-2"},        {"shards", "18446744073709551615"},
                                                        {"chunk_rows", "0"},     {"chunk_rows", "-8"},
                                                        {"chunk_rows", "2.5"},   {"chunk_rows", "1000001"},
                                                        {"results_bytes", "-1"}, {"table_rows", "-1"},
                                                        {"error_rows", "1.5"},   {"complete", "1"},
                                                        {"results_hash", "7"}};
  for (const auto& [key, value] : kWrong) {
    Write(RecordFileOf(results), with(key, value));
    EXPECT_THROW(ReadRecord(results), Error) << key << " " << value;
  }
}

TEST(RunRecord, ARecordOfAnOlderVersionIsRefusedWithItsReason) {
  const TemporaryFolder folder;
  const std::string results = (folder / "r.csv").string();
  Write(RecordFileOf(results),
        R"({"record_of": "orvanel batch", "version": "0.1.0", "settings": {}, "columns": ["strehl_ratio"],
            "table_hash": "00", "shard": 1, "shards": 1, "chunk_rows": 64, "complete": false})");
  try {
    ReadRecord(results);
    FAIL() << "accepted";
  } catch (const Error& error) {
    EXPECT_NE(std::string(error.what()).find("is of version 0.1.0, whose records cannot show"), std::string::npos);
  }
}

TEST(RunRecord, TellsWhatIsDifferent) {
  const auto changed = [](const auto& change, bool anyShard) {
    RunRecord record = Sample();
    change(record);
    return Difference(Sample(), record, anyShard);
  };
  EXPECT_EQ(changed([](RunRecord& r) { r.version = "2"; }, true), "it was version 1.2.3 and is 2");
  EXPECT_EQ(changed([](RunRecord& r) { r.tableHash = "f"; }, true), "the table of eyes differs or was changed");
  EXPECT_EQ(changed([](RunRecord& r) { r.chunkRows = 8; }, true), "--chunk was 64 and is 8");
  EXPECT_EQ(changed([](RunRecord& r) { r.shard.number = 1; }, false), "--shard was 2/3 and is 1/3");
  EXPECT_EQ(changed([](RunRecord& r) { r.shard.number = 1; }, true), "");
  EXPECT_EQ(changed([](RunRecord& r) { r.shard.of = 4; }, true), "--shard was 2/3 and is 2/4");
  EXPECT_EQ(changed([](RunRecord& r) { r.settings[0].second = "5"; }, true), "--pupil was '4' and is '5'");
  EXPECT_EQ(changed([](RunRecord& r) { r.settings[0].second = std::string(101, '5'); }, true),
            "--pupil has other values");
  EXPECT_EQ(changed([](RunRecord& r) { r.settings.erase(r.settings.begin()); }, true),
            "--pupil was '4' and is not given");
  EXPECT_EQ(changed([](RunRecord& r) { r.settings.emplace_back("--mirror", "OD"); }, true),
            "--mirror was not given and is 'OD'");
  EXPECT_EQ(changed([](RunRecord& r) { r.settings[1].second = "b.h5"; }, true), "");
  EXPECT_EQ(changed([](RunRecord& r) { r.settings[1].second = "b.h5"; }, false), "--planes was 'a.h5' and is 'b.h5'");
  EXPECT_EQ(changed([](RunRecord& r) { r.columns.emplace_back("x"); }, false), "the columns of the results are others");
}

TEST(RunRecord, TellsWhichEyeFileIsDifferent) {
  const auto changed = [](const std::vector<EyeFile>& files) {
    RunRecord before = Sample(), now = Sample();
    before.eyeFiles = {{"a.json", "1"}, {"b.json", "2"}};
    now.eyeFiles = files;
    return Difference(before, now, true);
  };
  EXPECT_EQ(changed({{"a.json", "1"}, {"b.json", "2"}}), "");
  EXPECT_EQ(changed({{"a.json", "1"}, {"b.json", "3"}}), "the eye file b.json was changed");
  EXPECT_EQ(changed({{"a.json", ""}, {"b.json", "2"}}), "the eye file a.json was changed");
  EXPECT_EQ(changed({{"b.json", "2"}, {"a.json", "1"}}), "the list of eye files differs");
  EXPECT_EQ(changed({{"a.json", "1"}}), "the list of eye files differs");
  EXPECT_EQ(changed({}), "the list of eye files differs");
  EXPECT_EQ(changed({{"a.json", "1"}, {"b.json", "2"}, {"c.json", "3"}}), "the list of eye files differs");
}

TEST(RunRecord, TellsWhichSpectrumIsDifferentOfThoseThatBothName) {
  const auto changed = [](const std::map<std::string, std::string>& files) {
    RunRecord before = Sample(), now = Sample();
    before.lightFiles = {{"a.csv", "1"}, {"b.csv", ""}};
    now.lightFiles = files;
    return Difference(before, now, true);
  };
  EXPECT_EQ(changed({{"a.csv", "1"}, {"b.csv", ""}}), "");
  EXPECT_EQ(changed({{"a.csv", "1"}, {"c.csv", "3"}}), "");
  EXPECT_EQ(changed({}), "");
  EXPECT_EQ(changed({{"a.csv", "2"}}), "the spectrum a.csv was changed");
  EXPECT_EQ(changed({{"b.csv", "2"}}), "the spectrum b.csv was changed");  // it was missing
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
