// Tests the reader of contrast sensitivities: its values, and the row of each fault.
#include "cli/quality/contrast_table.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "tests/support/temporary_files.h"

namespace orvanel::cli {
namespace {

ContrastSensitivity Read(const std::string& text) {
  const TemporaryFolder folder;
  Write(folder / "csf.csv", text);
  return ReadContrastSensitivity((folder / "csf.csv").string());
}

std::string Fault(const std::string& text) {
  try {
    Read(text);
  } catch (const Error& error) {
    const std::string message = error.what();
    return message.substr(message.find("csf.csv"));
  }
  return "";
}

TEST(ContrastTable, HasTheValuesOfItsRows) {
  const ContrastSensitivity sensitivity = Read("cpd,sensitivity\n2,100\n6,180\n40,2\n");
  EXPECT_EQ(sensitivity.At(2.0), 100.0);
  EXPECT_EQ(sensitivity.At(4.0), 140.0);
  EXPECT_EQ(sensitivity.end(), 40.0);
  EXPECT_EQ(sensitivity.At(40.5), 0.0);
}

TEST(ContrastTable, FaultsHaveTheirRowAndReason) {
  EXPECT_EQ(Fault("2,100\n6,180\n6,2\n"),
            "csf.csv: line 3, column 1: the frequency 6 is not above that of the row before, 6; sort the rows by "
            "frequency");
  EXPECT_EQ(Fault("cpd,s\n-1,100\n6,180\n"),
            "csf.csv: line 2, column 1: the frequency -1 is outside of 0 to 1000 cycles/degree");
  EXPECT_EQ(Fault("2,100\n1001,1\n"),
            "csf.csv: line 2, column 1: the frequency 1001 is outside of 0 to 1000 cycles/degree");
  EXPECT_EQ(Fault("2,100\n6,-180\n"),
            "csf.csv: line 2, column 3: the contrast sensitivity -180 is outside of 0 to 1e+09");
  EXPECT_EQ(Fault("2,100\n"), "csf.csv: has a single frequency; write at least two rows");
  EXPECT_EQ(Fault("2,high\n3,4\n").substr(0, 25), "csf.csv: line 1, column 3");
}

}  // namespace
}  // namespace orvanel::cli
