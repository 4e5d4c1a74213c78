// Rows, torn and whole.
#include "cli/batch/whole_rows.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "cli/error.h"

namespace orvanel::cli {
namespace {

constexpr const char* kHeader = "id,strehl_ratio,error\n";
constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

WholeRows Count(const std::string& text, std::size_t most = kAll) {
  std::istringstream stream(text);
  return CountWholeRows(stream, kHeader, most);
}

TEST(WholeRows, EveryCutOfATableLeavesTheRowsBeforeIt) {
  const std::string rows[] = {kHeader, "a,0.5,\n", "\"b\nb\",0.25,\n", "\"c \"\"c\",,\"line 4, column 1: no\"\n"};
  std::string text;
  std::size_t ends[4];
  for (std::size_t i = 0; i < 4; ++i) ends[i] = (text += rows[i]).size();
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    const WholeRows whole = Count(text.substr(0, cut));
    std::size_t expected = 0;
    while (expected < 4 && ends[expected] <= cut) ++expected;
    EXPECT_EQ(whole.headerIsWhole, expected > 0) << cut;
    EXPECT_EQ(whole.rows, expected > 0 ? expected - 1 : 0) << cut;
    EXPECT_EQ(whole.bytes, expected > 0 ? ends[expected - 1] : 0) << cut;
    EXPECT_EQ(whole.errors, expected == 4 ? 1U : 0U) << cut;
  }
}

TEST(WholeRows, NoMoreAreCountedThanAskedFor) {
  const WholeRows whole = Count(std::string(kHeader) + "a,,no\nb,1,\nc,1,\n", 1);
  EXPECT_EQ(whole.rows, 1U);
  EXPECT_EQ(whole.errors, 1U);
}

TEST(WholeRows, BytesOfValueZeroEndThem) {
  EXPECT_EQ(Count(std::string(kHeader) + "a,1,\n" + std::string(10, '\0') + ",1,\nb,1,\n").rows, 1U);
}

TEST(WholeRows, AnotherHeaderIsRefused) {
  std::istringstream stream("id,other,error\n");
  EXPECT_THROW(CountWholeRows(stream, kHeader, kAll), Error);
}

TEST(WholeRows, RowsLongerThanABlockAreRead) {
  const std::string row = std::string(200000, 'x') + ",1,\n";
  EXPECT_EQ(Count(kHeader + row + row).rows, 2U);
}

}  // namespace
}  // namespace orvanel::cli
