// Reads and writes eye files. Nothing is guessed: a file that is not exactly right is refused with a hint on how to fix
// it.
#include "files/eyes/eye_file.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <set>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "base/spelling.h"
#include "eye/conventions/column_name.h"
#include "files/eyes/json_place.h"
#include "files/input_file.h"
#include "files/json_text.h"
#include "files/path_of.h"

namespace orvanel::files {
namespace {

using Path = std::vector<std::string>;

constexpr std::size_t kLargestFile = 1 << 20;  // bytes; an eye file has about a thousand

constexpr const char* kKeys[] = {"name",        "source", "note",       kPupilKey,
                                 kReferenceKey, kSideKey, "convention", "coefficients"};
constexpr const char* kConventionKeys[] = {"name", kUnitKey, kWavelengthKey, kNormalisationKey, kOrderKey, kYAxisKey};

// A file with its text, for the places in messages.
struct Source {
  const std::string& file;
  const std::string& text;

  [[noreturn]] void Refuse(Place place, const std::string& reason) const { throw ErrorAt(file, place, reason); }
  [[noreturn]] void Refuse(const Path& path, const std::string& reason) const {
    Refuse(PlaceOfKey(text, path), reason);
  }
};

std::string Joined(const Path& path) {
  std::string joined;
  for (const std::string& key : path) joined += (joined.empty() ? "" : ".") + key;
  return joined;
}

// The key as in messages: "key 'convention.unit'".
std::string Key(const Path& path) { return "key " + Quoted(Joined(path)); }

void CheckText(const std::string& file, std::string& text) {
  if (text.size() > kLargestFile) throw Error(file + ": is larger than 1 MiB; an eye file holds one eye");
  try {
    DropByteOrderMark(text);
  } catch (const Error& error) {
    throw ErrorAt(file, {1, 1}, error.what());
  }
}

Json Parse(const Source& source) {
  JsonText json = ReadJson(source.text);
  if (json.fault) source.Refuse(PlaceOfByte(source.text, json.fault->byte), json.fault->reason);
  return std::move(json.value);
}

// Refuses unknown keys, and suggests the nearest known one if it may be a typing error.
void RefuseUnknownKeys(const Source& source, const Path& parent, const Json& object,
                       std::span<const char* const> known) {
  for (const auto& [key, value] : object.items()) {
    const auto same = [&key = key](const char* name) { return key == name; };
    if (std::any_of(known.begin(), known.end(), same)) continue;
    Path path = parent;
    path.push_back(key);
    const auto slip = Nearest(key, known, [](std::size_t length) { return std::max<std::size_t>(2, length / 3); });
    std::string remedy;
    if (!parent.empty() && std::find(std::begin(kKeys), std::end(kKeys), key) != std::end(kKeys)) {
      remedy = "write it beside " + Quoted(Joined(parent)) + ", not within";
    } else if (slip) {
      Path meant = parent;
      meant.emplace_back(*slip);
      remedy = "did you mean '" + Joined(meant) + "'?";
    } else {
      for (const char* name : known) remedy += (remedy.empty() ? "the keys are " : ", ") + std::string(name);
    }
    source.Refuse(path, Key(path) + " is not known; " + remedy);
  }
}

// A line of text; empty if the key is absent.
std::string OptionalLine(const Source& source, const Json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end()) return {};
  if (!found->is_string()) {
    source.Refuse({key}, Key({key}) + " must be a string, not " + found->type_name() + "; put it in quotes");
  }
  std::string line = found->get<std::string>();
  // Control characters must not reach the terminal.
  const auto control = [](unsigned char c) { return c < 0x20 || c == 0x7f; };
  if (std::any_of(line.begin(), line.end(), control)) {
    source.Refuse({key}, Key({key}) + " holds a line break or control character; write it in one line");
  }
  return line;
}

// Reads one part of the convention, if the key exists.
void ReadPart(const Source& source, const Path& parent, const Json& object, const char* key, bool isNumber,
              PartialConvention& parts) {
  const auto found = object.find(key);
  if (found == object.end()) return;
  Path path = parent;
  path.emplace_back(key);
  if (isNumber ? !found->is_number() : !found->is_string()) {
    source.Refuse(path, Key(path) + " must be a " + (isNumber ? "number" : "string") + ", not " + found->type_name() +
                            (isNumber ? "; write it without quotes, such as 6.0" : "; put it in quotes"));
  }
  try {
    SetPart(parts, key, isNumber ? found->dump() : found->get<std::string>());
  } catch (const Error& error) {
    source.Refuse(path, "key " + std::string(error.what()));
  }
}

// Reads the parts of the convention that the file states; `named` is true if it names a convention.
PartialConvention ReadParts(const Source& source, const Json& object, bool& named) {
  PartialConvention parts;
  named = false;
  ReadPart(source, {}, object, kPupilKey, true, parts);
  ReadPart(source, {}, object, kReferenceKey, true, parts);
  ReadPart(source, {}, object, kSideKey, false, parts);
  const auto found = object.find("convention");
  if (found == object.end()) return parts;
  if (!found->is_object()) {
    source.Refuse({"convention"}, std::string("key 'convention' must be an object, not ") + found->type_name() +
                                      R"(; write {"name": "osa"} or {"name": "library"}, or state its parts)");
  }
  const Path parent = {"convention"};
  RefuseUnknownKeys(source, parent, *found, kConventionKeys);
  ReadPart(source, parent, *found, kUnitKey, false, parts);
  ReadPart(source, parent, *found, kWavelengthKey, true, parts);
  ReadPart(source, parent, *found, kNormalisationKey, false, parts);
  ReadPart(source, parent, *found, kOrderKey, false, parts);
  ReadPart(source, parent, *found, kYAxisKey, false, parts);
  const auto name = found->find("name");
  if (name == found->end()) return parts;
  const auto convention = ConventionNamed(name->is_string() ? name->get<std::string>() : "");
  if (!convention) {
    source.Refuse({"convention", "name"},
                  "key 'convention.name' is " +
                      (name->is_string() ? Quoted(name->get<std::string>()) : name->type_name()) +
                      R"(; write "osa" or "library", or state unit, normalisation, order and y_axis without a name)");
  }
  named = true;
  try {
    return Combined(PartsOf(*convention), "its name " + Quoted(name->get<std::string>()), parts, "the convention");
  } catch (const Error& error) {
    source.Refuse(parent, error.what());
  }
}

// The place is a function, since it needs a search of the text and only errors use it.
template <class PlaceOf>
double Number(const Source& source, PlaceOf place, const Path& path, const Json& value) {
  if (!value.is_number()) {
    source.Refuse(place(),
                  Key(path) + " must be a number, not " + value.type_name() + "; write 0 for a term that is absent");
  }
  return value.get<double>();
}

Coefficients ReadList(const Source& source, const Json& array, IndexScheme scheme) {
  std::vector<double> list;
  for (const Json& value : array) {
    const std::size_t element = list.size();
    const auto place = [&source, element] { return PlaceOfElement(source.text, "coefficients", element); };
    list.push_back(Number(source, place, {"coefficients[" + std::to_string(element) + "]"}, value));
  }
  if (list.empty()) source.Refuse({"coefficients"}, "key 'coefficients' holds no numbers; give at least one");
  if (scheme == IndexScheme::kNamed) {
    source.Refuse({"coefficients"},
                  R"json(key 'coefficients' is an array, but the index scheme is "named"; write an object )json"
                  R"json(such as {"Z(2,0)": 0.1})json");
  }
  try {
    return FromList(scheme, list);
  } catch (const Error& error) {
    source.Refuse({"coefficients"}, "key 'coefficients' holds " + std::string(error.what()));
  }
}

std::optional<CoefficientName> NameOf(const Source& source, const std::string& key) {
  const Path path = {"coefficients", key};
  std::optional<CoefficientName> name;
  try {
    name = ParseCoefficientName(key);
  } catch (const Error& error) {
    source.Refuse(path, "key " + std::string(error.what()));
  }
  if (!name) source.Refuse(path, Key(path) + " is not a name of a coefficient; write Z4, Z(2,0) or c[2,-2]");
  return name;
}

Coefficients ReadNamed(const Source& source, const Json& object, IndexScheme scheme) {
  Coefficients coefficients;
  std::set<std::size_t> seen;
  for (const auto& [key, value] : object.items()) {
    const Path path = {"coefficients", key};
    std::size_t j = 0;
    try {
      j = OsaIndex(TermNamed(*NameOf(source, key), scheme));
    } catch (const ErrorAt&) {
      throw;
    } catch (const Error& error) {
      source.Refuse(path, Key(path) + ": " + error.what());
    }
    if (!seen.insert(j).second) {
      source.Refuse(path, Key(path) + " names the term " + Symbol(Term(j)) + ", which is given already; keep one");
    }
    if (j >= coefficients.size()) coefficients.resize(j + 1);
    coefficients[j] = Number(
        source, [&] { return PlaceOfKey(source.text, path); }, path, value);
  }
  if (coefficients.empty()) source.Refuse({"coefficients"}, "key 'coefficients' holds no numbers; give at least one");
  return coefficients;
}

// True if the coefficients need a stated index scheme.
bool NeedsOrder(const Source& source, const Json& coefficients) {
  if (coefficients.is_array()) return true;
  const auto items = coefficients.items();
  return std::any_of(items.begin(), items.end(), [&source](const auto& item) {
    return std::holds_alternative<std::size_t>(*NameOf(source, item.key()));
  });
}

const Json& CoefficientsOf(const Source& source, const Json& object) {
  const auto found = object.find("coefficients");
  if (found == object.end()) {
    source.Refuse(Path{},
                  "key 'coefficients' is missing; give an array of numbers, or an object such as "
                  R"json({"Z(2,0)": 0.1})json");
  }
  if (!found->is_structured()) {
    source.Refuse({"coefficients"}, std::string("key 'coefficients' must be an array, not ") + found->type_name() +
                                        "; give numbers in square brackets");
  }
  return *found;
}

}  // namespace

