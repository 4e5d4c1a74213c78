// Where a key stands in a text of JSON, for messages.
#ifndef ORVANEL_FILES_EYES_JSON_PLACE_H
#define ORVANEL_FILES_EYES_JSON_PLACE_H

#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "base/layers.h"

namespace orvanel::files {

// Line and column of a byte; the end of the text has a place too.
Place PlaceOfByte(std::string_view text, std::size_t byte);

// Counts the characters of a line from left to right.
class CharacterCount {
 public:
  explicit CharacterCount(std::string_view line) : line_(line) {}

  // Those before a byte, which is not before the last one asked for.
  std::size_t Before(std::size_t byte);

 private:
  std::string_view line_;
  std::size_t byte_ = 0, characters_ = 0;
};

// Where the last key of a path such as {"convention", "unit"} stands; where it cannot be found, as when it is written
// with escapes, the nearest key around it, and in the end the text's beginning.
Place PlaceOfKey(std::string_view text, const std::vector<std::string>& path);

// Where the element of the array behind a key stands.
Place PlaceOfElement(std::string_view text, const std::string& key, std::size_t element);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_EYES_JSON_PLACE_H
