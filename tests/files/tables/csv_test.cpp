// Tests the CSV reader: RFC 4180, the variants of spreadsheets, and the places of errors.
#include "files/tables/csv.h"

#include <gtest/gtest.h>

#include <sstream>

namespace orvanel::files {
namespace {

using Rows = std::vector<std::vector<std::string>>;

Rows RowsOf(const std::string& text) {
  std::istringstream stream(text);
  CsvReader reader(stream, "t.csv");
  Rows rows;
  for (Record record; reader.Next(record);) {
    rows.emplace_back();
    for (std::size_t i = 0; i < record.size(); ++i) rows.back().emplace_back(record[i]);
  }
  return rows;
}

std::string Refusal(const std::string& text) {
  try {
    RowsOf(text);
  } catch (const ErrorAt& error) {
    return error.what();
  }
  return {};
}

const Rows kPlain = {{"id", "Z4"}, {"a", "0.5"}, {"b", "-1"}};

TEST(Csv, CountsTheBytesOfItsRowsAndNoneThatWereReadAhead) {
  std::istringstream stream("\xEF\xBB\xBFid,Z4\na,0.5\r\n\"b\",-1");
  CsvReader reader(stream, "t.csv");
  EXPECT_EQ(reader.bytesTaken(), 0U);
  Record record;
  for (const std::uint64_t bytes : {9U, 16U, 22U}) {
    ASSERT_TRUE(reader.Next(record));
    EXPECT_EQ(reader.bytesTaken(), bytes);
  }
}

TEST(Csv, LinesEndWithEitherLineEndOrTheFile) {
  EXPECT_EQ(RowsOf("id,Z4\na,0.5\nb,-1\n"), kPlain);
  EXPECT_EQ(RowsOf("id,Z4\r\na,0.5\r\nb,-1\r\n"), kPlain);
  EXPECT_EQ(RowsOf("id,Z4\na,0.5\r\nb,-1"), kPlain);
  EXPECT_EQ(RowsOf("id,Z4\na,0.5\nb,-1\r"), kPlain);
}

TEST(Csv, AByteOrderMarkIsNotPartOfTheFirstName) { EXPECT_EQ(RowsOf("\xEF\xBB\xBFid,Z4\na,0.5\nb,-1\n"), kPlain); }

TEST(Csv, SemicolonsAndTabulatorsSeparateToo) {
  EXPECT_EQ(RowsOf("id;Z4\na;0.5\nb;-1\n"), kPlain);
  EXPECT_EQ(RowsOf("id\tZ4\na\t0.5\nb\t-1\n"), kPlain);
  EXPECT_EQ(RowsOf("id;Z(2,0)\na;0.5\n"), (Rows{{"id", "Z(2,0)"}, {"a", "0.5"}}));
  EXPECT_EQ(RowsOf("\"a,b\";c\n1;2\n"), (Rows{{"a,b", "c"}, {"1", "2"}}));
}

TEST(Csv, ASemicolonInALaterRowIsText) { EXPECT_EQ(RowsOf("id,Z4\na;b,0.5\n"), (Rows{{"id", "Z4"}, {"a;b", "0.5"}})); }

TEST(Csv, QuotesHoldSeparatorsQuotesAndLineBreaks) {
  EXPECT_EQ(RowsOf("id,note\n\"a,b\",\"say \"\"no\"\"\"\n\"x\r\ny\",\"\"\n"),
            (Rows{{"id", "note"}, {"a,b", "say \"no\""}, {"x\r\ny", ""}}));
}

TEST(Csv, EmptyFieldsAreKept) {
  EXPECT_EQ(RowsOf("a,b,c\n,,1\n1,,\n"), (Rows{{"a", "b", "c"}, {"", "", "1"}, {"1", "", ""}}));
}

TEST(Csv, EmptyRowsAreSkipped) {
  EXPECT_EQ(RowsOf("\n\r\nid,Z4\n\na,0.5\r\n\r\n,\n\nb,-1\n\n\n"), kPlain);
  EXPECT_EQ(RowsOf(""), Rows{});
  EXPECT_EQ(RowsOf("\n\n"), Rows{});
}

TEST(Csv, BlanksBelongToTheText) { EXPECT_EQ(RowsOf("a, b\n 1,2 \n"), (Rows{{"a", " b"}, {" 1", "2 "}})); }

TEST(Csv, BytesOfOtherAlphabetsPassUnchanged) {
  EXPECT_EQ(RowsOf("n\xC3\xA4me,Z4\n\xE4,1\n"), (Rows{{"n\xC3\xA4me", "Z4"}, {"\xE4", "1"}}));
}

TEST(Csv, AMillionColumnsAreRead) {
  constexpr std::size_t kColumns = 1'000'000;
  std::string text;
  for (const char* beginning : {"c", ""}) {
    for (std::size_t i = 0; i < kColumns; ++i) {
      text.append(beginning).append(std::to_string(i)).append(i + 1 < kColumns ? "," : "\n");
    }
  }
  std::istringstream stream(text);
  CsvReader reader(stream, "t.csv");
  Record record;
  ASSERT_TRUE(reader.Next(record));
  EXPECT_EQ(record.size(), kColumns);
  ASSERT_TRUE(reader.Next(record));
  ASSERT_EQ(record.size(), kColumns);
  EXPECT_EQ(record[654'321], "654321");
  EXPECT_FALSE(reader.Next(record));
}

TEST(Csv, FieldsKnowTheirPlaceInCharacters) {
  std::istringstream stream("n\xC3\xA4me,Z4\n\"a\nb\",\xC3\xA4\xC3\xA4\xC3\xA4,x\n");
  CsvReader reader(stream, "t.csv");
  Record record;
  ASSERT_TRUE(reader.Next(record));
  EXPECT_EQ(record.place(1).column, 6U);
  ASSERT_TRUE(reader.Next(record));
  EXPECT_EQ(record.line(), 2U);
  EXPECT_EQ(record.place(1).line, 3U);
  EXPECT_EQ(record.place(1).column, 4U);
  EXPECT_EQ(record.place(2).column, 8U);
}

TEST(Csv, WhatIsNotWellFormedIsRefusedWhereItStands) {
  EXPECT_EQ(
      Refusal("id,Z4\na,\"0.5\nb,1\n"),
      "t.csv: line 2, column 3: the quotes that open here are never closed; close them, or double those that belong "
      "to the text");
  EXPECT_EQ(Refusal("id,Z4\na,\"0.5\"x\n"),
            "t.csv: line 2, column 8: text follows closing quotes; double the quotes that belong to the text");
  EXPECT_EQ(
      Refusal("id,Z4\n5\",1\n"),
      "t.csv: line 2, column 2: a quote is inside a field; put the whole field in quotes and double those inside");
  EXPECT_EQ(Refusal("id,Z4\ra,1\r"),
            "t.csv: line 1, column 6: a carriage return without line feed; save the table with line ends LF or CRLF");
  EXPECT_EQ(Refusal(std::string("id,Z4\na\0b,1\n", 12)),
            "t.csv: line 2, column 2: holds a byte of value 0; save the table as UTF-8 text");
  EXPECT_EQ(Refusal("\xFF\xFEi\0d\0"), "t.csv: line 1, column 1: the file is UTF-16; save it as \"CSV UTF-8\"");
  EXPECT_EQ(
      Refusal("id,Z4;Z5\n"),
      "t.csv: line 1, column 1: the columns may be separated by commas or by semicolons; keep one of the two, and "
      "put names that contain the other in quotes");
}

TEST(Csv, PlacesAndTextsOutliveEveryBlockThatIsRead) {
  constexpr std::size_t kRows = 6000;  // some blocks of 64 KiB
  std::string text = "\xEF\xBB\xBFid;note\n";
  for (std::size_t i = 0; i < kRows; ++i) {
    text += std::string(i % 7, 'x') + "\xC3\xA4;\"" + std::to_string(i) + "\n" + std::string(i % 31, 'y') + "\"\n";
  }
  std::istringstream stream(text);
  CsvReader reader(stream, "t.csv");
  Record record;
  ASSERT_TRUE(reader.Next(record));
  for (std::size_t i = 0; i < kRows; ++i) {
    ASSERT_TRUE(reader.Next(record));
    ASSERT_EQ(record.size(), 2U);
    ASSERT_EQ(record[1], std::to_string(i) + "\n" + std::string(i % 31, 'y'));
    ASSERT_EQ(record.line(), 2 + 2 * i);
    ASSERT_EQ(record.place(1).column, i % 7 + 3);
  }
  EXPECT_FALSE(reader.Next(record));
}

TEST(Csv, TheSeparatorMayStandBehindTheFirstBlock) {
  for (const char* beginning : {"", "\xEF\xBB\xBF"}) {
    const std::string name = "a" + std::string(70'000, 'x') + "(1,2)";
    const Rows rows = RowsOf(beginning + name + ";b" + std::string(70'000, 'y') + "\n1;2\n");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].at(0), name);
    EXPECT_EQ(rows[1], (std::vector<std::string>{"1", "2"}));
  }
}

TEST(Csv, ABracketThatOnlyClosesOpensNone) {
  EXPECT_EQ(RowsOf("1) id;Z(2,0)\na;0.5\n"), (Rows{{"1) id", "Z(2,0)"}, {"a", "0.5"}}));
  EXPECT_EQ(RowsOf("1] id;c[2,0]\na;0.5\n"), (Rows{{"1] id", "c[2,0]"}, {"a", "0.5"}}));
}

TEST(Csv, BlanksAtEitherEndAreKeptByQuotes) {
  EXPECT_EQ(CsvField("blank "), "\"blank \"");
  EXPECT_EQ(CsvField(" blank"), "\" blank\"");
  EXPECT_EQ(CsvField("b lank"), "b lank");
}

TEST(Csv, WithDecimalCommasOnlyQuotesLetCommasSeparate) {
  const auto read = [](const std::string& text) {
    std::istringstream stream(text);
    CsvReader reader(stream, "t.csv", true);
    Rows rows;
    for (Record record; reader.Next(record);) {
      rows.emplace_back();
      for (std::size_t i = 0; i < record.size(); ++i) rows.back().emplace_back(record[i]);
    }
    return rows;
  };
  const Rows rows = {{"id", "Z4"}, {"a", "0,5"}};
  EXPECT_EQ(read("id;Z4\na;0,5\n"), rows);
  EXPECT_EQ(read("id\tZ4\na\t0,5\n"), rows);
  EXPECT_EQ(read("\"id\",\"Z4\"\n\"a\",\"0,5\"\n"), rows);
  EXPECT_EQ(read("id, of visit;Z4\na;0,5\n"), (Rows{{"id, of visit", "Z4"}, {"a", "0,5"}}));
  for (const char* text : {"id,Z4\na,\"0,5\"\n", "\"id\",Z4\n", "id,\"Z4\"\r\n"}) {
    try {
      read(text);
      ADD_FAILURE() << text;
    } catch (const ErrorAt& error) {
      EXPECT_EQ(error.reason,
                "commas separate the columns, so they cannot be decimal commas; save the table with semicolons or "
                "tabulators, or with every field in quotes");
    }
  }
}

// Fields without end, of which it counts those that are taken.
class Fields : public std::streambuf {
 public:
  explicit Fields(char c) : block_(1 << 16, c) {}
  std::size_t taken() const { return taken_; }

 protected:
  int_type underflow() override {
    taken_ += block_.size();
    setg(block_.data(), block_.data(), block_.data() + block_.size());
    return traits_type::to_int_type(block_[0]);
  }

 private:
  std::string block_;
  std::size_t taken_ = 0;
};

TEST(Csv, OfARowWithoutEndNoMoreIsReadThanItsLimit) {
  constexpr std::size_t kLimit = std::size_t{64} << 20;
  for (const char c : {',', 'x', '\0'}) {
    Fields fields(c);
    std::istream stream(&fields);
    CsvReader reader(stream, "t.csv");
    Record record;
    EXPECT_THROW(reader.Next(record), ErrorAt) << static_cast<int>(c);
    EXPECT_LE(fields.taken(), kLimit + (1 << 18)) << static_cast<int>(c);
  }
}

TEST(Csv, MillionsOfColumnsAreRefused) {
  EXPECT_EQ(Refusal("a" + std::string(2'000'000, ',') + "\n"),
            "t.csv: line 1, column 2000001: the row has more than 2 million fields; is this a table?");
}

TEST(Csv, GoesOnBehindABadRow) {
  std::istringstream stream("id,Z4\na\"b,1\nc,2\n");
  CsvReader reader(stream, "t.csv");
  Record record;
  ASSERT_TRUE(reader.Next(record));
  EXPECT_THROW(reader.Next(record), ErrorAt);
  ASSERT_TRUE(reader.Next(record));
  EXPECT_EQ(record[0], "c");
  EXPECT_EQ(record.line(), 3U);
}

TEST(Csv, FieldsAreReadAsTheyAreWritten) {
  for (const char* text : {"plain", "", "a,b", "a;b", "say \"no\"", "two\nlines", " blank", "tab\t", "\""}) {
    const Rows rows = RowsOf("x,y\n" + CsvField(text) + ",end\n");
    ASSERT_EQ(rows.size(), 2U) << text;
    EXPECT_EQ(rows[1], (std::vector<std::string>{text, "end"}));
  }
  EXPECT_EQ(CsvField("plain"), "plain");
}

}  // namespace
}  // namespace orvanel::files
