// Compares names without letter case.
#include "metrics/quality_names.h"

#include <algorithm>
#include <array>

#include "base/error.h"
#include "base/number_text.h"
#include "base/spelling.h"
#include "base/split.h"
#include "metrics/errors.h"

namespace orvanel::metrics {
namespace {

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return lower;
}

bool IsNear(std::string_view name, std::string_view known) {
  constexpr std::size_t kShort = 4, kLongestName = 20;
  if (name.size() < 2 || name.size() > kLongestName) return false;
  const std::string a = Lower(name), b = Lower(known);
  return b.find(a) != std::string::npos || EditDistance(a, b) <= (b.size() > kShort ? 2U : 1U);
}

template <class Choice, std::size_t N>
std::optional<Choice> Named(std::string_view word, const std::array<Choice, N>& choices) {
  const auto* const found = std::find_if(choices.begin(), choices.end(), [word](Choice c) { return word == Word(c); });
  if (found == choices.end()) return std::nullopt;
  return *found;
}

// The names of these rows of the catalogue.
template <class Chosen>
std::string NamesOf(Chosen chosen) {
  std::string names;
  for (const QualityRow& row : QualityCatalogue()) {
    if (chosen(row)) names += (names.empty() ? "" : ", ") + std::string(row.name);
  }
  return names;
}

// Of a unit in the name of a column.
std::string UnitEnding(std::string_view unit) {
  if (unit == "1") return "";
  return std::string("_").append(unit == "c/deg" ? "cpd" : Lower(unit));
}

// LIB is a share of the light, and VOTF and VNOTF are relative to the eye's own MTF.
bool IsToReference(const QualityRow& row) {
  return row.isRatio && row.plane != QualityPlane::kPupil && row.metric != QualityMetric::kLib &&
         row.metric != QualityMetric::kVotf && row.metric != QualityMetric::kVnotf;
}

}  // namespace

std::vector<QualityMetric> QualityMetricsNamed(std::string_view list) {
  std::vector<QualityMetric> chosen;
  const auto add = [&chosen](QualityMetric metric) {
    if (std::find(chosen.begin(), chosen.end(), metric) == chosen.end()) chosen.push_back(metric);
  };
  for (const std::string_view name : Split(list)) {
    if (Lower(name) == "all") {
      for (const QualityRow& row : QualityCatalogue()) add(row.metric);
      continue;
    }
    const std::optional<QualityMetric> metric = QualityMetricNamed(name);
    if (!metric) throw UnknownMetric(name, QualityMetricNames() + ", all", QualityMetricNamesNear(name));
    add(*metric);
  }
  return chosen;
}

void NameMetrics(std::string_view list, QualityRequest& request) {
  constexpr std::string_view kMtfAt = "mtf@";
  std::string names;
  std::vector<double> frequencies;
  bool anyName = false;
  for (const std::string_view name : Split(list)) {
    if (!Lower(name).starts_with(kMtfAt)) {
      if (anyName) names += ',';
      names += name;
      anyName = true;
      continue;
    }
    double frequency = 0.0;
    try {
      frequency = ParseNumber(name.substr(kMtfAt.size()));
    } catch (const Error&) {
    }
    if (!(frequency > 0.0)) {
      throw Error(Quoted(name) + " has no frequency above 0 in cycles/degree; write it as in MTF@10");
    }
    if (std::find(frequencies.begin(), frequencies.end(), frequency) == frequencies.end()) {
      frequencies.push_back(frequency);
    }
  }
  request.metrics = anyName ? QualityMetricsNamed(names) : std::vector<QualityMetric>();
  request.mtfAtCpd = frequencies;
}

std::string MtfName(double frequencyCpd) { return "MTF@" + ShortestText(frequencyCpd); }

std::vector<QualityColumn> ColumnsOf(const QualityRequest& request) {
  std::vector<QualityColumn> columns;
  for (const QualityMetric metric : request.metrics) {
    const QualityRow& row = RowOf(metric);
    columns.push_back({row.name, row.unit, row.higherIsBetter, row.hasGradient, metric != QualityMetric::kEnt});
  }
  for (const double frequency : request.mtfAtCpd) columns.push_back({MtfName(frequency), "1"});
  return columns;
}

std::vector<double> ValuesOf(const Quality& quality) {
  std::vector<double> values;
  for (const QualityValue& value : quality.values) values.push_back(value.value);
  for (const MtfValue& mtf : quality.mtf) values.push_back(mtf.value);
  return values;
}

std::string QualityMetricNames() {
  return NamesOf([](const QualityRow&) { return true; });
}

std::string QualityMetricNamesNear(std::string_view name) {
  return NamesOf([name](const QualityRow& row) { return IsNear(name, row.name); });
}

std::string ColumnNameOf(QualityMetric metric, const QualityRequest& request) {
  const QualityRow& row = RowOf(metric);
  std::string name = row.name + UnitEnding(row.unit);
  if (metric == QualityMetric::kNs) name += "_sd_" + ShortestText(request.gaussianSdArcmin) + "_arcmin";
  if (row.usesContrast && !request.contrast.isDefault()) name += "_own_csf";
  if (row.usesOrigin) name += "_origin_" + std::string(Word(request.origin));
  if (IsToReference(row)) {
    name += "_reference_";
    for (const char c : std::string_view(Word(request.reference))) name += c == '-' ? '_' : c;
  }
  return name + "_physical";
}

const char* Word(QualityOrigin origin) {
  switch (origin) {
    case QualityOrigin::kAxis:
      return "axis";
    case QualityOrigin::kPeak:
      return "peak";
    case QualityOrigin::kCentroid:
      return "centroid";
    case QualityOrigin::kBest:
      return "best";
  }
  return "";
}

std::optional<QualityOrigin> QualityOriginNamed(std::string_view word) {
  return Named(word,
               std::array{QualityOrigin::kAxis, QualityOrigin::kPeak, QualityOrigin::kCentroid, QualityOrigin::kBest});
}

const char* Word(QualityReference reference) {
  switch (reference) {
    case QualityReference::kSameLight:
      return "same-light";
    case QualityReference::kMonochromatic:
      return "monochromatic";
  }
  return "";
}

std::optional<QualityReference> QualityReferenceNamed(std::string_view word) {
  return Named(word, std::array{QualityReference::kSameLight, QualityReference::kMonochromatic});
}

const char* Word(QualityNote note) {
  switch (note) {
    case QualityNote::kNone:
      return "";
    case QualityNote::kPlaceNotUnique:
      return "place-not-unique";
    case QualityNote::kBelowZero:
      return "below-zero";
    case QualityNote::kEmptyReference:
      return "empty-reference";
    case QualityNote::kOutsideWindow:
      return "outside-window";
    case QualityNote::kEndOfContrast:
      return "end-of-contrast";
  }
  return "";
}

std::string TextOf(QualityNote note) {
  switch (note) {
    case QualityNote::kNone:
      return "";
    case QualityNote::kPlaceNotUnique:
      return "the origin is one of several places that are equally high, and rounding picks it";
    case QualityNote::kBelowZero:
      return "a value below 0 is worse than even light; it has no logarithm and gives no acuity";
    case QualityNote::kEmptyReference:
      return "the eye without aberration has the value 0, so that there is no ratio";
    case QualityNote::kOutsideWindow:
      return "more than half of the light is farther away than the computation reaches";
    case QualityNote::kEndOfContrast:
      return "the value is the frequency at which the contrast sensitivity ends";
  }
  return "";
}

}  // namespace orvanel::metrics
