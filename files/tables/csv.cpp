// Parses CSV one character at a time.
#include "files/tables/csv.h"

#include <utility>

namespace orvanel::files {
namespace {

constexpr int kEnd = -1;
constexpr std::size_t kBlock = 1 << 16;
constexpr std::size_t kLongestRow = 1 << 26;    // bytes; a million columns have a quarter of it
constexpr std::size_t kMaxColumns = 2'000'000;  // each costs some 200 bytes

const char* NameOf(char separator) {
  return separator == ',' ? "commas" : separator == ';' ? "semicolons" : "tabulators";
}

}  // namespace

CsvReader::CsvReader(std::istream& stream, std::string file, bool decimalComma)
    : stream_(stream), file_(std::move(file)), decimalComma_(decimalComma) {}

// Appends a block to the bytes that are not read yet.
bool CsvReader::Fill() {
  buffer_.erase(0, next_);
  next_ = 0;
  const std::size_t kept = buffer_.size();
  buffer_.resize(kept + kBlock);
  stream_.read(buffer_.data() + kept, kBlock);
  buffer_.resize(kept + static_cast<std::size_t>(stream_.gcount()));
  bytesRead_ += buffer_.size() - kept;
  if (stream_.bad()) throw Error(file_ + ": cannot be read to its end");
  return buffer_.size() > kept;
}

int CsvReader::Peek() {
  if (next_ == buffer_.size() && !Fill()) return kEnd;
  return static_cast<unsigned char>(buffer_[next_]);
}

int CsvReader::Take() {
  const int c = Peek();
  if (c == kEnd) return c;
  ++next_;
  if (c == '\n') {
    place_ = {place_.line + 1, 1};
  } else if ((c & 0xc0) != 0x80) {  // the first byte of a character
    ++place_.column;
  }
  return c;
}

void CsvReader::Refuse(Place place, const std::string& reason) {
  isWithinRow_ = true;
  throw ErrorAt(file_, place, reason);
}

void CsvReader::SkipMark() {
  while (buffer_.size() < 3 && Fill()) {
  }
  const std::string_view start(buffer_);
  if (start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF")) {
    throw ErrorAt(file_, {1, 1}, "the file is UTF-16; save it as \"CSV UTF-8\"");
  }
  if (start.starts_with("\xEF\xBB\xBF")) next_ = 3;
}

// Determines the separator from the first row that is not empty, without consuming the row. A separator inside brackets
// is part of a name, as in Z(2,0), if there is another one.
void CsvReader::FindSeparator() {
  constexpr std::string_view kSeparators = ",;\t";
  bool quoted = false, empty = true;
  bool bare = false;  // a field is without quotes
  int depth = 0;
  std::string outside, anywhere;  // separators found
  for (std::size_t i = next_;; ++i) {
    if (i == buffer_.size()) {
      const std::size_t read = i - next_;
      if (read > kLongestRow || !Fill()) break;
      i = next_ + read;
    }
    const char c = buffer_[i];
    if (c == '"') quoted = !quoted;
    if (quoted) continue;
    if (c == '\n' && !empty) break;
    if (c != '\n' && c != '\r') empty = false;
    if (c == '(' || c == '[') ++depth;
    if ((c == ')' || c == ']') && depth > 0) --depth;
    if (kSeparators.find(c) == std::string_view::npos) {
      bare = bare || (c != '"' && c != '\r' && c != '\n');
      continue;
    }
    if (anywhere.find(c) == std::string::npos) anywhere += c;
    if (depth == 0 && outside.find(c) == std::string::npos) outside += c;
  }
  if (outside.empty()) outside = anywhere;
  if (decimalComma_) {
    if (outside == "," && bare) {
      throw ErrorAt(file_, place_,
                    "commas separate the columns, so they cannot be decimal commas; save the table with "
                    "semicolons or tabulators, or with every field in quotes");
    }
    if (outside.size() > 1) std::erase(outside, ',');  // it is part of a name
  }
  if (outside.size() > 1) {
    throw ErrorAt(file_, place_,
                  std::string("the columns may be separated by ") + NameOf(outside[0]) + " or by " +
                      NameOf(outside[1]) + "; keep one of the two, and put names that contain the other in quotes");
  }
  if (!outside.empty()) separator_ = outside[0];
}

void CsvReader::ReadQuoted(Record& record) {
  const Place opened = place_;
  Take();
  for (;;) {
    const int c = Take();
    if (c == kEnd)
      Refuse(opened, "the quotes that open here are never closed; close them, or double those that belong to the text");
    if (c == 0) Refuse(opened, "holds a byte of value 0; save the table as UTF-8 text");
    if (c == '"') {
      if (Peek() != '"') break;
      Take();
    }
    record.Add(static_cast<char>(c));
    if (record.bytes() > kLongestRow)
      Refuse(opened, "the row is longer than 64 MiB; are the quotes that open here closed?");
  }
  const int after = Peek();
  if (after != kEnd && after != separator_ && after != '\r' && after != '\n') {
    Refuse(place_, "text follows closing quotes; double the quotes that belong to the text");
  }
}

void CsvReader::ReadField(Record& record) {
  record.Begin(place_);
  if (Peek() == '"') {
    ReadQuoted(record);
    return;
  }
  for (;;) {
    const int c = Peek();
    if (c == kEnd || c == separator_ || c == '\r' || c == '\n') return;
    if (c == '"') Refuse(place_, "a quote is inside a field; put the whole field in quotes and double those inside");
    if (c == 0) Refuse(place_, "holds a byte of value 0; save the table as UTF-8 text");
    record.Add(static_cast<char>(Take()));
    if (record.bytes() > kLongestRow) Refuse(place_, "the row is longer than 64 MiB; is this a table?");
  }
}

bool CsvReader::ReadRow(Record& record) {
  record.Clear();
  if (std::exchange(isWithinRow_, false)) {
    while (Peek() != kEnd && Take() != '\n') {
    }
  }
  if (Peek() == kEnd) return false;
  for (;;) {
    ReadField(record);
    const Place place = place_;
    const int c = Take();
    if (c == separator_) {
      if (record.size() == kMaxColumns) Refuse(place, "the row has more than 2 million fields; is this a table?");
      continue;
    }
    if (c == '\r' && Peek() != kEnd && Take() != '\n') {
      Refuse(place, "a carriage return without line feed; save the table with line ends LF or CRLF");
    }
    return true;
  }
}

bool CsvReader::Next(Record& record) {
  if (!started_) {
    started_ = true;
    SkipMark();
    FindSeparator();
  }
  while (ReadRow(record)) {
    if (!record.IsBlank()) return true;
  }
  return false;
}

std::string CsvField(std::string_view text) {
  const bool plain =
      text.find_first_of(",;\t\"\r\n") == std::string_view::npos && !text.starts_with(' ') && !text.ends_with(' ');
  if (plain) return std::string(text);
  std::string field = "\"";
  for (const char c : text) {
    if (c == '"') field += '"';
    field += c;
  }
  return field + "\"";
}

}  // namespace orvanel::files
