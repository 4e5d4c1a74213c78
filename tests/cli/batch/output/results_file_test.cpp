// Tests that the file of results gets whole rows or nothing.
#include "cli/batch/output/results_file.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "files/platform.h"
#include "tests/support/temporary_files.h"

namespace orvanel::cli {
namespace {

TEST(ResultsFile, RowsAreAddedAndCutOff) {
  const TemporaryFolder folder;
  const std::string name = (folder / "r.csv").string();
  {
    ResultsFile file(name, true);
    EXPECT_EQ(file.size(), 0U);
    file.Append("a,1,\n");
    file.Append("b,2,\n");
    EXPECT_EQ(Read(name), "a,1,\nb,2,\n");
    file.Keep(5);
    file.Append("c,3,\n");
  }
  EXPECT_EQ(Read(name), "a,1,\nc,3,\n");
  EXPECT_EQ(ResultsFile(name, false).size(), 10U);
}

TEST(ResultsFile, ASecondRunIsLockedOutUntilTheFirstEnds) {
  const TemporaryFolder folder;
  const std::string name = (folder / "r.csv").string();
  {
    const ResultsFile first(name, true);
    EXPECT_THROW(ResultsFile second(name, false), Error);
  }
  EXPECT_NO_THROW(ResultsFile third(name, false));
}

TEST(ResultsFile, AnEmptyOneIsRemovedAndNoOther) {
  const TemporaryFolder folder;
  ResultsFile empty((folder / "empty.csv").string(), true);
  empty.RemoveIfEmpty();
  ResultsFile full((folder / "full.csv").string(), true);
  full.Append("a,1,\n");
  full.RemoveIfEmpty();
  EXPECT_EQ(Names(folder.path()), std::set<std::string>{"full.csv"});
}

TEST(ResultsFile, APlaceThatCannotBeWrittenIsRefused) {
  const TemporaryFolder folder;
  EXPECT_THROW(ResultsFile(folder.path().string(), false), Error);
  EXPECT_THROW(ResultsFile((folder / "no" / "r.csv").string(), true), Error);
}

#ifndef _WIN32
TEST(ResultsFile, NoLinkIsFollowed) {
  const TemporaryFolder folder;
  Write(folder / "precious", "precious");
  for (const char* target : {"precious", "nowhere"}) {
    std::filesystem::create_symlink(folder / target, folder / "r.csv");
    EXPECT_THROW(ResultsFile((folder / "r.csv").string(), false), Error) << target;
    EXPECT_EQ(OpenForAppending(folder / "r.csv", false), nullptr) << target;
    EXPECT_EQ(OpenForAppending(folder / "r.csv", true), nullptr) << target;
    std::filesystem::remove(folder / "r.csv");
  }
  EXPECT_EQ(Read(folder / "precious"), "precious");
  EXPECT_EQ(Names(folder.path()), std::set<std::string>{"precious"});
}
#endif

TEST(ResultsFile, ANewOneIsNoOther) {
  const TemporaryFolder folder;
  Write(folder / "r.csv", "old");
  EXPECT_THROW(ResultsFile((folder / "r.csv").string(), true), Error);
  EXPECT_EQ(Read(folder / "r.csv"), "old");
}

}  // namespace
}  // namespace orvanel::cli
