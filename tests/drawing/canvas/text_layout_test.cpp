// Tests that lines keep their width without losing text, and that missing glyphs are found.
#include "drawing/canvas/text_layout.h"

#include <gtest/gtest.h>

#include "drawing/canvas/font.h"

namespace orvanel::drawing {
namespace {

const TextStyle kStyle{20.0, kInk};

std::string Joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "" : " ") + line;
  return text;
}

TEST(TextLayout, LinesKeepToTheWidthAndHaveEveryWord) {
  const std::string text =
      "In the clinic, the hour of the clearest line of a dial, times 30, is the axis; \u00e9t\u00e9.";
  for (const double width : {90.0, 200.0, 333.0, 5000.0}) {
    const std::vector<std::string> lines = Wrapped(text, kStyle, width, 100);
    for (const std::string& line : lines) EXPECT_LE(TextWidth(line, kStyle), width) << line;
    EXPECT_EQ(Joined(lines), text);
  }
  EXPECT_EQ(Wrapped(text, kStyle, 5000.0, 100).size(), 1U);
}

TEST(TextLayout, AWordThatIsTooWideIsBrokenBetweenCharacters) {
  std::string word, joined;
  for (int i = 0; i < 60; ++i) word += "\u00c4";
  for (const std::string& line : Wrapped("one " + word, kStyle, 130.0, 100)) {
    EXPECT_LE(TextWidth(line, kStyle), 130.0);
    EXPECT_TRUE(IsDrawable(line)) << "half a character in " << line;
    joined += line;
  }
  EXPECT_EQ(joined, "one" + word);
  EXPECT_EQ(Wrapped("WW", kStyle, 1.0, 100), (std::vector<std::string>{"W", "W"}));
}

TEST(TextLayout, TooManyLinesEndInAnEllipsis) {
  for (const std::string& text : {std::string(1000000, 'W'), std::string(1000, 'i') + " end"}) {
    const std::vector<std::string> lines = Wrapped(text, kStyle, 300.0, 2);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_TRUE(lines[1].ends_with("\u2026"));
    for (const std::string& line : lines) EXPECT_LE(TextWidth(line, kStyle), 300.0);
    EXPECT_GT(TextWidth(lines[1], kStyle), 250.0);
  }
}

TEST(TextLayout, AFittedStyleIsSmallerOnlyWhereItHasToBe) {
  EXPECT_EQ(Fitted("short", kStyle, 300.0).size, 20.0);
  const std::string text(50, 'm');
  const TextStyle fitted = Fitted(text, kStyle, 300.0);
  EXPECT_NEAR(TextWidth(text, fitted), 300.0, 0.01);
}

TEST(TextLayout, KnowsWhatTheTypefaceCanDraw) {
  for (const char* name :
       {"Gr\u00e4fin Zo\u00eb \u0141\u0119ska", "\u0391\u03bd\u03bd\u03b1", "\u0418\u0432\u0430\u043d", "Nguy\u1ec5n",
        "\u0531\u0580\u0561", "No. 7 \u2013 \u00bd\u2033", ""}) {
    EXPECT_TRUE(IsDrawable(name)) << name;
  }
  for (const char* name :
       {"\u5c71\u7530\u592a\u90ce", "Kim \uae40", "Ann \U0001f441", "\u0645\u062d\u0645\u062f", "\u05d3\u05d5\u05d3",
        "\u0930\u093e\u092e", "\u0e2a\u0e21", "Zoe\u0308", "a\u202eb", "a\u200db", "a\nb", "a\x1b[1m", "Zo\xeb", "\xc3",
        "\xff", "x\x80", "\xed\xa0\x80", "\ufffd"}) {
    EXPECT_FALSE(IsDrawable(name)) << name;
  }
}

}  // namespace
}  // namespace orvanel::drawing
