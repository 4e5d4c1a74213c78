// Reads tables with a JSON object in each line.
#include "files/tables/ndjson.h"

#include <optional>
#include <utility>

#include "base/number_text.h"
#include "files/eyes/json_place.h"
#include "files/json_text.h"

namespace orvanel::files {
namespace {

constexpr std::size_t kLongestLine = 1 << 26;  // bytes

}  // namespace

NdjsonReader::NdjsonReader(std::istream& stream, std::string file) : stream_(stream), file_(std::move(file)) {}

void NdjsonReader::Refuse(std::size_t column, const std::string& reason) const {
  throw ErrorAt(file_, {line_, column}, reason);
}

// Reads the next piece of a line, without the line feed; false at the end of the line.
bool NdjsonReader::TakePiece(std::string& piece) {
  piece.resize(kPiece);
  stream_.getline(piece.data(), kPiece);
  if (stream_.bad()) throw Error(file_ + ": cannot be read to its end");
  const auto count = static_cast<std::size_t>(stream_.gcount());
  bytesTaken_ += count;
  if (stream_.fail() && count == kPiece - 1) {
    stream_.clear();
    piece.resize(count);
    return true;
  }
  ended_ = stream_.eof();
  piece.resize(ended_ ? count : count - 1);
  return false;
}

bool NdjsonReader::TakeLine() {
  std::string piece;
  // Skips the rest of a line that was refused as too long.
  if (std::exchange(isWithinLine_, false)) {
    while (TakePiece(piece)) {
    }
  }
  if (ended_) return false;
  text_.clear();
  ++line_;
  for (bool more = true; more;) {
    more = TakePiece(piece);
    text_ += piece;
    if (text_.size() <= kLongestLine) continue;
    isWithinLine_ = more;
    Refuse(1, "the line is longer than 64 MiB; is this a table with one object in each line?");
  }
  if (line_ == 1) {
    try {
      DropByteOrderMark(text_);
    } catch (const Error& error) {
      Refuse(1, error.what());
    }
  }
  return true;
}

bool NdjsonReader::Next(Record& keys, Record& values) {
  keys.Clear();
  values.Clear();
  do {
    if (!TakeLine()) return false;
  } while (text_.find_first_not_of(" \t\r") == std::string::npos);

  const JsonText json = ReadJson(text_, 1);
  std::optional<ErrorAt> fault;
  if (json.value.is_object()) {
    CharacterCount characters(text_);
    auto byte = json.keys.begin();
    for (const auto& [name, value] : json.value.items()) {
      const Place place{line_, 1 + characters.Before(*byte++)};
      if (!value.is_number() && !value.is_string()) {
        if (!fault) {
          fault.emplace(file_, place,
                        "key " + Quoted(name) + " must be a number or a string, not " + value.type_name());
        }
        continue;
      }
      keys.Begin(place);
      keys.Add(name);
      values.Begin(place);
      values.Add(value.is_string() ? value.get<std::string>() : value.dump());
    }
  }
  if (json.fault) Refuse(PlaceOfByte(text_, json.fault->byte).column, json.fault->reason);
  if (!json.value.is_object()) {
    Refuse(1, std::string("must be a JSON object, not ") + json.value.type_name() +
                  "; write one eye in each line, in braces");
  }
  if (fault) throw ErrorAt(*fault);
  return true;
}

}  // namespace orvanel::files
