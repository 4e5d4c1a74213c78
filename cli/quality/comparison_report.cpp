// Aligns the columns of the table. Numbers without a meaning are null in JSON.
#include "cli/quality/comparison_report.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "cli/console/report.h"
#include "cli/physical_summary.h"
#include "evaluation/model_notes.h"
#include "evaluation/quality_notes.h"
#include "eye/prescription.h"
#include "eye/refraction.h"

namespace orvanel::cli {
namespace {

using Json = nlohmann::ordered_json;

std::string ComparedCell(std::string text) {
  constexpr std::size_t kWidth = 13;
  text.resize(std::max(text.size() + 1, kWidth), ' ');
  return text;
}

std::string ComparedText(double value) {
  constexpr int kDigits = 4;
  return std::isfinite(value) ? NumberText(value + 0.0, kDigits) : "-";
}

std::string RowsText(const std::string& label, const std::vector<ComparedNumber>& rows, bool describes) {
  std::string text;
  for (const ComparedNumber& row : rows) {
    std::string line = ComparedCell(row.name + (row.unit == "1" ? "" : ", " + row.unit)) +
                       ComparedCell(ComparedText(row.a)) + ComparedCell(ComparedText(row.b)) +
                       ComparedCell(ComparedText(row.difference)) + (describes ? row.description : "");
    line.resize(line.find_last_not_of(' ') + 1);
    text += ReportLine(text.empty() ? label : "", line);
  }
  return text;
}

std::string SideLines(const std::string& label, const SimulatedEye& simulated) {
  const Eye &measured = simulated.measured, &eye = simulated.eye;
  const Coefficients& osa = eye.coefficients.osa();
  std::string text = ReportLine(label, (measured.name.empty() ? measured.file : measured.name) + ", laterality " +
                                           SideText(eye.side) + ", pupil " + NumberText(eye.pupil.value(), 6) + " mm");
  text += ReportLine(
      "", Text(ToRefraction(LeastSquaresRefraction(osa, eye.pupil), CylinderSign::kMinus)) + " (least squares)");
  for (const std::string& change : simulated.changes) text += ReportLine("", change);
  return text + ReportLine("", ReferenceNote(simulated.results));
}

Json ComparedJson(double value) { return std::isfinite(value) ? Json(value + 0.0) : Json(nullptr); }

Json RowsJson(const std::vector<ComparedNumber>& rows) {
  Json json = Json::array();
  for (const ComparedNumber& row : rows) {
    json.push_back({{"name", row.name},
                    {"description", row.description},
                    {"unit", row.unit},
                    {"a", ComparedJson(row.a)},
                    {"b", ComparedJson(row.b)},
                    {"difference", ComparedJson(row.difference)}});
  }
  return json;
}

Json SideJson(const SimulatedEye& simulated) {
  return {{"file", simulated.measured.file}, {"name", simulated.measured.name},
          {"eye", Word(simulated.eye.side)}, {"pupil_diameter_mm", simulated.eye.pupil.value()},
          {"changes", simulated.changes},    {"model", ModelJson(simulated.results)},
          {"warnings", simulated.warnings}};
}

}  // namespace

std::string ComparisonText(const Comparison& comparison) {
  std::string text = SideLines("Eye A", comparison.a) + SideLines("Eye B", comparison.b);
  text += ReportLine("Compared", ComparedCell("") + ComparedCell("A") + ComparedCell("B") + "B - A");
  text += RowsText("Refraction", comparison.refractions, true);
  text += RowsText("Wavefront", comparison.rms, true);
  if (comparison.differenceRms) {
    text += ReportLine("", "RMS of the wavefront B - A: " + ComparedText(comparison.differenceRms->value()) +
                               " um, higher orders " + ComparedText(comparison.higherDifferenceRms->value()) + " um");
  }
  text += RowsText("Coefficients", comparison.coefficients, true);
  text += RowsText("Metrics", comparison.metrics, false);
  for (const std::string& sentence : QualityConditions(comparison.metricRequest)) text += ReportLine("", sentence);
  std::string label = "Notes";
  for (const std::string& note : comparison.notes) text += ReportLine(std::exchange(label, ""), note);
  return text;
}

std::string ComparisonJson(const Comparison& comparison) {
  Json json;
  json["eyes"] = {SideJson(comparison.a), SideJson(comparison.b)};
  json["differences"] = "b - a";
  json["conditions"] = QualityConditions(comparison.metricRequest);
  json["refraction"] = RowsJson(comparison.refractions);
  json["wavefront"] = RowsJson(comparison.rms);
  json["rms_of_difference_um"] = nullptr;
  json["higher_rms_of_difference_um"] = nullptr;
  if (comparison.differenceRms) {
    json["rms_of_difference_um"] = comparison.differenceRms->value();
    json["higher_rms_of_difference_um"] = comparison.higherDifferenceRms->value();
  }
  json["coefficients"] = RowsJson(comparison.coefficients);
  json["metrics"] = RowsJson(comparison.metrics);
  json["notes"] = comparison.notes;
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace orvanel::cli
