// Tests the reader of two columns of numbers: the header, and the place of each row and fault.
#include "files/tables/number_pairs.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_files.h"

namespace orvanel::files {
namespace {

std::vector<NumberPair> Read(const std::string& text) {
  const TemporaryFolder folder;
  Write(folder / "pairs.csv", text);
  return ReadNumberPairs((folder / "pairs.csv").string(), {"a list", "a length and a weight", 3});
}

std::string Fault(const std::string& text) {
  try {
    Read(text);
  } catch (const Error& error) {
    const std::string message = error.what();
    return message.substr(message.find("pairs.csv"));
  }
  return "";
}

TEST(NumberPairs, HaveTheirPlaces) {
  const std::vector<NumberPair> pairs = Read("length,weight\n1.5,-2\n\n 30,0.25\n");
  ASSERT_EQ(pairs.size(), 2U);
  EXPECT_EQ(pairs[0].numbers, (std::array<double, 2>{1.5, -2.0}));
  EXPECT_EQ(pairs[1].numbers, (std::array<double, 2>{30.0, 0.25}));
  EXPECT_EQ(pairs[0].places[1].line, 2U);
  EXPECT_EQ(pairs[0].places[1].column, 5U);
  EXPECT_EQ(pairs[1].places[0].line, 4U);
}

TEST(NumberPairs, FaultsHaveTheirPlaces) {
  EXPECT_EQ(Fault("1,2\n3,red\n").substr(0, 27), "pairs.csv: line 2, column 3");
  EXPECT_EQ(Fault("1,2\nred,3\n").substr(0, 27), "pairs.csv: line 2, column 1");  // a header comes first
  EXPECT_EQ(Fault("1,2\n1,nan\n").substr(0, 27), "pairs.csv: line 2, column 3");
  EXPECT_EQ(Fault("1,2,3\n"), "pairs.csv: line 1, column 1: the row has 3 fields; write two, a length and a weight");
  EXPECT_EQ(Fault("1,2\n1,2\n1,2\n1,2\n"), "pairs.csv: line 4, column 1: a list has at most 3 rows");
  EXPECT_EQ(Fault("length,weight\n"), "pairs.csv: has no numbers; write rows of a length and a weight");
}

}  // namespace
}  // namespace orvanel::files
