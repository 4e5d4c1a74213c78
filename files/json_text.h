// Reads JSON of any origin, in time and memory in proportion to its length; deep nesting and repeated keys are refused.
#ifndef ORVANEL_FILES_JSON_TEXT_H
#define ORVANEL_FILES_JSON_TEXT_H

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/layers.h"

namespace orvanel::files {

using Json = nlohmann::ordered_json;  // members keep their order

// Brackets in brackets; the files of this program have three levels. Code that walks a value may recurse.
constexpr std::size_t kDeepestJson = 32;

// What is wrong with a text, and at which byte.
struct JsonFault {
  std::size_t byte = 0;
  std::string reason;
};

struct JsonText {
  Json value;                      // with a fault, as far as it could be read
  std::vector<std::size_t> keys;   // the byte at which the quotes of each key of the outermost object open
  std::optional<JsonFault> fault;  // the first
};

//   levels  of nesting that are kept; an array or object below them comes without its elements
JsonText ReadJson(std::string_view text, std::size_t levels = kDeepestJson);

// The value of a text; empty where anything is wrong with it.
std::optional<Json> JsonOf(std::string_view text);

// Removes a byte order mark of UTF-8 from the beginning. Throws Error where the text is UTF-16.
void DropByteOrderMark(std::string& text);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_JSON_TEXT_H
