// Tests that a new file is complete or absent.
#include "files/new_file.h"

#include <gtest/gtest.h>
#ifndef _WIN32
#include <sys/resource.h>

#include <csignal>
#endif

#include "base/error.h"
#include "files/platform.h"
#include "tests/support/temporary_files.h"

namespace orvanel::files {
namespace {

TEST(Files, ANewFileAppearsWhenItIsWhole) {
  const TemporaryFolder folder;
  const std::string place = (folder / "new.json").string();
  {
    NewFile file(place, false);
    file.Write("one ");
    file.Write("two");
    EXPECT_FALSE(std::filesystem::exists(place));
    file.Commit();
  }
  EXPECT_EQ(Read(place), "one two");
  EXPECT_EQ(Names(folder.path()), std::set<std::string>{"new.json"});
}

TEST(Files, AFileThatIsGivenUpLeavesNothing) {
  const TemporaryFolder folder;
  {
    NewFile file((folder / "new.json").string(), false);
    file.Write("half");
  }
  EXPECT_TRUE(Names(folder.path()).empty());
}

TEST(Files, WhatIsThereIsReplacedOnlyOnRequest) {
  const TemporaryFolder folder;
  const std::string place = (folder / "old.json").string();
  Write(place, "old");
  EXPECT_THROW(NewFile(place, false), Error);
  NewFile file(place, true);
  file.Write("new");
  EXPECT_EQ(Read(place), "old");
  file.Commit();
  EXPECT_EQ(Read(place), "new");
}

TEST(Files, AFolderIsNoFile) {
  const TemporaryFolder folder;
  EXPECT_THROW(NewFile(folder.path().string(), true), Error);
  EXPECT_THROW(NewFile((folder / "no/such/place").string(), false), Error);
}

TEST(Files, AFileIsReplacedWholeAndOverWhatAKilledRunLeft) {
  const TemporaryFolder folder;
  Write(folder / "a.json", "old");
  Write(folder / "a.json.part", "what a killed run left of a longer file");
  ReplaceFile(folder / "a.json", "new");
  EXPECT_EQ(Read(folder / "a.json"), "new");
  EXPECT_EQ(Names(folder.path()), std::set<std::string>{"a.json"});
}

TEST(Files, AFileThatCannotBeReplacedLeavesNothing) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "taken");
  EXPECT_THROW(ReplaceFile(folder / "taken", "bytes"), Error);
  EXPECT_EQ(Names(folder.path()), std::set<std::string>{"taken"});
  EXPECT_THROW(ReplaceFile(folder / "no/such/place", "bytes"), Error);
}

TEST(Files, AFileThatCannotComeToItsPlaceLeavesNothing) {
  const TemporaryFolder folder;
  const std::string place = (folder / "new.json").string();
  {
    NewFile file(place, false);
    file.Write("new");
    std::filesystem::create_directories(folder / "new.json" / "taken");  // meanwhile
    EXPECT_THROW(file.Commit(), Error);
  }
  EXPECT_EQ(Names(folder.path()), std::set<std::string>{"new.json"});
}

TEST(Files, ANewFileIsNeverWrittenOverAnother) {
  const TemporaryFolder folder;
  Write(folder / "old", "old");
  EXPECT_EQ(WriteNewFile(folder / "old", "new"), std::errc::file_exists);
  EXPECT_EQ(Read(folder / "old"), "old");
  EXPECT_EQ(WriteNewFile("/nowhere/file", "bytes"), std::errc::no_such_file_or_directory);
}

#ifndef _WIN32
TEST(Files, AFullDiskIsReportedAndLeavesNothing) {
  const TemporaryFolder folder;
  const auto fills = [&folder] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{1000, 1000};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::_Exit(WriteNewFile(folder / "new", std::string(5000, 'x')) == std::errc::file_too_large ? 0 : 1);
  };
  EXPECT_EXIT(fills(), testing::ExitedWithCode(0), "");
  EXPECT_TRUE(Names(folder.path()).empty());
}

TEST(Files, NoLinkLaidInTheWayIsFollowed) {
  const TemporaryFolder folder;
  for (const char* target : {"precious", "nowhere"}) {
    Write(folder / "precious", "precious");
    std::filesystem::create_symlink(folder / target, folder / "a.csv.part");
    EXPECT_THROW(ReplaceFile(folder / "a.csv", "new"), Error) << target;
    EXPECT_EQ(WriteNewFile(folder / "a.csv.part", "new"), std::errc::file_exists) << target;
    EXPECT_EQ(Names(folder.path()), (std::set<std::string>{"a.csv.part", "precious"}));
    EXPECT_EQ(Read(folder / "precious"), "precious");
    std::filesystem::remove(folder / "a.csv.part");
  }
  // A second name of somebody's file is taken away, and the file stays as it is.
  std::filesystem::create_hard_link(folder / "precious", folder / "a.csv.part");
  ReplaceFile(folder / "a.csv", "new");
  EXPECT_EQ(Read(folder / "precious"), "precious");
  EXPECT_EQ(Read(folder / "a.csv"), "new");
}
#endif

}  // namespace
}  // namespace orvanel::files
