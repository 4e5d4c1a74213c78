// Reading of eye files. Nothing is guessed: what is not exactly right is refused with a word on how to mend it.
#include "cli/eye_file.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>

#include "cli/error.h"

namespace orvanel::cli {
namespace {

using Json = nlohmann::json;
using Keys = std::initializer_list<const char*>;

constexpr std::size_t kLargestFile = 1 << 20;  // bytes; an eye file has about a thousand

[[noreturn]] void Refuse(const std::string& file, const std::string& reason) { throw Error(file + ": " + reason); }

std::string ReadText(const std::string& file) {
  std::error_code ignored;  // opening tells what is wrong
  if (std::filesystem::is_directory(file, ignored)) Refuse(file, "is a directory; give the eye file itself");
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) Refuse(file, std::string("cannot be read: ") + std::strerror(errno));
  std::string text(kLargestFile + 1, '\0');
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(stream.gcount()));
  if (text.size() > kLargestFile) Refuse(file, "is larger than 1 MiB; an eye file holds one eye");
  return text;
}

void RefuseByteOrderMark(const std::string& file, std::string_view text) {
  for (const char* mark : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
    if (text.starts_with(mark)) {
      Refuse(file, "begins with a byte order mark; save it as UTF-8 without one");
    }
  }
}

// Watches the parser: keys that come twice, of which it would silently keep the last, and the key it is at.
class KeyWatch {
 public:
  explicit KeyWatch(const std::string& file) : file_(file) {}

  bool operator()(int, Json::parse_event_t event, Json& parsed) {
    if (event == Json::parse_event_t::object_start) open_.emplace_back();
    if (event == Json::parse_event_t::object_end) open_.pop_back();
    if (event == Json::parse_event_t::key) {
      open_.back().key = parsed.get<std::string>();
      if (!open_.back().seen.insert(open_.back().key).second) {
        Refuse(file_, "key '" + Path() + "' is given twice; keep one of the two");
      }
    }
    return true;
  }

  // The key the parser is at, behind those of the objects around it: "convention.name".
  std::string Path() const {
    std::string path;
    for (const Level& level : open_) path += (path.empty() ? "" : ".") + level.key;
    return path;
  }

 private:
  struct Level {  // an object not yet closed
    std::set<std::string> seen;
    std::string key;
  };

  const std::string& file_;
  std::vector<Level> open_;
};

std::string Position(std::string_view text, std::size_t byte) {
  const std::string_view before = text.substr(0, byte == 0 ? 0 : byte - 1);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  const std::size_t column = before.size() - (before.rfind('\n') + 1) + 1;  // npos + 1 is 0: the first line
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

// The parser's own words, without its prefix "[json...] parse error at line 3, column 4: ".
std::string ParserReason(const std::string& what) {
  const std::size_t colon = what.find(": ");
  return colon == std::string::npos ? what : what.substr(colon + 2);
}

Json Parse(const std::string& file, const std::string& text) {
  KeyWatch watch(file);
  try {
    return Json::parse(
        text, [&watch](int depth, Json::parse_event_t event, Json& parsed) { return watch(depth, event, parsed); });
  } catch (const Json::parse_error& error) {
    Refuse(file, "is not valid JSON at " + Position(text, error.byte) + ": " + ParserReason(error.what()));
  } catch (const Json::out_of_range&) {
    Refuse(file, "key '" + watch.Path() + "': a number is too large to be finite; check its exponent");
  }
}

std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
    }
  }
  return row.back();
}

std::string List(Keys keys) {
  std::string list;
  for (const char* key : keys) list += (list.empty() ? "" : ", ") + std::string(key);
  return list;
}

// Refuses keys that are not among the known ones, and names the nearest where it is near enough to be a slip.
void RefuseUnknownKeys(const std::string& file, const std::string& prefix, const Json& object, Keys known) {
  for (const auto& [key, value] : object.items()) {
    const auto same = [&key = key](const char* name) { return key == name; };
    if (std::any_of(known.begin(), known.end(), same)) continue;
    const char* nearest = *std::min_element(known.begin(), known.end(), [&key = key](const char* a, const char* b) {
      return EditDistance(key, a) < EditDistance(key, b);
    });
    const bool slip = EditDistance(key, nearest) <= std::max<std::size_t>(2, std::strlen(nearest) / 3);
    Refuse(file, "key '" + prefix + key + "' is not known; " +
                     (slip ? "did you mean '" + prefix + nearest + "'?" : "the keys are " + List(known)));
  }
}

const Json& Required(const std::string& file, const std::string& prefix, const Json& object, const char* key,
                     const std::string& remedy) {
  const auto found = object.find(key);
  if (found == object.end()) Refuse(file, "key '" + prefix + key + "' is missing; " + remedy);
  return *found;
}

