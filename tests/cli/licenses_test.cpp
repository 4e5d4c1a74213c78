// Tests that --licenses prints the terms of the program and of all third-party parts.
#include "cli/licenses.h"

#include <gtest/gtest.h>

#include <string>

namespace orvanel::cli {
namespace {

TEST(Licenses, BeginWithOursAndNameEveryPartByOthers) {
  const std::string text = LicensesText();
  EXPECT_EQ(text.find("MIT License\n\nCopyright (c) 2026 The Orvanel authors\n"), 0U);
  EXPECT_NE(text.find("THIRD-PARTY NOTICES\n"), std::string::npos);
  for (const char* part : {"CLI11", "JSON for Modern C++", "stb", "the DejaVu fonts", "zlib"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
  }
  // Their terms themselves: a sentence of each, as Debian has them.
  EXPECT_NE(text.find("Bitstream Vera"), std::string::npos);
  EXPECT_NE(text.find("Niels Lohmann"), std::string::npos);
  EXPECT_NE(text.find("Sean Barrett"), std::string::npos);
  EXPECT_NE(text.find("University of Cincinnati"), std::string::npos);
  EXPECT_EQ(text.back(), '\n');
}

}  // namespace
}  // namespace orvanel::cli
