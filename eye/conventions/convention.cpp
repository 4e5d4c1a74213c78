// Defines the words and index schemes of the conventions, and converts between them.
#include "eye/conventions/convention.h"

#include <algorithm>
#include <span>
#include <utility>

#include "base/number_text.h"
#include "eye/conventions/errors.h"

namespace orvanel::eye {
namespace {

template <class Value>
using Wording = std::pair<Value, std::string_view>;

constexpr Wording<Unit> kUnits[] = {
    {Unit::kMillimetres, "mm"}, {Unit::kMicrometres, "um"}, {Unit::kNanometres, "nm"}, {Unit::kWaves, "waves"}};
constexpr Wording<Normalisation> kNormalisations[] = {{Normalisation::kOrthonormal, "orthonormal"},
                                                      {Normalisation::kNone, "none"}};
constexpr Wording<IndexScheme> kOrders[] = {{IndexScheme::kOsa, "osa"},
                                            {IndexScheme::kNoll, "noll"},
                                            {IndexScheme::kFringe, "fringe"},
                                            {IndexScheme::kNamed, "named"}};
constexpr Wording<YAxis> kYAxes[] = {{YAxis::kUp, "up"}, {YAxis::kDown, "down"}};
constexpr Wording<Side> kSides[] = {{Side::kOd, "OD"}, {Side::kOs, "OS"}, {Side::kUnknown, "unknown"}};

// Synonyms in lower case. The first form of "um" has the micro sign, the second the Greek letter.
constexpr Wording<Unit> kOtherUnits[] = {{Unit::kMillimetres, "millimetres"},
                                         {Unit::kMillimetres, "millimeters"},
                                         {Unit::kMicrometres, "\u00b5m"},
                                         {Unit::kMicrometres, "\u03bcm"},
                                         {Unit::kMicrometres, "micron"},
                                         {Unit::kMicrometres, "microns"},
                                         {Unit::kMicrometres, "micrometres"},
                                         {Unit::kMicrometres, "micrometers"},
                                         {Unit::kNanometres, "nanometres"},
                                         {Unit::kNanometres, "nanometers"},
                                         {Unit::kWaves, "wave"}};
constexpr Wording<IndexScheme> kOtherOrders[] = {{IndexScheme::kOsa, "ansi"}, {IndexScheme::kOsa, "osa/ansi"}};
constexpr Wording<Side> kOtherSides[] = {{Side::kOd, "r"}, {Side::kOd, "right"}, {Side::kOd, "re"},
                                         {Side::kOs, "l"}, {Side::kOs, "left"},  {Side::kOs, "le"}};

constexpr std::span<const Wording<Unit>> OtherWordings(Unit) { return kOtherUnits; }
constexpr std::span<const Wording<Normalisation>> OtherWordings(Normalisation) { return {}; }
constexpr std::span<const Wording<IndexScheme>> OtherWordings(IndexScheme) { return kOtherOrders; }
constexpr std::span<const Wording<YAxis>> OtherWordings(YAxis) { return {}; }
constexpr std::span<const Wording<Side>> OtherWordings(Side) { return kOtherSides; }

constexpr std::span<const Wording<Unit>> Wordings(Unit) { return kUnits; }
constexpr std::span<const Wording<Normalisation>> Wordings(Normalisation) { return kNormalisations; }
constexpr std::span<const Wording<IndexScheme>> Wordings(IndexScheme) { return kOrders; }
constexpr std::span<const Wording<YAxis>> Wordings(YAxis) { return kYAxes; }
constexpr std::span<const Wording<Side>> Wordings(Side) { return kSides; }

double NanometresOf(const Convention& convention) {
  switch (convention.unit) {
    case Unit::kMillimetres:
      return 1e6;
    case Unit::kMicrometres:
      return 1e3;
    case Unit::kNanometres:
      return 1.0;
    case Unit::kWaves:
      break;
  }
  return convention.wavelength.value();
}

std::optional<ZernikeTerm> TermOf(IndexScheme scheme, std::size_t position) {
  switch (scheme) {
    case IndexScheme::kOsa:
      return position < kMaxTerms ? std::optional(Term(position)) : std::nullopt;
    case IndexScheme::kNoll:
      return TermOfNoll(position + 1);
    case IndexScheme::kFringe:
      return TermOfFringe(position + 1);
    case IndexScheme::kNamed:
      break;
  }
  return std::nullopt;
}

bool HasPlace(IndexScheme scheme, ZernikeTerm term) {
  return scheme != IndexScheme::kFringe || FringeIndex(term).has_value();
}

}  // namespace

template <class Value>
std::string_view Word(Value value) {
  const auto words = Wordings(value);
  return std::find_if(words.begin(), words.end(), [value](const auto& w) { return w.first == value; })->second;
}

template <class Value>
std::optional<Value> ValueOf(std::string_view word) {
  const std::string given = Folded(word);
  for (const auto& [value, its] : Wordings(Value())) {
    if (Folded(its) == given) return value;
  }
  for (const auto& [value, its] : OtherWordings(Value())) {
    if (its == given) return value;
  }
  return std::nullopt;
}

template <class Value>
std::string WordsOf() {
  std::string list;
  for (const auto& [value, word] : Wordings(Value())) list += (list.empty() ? "" : ", ") + std::string(word);
  return list;
}

template std::string_view Word(Unit);
template std::string_view Word(Normalisation);
template std::string_view Word(IndexScheme);
template std::string_view Word(YAxis);
template std::string_view Word(Side);
template std::optional<Unit> ValueOf(std::string_view);
template std::optional<Normalisation> ValueOf(std::string_view);
template std::optional<IndexScheme> ValueOf(std::string_view);
template std::optional<YAxis> ValueOf(std::string_view);
template std::optional<Side> ValueOf(std::string_view);
template std::string WordsOf<Unit>();
template std::string WordsOf<Normalisation>();
template std::string WordsOf<IndexScheme>();
template std::string WordsOf<YAxis>();
template std::string WordsOf<Side>();

std::optional<Convention> ConventionNamed(std::string_view name) {
  const std::string given = Folded(name);
  if (given == "osa") return kOsaConvention;
  if (given == "library") return kLibraryConvention;
  return std::nullopt;
}

std::string UnitText(const Convention& convention) {
  if (convention.unit == Unit::kWaves) return "waves of " + ShortestText(convention.wavelength.value()) + " nm";
  return std::string(Word(convention.unit));
}

std::string Text(const Convention& convention) {
  const bool orthonormal = convention.normalisation == Normalisation::kOrthonormal;
  return UnitText(convention) + (orthonormal ? ", orthonormal" : ", not normalised") + ", index scheme " +
         std::string(Word(convention.scheme)) + ", y " + std::string(Word(convention.yAxis));
}

Coefficients FromList(IndexScheme scheme, const std::vector<double>& list) {
  Coefficients coefficients;
  for (std::size_t position = 0; position < list.size(); ++position) {
    const std::optional<ZernikeTerm> term = TermOf(scheme, position);
    if (!term) throw ListTooLong(list.size(), scheme, position);
    const std::size_t j = OsaIndex(*term);
    if (j >= coefficients.size()) coefficients.resize(j + 1);
    coefficients[j] = list[position];
  }
  return coefficients;
}

std::optional<ZernikeTerm> TermWithoutPlace(IndexScheme scheme, const Coefficients& coefficients) {
  for (std::size_t j = 0; j < coefficients.size(); ++j) {
    if (coefficients[j] != 0.0 && !HasPlace(scheme, Term(j))) return Term(j);
  }
  return std::nullopt;
}

std::vector<double> ToList(IndexScheme scheme, const Coefficients& coefficients) {
  if (const auto term = TermWithoutPlace(scheme, coefficients)) {
    throw TermNotInScheme(*term, coefficients[OsaIndex(*term)], scheme);
  }
  std::vector<double> list;
  for (std::size_t position = 0;; ++position) {
    const std::optional<ZernikeTerm> term = TermOf(scheme, position);
    if (!term) break;
    const std::size_t j = OsaIndex(*term);
    list.push_back(j < coefficients.size() ? coefficients[j] : 0.0);
  }
  // Trailing zeros are not needed.
  while (list.size() > 1 && list.back() == 0.0) list.pop_back();
  return list;
}

Coefficients Converted(Coefficients coefficients, const Convention& from, const Convention& to) {
  const double given = NanometresOf(from), wanted = NanometresOf(to);
  for (std::size_t j = 0; j < coefficients.size(); ++j) {
    double& c = coefficients[j];
    const ZernikeTerm term = Term(j);
    if (from.normalisation != to.normalisation) {
      const double norm = NormFactor(term);
      c = from.normalisation == Normalisation::kOrthonormal ? c * norm : c / norm;
    }
    if (given != wanted) c = c * given / wanted;
    // Sines are odd in y. The subtraction keeps the sign of zero.
    if (from.yAxis != to.yAxis && term.m < 0) c = 0.0 - c;
  }
  return coefficients;
}

Coefficients Mirrored(Coefficients coefficients) {
  for (std::size_t j = 0; j < coefficients.size(); ++j) {
    const int m = Term(j).m;
    const bool odd = m % 2 != 0;
    if (m < 0 ? !odd : odd) coefficients[j] = 0.0 - coefficients[j];
  }
  return coefficients;
}

std::array<double, ORVANEL_COEFFICIENTS> Bare(const LibraryCoefficients& coefficients) {
  std::array<double, ORVANEL_COEFFICIENTS> bare;
  std::transform(coefficients.begin(), coefficients.end(), bare.begin(), [](Millimetres c) { return c.value(); });
  return bare;
}

}  // namespace orvanel::eye
