// Tests that an output folder is complete or absent, and that files of other programs stay unchanged.
#include "files/output_folder.h"

#include <gtest/gtest.h>
#ifndef _WIN32
#include <sys/stat.h>
#endif

#include "base/error.h"
#include "tests/support/temporary_files.h"

namespace orvanel::files {
namespace {

using NameSet = std::set<std::string>;

std::string SummaryListing(const std::string& names) { return R"({"program": "orvanel", "files": [)" + names + "]}"; }

// A complete run that writes "a.png" with these bytes, and its summary.
void RunOnce(const std::filesystem::path& place, const std::string& bytes, bool replace) {
  OutputFolder folder(place, {"a.png", kSummaryFile}, replace);
  folder.Add("a.png", bytes);
  folder.Add(kSummaryFile, SummaryListing(R"("a.png", "summary.json")"));
  folder.Commit();
}

std::string RefusalOf(const std::filesystem::path& place, const std::vector<std::string>& names, bool replace) {
  try {
    OutputFolder folder(place, names, replace);
  } catch (const Error& error) {
    return error.what();
  }
  return {};
}

TEST(OutputFolder, IsMadeWithItsFiles) {
  const TemporaryFolder here;
  RunOnce(here / "out", "picture", false);
  EXPECT_EQ(Names(here / "out"), (NameSet{"a.png", "summary.json"}));
  EXPECT_EQ(Read(here / "out/a.png"), "picture");
  EXPECT_EQ(Names(here.path()), NameSet{"out"});
}

#ifndef _WIN32
TEST(OutputFolder, HasTheRightsOfAFolderMadeByHand) {
  const TemporaryFolder here;
  const mode_t mask = umask(022);
  RunOnce(here / "out", "picture", false);
  umask(mask);
  struct stat status;
  ASSERT_EQ(stat((here / "out").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0755U);
}
#endif

TEST(OutputFolder, IsNotThereBeforeTheCommitAndNeverWithoutOne) {
  const TemporaryFolder here;
  {
    OutputFolder folder(here / "out", {"a.png"}, false);
    folder.Add("a.png", "picture");
    EXPECT_FALSE(std::filesystem::exists(here / "out"));
  }
  EXPECT_EQ(Names(here.path()), NameSet{});
}

TEST(OutputFolder, ThatCannotComeToItsPlaceLeavesNothing) {
  const TemporaryFolder here;
  {
    OutputFolder folder(here / "out", {"a.png"}, false);
    folder.Add("a.png", "picture");
    std::filesystem::create_directories(here / "out/taken");  // meanwhile
    EXPECT_THROW(folder.Commit(), Error);
  }
  EXPECT_EQ(Names(here.path()), NameSet{"out"});
  EXPECT_EQ(Names(here / "out"), NameSet{"taken"});
}

TEST(OutputFolder, OneOfWhichAFileCannotComeToItsPlaceSaysSo) {
  const TemporaryFolder here;
  RunOnce(here / "out", "first", false);
  {
    OutputFolder folder(here / "out", {"a.png", kSummaryFile}, true);
    folder.Add("a.png", "second");
    folder.Add(kSummaryFile, SummaryListing(R"("a.png", "summary.json")"));
    std::filesystem::remove(here / "out/a.png");
    std::filesystem::create_directories(here / "out/a.png/taken");  // meanwhile
    EXPECT_THROW(folder.Commit(), Error);
  }
  EXPECT_EQ(Names(here / "out"), (NameSet{"a.png", "summary.json"}));
}

TEST(OutputFolder, MayEndInASlash) {
  const TemporaryFolder here;
  RunOnce(here / "out/", "picture", false);
  EXPECT_EQ(Names(here / "out"), (NameSet{"a.png", "summary.json"}));
}

TEST(OutputFolder, MayBeEmptyAlready) {
  const TemporaryFolder here;
  std::filesystem::create_directory(here / "out");
  RunOnce(here / "out", "picture", false);
  EXPECT_EQ(Names(here / "out"), (NameSet{"a.png", "summary.json"}));
}

TEST(OutputFolder, WithFilesIsRefusedUnlessTheyMayBeReplaced) {
  const TemporaryFolder here;
  RunOnce(here / "out", "first", false);
  EXPECT_NE(RefusalOf(here / "out", {"a.png"}, false).find("is a folder with files in it"), std::string::npos);
  EXPECT_EQ(Read(here / "out/a.png"), "first");
  RunOnce(here / "out", "second", true);
  EXPECT_EQ(Read(here / "out/a.png"), "second");
}

TEST(OutputFolder, ReplacingRemovesFilesOfTheEarlierRunThatHaveNoSuccessor) {
  const TemporaryFolder here;
  RunOnce(here / "out", "first", false);
  OutputFolder folder(here / "out", {"b.png", kSummaryFile}, true);
  folder.Add("b.png", "other");
  folder.Add(kSummaryFile, SummaryListing(R"("b.png", "summary.json")"));
  folder.Commit();
  EXPECT_EQ(Names(here / "out"), (NameSet{"b.png", "summary.json"}));
}

TEST(OutputFolder, ReplacingKeepsAStrangersFile) {
  const TemporaryFolder here;
  RunOnce(here / "out", "first", false);
  Write(here / "out/notes.txt", "mine");
  RunOnce(here / "out", "second", true);
  EXPECT_EQ(Read(here / "out/notes.txt"), "mine");
}

TEST(OutputFolder, ReplacingRefusesANameThatAStrangersFileHas) {
  const TemporaryFolder here;
  std::filesystem::create_directory(here / "out");
  Write(here / "out/a.png", "mine");
  EXPECT_NE(RefusalOf(here / "out", {"a.png"}, true).find("a.png: is not from an earlier run"), std::string::npos);
  EXPECT_EQ(Names(here / "out"), NameSet{"a.png"});
  EXPECT_EQ(Read(here / "out/a.png"), "mine");
}

TEST(OutputFolder, ASummaryOfAnotherProgramIsAStrangersFile) {
  const TemporaryFolder here;
  std::filesystem::create_directory(here / "out");
  Write(here / "out/summary.json", R"({"program": "other", "files": ["summary.json"]})");
  EXPECT_NE(RefusalOf(here / "out", {"summary.json"}, true), "");
}

TEST(OutputFolder, AForgedListReachesNothingOutsideAndNoFolder) {
  const TemporaryFolder here;
  Write(here / "precious", "mine");
  std::filesystem::create_directories(here / "out/sub");
  Write(here / "out/summary.json", SummaryListing(R"("../precious", "..", ".", "", "sub", 7, "summary.json")"));
  RunOnce(here / "out", "picture", true);
  EXPECT_EQ(Read(here / "precious"), "mine");
  EXPECT_EQ(Names(here / "out"), (NameSet{"a.png", "sub", "summary.json"}));
}

TEST(OutputFolder, ThatIsAFileIsRefused) {
  const TemporaryFolder here;
  Write(here / "out", "mine");
  EXPECT_NE(RefusalOf(here / "out", {"a.png"}, true).find("is a file"), std::string::npos);
  EXPECT_EQ(Read(here / "out"), "mine");
}

TEST(OutputFolder, BelowAFileOrNowhereIsRefused) {
  const TemporaryFolder here;
  Write(here / "file", "mine");
  EXPECT_NE(RefusalOf(here / "file/out", {"a.png"}, true), "");
  EXPECT_NE(RefusalOf(here / "no/such/place", {"a.png"}, true), "");
  EXPECT_EQ(Names(here.path()), NameSet{"file"});
}

#ifndef _WIN32  // where the standard library makes no links
TEST(OutputFolder, ThroughALinkIsTheFolderThatItNames) {
  const TemporaryFolder here;
  std::filesystem::create_directory(here / "real");
  std::filesystem::create_directory_symlink(here / "real", here / "link");
  RunOnce(here / "link", "picture", false);
  EXPECT_EQ(Names(here / "real"), (NameSet{"a.png", "summary.json"}));
  EXPECT_TRUE(std::filesystem::is_symlink(here / "link"));
}
#endif

}  // namespace
}  // namespace orvanel::files
