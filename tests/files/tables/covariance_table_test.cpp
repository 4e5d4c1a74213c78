// Tests reading covariance tables.
#include "files/tables/covariance_table.h"

#include <gtest/gtest.h>

#include <sstream>

#include "base/error.h"

namespace orvanel::files {
namespace {

CovarianceTable TableOf(const std::string& text, std::optional<IndexScheme> scheme = IndexScheme::kNoll) {
  std::istringstream stream(text);
  return ReadCovariance(stream, "cov.csv", scheme);
}

std::string Refusal(const std::string& text) {
  try {
    TableOf(text);
  } catch (const Error& error) {
    return error.what();
  }
  return "accepted";
}

TEST(CovarianceTable, IsReadWithAndWithoutLabels) {
  for (const char* text : {"Z4,\"Z(3,-1)\"\n1,0.25\n0.25,2\n", "term;Z4;Z(3,-1)\r\nZ4;1;0.25\r\nZ(3,-1);0.25;2\r\n"}) {
    const CovarianceTable table = TableOf(text);
    EXPECT_EQ(table.terms, (std::vector<std::size_t>{4, 7}));
    EXPECT_EQ(table.matrix, (std::vector<double>{1, 0.25, 0.25, 2}));
  }
}

TEST(CovarianceTable, NumbersFollowTheOrder) { EXPECT_EQ(TableOf("Z5\n1\n").terms, std::vector<std::size_t>{3}); }

TEST(CovarianceTable, MayStateTheReferenceWavelength) {
  EXPECT_EQ(TableOf("Z4\n1\n").reference, std::nullopt);
  EXPECT_EQ(TableOf("reference_wavelength_nm,Z4\n,1\n").reference, std::nullopt);
  for (const char* text : {"t,Z4, Reference_Wavelength_nm ,Z5\nZ4,1,850,0.5\nZ5,0.5,,2\n",
                           "reference_wavelength_nm,Z4,Z5\n850,1,0.5\n850,0.5,2\n",
                           "Z4,Z5,reference_wavelength_nm\n1,0.5,\n0.5,2,850\n"}) {
    const CovarianceTable table = TableOf(text);
    EXPECT_EQ(table.reference, Nanometres(850.0));
    EXPECT_EQ(table.names, (std::vector<std::string>{"Z4", "Z5"}));
    EXPECT_EQ(table.matrix, (std::vector<double>{1, 0.5, 0.5, 2}));
  }
  EXPECT_EQ(
      Refusal("Z4,Z5,reference_wavelength_nm\n1,0,555\n0,1,850\n"),
      "cov.csv: line 3, column 5: reference_wavelength_nm is 850 in this row, which contradicts a row above, where "
      "it is 555; state it once");
  EXPECT_EQ(Refusal("Z4,reference_wavelength_nm\n1,0.85\n"),
            "cov.csv: line 2, column 3: reference_wavelength_nm is 0.85; it is from 300 to 1200 nm. Write it in "
            "nanometres, such as 555");
  EXPECT_EQ(Refusal("Z4,reference_wavelength_nm\n1\n"),
            "cov.csv: line 2, column 1: the row has 1 fields, but the header has 2");
  EXPECT_EQ(Refusal("reference_wavelength_nm\n850\n"),
            "cov.csv: line 1, column 1: no column names a coefficient; it is like Z4, Z(2,0) or c[2,-2]");
  EXPECT_NE(
      Refusal("Z4,reference_wavelength_nm,reference_wavelength_nm\n1,850,850\n").find("is not a name of a coefficient"),
      std::string::npos);
}

TEST(CovarianceTable, TellsWhatIsWrong) {
  EXPECT_EQ(Refusal("Z4,Z4\n1,0\n0,1\n"), "cov.csv: line 1, column 4: the term Z(2,0) has a column already; keep one");
  EXPECT_EQ(Refusal("Z4,Z5\n1,0\n"), "cov.csv: has 1 rows below its 2 names; a covariance must be square");
  EXPECT_EQ(Refusal("Z4\n1\n2\n"),
            "cov.csv: line 3, column 1: the matrix has a row for each column already; a covariance must be square");
  EXPECT_EQ(Refusal("t,Z4,Z5\nZ5,1,0\nZ4,0,1\n"),
            "cov.csv: line 2, column 1: the row is labelled 'Z5', but 'Z4' is expected; rows must have the order of "
            "the columns");
  EXPECT_EQ(Refusal("Z4\nnan\n"), "cov.csv: line 2, column 1: column 'Z4': 'nan' is not finite; give a number");
  EXPECT_EQ(Refusal("Z4,Z5\n1\n"), "cov.csv: line 2, column 1: the row has 1 fields, but the header has 2");
  EXPECT_NE(Refusal("Z4,foo\n1,0\n0,1\n").find("'foo' is not a name of a coefficient"), std::string::npos);
  EXPECT_NE(Refusal("").find("the table is empty"), std::string::npos);
}

}  // namespace
}  // namespace orvanel::files