// A line of text, empty where the key is absent.
std::string OptionalLine(const std::string& file, const Json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end()) return {};
  if (!found->is_string()) {
    Refuse(file, std::string("key '") + key + "' must be a string, not " + found->type_name() + "; put it in quotes");
  }
  std::string line = found->get<std::string>();
  // Control characters would reach the terminal.
  const auto control = [](unsigned char c) { return c < 0x20 || c == 0x7f; };
  if (std::any_of(line.begin(), line.end(), control)) {
    Refuse(file, std::string("key '") + key + "' holds a line break or control character; write it in one line");
  }
  return line;
}

Millimetres Pupil(const std::string& file, const Json& object) {
  const Json& value = Required(file, "", object, "pupil_diameter_mm", "give the pupil's diameter, such as 6.0");
  if (!value.is_number()) {
    Refuse(file, std::string("key 'pupil_diameter_mm' must be a number, not ") + value.type_name() +
                     "; write millimetres without quotes, such as 6.0");
  }
  const double diameter = value.get<double>();
  if (!(std::isfinite(diameter) && diameter > 0.0)) {
    Refuse(file, "key 'pupil_diameter_mm' is " + value.dump() + "; a diameter is greater than 0");
  }
  return Millimetres(diameter);
}

void RefuseContradiction(const std::string& file, const Json& block, const char* key, std::string_view name,
                         std::string_view expected) {
  const auto found = block.find(key);
  if (found == block.end() || *found == expected) return;
  Refuse(file, std::string("key 'convention.") + key + "' is " + found->dump() +
                   ", which contradicts the convention '" + std::string(name) + "'; there it is \"" +
                   std::string(expected) + "\"");
}

Convention ReadConvention(const std::string& file, const Json& object) {
  const char* const remedy = "say {\"name\": \"osa\"} or {\"name\": \"library\"}";
  const Json& block = Required(file, "", object, "convention", remedy);
  if (!block.is_object()) {
    Refuse(file, std::string("key 'convention' must be an object, not ") + block.type_name() + "; " + remedy);
  }
  RefuseUnknownKeys(file, "convention.", block, {"name", "unit", "normalisation", "y_axis"});
  const Json& name = Required(file, "convention.", block, "name", "it is \"osa\" or \"library\"");
  for (const Convention convention : {Convention::kOsa, Convention::kLibrary}) {
    const ConventionWords words = Words(convention);
    if (name != words.name) continue;
    RefuseContradiction(file, block, "unit", words.name, words.unit);
    RefuseContradiction(file, block, "normalisation", words.name, words.normalisation);
    RefuseContradiction(file, block, "y_axis", words.name, words.yAxis);
    return convention;
  }
  Refuse(file, "key 'convention.name' is " + name.dump() + "; it must be \"osa\" or \"library\"");
}

std::vector<double> Coefficients(const std::string& file, const Json& object) {
  const Json& array = Required(file, "", object, "coefficients", "give an array of 1 to 28 numbers");
  if (!array.is_array()) {
    Refuse(file, std::string("key 'coefficients' must be an array, not ") + array.type_name() +
                     "; give 1 to 28 numbers in square brackets");
  }
  if (array.empty() || array.size() > ORVANEL_COEFFICIENTS) {
    Refuse(file, "key 'coefficients' holds " + std::to_string(array.size()) +
                     " numbers; give 1 to 28, for radial orders 0 to 6");
  }
  std::vector<double> coefficients;
  for (const Json& value : array) {
    if (!value.is_number()) {
      Refuse(file, "key 'coefficients[" + std::to_string(coefficients.size()) + "]' must be a number, not " +
                       value.type_name() + "; write 0 for a term that is absent");
    }
    coefficients.push_back(value.get<double>());
  }
  return coefficients;
}

}  // namespace

Eye ReadEyeFile(const std::string& file) {
  const std::string text = ReadText(file);
  RefuseByteOrderMark(file, text);
  const Json object = Parse(file, text);
  if (!object.is_object()) {
    Refuse(file, std::string("must be a JSON object, not ") + object.type_name() + "; put its keys in braces");
  }
  RefuseUnknownKeys(file, "", object, {"name", "source", "note", "pupil_diameter_mm", "convention", "coefficients"});
  Eye eye;
  eye.file = file;
  eye.name = OptionalLine(file, object, "name");
  eye.source = OptionalLine(file, object, "source");
  eye.note = OptionalLine(file, object, "note");
  eye.pupil = Pupil(file, object);
  eye.convention = ReadConvention(file, object);
  eye.coefficients = Coefficients(file, object);
  return eye;
}

}  // namespace orvanel::cli
