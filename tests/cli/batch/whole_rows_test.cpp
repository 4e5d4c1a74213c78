// Tests reading whole and truncated rows.
#include "cli/batch/whole_rows.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "base/error.h"

namespace orvanel::cli {
namespace {

constexpr const char* kHeader = "id,strehl_ratio,error\n";
constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

WholeRows Count(const std::string& text, std::size_t most = kAll) {
  std::istringstream stream(text);
  return ReadWholeRows(stream, kHeader, most, [](std::size_t, const std::string&) {});
}

TEST(WholeRows, EveryCutOfATableLeavesTheRowsBeforeIt) {
  const std::string rows[] = {kHeader, "a,0.5,\n", "\"b\nb\",0.25,\n", "\"c \"\"c\",,\"line 4, column 1: no\"\n"};
  std::string text;
  std::size_t ends[4];
  for (std::size_t i = 0; i < 4; ++i) ends[i] = (text += rows[i]).size();
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    std::size_t expected = 0;
    while (expected < 4 && ends[expected] <= cut) ++expected;
    Fnv1a hash;
    hash.Add(text.substr(0, expected > 0 ? ends[expected - 1] : 0));
    for (const WholeRows& whole : {Count(text.substr(0, cut)), Count(text, cut)}) {
      EXPECT_EQ(whole.rows, expected > 0 ? expected - 1 : 0) << cut;
      EXPECT_EQ(whole.bytes, expected > 0 ? ends[expected - 1] : 0) << cut;
      EXPECT_EQ(whole.errors, expected == 4 ? 1U : 0U) << cut;
      EXPECT_EQ(whole.hash.Text(), hash.Text()) << cut;
    }
  }
}

TEST(WholeRows, AreShownOneByOne) {
  std::istringstream stream(std::string(kHeader) + "a,,no\nb,1,\nc,1,\n");
  std::string seen;
  ReadWholeRows(stream, kHeader, kAll,
                [&seen](std::size_t i, const std::string& row) { seen += std::to_string(i) + ":" + row; });
  EXPECT_EQ(seen, "0:a,,no\n1:b,1,\n2:c,1,\n");
}

TEST(WholeRows, AnotherHeaderIsRefused) { EXPECT_THROW(Count("id,other,error\n"), Error); }

TEST(WholeRows, RowsLongerThanABlockAreRead) {
  const std::string row = std::string(200000, 'x') + ",1,\n";
  EXPECT_EQ(Count(kHeader + row + row).rows, 2U);
}

}  // namespace
}  // namespace orvanel::cli
