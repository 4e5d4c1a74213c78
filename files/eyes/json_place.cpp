// Searches the text for keys. Quotes inside strings are escaped in JSON, so a quoted name before a colon is always a
// key.
#include "files/eyes/json_place.h"

#include <algorithm>

namespace orvanel::files {
namespace {

constexpr const char* kBlanks = " \t\r\n";

// The byte of the opening quote of the key, at or after `from`.
std::size_t FindKey(std::string_view text, const std::string& key, std::size_t from) {
  const std::string quoted = "\"" + key + "\"";
  for (std::size_t at = text.find(quoted, from); at != std::string_view::npos; at = text.find(quoted, at + 1)) {
    const std::size_t behind = text.find_first_not_of(kBlanks, at + quoted.size());
    if (behind != std::string_view::npos && text[behind] == ':') return at;
  }
  return std::string_view::npos;
}

}  // namespace

Place PlaceOfByte(std::string_view text, std::size_t byte) {
  const std::string_view before = text.substr(0, byte);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  const std::string_view row = before.substr(before.rfind('\n') + 1);  // npos + 1 is 0: the first line
  return {static_cast<std::size_t>(line), 1 + CharacterCount(row).Before(row.size())};
}

std::size_t CharacterCount::Before(std::size_t byte) {
  // Continuation bytes of UTF-8 are not characters.
  for (; byte_ < byte; ++byte_) characters_ += (line_[byte_] & 0xc0) != 0x80 ? 1 : 0;
  return characters_;
}

Place PlaceOfKey(std::string_view text, const std::vector<std::string>& path) {
  std::size_t found = 0;
  for (const std::string& key : path) {
    const std::size_t at = FindKey(text, key, found);
    if (at == std::string_view::npos) break;
    found = at;
  }
  return PlaceOfByte(text, found);
}

Place PlaceOfElement(std::string_view text, const std::string& key, std::size_t element) {
  const std::size_t start = FindKey(text, key, 0);
  if (start == std::string_view::npos) return PlaceOfByte(text, 0);
  std::size_t at = text.find('[', start);
  bool quoted = false;
  for (std::size_t commas = 0; at != std::string_view::npos && commas < element && at + 1 < text.size();) {
    ++at;
    if (text[at] == '"' && text[at - 1] != '\\') quoted = !quoted;
    if (text[at] == ',' && !quoted) ++commas;
  }
  if (at == std::string_view::npos) return PlaceOfByte(text, start);
  return PlaceOfByte(text, std::min(text.find_first_not_of(kBlanks, at + 1), text.size()));
}

}  // namespace orvanel::files
