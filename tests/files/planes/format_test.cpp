// Tests the table of formats.
#include "files/planes/format.h"

#include <gtest/gtest.h>

#include <set>

#include "base/error.h"

namespace orvanel::files {
namespace {

TEST(Format, IsFoundByItsName) {
  EXPECT_EQ(FormatNamed("csv").ending, ".csv");
  EXPECT_TRUE(FormatNamed("png16").greyOnly);
}

TEST(Format, NamesAndEndingsAreTheirOwn) {
  std::set<std::string_view> names, endings;
  for (const Format& format : Formats()) {
    EXPECT_TRUE(names.insert(format.name).second) << format.name;
    EXPECT_TRUE(endings.insert(format.ending).second) << format.ending;
  }
}

TEST(Format, AnUnknownNameIsAnsweredWithThoseThatThereAre) {
  try {
    FormatNamed("bmp");
    FAIL();
  } catch (const Error& error) {
    EXPECT_TRUE(std::string(error.what()).starts_with("'bmp' is not one of png8, svg, npy, csv, png16"))
        << error.what();
  }
}

TEST(Format, WhatIsNotBuiltInSaysSo) {
  for (const Format& format : Formats()) {
    if (format.encode != nullptr) {
      EXPECT_EQ(&FormatNamed(format.name), &format);
      continue;
    }
    try {
      FormatNamed(format.name);
      FAIL() << format.name;
    } catch (const Error& error) {
      EXPECT_NE(std::string(error.what()).find("built without " + std::string(format.library)), std::string::npos);
    }
  }
}

}  // namespace
}  // namespace orvanel::files
