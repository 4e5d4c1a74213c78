// Reads, combines and completes partial conventions.
#include "eye/conventions/partial_convention.h"

#include <utility>
#include <vector>

#include "base/number_text.h"
#include "base/wavelength_range.h"
#include "eye/conventions/errors.h"

namespace orvanel::eye {
namespace {

template <class Value>
std::optional<Value> FromWord(std::string_view key, std::string_view text) {
  const std::optional<Value> value = ValueOf<Value>(text);
  if (!value) throw UnknownWord(key, text, WordsOf<Value>());
  return value;
}

double Length(std::string_view key, std::string_view text) {
  const double length = ParseNumber(text);
  if (length <= 0.0) throw LengthNotPositive(key, text);
  return length;
}

Nanometres ReferenceWavelength(std::string_view key, std::string_view text) {
  const double length = ParseNumber(text);
  if (!(length >= kShortestNm && length <= kLongestNm)) {
    throw WavelengthOutOfRange(key, text, Nanometres(kShortestNm), Nanometres(kLongestNm));
  }
  return Nanometres(length);
}

std::string WordOf(Unit value) { return std::string(Word(value)); }
std::string WordOf(Normalisation value) { return std::string(Word(value)); }
std::string WordOf(IndexScheme value) { return std::string(Word(value)); }
std::string WordOf(YAxis value) { return std::string(Word(value)); }
std::string WordOf(Side value) { return std::string(Word(value)); }
std::string WordOf(Nanometres value) { return ShortestText(value.value()); }
std::string WordOf(Millimetres value) { return ShortestText(value.value()); }

}  // namespace

PartialConvention PartsOf(const Convention& convention) {
  PartialConvention parts;
  parts.unit = convention.unit;
  if (convention.unit == Unit::kWaves) parts.wavelength = convention.wavelength;
  parts.normalisation = convention.normalisation;
  parts.scheme = convention.scheme;
  parts.yAxis = convention.yAxis;
  return parts;
}

bool SetPart(PartialConvention& parts, std::string_view key, std::string_view text) {
  if (key == kUnitKey) {
    parts.unit = FromWord<Unit>(key, text);
  } else if (key == kWavelengthKey) {
    parts.wavelength = Nanometres(Length(key, text));
  } else if (key == kReferenceKey) {
    parts.reference = ReferenceWavelength(key, text);
  } else if (key == kNormalisationKey) {
    parts.normalisation = FromWord<Normalisation>(key, text);
  } else if (key == kOrderKey) {
    parts.scheme = FromWord<IndexScheme>(key, text);
  } else if (key == kYAxisKey) {
    parts.yAxis = FromWord<YAxis>(key, text);
  } else if (key == kSideKey) {
    parts.side = FromWord<Side>(key, text);
  } else if (key == kPupilKey) {
    parts.pupil = Millimetres(Length(key, text));
  } else {
    return false;
  }
  return true;
}

PartialConvention Combined(const PartialConvention& a, const std::string& wider, const PartialConvention& b,
                           const std::string& narrower) {
  PartialConvention both = a;
  const auto join = [&](auto PartialConvention::*part, const char* key) {
    if (!(b.*part)) return;
    if (both.*part && *(both.*part) != *(b.*part)) {
      throw ContradictingParts(key, {wider, WordOf(*(both.*part))}, {narrower, WordOf(*(b.*part))});
    }
    both.*part = b.*part;
  };
  join(&PartialConvention::unit, kUnitKey);
  join(&PartialConvention::wavelength, kWavelengthKey);
  join(&PartialConvention::reference, kReferenceKey);
  join(&PartialConvention::normalisation, kNormalisationKey);
  join(&PartialConvention::scheme, kOrderKey);
  join(&PartialConvention::yAxis, kYAxisKey);
  join(&PartialConvention::side, kSideKey);
  join(&PartialConvention::pupil, kPupilKey);
  return both;
}

CompleteConvention Complete(const PartialConvention& parts, bool needsOrder) {
  std::vector<MissingPart> missing;
  const auto require = [&missing](bool stated, const char* key, const std::string& values) {
    if (!stated) missing.push_back({key, values});
  };
  require(parts.unit.has_value(), kUnitKey, WordsOf<Unit>());
  if (parts.unit == Unit::kWaves) require(parts.wavelength.has_value(), kWavelengthKey, "of one wave");
  require(parts.normalisation.has_value(), kNormalisationKey, WordsOf<Normalisation>());
  if (needsOrder) require(parts.scheme.has_value(), kOrderKey, WordsOf<IndexScheme>());
  require(parts.yAxis.has_value(), kYAxisKey, WordsOf<YAxis>());
  require(parts.side.has_value(), kSideKey, WordsOf<Side>());
  require(parts.pupil.has_value(), kPupilKey, "over which the eye was measured");
  if (!missing.empty()) throw IncompleteConvention(std::move(missing));
  if (parts.wavelength && parts.unit != Unit::kWaves) throw WavelengthWithoutWaves(*parts.unit);
  CompleteConvention complete{};
  complete.convention.unit = *parts.unit;
  complete.convention.wavelength = parts.wavelength.value_or(Nanometres());
  complete.convention.normalisation = *parts.normalisation;
  complete.convention.scheme = parts.scheme.value_or(IndexScheme::kNamed);
  complete.convention.yAxis = *parts.yAxis;
  complete.side = *parts.side;
  complete.pupil = *parts.pupil;
  complete.reference = parts.reference;
  return complete;
}

}  // namespace orvanel::eye
