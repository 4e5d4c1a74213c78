// Tests file names with numbers.
#include "cli/batch/output/numbered_files.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "tests/support/temporary_files.h"

namespace orvanel::cli {
namespace {

TEST(NumberedFiles, HaveAtLeastTheirDigits) {
  const NumberedFiles files{"here", "planes-", ".h5", 6};
  EXPECT_EQ(files.Path(42).filename(), "planes-000042.h5");
  EXPECT_EQ(files.Path(12345678).filename(), "planes-12345678.h5");
}

TEST(NumberedFiles, AreFoundWhereTheirNumberIsOurs) {
  const TemporaryFolder folder;
  for (const char* name : {"p-000001.h5", "p-000002.h5", "p-000003.h5.part", "p-000004.h5", "p-00003.h5", "p-x00003.h5",
                           "q-000001.h5", "p-000001.h5.old", "p-.h5"}) {
    Write(folder / name, "");
  }
  const NumberedFiles files{folder.path(), "p-", ".h5", 6};
  const auto odd = files.Existing([](std::size_t number) { return number % 2 == 1; });
  ASSERT_EQ(odd.size(), 2U);
  EXPECT_EQ(odd[0].filename(), "p-000001.h5");
  EXPECT_EQ(odd[1].filename(), "p-000003.h5.part");
  EXPECT_THROW(ClearAway(odd, false), Error);
  ClearAway(odd, true);
  EXPECT_FALSE(std::filesystem::exists(odd[0]));
  EXPECT_TRUE(std::filesystem::exists(folder / "p-000002.h5"));
}

}  // namespace
}  // namespace orvanel::cli
