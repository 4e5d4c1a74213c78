// Tests the names of lights, and that each replaces the light before it.
#include "cli/quality/named_light.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "tests/support/temporary_files.h"

namespace orvanel::cli {
namespace {

TEST(NamedLight, WhatIsNoNumberAndNoWordIsAFile) {
  for (const char* const light : {"white", "display", "589", " 589.3 ", "5.89e2", "-1"}) {
    EXPECT_FALSE(NamesSpectrumFile(light)) << light;
  }
  for (const char* const light : {"White", "589 nm", "light.csv", "589.csv", "", "-"}) {
    EXPECT_TRUE(NamesSpectrumFile(light)) << light;
  }
}

TEST(NamedLight, IsTheOnlyOne) {
  const TemporaryFolder folder;
  Write(folder / "light.csv", "nm,weight\n500,1\n650,0.5\n");
  PhysicalSettings settings;
  SetLight(settings, "display");
  EXPECT_TRUE(settings.display.has_value());
  EXPECT_GT(settings.light.size(), 2U);
  SetLight(settings, "589.25");
  EXPECT_FALSE(settings.display.has_value());
  ASSERT_EQ(settings.light.size(), 1U);
  EXPECT_EQ(settings.light[0].wavelengthNm, 589.25);
  EXPECT_EQ(settings.light[0].weight, 1.0);
  SetLight(settings, (folder / "light.csv").string());
  ASSERT_EQ(settings.light.size(), 2U);
  EXPECT_EQ(settings.light[1].wavelengthNm, 650.0);
  EXPECT_EQ(settings.light[1].weight, 0.5);
  SetLight(settings, "white");
  EXPECT_EQ(settings.light.size(), physical::WhiteLight().size());
}

TEST(NamedLight, OfAnImpossibleWavelengthLeavesTheLightAsItIs) {
  PhysicalSettings settings;
  for (const char* const light : {"299", "1201", "0", "-589", "no such file.csv"}) {
    EXPECT_THROW(SetLight(settings, light), Error) << light;
  }
  EXPECT_EQ(settings.light.at(0).wavelengthNm, 555.0);
}

}  // namespace
}  // namespace orvanel::cli
