// Tests the conversion between numbers and text.
#include "base/number_text.h"

#include <gtest/gtest.h>

#include "base/error.h"

namespace orvanel {
namespace {

TEST(NumberText, KeepsTheSignificantDigitsAskedFor) {
  EXPECT_EQ(NumberText(178.4338, 5), "178.43");
  EXPECT_EQ(NumberText(0.0578349, 3), "0.0578");
  EXPECT_EQ(NumberText(6.0, 4), "6");
  EXPECT_EQ(NumberText(-2.5, 3), "-2.5");
}

TEST(NumberText, WritesNoExponentWhereTheDigitsEndBeforeThePoint) {
  EXPECT_EQ(NumberText(99.6, 2), "100");
  EXPECT_EQ(NumberText(100.0, 2), "100");
  EXPECT_EQ(NumberText(1234.4, 3), "1234");
  EXPECT_EQ(NumberText(-35706.2, 4), "-35706");
  EXPECT_EQ(NumberText(999999.7, 6), "1000000");
  EXPECT_EQ(NumberText(0.00996, 2), "0.01");
  EXPECT_EQ(NumberText(2.5e12, 3), "2.5e+12");
  EXPECT_EQ(NumberText(1.25e-7, 3), "1.25e-07");
}

TEST(NumberText, ShortestReadsBackAsTheSameNumber) {
  EXPECT_EQ(ShortestText(0.63), "0.63");
  EXPECT_EQ(ShortestText(1.0), "1");
  EXPECT_EQ(std::stod(ShortestText(1.0 / 3.0)), 1.0 / 3.0);
}

TEST(NumberText, FixedHasThatManyDecimals) {
  EXPECT_EQ(FixedText(-2.254, 2), "-2.25");
  EXPECT_EQ(FixedText(1e300, 0).size(), 301U);
}

TEST(NumberText, ParsesWhatPeopleWrite) {
  EXPECT_EQ(ParseNumber("0.1"), 0.1);
  EXPECT_EQ(ParseNumber("  -1.5e-3 "), -1.5e-3);
  EXPECT_EQ(ParseNumber("+2"), 2.0);
  EXPECT_EQ(ParseNumber(".5"), 0.5);
  EXPECT_EQ(ParseNumber("5."), 5.0);
}

TEST(NumberText, ParsesTheShortestTextToTheSameBits) {
  for (const double number : {0.1, 1.0 / 3.0, 5e-324, 1.7976931348623157e308, -0.0}) {
    EXPECT_EQ(ParseNumber(ShortestText(number)), number);
  }
}

TEST(NumberText, RefusesWhatIsNoFiniteNumber) {
  for (const char* text : {"", "  ", "x", "1x", "0x10", "1 2", "--1", "+-1", "++1", "inf", "nan", "1e999", "1e-999",
                           "0,5", "1.234,5", "1e", "."}) {
    EXPECT_THROW(ParseNumber(text), Error) << text;
  }
  try {
    ParseNumber("0,5");
  } catch (const Error& error) {
    EXPECT_STREQ(error.what(), "'0,5' has a decimal comma; write it with a point, as 0.12");
  }
}

TEST(NumberText, ParsesDecimalCommasWhereTheyAreSaid) {
  EXPECT_EQ(ParseNumber(" -0,125\t", ','), -0.125);
  EXPECT_EQ(ParseNumber("1,2e-1", ','), 0.12);
  EXPECT_EQ(ParseNumber("7", ','), 7.0);
  for (const char* text : {"0.5", "1.234,5", "1,234,5", ",", "", "x"})
    EXPECT_THROW(ParseNumber(text, ','), Error) << text;
  EXPECT_TRUE(HasDecimalComma(" 1.234,5"));
  EXPECT_FALSE(HasDecimalComma("1.5"));
  EXPECT_FALSE(HasDecimalComma("a,b"));
}

TEST(NumberText, WordsAreFoldedWithoutBlanksAround) {
  EXPECT_EQ(Folded(" \tUnit A\t"), "unit a");
  EXPECT_EQ(Trimmed("  "), "");
}

TEST(NumberText, QuotesForATerminal) {
  EXPECT_EQ(Quoted("a\x1b[31m\n"), "'a\\x1b[31m\\x0a'");
  EXPECT_EQ(Quoted(std::string(100, 'x')), "'" + std::string(60, 'x') + "...'");
  // Never half a character: 59 letters and one of two bytes.
  EXPECT_EQ(Quoted(std::string(59, 'x') + "\xC3\xA4" + "y"), "'" + std::string(59, 'x') + "...'");
}

TEST(NumberText, CountsAreWholeNumbersWithinBounds) {
  EXPECT_EQ(ParseCount("20", 2, 20), 20U);
  for (const char* text : {"", "1", "21", "-3", "+3", "2.0", "2x", " 2", "99999999999999999999999"}) {
    EXPECT_THROW(ParseCount(text, 2, 20), Error) << text;
  }
}

}  // namespace
}  // namespace orvanel
