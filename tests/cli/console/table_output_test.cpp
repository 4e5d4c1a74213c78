// Tests writing tables to files and to standard output.
#include "cli/console/table_output.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "tests/support/temporary_files.h"

namespace orvanel::cli {
namespace {

TEST(TableOutput, AFileIsThereWhenItIsFinished) {
  const TemporaryFolder folder;
  const std::string name = (folder / "eyes.csv").string();
  TableOutput output(name, false);
  EXPECT_TRUE(output.isFile());
  std::string expected;
  for (int i = 0; i < 20000; ++i) {  // more than a block
    const std::string row = std::to_string(i) + ",0.5\n";
    expected += row;
    output.Write(row);
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "eyes.csv"));
  output.Finish();
  EXPECT_EQ(Read(folder / "eyes.csv"), expected);
  EXPECT_THROW(TableOutput(name, false), Error);
  EXPECT_NO_THROW(TableOutput(name, true));
}

TEST(TableOutput, WithoutANameOrWithADashIsStandardOutput) {
  for (const char* name : {"", "-"}) {
    testing::internal::CaptureStdout();
    TableOutput output(name, false);
    EXPECT_FALSE(output.isFile());
    output.Write("id,Z4\n");
    output.Write("1,0.5\n");
    output.Finish();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "id,Z4\n1,0.5\n");
  }
  EXPECT_FALSE(std::filesystem::exists("-"));
}

}  // namespace
}  // namespace orvanel::cli
