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

}  // namespace
}  // namespace orvanel::files
