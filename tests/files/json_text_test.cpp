// Tests which JSON is read and refused, and that the cost of long and deep texts is proportional to their length.
#include "files/json_text.h"

#include <gtest/gtest.h>

#include "base/error.h"

namespace orvanel::files {
namespace {

std::string Reason(const std::string& text) {
  const JsonText json = ReadJson(text);
  return json.fault ? json.fault->reason : "";
}

TEST(JsonText, ValuesAreThoseOfTheText) {
  const JsonText json = ReadJson(R"({"b": [1, -2.5, "x", null, true], "a": {"c": {}}, "d": 18446744073709551615})");
  EXPECT_FALSE(json.fault);
  EXPECT_EQ(json.value.dump(), R"({"b":[1,-2.5,"x",null,true],"a":{"c":{}},"d":18446744073709551615})");
}

TEST(JsonText, KeysOfTheOutermostObjectKnowWhereTheyOpen) {
  const std::string text = R"(  {"a" : 1, "b\"c\\": {"inner": 2}, "\u0064":3, "":4})";
  const JsonText json = ReadJson(text);
  ASSERT_FALSE(json.fault);
  EXPECT_EQ(json.keys,
            (std::vector<std::size_t>{text.find("\"a\""), text.find("\"b"), text.find("\"\\u"), text.find("\"\":")}));
}

TEST(JsonText, NestingHasALimit) {
  const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
  EXPECT_EQ(Reason(nested(kDeepestJson)), "");
  EXPECT_EQ(Reason(nested(kDeepestJson + 1)), "has brackets nested more than 32 deep; remove them");
  const JsonText json = ReadJson(nested(1'000'000));
  ASSERT_TRUE(json.fault);
  EXPECT_EQ(json.fault->byte, kDeepestJson);
  std::string objects;
  for (int i = 0; i < 100'000; ++i) objects += "{\"a\":";
  EXPECT_EQ(Reason(objects), "has brackets nested more than 32 deep; remove them");
}

TEST(JsonText, LevelsThatAreNotKeptAreReadButNotHeld) {
  const JsonText json = ReadJson(R"({"a": [1, [2], {"x": 3}], "b": {"y": 4}, "c": 5})", 1);
  EXPECT_FALSE(json.fault);
  EXPECT_EQ(json.value.dump(), R"({"a":[],"b":{},"c":5})");
  EXPECT_EQ(json.keys.size(), 3U);
}

TEST(JsonText, AKeyGivenTwiceIsRefusedWhereItStandsAgain) {
  const std::string text = R"({"a": {"b": 1, "c": 2, "b": [3]}, "id": "x"})";
  const JsonText json = ReadJson(text);
  ASSERT_TRUE(json.fault);
  EXPECT_EQ(json.fault->reason, "key 'a.b' is given twice; keep one");
  EXPECT_EQ(json.fault->byte, text.rfind("\"b\""));
  EXPECT_EQ(json.value.dump(), R"({"a":{"b":1,"c":2},"id":"x"})");  // what stands behind is there all the same
}

TEST(JsonText, WhatStandsBeforeAFaultIsThere) {
  const JsonText json = ReadJson(R"({"id": "x", "Z4": 1e999, "b": 1})");
  ASSERT_TRUE(json.fault);
  EXPECT_EQ(json.fault->reason, "key 'Z4' holds a number too large to be finite; check its exponent");
  EXPECT_EQ(json.fault->byte, 12U);
  EXPECT_EQ(json.value.dump(), R"({"id":"x"})");
}

TEST(JsonText, MessagesAreShortHoweverLongTheText) {
  EXPECT_LT(Reason("\"" + std::string(1'000'000, 'x')).size(), 300U);
  EXPECT_LT(Reason("{\"" + std::string(1'000'000, 'x') + "\": 1e999}").size(), 300U);
}

// With a search of the text for each key, this would take minutes.
TEST(JsonText, AHundredThousandKeysAreRead) {
  constexpr std::size_t kKeys = 100'000;
  std::string text = "{";
  for (std::size_t i = 0; i < kKeys; ++i) text += (i == 0 ? "\"k\\u0061" : ",\"k\\u0061") + std::to_string(i) + "\":1";
  const JsonText json = ReadJson(text + "}");
  EXPECT_FALSE(json.fault);
  EXPECT_EQ(json.value.size(), kKeys);
  EXPECT_EQ(json.keys.size(), kKeys);
}

TEST(JsonText, MillionsOfKeysAreRefused) {
  std::string text = "{";
  for (std::size_t i = 0; i < 2'000'001; ++i) text += "\"" + std::to_string(i) + "\":1,";
  EXPECT_EQ(Reason(text), "has more than 2 million keys; is this a file of eyes?");
}

TEST(JsonText, OfAValueThereIsOneOrNone) {
  EXPECT_EQ(JsonOf("[1]").value().dump(), "[1]");
  EXPECT_FALSE(JsonOf("[1"));
  EXPECT_FALSE(JsonOf("1e999"));
  EXPECT_FALSE(JsonOf(""));
}

TEST(JsonText, AByteOrderMarkIsDroppedAndUtf16Refused) {
  std::string text = "\xEF\xBB\xBF{}";
  DropByteOrderMark(text);
  EXPECT_EQ(text, "{}");
  for (const char* mark : {"\xFF\xFE{", "\xFE\xFF{"}) {
    text = mark;
    EXPECT_THROW(DropByteOrderMark(text), Error);
  }
}

}  // namespace
}  // namespace orvanel::files
