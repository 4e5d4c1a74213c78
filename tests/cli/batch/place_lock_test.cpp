// Tests that only one run at a time holds the lock of a place.
#include "cli/batch/place_lock.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "tests/support/temporary_files.h"

namespace orvanel::cli {
namespace {

TEST(PlaceLock, ASecondRunIsLockedOutUntilTheFirstEnds) {
  const TemporaryFolder folder;
  const auto lock = [&folder] { const PlaceLock second(folder / "p.lock", {}, "p.h5"); };
  {
    const PlaceLock first(folder / "p.lock", {}, "p.h5");
    try {
      lock();
      FAIL() << "both have it";
    } catch (const Error& error) {
      EXPECT_STREQ(error.what(), "p.h5: is being written by another run; wait for it, or give another name");
    }
  }
  EXPECT_NO_THROW(lock());
  EXPECT_TRUE(Names(folder.path()).empty());
}

TEST(PlaceLock, ShardsShareAPlaceAndLockOutTheirLikeAndASingleRun) {
  const TemporaryFolder folder;
  const auto isFree = [&folder](Shard shard) {
    try {
      const PlaceLock lock(folder / "p.lock", shard, "p.h5");
      return true;
    } catch (const Error&) {
      return false;
    }
  };
  for (const std::size_t of : {2U, 3U, 7U, 1000000U}) {
    const PlaceLock first(folder / "p.lock", {1, of}, "p.h5");
    {
      const PlaceLock last(folder / "p.lock", {of, of}, "p.h5");
      EXPECT_FALSE(isFree({of, of}));
      EXPECT_FALSE(isFree({1, of}));
      EXPECT_FALSE(isFree({1, 1}));
      EXPECT_EQ(isFree({2, of}), of > 2);
    }
    // What the last one has left still locks out.
    EXPECT_FALSE(isFree({1, 1}));
    EXPECT_TRUE(isFree({of, of}));
  }
  EXPECT_TRUE(Names(folder.path()).empty());
}

TEST(PlaceLock, WhatAKilledRunHasLeftLocksOutNobody) {
  const TemporaryFolder folder;
  Write(folder / "p.lock", "");
  { const PlaceLock lock(folder / "p.lock", {}, "p.h5"); }
  EXPECT_TRUE(Names(folder.path()).empty());
}

#ifndef _WIN32
TEST(PlaceLock, NoLinkIsFollowed) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink(folder / "elsewhere", folder / "p.lock");
  EXPECT_THROW(PlaceLock(folder / "p.lock", {}, "p.h5"), Error);
  EXPECT_EQ(Names(folder.path()), std::set<std::string>{"p.lock"});
}
#endif

}  // namespace
}  // namespace orvanel::cli
