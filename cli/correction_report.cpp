// Formats lenses, their values, and what the change means. Names of keys contain the unit.
#include "cli/correction_report.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>
#include <variant>

#include "base/number_text.h"
#include "cli/coefficient_report.h"
#include "cli/console/report.h"
#include "cli/physical_summary.h"
#include "evaluation/model_notes.h"
#include "metrics/acuity_estimate.h"
#include "metrics/quality_names.h"

namespace orvanel::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kDigits = 4;

const QualityRow& MetricOf(const CorrectedEye& corrected) { return RowOf(corrected.metric.metrics.front()); }

// "0.3636", "2.418 arcmin", or why there is none.
std::string CorrectionValueText(const QualityValue& quality) {
  if (std::isnan(quality.value)) {
    return quality.note == QualityNote::kNone ? "not computed: the wavefront is too steep" : TextOf(quality.note);
  }
  const std::string unit = RowOf(quality.metric).unit;
  return NumberText(quality.value, kDigits) + (unit == "1" ? "" : " " + unit);
}

std::string LensLine(const std::string& label, const LensValue& lens, const std::string& more = "") {
  constexpr std::size_t kLensWidth = 19;
  std::string text = PrescriptionText(lens.lens.power);
  text.resize(std::max(text.size() + 1, kLensWidth), ' ');
  text += CorrectionValueText(lens.quality);
  if (lens.quality.note == QualityNote::kPlaceNotUnique || lens.quality.note == QualityNote::kBelowZero) {
    text += " (" + std::string(Word(lens.quality.note)) + ")";
  }
  return ReportLine(label, text + more);
}

std::string ConditionsText(const CorrectedEye& corrected) {
  const QualityRow& row = MetricOf(corrected);
  std::string text = std::string(row.name) + ", " + (row.higherIsBetter ? "higher" : "lower") + " is better";
  if (row.usesOrigin) text += "; origin " + std::string(Word(corrected.metric.origin));
  if (row.isRatio && row.plane != QualityPlane::kPupil) {
    text += "; reference " + std::string(Word(corrected.metric.reference));
  }
  return text;
}

std::string GridText(const LensGrid& grid) {
  const std::string step = "steps of " + ShortestText(grid.step.value()) + " D";
  return grid.sphereOnly ? step : step + " and " + ShortestText(grid.axisStep.value()) + " degrees";
}

std::string WornText(const CorrectedEye& corrected) {
  const Millimetres vertex = corrected.request.vertex;
  return (vertex > Millimetres(0.0) ? "worn " + ShortestText(vertex.value()) + " mm from the cornea"
                                    : std::string("at the cornea")) +
         "; sphere/cylinder x axis, minus cylinder, axes of trial frames (TABO)";
}

std::string NoticeableText(const LensValue& before, const LensValue& after) {
  const std::optional<double> steps = NoticeableDifferences(before.quality, after.quality);
  return steps ? NumberText(*steps, 3) : "not known";
}

std::string ChangeLines(const CorrectedEye& corrected) {
  const Correction& c = corrected.correction;
  const double free = c.best.quality.value - c.none.quality.value;
  const double inCase = c.inCase.quality.value - c.none.quality.value;
  const std::string unit = MetricOf(corrected).unit;
  std::string text;
  if (!std::isnan(free)) {
    text += ReportLine("Change", NumberText(free, kDigits) + " with the best lens, " + NumberText(inCase, kDigits) +
                                     " with that of the trial case" + (unit == "1" ? "" : ", in " + unit));
  }
  if (!NoticeableDifferences(c.best.quality, c.best.quality)) return text;
  return text + ReportLine(text.empty() ? "Change" : "",
                           NoticeableText(c.none, c.best) + " and " + NoticeableText(c.none, c.inCase) +
                               " just noticeable differences (" + ShortestText(kNoticeableStep) + " in log10 VSX; " +
                               kAcuitySource + ")");
}

std::string AcuityText(const LensValue& lens) {
  const auto acuity = AcuityFrom(lens.quality);
  if (const double* const logMar = std::get_if<double>(&acuity)) return FixedText(*logMar, 2) + " logMAR";
  return "none, since " + TextOf(std::get<NoAcuity>(acuity));
}

std::string AcuityLines(const CorrectedEye& corrected) {
  const Correction& c = corrected.correction;
  const auto best = AcuityFrom(c.best.quality);
  if (std::holds_alternative<NoAcuity>(best) && std::get<NoAcuity>(best) == NoAcuity::kOtherMetric) {
    return ReportLine("Acuity", "not estimated: " + TextOf(NoAcuity::kOtherMetric));
  }
  return ReportLine("Acuity", "estimated without a lens: " + AcuityText(c.none)) +
         ReportLine("", "with the best lens: " + AcuityText(c.best)) +
         ReportLine("", "with that of the trial case: " + AcuityText(c.inCase)) +
         ReportLine(
             "", "by " + std::string(kAcuitySource) + ", with a spread of " + ShortestText(kAcuitySpread) + " logMAR");
}

