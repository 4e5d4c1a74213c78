// Tests the reader of spectra: both columns, the header, and the place of each fault.
#include "files/tables/spectrum.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "tests/support/temporary_files.h"

namespace orvanel::files {
namespace {

std::vector<std::pair<Nanometres, double>> Read(const std::string& text) {
  const TemporaryFolder folder;
  Write(folder / "light.csv", text);
  return ReadSpectrum((folder / "light.csv").string());
}

std::vector<PrimariesRow> ReadThree(const std::string& text) {
  const TemporaryFolder folder;
  Write(folder / "display.csv", text);
  return ReadPrimaries((folder / "display.csv").string());
}

std::string FaultOfThree(const std::string& text) {
  try {
    ReadThree(text);
  } catch (const Error& error) {
    const std::string message = error.what();
    return message.substr(message.find("display.csv"));
  }
  return "";
}

std::string Fault(const std::string& text) {
  try {
    Read(text);
  } catch (const Error& error) {
    const std::string message = error.what();
    return message.substr(message.find("light.csv"));
  }
  return "";
}

TEST(Spectrum, HasWavelengthsAndWeightsInTheOrderOfTheRows) {
  const std::vector<std::pair<Nanometres, double>> expected = {{Nanometres(630.0), 0.25}, {Nanometres(520.5), 1.0}};
  EXPECT_EQ(Read("630,0.25\n520.5,1\n"), expected);
  EXPECT_EQ(Read("wavelength_nm,weight\n630,0.25\n520.5,1\n"), expected);
  EXPECT_EQ(Read("630;0.25\n520.5;1\n"), expected);
}

TEST(Spectrum, FaultsHaveTheirPlace) {
  EXPECT_EQ(Fault("wavelength_nm,weight\n630,red\n").substr(0, 27), "light.csv: line 2, column 5");
  EXPECT_EQ(Fault("200,1\n"), "light.csv: line 1, column 1: the wavelength 200 is outside of 300 to 1200 nm");
  EXPECT_EQ(Fault("500,-1\n"), "light.csv: line 1, column 5: the weight -1 is negative");
  EXPECT_EQ(Fault("500\n"),
            "light.csv: line 1, column 1: the row has 1 fields; write two, a wavelength in nm and its weight");
  EXPECT_EQ(Fault("a,b\n"), "light.csv: has no numbers; write rows of a wavelength in nm and its weight");
  EXPECT_EQ(Fault("500,1\nx,1\n").substr(0, 27), "light.csv: line 2, column 1");
  std::string tooLong = "500,1\n";
  for (int i = 0; i < 1000; ++i) tooLong += "500,1\n";
  EXPECT_EQ(Fault(tooLong), "light.csv: line 1001, column 1: a spectrum has at most 1000 rows");
}

TEST(Spectrum, OfPrimariesHasThreePowersInEachRow) {
  const std::vector<PrimariesRow> rows = ReadThree("nm,red,green,blue\n450,0,0.25,1\n455.5,0.125,2,3\n");
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].wavelength, Nanometres(450.0));
  EXPECT_EQ(rows[0].power, (std::array{0.0, 0.25, 1.0}));
  EXPECT_EQ(rows[1].wavelength, Nanometres(455.5));
  EXPECT_EQ(rows[1].power, (std::array{0.125, 2.0, 3.0}));
}

TEST(Spectrum, FaultsOfPrimariesHaveTheirPlace) {
  EXPECT_EQ(
      FaultOfThree("500,1\n"),
      "display.csv: line 1, column 1: the row has 2 fields; write four, a wavelength in nm and the powers of red, "
      "green and blue");
  EXPECT_EQ(FaultOfThree("500,1,-2,3\n"), "display.csv: line 1, column 7: the power -2 is negative");
  EXPECT_EQ(FaultOfThree("500,1,2,3\n500,1,2,3\n"),
            "display.csv: line 2, column 1: the wavelength 500 is not above that of the row before; sort the rows by "
            "wavelength");
}

}  // namespace
}  // namespace orvanel::files
