// Lines through the JSON parser, their keys in order.
#include "cli/tables/ndjson.h"

#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "cli/eyes/json_place.h"
#include "cli/number_text.h"

namespace orvanel::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kLongestLine = 1 << 26;  // bytes

std::size_t ColumnOf(const std::string& text, const std::string& key) { return PlaceOfKey(text, {key}).column; }

}  // namespace

NdjsonReader::NdjsonReader(std::istream& stream, std::string file) : stream_(stream), file_(std::move(file)) {}

bool NdjsonReader::Next(Record& keys, Record& values) {
  do {
    if (!std::getline(stream_, text_)) {
      if (stream_.bad()) throw Error(file_ + ": cannot be read to its end");
      return false;
    }
    ++line_;
    if (line_ == 1 && text_.starts_with("\xEF\xBB\xBF")) text_.erase(0, 3);
  } while (text_.find_first_not_of(" \t\r") == std::string::npos);
  const auto refuse = [this](std::size_t column, const std::string& reason) {
    throw ErrorAt(file_, {line_, column}, reason);
  };
  if (text_.size() > kLongestLine) refuse(1, "the line is longer than 64 MiB; is this a table of one object a line?");

  std::set<std::string> seen;
  std::string key;
  Json object;
  try {
    object = Json::parse(text_, [&](int depth, Json::parse_event_t event, Json& parsed) {
      if (event != Json::parse_event_t::key || depth != 1) return true;
      key = parsed.get<std::string>();
      if (!seen.insert(key).second) refuse(ColumnOf(text_, key), "key " + Quoted(key) + " is given twice; keep one");
      return true;
    });
  } catch (const Json::parse_error& error) {
    const std::string what = error.what();
    const std::size_t colon = what.find(": ");
    refuse(error.byte == 0 ? 1 : error.byte,
           "is not valid JSON: " + (colon == std::string::npos ? what : what.substr(colon + 2)));
  } catch (const Json::out_of_range&) {
    refuse(ColumnOf(text_, key), "key " + Quoted(key) + " is a number too large to be finite; check its exponent");
  }
  if (!object.is_object()) {
    refuse(1, std::string("must be a JSON object, not ") + object.type_name() + "; write one eye a line, in braces");
  }
  keys.Clear();
  values.Clear();
  for (const auto& [name, value] : object.items()) {
    const Place place{line_, ColumnOf(text_, name)};
    if (!value.is_number() && !value.is_string()) {
      refuse(place.column, "key " + Quoted(name) + " must be a number or a string, not " + value.type_name());
    }
    keys.Begin(place);
    keys.Add(name);
    values.Begin(place);
    values.Add(value.is_string() ? value.get<std::string>() : value.dump());
  }
  return true;
}

}  // namespace orvanel::cli
