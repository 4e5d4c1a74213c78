// Tests tables with one JSON object in each line.
#include "files/tables/ndjson.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <vector>

namespace orvanel::files {
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

TEST(Ndjson, CountsTheBytesOfItsLinesAndNoneThatWereReadAhead) {
  const std::string first = "{\"Z4\": 0.1}\r\n", longer = "{\"id\": \"" + std::string(10000, 'a') + "\"}\n";
  std::istringstream stream(first + longer + "{\"Z4\": 1}");
  NdjsonReader reader(stream, "t.ndjson");
  Record keys, values;
  ASSERT_TRUE(reader.Next(keys, values));
  EXPECT_EQ(reader.bytesTaken(), first.size());
  ASSERT_TRUE(reader.Next(keys, values));
  EXPECT_EQ(reader.bytesTaken(), first.size() + longer.size());
  ASSERT_TRUE(reader.Next(keys, values));
  EXPECT_EQ(reader.bytesTaken(), first.size() + longer.size() + 9);
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
            "t.ndjson: line 2, column 1: must be a JSON object, not array; write one eye in each line, in braces");
  EXPECT_EQ(Refusal("{\"a\": 1, \"a\": 2}\n"), "t.ndjson: line 1, column 10: key 'a' is given twice; keep one");
  EXPECT_EQ(Refusal("{\"b\": 1, \"a\": null}\n"),
            "t.ndjson: line 1, column 10: key 'a' must be a number or a string, not null");
  EXPECT_EQ(Refusal("{\"a\": 1e999}\n"),
            "t.ndjson: line 1, column 2: key 'a' holds a number too large to be finite; check its exponent");
  EXPECT_TRUE(Refusal("{\"a\": 1\n").starts_with("t.ndjson: line 1, column 8: is not valid JSON: "))
      << Refusal("{\"a\": 1\n");
}

TEST(Ndjson, WhatIsNestedIsRefusedByName) {
  EXPECT_EQ(Refusal("{\"a\": [[1], {}], \"b\": 1}\n"),
            "t.ndjson: line 1, column 2: key 'a' must be a number or a string, not array");
  EXPECT_EQ(Refusal("{\"a\": " + std::string(100'000, '[')),
            "t.ndjson: line 1, column 38: has brackets nested more than 32 deep; remove them");
}

TEST(Ndjson, ColumnsCountCharacters) {
  std::istringstream stream("{\"\xC3\xA4\": \"\xC3\xA4\", \"\\u0062\": 1, \"c\": 2}\n");
  NdjsonReader reader(stream, "t.ndjson");
  Record keys, values;
  ASSERT_TRUE(reader.Next(keys, values));
  EXPECT_EQ(keys[1], "b");
  EXPECT_EQ(keys.place(1).column, 12U);
  EXPECT_EQ(keys.place(2).column, 25U);
}

TEST(Ndjson, ALineAtFaultGivesWhatCanBeRead) {
  const auto read = [](const std::string& text) {
    std::istringstream stream(text);
    NdjsonReader reader(stream, "t.ndjson");
    Record keys, values;
    EXPECT_THROW(reader.Next(keys, values), ErrorAt) << text;
    std::string all;
    for (std::size_t i = 0; i < keys.size(); ++i) {
      all.append(keys[i]).append("=").append(values[i]).append(" ");
    }
    return all;
  };
  EXPECT_EQ(read("{\"id\": \"x\", \"a\": 1, \"a\": 2, \"b\": 3}"), "id=x a=1 b=3 ");
  EXPECT_EQ(read("{\"a\": null, \"id\": \"x\"}"), "id=x ");
  EXPECT_EQ(read("{\"a\": [1], \"id\": \"x\"}"), "id=x ");
  EXPECT_EQ(read("{\"id\": \"x\", \"a\": 1e999}"), "id=x ");
  EXPECT_EQ(read("{\"id\": \"x\", oops"), "id=x ");
}

// With a search of the line for each key, this would take minutes.
TEST(Ndjson, EightyThousandKeysAreRead) {
  constexpr std::size_t kKeys = 80'000;
  std::string line = "{\"id\":0";
  for (std::size_t i = 0; i < kKeys; ++i) line += ",\"k" + std::to_string(i) + "\":1";
  std::istringstream stream(line + "}\n" + line + "}\n");
  NdjsonReader reader(stream, "t.ndjson");
  Record keys, values;
  for (int row = 0; row < 2; ++row) {
    ASSERT_TRUE(reader.Next(keys, values));
    EXPECT_EQ(keys.size(), kKeys + 1);
    EXPECT_EQ(keys.place(kKeys).column, line.rfind(",\"k") + 2);
  }
}

// A stream that counts what is taken of it: blanks without end, or up to a line feed.
class Blanks : public std::streambuf {
 public:
  explicit Blanks(std::size_t before) : left_(before) {}
  std::size_t taken() const { return taken_; }

 protected:
  int_type underflow() override {
    if (left_ == 0 && isDone_) return traits_type::eof();
    const std::size_t count = std::min(left_, block_.size() - 1);
    std::fill(block_.begin(), block_.end(), ' ');
    left_ -= count;
    std::size_t size = count;
    if (left_ == 0) {
      block_[size++] = '\n';
      isDone_ = true;
    }
    taken_ += size;
    setg(block_.data(), block_.data(), block_.data() + size);
    return traits_type::to_int_type(block_[0]);
  }

 private:
  std::size_t left_, taken_ = 0;
  bool isDone_ = false;
  std::vector<char> block_ = std::vector<char>(1 << 16);
};

TEST(Ndjson, OfALineThatIsTooLongNoMoreIsReadThanItsLimit) {
  constexpr std::size_t kLimit = std::size_t{64} << 20;
  Blanks blanks(2 * kLimit);
  std::istream stream(&blanks);
  NdjsonReader reader(stream, "t.ndjson");
  Record keys, values;
  try {
    reader.Next(keys, values);
    FAIL();
  } catch (const ErrorAt& error) {
    EXPECT_EQ(error.reason, "the line is longer than 64 MiB; is this a table with one object in each line?");
  }
  EXPECT_LE(blanks.taken(), kLimit + (1 << 17));
  EXPECT_FALSE(reader.Next(keys, values));  // the rest of it is passed over
  EXPECT_EQ(blanks.taken(), 2 * kLimit + 1);
}

TEST(Ndjson, LinesOfEveryLengthAreReadWhole) {
  std::string text;
  for (std::size_t length = 4000; length < 4200; ++length) text += "{\"a\":\"" + std::string(length, 'x') + "\"}\n";
  std::istringstream stream(text);
  NdjsonReader reader(stream, "t.ndjson");
  Record keys, values;
  for (std::size_t length = 4000; length < 4200; ++length) {
    ASSERT_TRUE(reader.Next(keys, values));
    EXPECT_EQ(values[0].size(), length);
  }
  EXPECT_FALSE(reader.Next(keys, values));
}

TEST(Ndjson, Utf16IsRefused) {
  EXPECT_EQ(Refusal("\xFF\xFE{\"a\": 1}\n"), "t.ndjson: line 1, column 1: the file is UTF-16; save it as UTF-8");
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
}  // namespace orvanel::files
