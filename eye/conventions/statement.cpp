// Reads, combines and completes partial conventions.
#include "eye/conventions/statement.h"

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

Statement StatementOf(const Convention& convention) {
  Statement statement;
  statement.unit = convention.unit;
  if (convention.unit == Unit::kWaves) statement.wavelength = convention.wavelength;
  statement.normalisation = convention.normalisation;
  statement.scheme = convention.scheme;
  statement.yAxis = convention.yAxis;
  return statement;
}

bool State(Statement& statement, std::string_view key, std::string_view text) {
  if (key == kUnitKey) {
    statement.unit = FromWord<Unit>(key, text);
  } else if (key == kWavelengthKey) {
    statement.wavelength = Nanometres(Length(key, text));
  } else if (key == kReferenceKey) {
    statement.reference = ReferenceWavelength(key, text);
  } else if (key == kNormalisationKey) {
    statement.normalisation = FromWord<Normalisation>(key, text);
  } else if (key == kOrderKey) {
    statement.scheme = FromWord<IndexScheme>(key, text);
  } else if (key == kYAxisKey) {
    statement.yAxis = FromWord<YAxis>(key, text);
  } else if (key == kSideKey) {
    statement.side = FromWord<Side>(key, text);
  } else if (key == kPupilKey) {
    statement.pupil = Millimetres(Length(key, text));
  } else {
    return false;
  }
  return true;
}

Statement Combined(const Statement& a, const std::string& wider, const Statement& b, const std::string& narrower) {
  Statement both = a;
  const auto join = [&](auto Statement::*part, const char* key) {
    if (!(b.*part)) return;
    if (both.*part && *(both.*part) != *(b.*part)) {
      throw ContradictingParts(key, {wider, WordOf(*(both.*part))}, {narrower, WordOf(*(b.*part))});
    }
    both.*part = b.*part;
  };
  join(&Statement::unit, kUnitKey);
  join(&Statement::wavelength, kWavelengthKey);
  join(&Statement::reference, kReferenceKey);
  join(&Statement::normalisation, kNormalisationKey);
  join(&Statement::scheme, kOrderKey);
  join(&Statement::yAxis, kYAxisKey);
  join(&Statement::side, kSideKey);
  join(&Statement::pupil, kPupilKey);
  return both;
}

StatedConvention Complete(const Statement& statement, bool needsOrder) {
  std::vector<MissingPart> missing;
  const auto require = [&missing](bool stated, const char* key, const std::string& values) {
    if (!stated) missing.push_back({key, values});
  };
  require(statement.unit.has_value(), kUnitKey, WordsOf<Unit>());
  if (statement.unit == Unit::kWaves) require(statement.wavelength.has_value(), kWavelengthKey, "of one wave");
  require(statement.normalisation.has_value(), kNormalisationKey, WordsOf<Normalisation>());
  if (needsOrder) require(statement.scheme.has_value(), kOrderKey, WordsOf<IndexScheme>());
  require(statement.yAxis.has_value(), kYAxisKey, WordsOf<YAxis>());
  require(statement.side.has_value(), kSideKey, WordsOf<Side>());
  require(statement.pupil.has_value(), kPupilKey, "over which the eye was measured");
  if (!missing.empty()) throw IncompleteConvention(std::move(missing));
  if (statement.wavelength && statement.unit != Unit::kWaves) throw WavelengthWithoutWaves(*statement.unit);
  StatedConvention complete{};
  complete.convention.unit = *statement.unit;
  complete.convention.wavelength = statement.wavelength.value_or(Nanometres());
  complete.convention.normalisation = *statement.normalisation;
  complete.convention.scheme = statement.scheme.value_or(IndexScheme::kNamed);
  complete.convention.yAxis = *statement.yAxis;
  complete.side = *statement.side;
  complete.pupil = *statement.pupil;
  complete.reference = statement.reference;
  return complete;
}

}  // namespace orvanel::eye
