// Files that are there whole or not at all.
#include "cli/files.h"

#include <gtest/gtest.h>

#include "cli/error.h"
#include "tests/cli/temporary_folder.h"

namespace orvanel::cli {
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

#ifndef _WIN32
TEST(WriteFile, ReportsAFullDisk) { EXPECT_EQ(WriteFile("/dev/full", "bytes"), std::errc::no_space_on_device); }
#endif

TEST(WriteFile, ReportsAPlaceThatIsNotThere) {
  EXPECT_EQ(WriteFile("/nowhere/file", "bytes"), std::errc::no_such_file_or_directory);
}

}  // namespace
}  // namespace orvanel::cli
