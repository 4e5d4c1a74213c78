// Rows of results for rows of eyes, whoever computes them and however often it is begun.
#include "cli/batch/run.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "cli/error.h"
#include "tests/cli/batch/tables_of_eyes.h"

namespace orvanel::cli {
namespace {

std::string Refusal(const BatchRequest& request) {
  try {
    RunBatch(request);
  } catch (const Error& error) {
    return error.what();
  }
  return "accepted";
}

TEST(Run, EachRowBecomesOneRowInTheSameOrder) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(40));
  BatchRequest request = RequestIn(folder);
  request.jobs = 3;
  const BatchResult result = RunBatch(request);
  EXPECT_EQ(result.rows, 40U);
  EXPECT_EQ(result.errors, 5U);
  const std::string text = Read(folder / "results.csv");
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 41);
  EXPECT_TRUE(text.starts_with("id,rms_um_orders_2_and_above,"));
  EXPECT_NE(text.find("\n\"eye, 5\",,,,,,,\"line 7, column 40: column 'Z4': 'x' is not a number; write it as 0.12 or "
                      "1.2e-1\"\n"),
            std::string::npos)
      << text;
}

TEST(Run, TheBytesDoNotDependOnTheNumberOfThreads) {
  std::string first;
  for (const std::size_t jobs : {1U, 2U, 7U}) {
    const TemporaryFolder folder;
    Write(folder / "eyes.csv", TableOfEyes(300));
    BatchRequest request = RequestIn(folder);
    request.choice.metrics = MetricsNamed("strehl,rms");
    request.jobs = jobs;
    RunBatch(request);
    if (first.empty()) first = Read(request.results);
    EXPECT_EQ(Read(request.results), first);
  }
}

TEST(Run, FromEveryCutOfTheResultsItGoesOnToTheSameBytes) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(20));
  BatchRequest request = RequestIn(folder);
  RunBatch(request);
  const std::string whole = Read(request.results), record = Read(RecordFileOf(request.results));
  request.resume = true;
  for (std::size_t cut = 0; cut <= whole.size(); cut += 17) {
    Write(request.results, whole.substr(0, cut));
    const BatchResult result = RunBatch(request);
    EXPECT_EQ(Read(request.results), whole) << cut;
    EXPECT_EQ(Read(RecordFileOf(request.results)), record) << cut;
    EXPECT_EQ(result.rows, 20U);
    EXPECT_EQ(result.errors, 3U);
  }
}

TEST(Run, ItGoesOnWithNothingButItsOwnResults) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(20));
  BatchRequest request = RequestIn(folder);
  RunBatch(request);
  const std::string whole = Read(request.results);
  EXPECT_NE(Refusal(request).find("is there already"), std::string::npos);
  request.resume = true;
  BatchRequest other = request;
  other.record.settings = {{"--pupil", "4"}};
  EXPECT_NE(Refusal(other).find("--pupil was not given and is '4'"), std::string::npos);
  other = request;
  other.choice.metrics = MetricsNamed("rms");
  EXPECT_NE(Refusal(other).find("the columns of the results are others"), std::string::npos);
  Write(folder / "eyes.csv", TableOfEyes(21));
  EXPECT_NE(Refusal(request).find("the table of eyes is another"), std::string::npos);
  std::filesystem::remove(RecordFileOf(request.results));
  EXPECT_NE(Refusal(request).find("is missing"), std::string::npos);
  EXPECT_EQ(Read(request.results), whole);
}

TEST(Run, StrictStopsAtTheFirstRowAtFaultAndKeepsThoseBefore) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(20));
  BatchRequest request = RequestIn(folder);
  request.strict = true;
  EXPECT_NE(Refusal(request).find("line 7, column 40"), std::string::npos);
  const std::string text = Read(request.results);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 6);
  request.strict = false;
  request.resume = true;
  EXPECT_EQ(RunBatch(request).rows, 20U);
}

TEST(Run, AColumnOfTheUserMustNotHaveTheNameOfAResult) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", "error,\"Z(2,0)\"\n1,0.1\n");
  EXPECT_NE(Refusal(RequestIn(folder)).find("'error' has the name of a column of the results"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder / "results.csv"));
}

TEST(Run, TheTableItselfIsNeverReplaced) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(2));
  BatchRequest request = RequestIn(folder);
  request.results = request.table;
  request.force = true;
  EXPECT_NE(Refusal(request).find("is the table of eyes itself"), std::string::npos);
  EXPECT_EQ(Read(folder / "eyes.csv"), TableOfEyes(2));
}

TEST(Run, ATableWithoutRowsHasResultsWithoutRows) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", "id,\"Z(2,0)\"\n");
  EXPECT_EQ(RunBatch(RequestIn(folder)).rows, 0U);
  EXPECT_TRUE(Read(folder / "results.csv").ends_with(",error\n"));
}

}  // namespace
}  // namespace orvanel::cli
