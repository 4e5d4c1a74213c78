// Tables of one JSON object a line.
#include "cli/tables/ndjson.h"

#include <gtest/gtest.h>

#include <sstream>

namespace orvanel::cli {
namespace {

std::string Refusal(const std::string& text) {
  std::istringstream stream(text);
  NdjsonReader reader(stream, "t.ndjson");
  Record keys, values;
  try {
    while (reader.Next(keys, values)) {
    }
  } catch (const ErrorAt& error) {
    return error.what();
  }
  return {};
}

TEST(Ndjson, KeysAndValuesComeInTheirOrder) {
  std::istringstream stream("\xEF\xBB\xBF{\"id\": \"a\", \"Z4\": 0.1, \"visit\": 3}\r\n\n  \n{\"Z4\": -1e-3}");
  NdjsonReader reader(stream, "t.ndjson");
  Record keys, values;
  ASSERT_TRUE(reader.Next(keys, values));
  ASSERT_EQ(keys.size(), 3U);
  EXPECT_EQ(keys[0], "id");
  EXPECT_EQ(values[0], "a");
  EXPECT_EQ(keys[1], "Z4");
  EXPECT_EQ(values[1], "0.1");
  EXPECT_EQ(values[2], "3");
  ASSERT_TRUE(reader.Next(keys, values));
  EXPECT_EQ(values[0], "-0.001");
  EXPECT_EQ(values.place(0).line, 4U);
  EXPECT_EQ(values.place(0).column, 2U);
  EXPECT_FALSE(reader.Next(keys, values));
}

TEST(Ndjson, NumbersKeepEveryBit) {
  std::istringstream stream("{\"Z4\": 0.1000000000000000055511151231257827, \"Z5\": 5e-324}\n");
  NdjsonReader reader(stream, "t.ndjson");
  Record keys, values;
  ASSERT_TRUE(reader.Next(keys, values));
  EXPECT_EQ(std::stod(std::string(values[0])), 0.1);
  EXPECT_EQ(values[1], "5e-324");
}

TEST(Ndjson, WhatIsNoRowIsRefusedWhereItStands) {
  EXPECT_EQ(Refusal("{\"a\": 1}\n[1]\n"),
            "t.ndjson: line 2, column 1: must be a JSON object, not array; write one eye a line, in braces");
  EXPECT_EQ(Refusal("{\"a\": 1, \"a\": 2}\n"), "t.ndjson: line 1, column 2: key 'a' is given twice; keep one");
  EXPECT_EQ(Refusal("{\"b\": 1, \"a\": null}\n"),
            "t.ndjson: line 1, column 10: key 'a' must be a number or a string, not null");
  EXPECT_EQ(Refusal("{\"a\": 1e999}\n"),
            "t.ndjson: line 1, column 2: key 'a' is a number too large to be finite; check its exponent");
  EXPECT_TRUE(Refusal("{\"a\": 1\n").starts_with("t.ndjson: line 1, column 8: is not valid JSON: "))
      << Refusal("{\"a\": 1\n");
}

TEST(Ndjson, GoesOnBehindABadLine) {
  std::istringstream stream("{\"a\": 1}\n{oops\n{\"a\": 2}\n");
  NdjsonReader reader(stream, "t.ndjson");
  Record keys, values;
  ASSERT_TRUE(reader.Next(keys, values));
  EXPECT_THROW(reader.Next(keys, values), ErrorAt);
  ASSERT_TRUE(reader.Next(keys, values));
  EXPECT_EQ(values[0], "2");
}

}  // namespace
}  // namespace orvanel::cli