std::string ReadEyeBytes(const std::string& file) { return ReadBytes(file, kLargestFile); }

Eye ReadEyeFile(const std::string& file, const PartialConvention& stated) {
  return EyeOfBytes(file, ReadEyeBytes(file), stated);
}

Eye EyeOfBytes(const std::string& file, std::string text, const PartialConvention& stated) {
  CheckText(file, text);
  const Source source{file, text};
  const Json object = Parse(source);
  if (!object.is_object()) {
    source.Refuse(Place{1, 1},
                  std::string("must be a JSON object, not ") + object.type_name() + "; put its keys in braces");
  }
  RefuseUnknownKeys(source, {}, object, kKeys);
  Eye eye;
  eye.file = file;
  eye.name = OptionalLine(source, object, "name");
  eye.source = OptionalLine(source, object, "source");
  eye.note = OptionalLine(source, object, "note");
  bool named = false;
  const PartialConvention own = ReadParts(source, object, named);
  const Json& coefficients = CoefficientsOf(source, object);
  CompleteConvention complete{};
  try {
    PartialConvention parts = Combined(stated, "the command line", own, "the file");
    // A file that names a convention may leave out the laterality.
    if (named && !parts.side) parts.side = Side::kUnknown;
    complete = Complete(parts, NeedsOrder(source, coefficients));
  } catch (const ErrorAt&) {
    throw;
  } catch (const Error& error) {
    source.Refuse({"convention"}, error.what());
  }
  eye.pupil = complete.pupil;
  eye.side = complete.side;
  eye.referenceWavelength = complete.reference;
  const IndexScheme scheme = complete.convention.scheme;
  eye.coefficients = {complete.convention, coefficients.is_array() ? ReadList(source, coefficients, scheme)
                                                                   : ReadNamed(source, coefficients, scheme)};
  return eye;
}

