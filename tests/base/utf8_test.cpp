// Tests that only shortest forms of characters that exist are UTF-8.
#include "base/utf8.h"

#include <gtest/gtest.h>

namespace orvanel {
namespace {

TEST(Utf8, CharactersOfEveryLengthAreDecoded) {
  EXPECT_EQ(FirstCharacter("e").point, U'e');
  EXPECT_EQ(FirstCharacter("\xC3\xA4z").point, 0xe4U);
  EXPECT_EQ(FirstCharacter("\xE5\xB7\xA6").point, 0x5de6U);
  EXPECT_EQ(FirstCharacter("\xF0\x9F\x91\x81").point, 0x1f441U);
  EXPECT_EQ(FirstCharacter("\xF0\x9F\x91\x81 ").bytes, 4U);
}

TEST(Utf8, TextsOfCharactersAreIt) {
  for (const char* const text : {"", "eye 3", "\xC3\xA4 \xE5\xB7\xA6 \xF0\x9F\x91\x81", "\xED\x9F\xBF\xEE\x80\x80",
                                 "\xF4\x8F\xBF\xBF", "\xC2\x80\x7f"}) {
    EXPECT_TRUE(IsUtf8(text)) << text;
    EXPECT_EQ(Utf8Of(text), text);
  }
}

TEST(Utf8, OtherBytesAreNot) {
  for (const char* const text : {"M\xFCller", "\x80", "\xC3", "\xC3(", "\xC1\x81", "\xE0\x9F\xBF", "\xED\xA0\x80",
                                 "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "\xE5\xB7"}) {
    EXPECT_FALSE(IsUtf8(text)) << text;
    EXPECT_TRUE(IsUtf8(Utf8Of(text)));
  }
}

TEST(Utf8, OtherBytesAreEscapedAndTheRestStays) {
  EXPECT_EQ(Utf8Of("M\xFCller, \xC3\xA4\xC3"), "M\\xfcller, \xC3\xA4\\xc3");
  EXPECT_EQ(EscapedByte('\x1b'), "\\x1b");
}

}  // namespace
}  // namespace orvanel
