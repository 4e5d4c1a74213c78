// Whole rows at the end, or nothing.
#include "cli/batch/results_file.h"

#include <gtest/gtest.h>

#include "cli/error.h"
#include "tests/cli/temporary_folder.h"

namespace orvanel::cli {
namespace {

TEST(ResultsFile, RowsAreAddedAndCutOff) {
  const TemporaryFolder folder;
  const std::string name = (folder / "r.csv").string();
  {
    ResultsFile file(name);
    EXPECT_EQ(file.size(), 0U);
    file.Append("a,1,\n");
    file.Append("b,2,\n");
    EXPECT_EQ(Read(name), "a,1,\nb,2,\n");
    file.Keep(5);
    file.Append("c,3,\n");
  }
  EXPECT_EQ(Read(name), "a,1,\nc,3,\n");
  EXPECT_EQ(ResultsFile(name).size(), 10U);
}

TEST(ResultsFile, ASecondRunIsLockedOutUntilTheFirstEnds) {
  const TemporaryFolder folder;
  const std::string name = (folder / "r.csv").string();
  {
    const ResultsFile first(name);
    EXPECT_THROW(ResultsFile second(name), Error);
  }
  EXPECT_NO_THROW(ResultsFile third(name));
}

TEST(ResultsFile, AnEmptyOneIsRemovedAndNoOther) {
  const TemporaryFolder folder;
  ResultsFile empty((folder / "empty.csv").string());
  empty.RemoveIfEmpty();
  ResultsFile full((folder / "full.csv").string());
  full.Append("a,1,\n");
  full.RemoveIfEmpty();
  EXPECT_EQ(Names(folder.path()), std::set<std::string>{"full.csv"});
}

TEST(ResultsFile, APlaceThatCannotBeWrittenIsRefused) {
  const TemporaryFolder folder;
  EXPECT_THROW(ResultsFile(folder.path().string()), Error);
  EXPECT_THROW(ResultsFile((folder / "no" / "r.csv").string()), Error);
}

}  // namespace
}  // namespace orvanel::cli