std::string EyeFileText(const Eye& eye) {
  const Convention& stated = eye.coefficients.convention();
  const Coefficients coefficients = eye.coefficients.AsStated();
  Json object, convention;
  if (!eye.name.empty()) object["name"] = eye.name;
  if (!eye.source.empty()) object["source"] = eye.source;
  if (!eye.note.empty()) object["note"] = eye.note;
  object[kPupilKey] = eye.pupil.value();
  if (eye.referenceWavelength) object[kReferenceKey] = eye.referenceWavelength->value();
  object[kSideKey] = Word(eye.side);
  convention[kUnitKey] = Word(stated.unit);
  if (stated.unit == Unit::kWaves) convention[kWavelengthKey] = stated.wavelength.value();
  convention[kNormalisationKey] = Word(stated.normalisation);
  convention[kOrderKey] = Word(stated.scheme);
  convention[kYAxisKey] = Word(stated.yAxis);
  object["convention"] = convention;
  if (stated.scheme == IndexScheme::kNamed) {
    auto named = Json::object();
    for (std::size_t j = 0; j < coefficients.size(); ++j) named[Symbol(Term(j))] = coefficients[j];
    object["coefficients"] = named;
  } else {
    object["coefficients"] = ToList(stated.scheme, coefficients);
  }
  return object.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace orvanel::files
