// Rounds values, and states only the conditions that count.
#include "evaluation/quality_notes.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "base/number_text.h"
#include "metrics/quality_names.h"

namespace orvanel::evaluation {
namespace {

std::string WithUnit(double number, int digits, const QualityRow& row) {
  if (!std::isfinite(number)) return "unknown";
  std::string text = NumberText(number, digits);
  if (std::string_view(row.unit) != "1") text.append(" ").append(row.unit);
  return text;
}

// A place on the retina; below the error of the computation it is 0.
std::string PlaceText(double arcmin) {
  constexpr double kError = 1e-6;
  return NumberText(std::fabs(arcmin) < kError ? 0.0 : arcmin, 3);
}

std::vector<std::string> ConditionsWith(const std::string& origin, QualityReference reference,
                                        const QualityRequest& request) {
  const auto any = [&request](auto property) {
    return std::any_of(request.metrics.begin(), request.metrics.end(),
                       [property](QualityMetric metric) { return property(RowOf(metric)); });
  };
  std::vector<std::string> sentences;
  if (any([](const QualityRow& row) { return row.usesOrigin; })) {
    sentences.push_back("Origin of the metrics: " + origin + ".");
  }
  if (any([](const QualityRow& row) { return row.isRatio && row.plane != QualityPlane::kPupil; })) {
    sentences.emplace_back(reference == QualityReference::kSameLight
                               ? "Ratios are to the pupil without aberration in the same light (same-light)."
                               : "Ratios are to the pupil without aberration at the reference wavelength "
                                 "(monochromatic).");
  }
  if (any([](const QualityRow& row) { return row.usesContrast; })) {
    sentences.emplace_back(request.contrast.isDefault() ? "Contrast sensitivity: Campbell and Green (1965)."
                                                        : "Contrast sensitivity: a table of the user.");
  }
  if (any([](const QualityRow& row) { return row.metric == QualityMetric::kNs; })) {
    sentences.push_back(
        "Standard deviation of the Gaussian of NS, in arc minutes: " + ShortestText(request.gaussianSdArcmin) + ".");
  }
  return sentences;
}

}  // namespace

QualityText TextOf(const QualityValue& value) {
  const QualityRow& row = RowOf(value.metric);
  constexpr int kDigits = 4;
  QualityText text{row.name, WithUnit(value.value, kDigits, row), "", "", metrics::TextOf(value.note)};
  if (std::isfinite(value.limit)) text.limit = WithUnit(value.limit, kDigits, row);
  if (std::isfinite(value.value)) text.error = WithUnit(value.error, 1, row);
  return text;
}

QualityText TextOf(const MtfValue& value) {
  return {MtfName(value.frequencyCpd), NumberText(value.value, 4), "", NumberText(value.error, 1), ""};
}

std::vector<QualityText> TextsOf(const Quality& quality) {
  std::vector<QualityText> texts;
  for (const QualityValue& value : quality.values) texts.push_back(TextOf(value));
  for (const MtfValue& value : quality.mtf) texts.push_back(TextOf(value));
  return texts;
}

std::vector<std::string> QualityConditions(const Quality& quality, const QualityRequest& request) {
  return ConditionsWith(std::string(Word(quality.origin)) + ", at x " + PlaceText(quality.originX) + ", y " +
                            PlaceText(quality.originY) + " arc minutes in the view of the patient",
                        quality.reference, request);
}

std::vector<std::string> QualityConditions(const QualityRequest& request) {
  return ConditionsWith(std::string(Word(request.origin)) + ", found for each image", request.reference, request);
}

}  // namespace orvanel::evaluation
