// Reads untrusted JSON in time and memory proportional to its length; refuses deep nesting and repeated keys.
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

// Maximum nesting; the program's own files have three levels. Code that visits a value may recurse.
constexpr std::size_t kDeepestJson = 32;

// An error in a text, and its byte.
struct JsonFault {
  std::size_t byte = 0;
  std::string reason;
};

struct JsonText {
  Json value;                      // with a fault, the part before it
  std::vector<std::size_t> keys;   // the byte of the opening quote of each key of the outermost object
  std::optional<JsonFault> fault;  // the first
};

//   levels  of nesting that are kept; deeper arrays and objects are kept without their elements
JsonText ReadJson(std::string_view text, std::size_t levels = kDeepestJson);

// The value of a text; empty if the text is invalid.
std::optional<Json> JsonOf(std::string_view text);

// Removes a UTF-8 byte order mark from the beginning. Throws Error if the text is UTF-16.
void DropByteOrderMark(std::string& text);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_JSON_TEXT_H