// One line for each kind of note that a value has.
std::string NoteLines(const Correction& c) {
  std::string text;
  std::vector<QualityNote> seen;
  for (const LensValue* const lens : {&c.none, &c.best, &c.inCase, &c.leastSquares, &c.paraxial}) {
    const QualityNote note = lens->quality.note;
    if (note == QualityNote::kNone || std::find(seen.begin(), seen.end(), note) != seen.end()) continue;
    seen.push_back(note);
    text += ReportLine(seen.size() == 1 ? "Notes" : "", std::string(Word(note)) + ": " + TextOf(note));
  }
  return text;
}

Json NumberOrNull(double number) { return std::isnan(number) ? Json(nullptr) : Json(number); }

Json LensJson(const LensValue& lens) {
  const Refraction& power = lens.lens.power;
  Json json = {{"sphere_d", power.sphere.value()},
               {"cylinder_d", power.cylinder.value()},
               {"axis_deg", power.axis.value()},
               {"value", NumberOrNull(lens.quality.value)}};
  if (lens.quality.note != QualityNote::kNone) json["note"] = Word(lens.quality.note);
  const auto acuity = AcuityFrom(lens.quality);
  if (const double* const logMar = std::get_if<double>(&acuity)) {
    json["estimated_acuity_logmar"] = *logMar;
  } else {
    json["no_acuity_since"] = TextOf(std::get<NoAcuity>(acuity));
  }
  return json;
}

Json DifferencesJson(const LensValue& before, const LensValue& after) {
  const auto steps = NoticeableDifferences(before.quality, after.quality);
  return steps ? Json(*steps) : Json(nullptr);
}

}  // namespace

std::string CorrectionText(const CorrectedEye& corrected) {
  const Correction& c = corrected.correction;
  std::string text = EyeLines(corrected.measured, corrected.changes);
  text += ReportLine("Pupil", NumberText(corrected.eye.pupil.value(), 6) + " mm");
  text += ReportLine("Light", ReferenceNote(corrected.conditions));
  text += ReportLine("Metric", ConditionsText(corrected));
  text += ReportLine("Search", std::to_string(c.evaluations) + " lenses tried, " +
                                   (c.converged ? "converged" : "not converged") + "; " +
                                   std::to_string(c.evaluationsInCase) + " more of the trial case" +
                                   (corrected.request.grid.sphereOnly ? "; spheres only" : ""));
  text += LensLine("No lens", c.none);
  text += LensLine("Best lens", c.best);
  text += LensLine("Trial case", c.inCase, "  in " + GridText(corrected.request.grid));
  text += LensLine("Least squares", c.leastSquares);
  text += LensLine("Paraxial", c.paraxial);
  text += ReportLine("", WornText(corrected));
  return text + ChangeLines(corrected) + AcuityLines(corrected) + NoteLines(c);
}

std::string CorrectionJson(const CorrectedEye& corrected) {
  const Correction& c = corrected.correction;
  const QualityRow& row = MetricOf(corrected);
  const LensGrid& grid = corrected.request.grid;
  Json json;
  json["eye"] = {{"file", corrected.measured.file},
                 {"name", corrected.measured.name},
                 {"eye", Word(corrected.eye.side)},
                 {"pupil_diameter_mm", corrected.eye.pupil.value()},
                 {"changes", corrected.changes}};
  json["model"] = ModelJson(corrected.conditions);
  json["metric"] = {{"name", row.name},
                    {"unit", row.unit},
                    {"definition", row.definition},
                    {"source", row.source},
                    {"higher_is_better", row.higherIsBetter},
                    {"origin", Word(corrected.metric.origin)},
                    {"reference", Word(corrected.metric.reference)}};
  json["search"] = {{"sphere_only", grid.sphereOnly},
                    {"evaluations", c.evaluations},
                    {"converged", c.converged},
                    {"evaluations_in_trial_case", c.evaluationsInCase},
                    {"trial_case_step_d", grid.step.value()},
                    {"trial_case_axis_step_deg", grid.axisStep.value()}};
  json["vertex_distance_mm"] = corrected.request.vertex.value();
  json["lenses"] = {{"none", LensJson(c.none)},
                    {"best", LensJson(c.best)},
                    {"trial_case", LensJson(c.inCase)},
                    {"least_squares", LensJson(c.leastSquares)},
                    {"paraxial", LensJson(c.paraxial)}};
  json["noticeable_differences"] = {{"best", DifferencesJson(c.none, c.best)},
                                    {"trial_case", DifferencesJson(c.none, c.inCase)},
                                    {"log10_vsx_each", kNoticeableStep},
                                    {"source", kAcuitySource}};
  json["acuity_estimate"] = {{"source", kAcuitySource}, {"spread_logmar", kAcuitySpread}};
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace orvanel::cli
