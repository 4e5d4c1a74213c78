// Finds line and column of keys in a text of JSON, for messages.
#ifndef ORVANEL_FILES_EYES_JSON_PLACE_H
#define ORVANEL_FILES_EYES_JSON_PLACE_H

#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "base/layers.h"

namespace orvanel::files {

// Line and column of a byte, or of the end of the text.
Place PlaceOfByte(std::string_view text, std::size_t byte);

// Counts the characters of a line from left to right.
class CharacterCount {
 public:
  explicit CharacterCount(std::string_view line) : line_(line) {}

  // The number of characters before a byte. Bytes of successive calls must not decrease.
  std::size_t Before(std::size_t byte);

 private:
  std::string_view line_;
  std::size_t byte_ = 0, characters_ = 0;
};

// The place of the last key of a path such as {"convention", "unit"}. A key that is written with escapes cannot be
// found; then the place is that of the nearest enclosing key, or the beginning of the text.
Place PlaceOfKey(std::string_view text, const std::vector<std::string>& path);

// The place of an element of the array at a key.
Place PlaceOfElement(std::string_view text, const std::string& key, std::size_t element);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_EYES_JSON_PLACE_H
