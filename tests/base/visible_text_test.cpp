// Tests that control characters become visible, and that other text stays unchanged.
#include "base/visible_text.h"

#include <gtest/gtest.h>

namespace orvanel {
namespace {

TEST(VisibleText, LeavesPlainTextOfAllScripts) {
  const std::string text = "eye 3, r\\x1b\xC3\xA4 \xE5\xB7\xA6\xE7\x9C\xBC \xF0\x9F\x91\x81 \xD8\xB9\xD9\x8A\xD9\x86";
  EXPECT_EQ(VisibleText(text), text);
  EXPECT_EQ(VisibleText(""), "");
}

TEST(VisibleText, ShowsEveryControlCharacterOfOneByte) {
  for (int c = 0; c < 0x80; ++c) {
    const std::string text(1, static_cast<char>(c));
    char escaped[8];
    std::snprintf(escaped, sizeof escaped, "\\x%02x", static_cast<unsigned>(c));
    EXPECT_EQ(VisibleText("a" + text + "b"), "a" + (c < 0x20 || c == 0x7f ? escaped : text) + "b");
  }
  EXPECT_EQ(VisibleText("\x1b]0;title\a"), "\\x1b]0;title\\x07");
}

TEST(VisibleText, ShowsTheControlCharactersOfTwoBytes) {
  EXPECT_EQ(VisibleText("a\xC2\x80\xC2\x9B"
                        "31m\xC2\x9F\xC2\xA0"),
            "a\\u0080\\u009b31m\\u009f\xC2\xA0");
}

TEST(VisibleText, ShowsWhatChangesTheDirectionOfWriting) {
  const struct {
    const char *text, *visible;
  } kCases[] = {{"\xD8\x9C", "\\u061c"},     {"\xE2\x80\x8E", "\\u200e"}, {"\xE2\x80\x8F", "\\u200f"},
                {"\xE2\x80\xAA", "\\u202a"}, {"\xE2\x80\xAB", "\\u202b"}, {"\xE2\x80\xAC", "\\u202c"},
                {"\xE2\x80\xAD", "\\u202d"}, {"\xE2\x80\xAE", "\\u202e"}, {"\xE2\x81\xA6", "\\u2066"},
                {"\xE2\x81\xA7", "\\u2067"}, {"\xE2\x81\xA8", "\\u2068"}, {"\xE2\x81\xA9", "\\u2069"},
                {"\xE2\x80\xA8", "\\u2028"}, {"\xE2\x80\xA9", "\\u2029"}};
  for (const auto& [text, visible] : kCases) EXPECT_EQ(VisibleText(text), visible);
  EXPECT_EQ(VisibleText("\xE2\x80\xAF\xE2\x81\xA5\xE2\x80\xA7"), "\xE2\x80\xAF\xE2\x81\xA5\xE2\x80\xA7");  // neighbours
}

TEST(VisibleText, ShowsTheBytesOfWhatIsNoUtf8) {
  EXPECT_EQ(VisibleText("\x9b"
                        "31m"),
            "\\x9b31m");                               // C1 as a byte
  EXPECT_EQ(VisibleText("\xE4.json"), "\\xe4.json");   // Latin-1
  EXPECT_EQ(VisibleText("a\xE2\x80"), "a\\xe2\\x80");  // cut off
  EXPECT_EQ(VisibleText("\xC0\x9B"), "\\xc0\\x9b");    // ESC and others, longer than they need be
  EXPECT_EQ(VisibleText("\xE0\x80\x9B"), "\\xe0\\x80\\x9b");
  EXPECT_EQ(VisibleText("\xF0\x80\x80\x9B"), "\\xf0\\x80\\x80\\x9b");
  EXPECT_EQ(VisibleText("\xED\xA0\x80"), "\\xed\\xa0\\x80");  // half of a pair of UTF-16
  EXPECT_EQ(VisibleText("\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");
  EXPECT_EQ(VisibleText("\xFF\xFE"), "\\xff\\xfe");
}

TEST(VisibleText, KeepsLinesWhereAsked) {
  EXPECT_EQ(VisibleText("a\nb\r\n"), "a\\x0ab\\x0d\\x0a");
  EXPECT_EQ(VisibleLines("a\nb\r\n\x1b"), "a\nb\\x0d\n\\x1b");
}

}  // namespace
}  // namespace orvanel
