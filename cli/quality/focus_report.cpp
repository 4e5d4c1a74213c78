// Aligns the columns of the table. Names of keys and columns contain the unit.
#include "cli/quality/focus_report.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "base/number_text.h"
#include "cli/coefficient_report.h"
#include "cli/console/report.h"
#include "cli/physical_summary.h"
#include "evaluation/model_notes.h"
#include "evaluation/quality_notes.h"

namespace orvanel::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kFocusDigits = 4;
constexpr std::size_t kFocusColumn = 10;

bool HasUnit(const QualityColumn& column) { return std::string(column.unit) != "1"; }

std::string Padded(std::string text) {
  text.resize(std::max(text.size() + 1, kFocusColumn), ' ');
  return text;
}

std::string FocusValueText(double value) { return std::isfinite(value) ? NumberText(value, kFocusDigits) : "-"; }

std::string OptimumText(const FocusCurve& curve) {
  if (!curve.optimum) return "no value";
  const FocusOptimum& best = *curve.optimum;
  return Padded(FocusValueText(best.value)) + "with " + NumberText(best.lens, kFocusDigits) + " D" +
         (best.atEdge ? ", the last lens" : "");
}

std::string FocusDepthText(const DepthOfFocus& depth) {
  const auto end = [](double lens, bool isKnown) {
    return NumberText(lens, kFocusDigits) + (isKnown ? "" : " (end of the range)");
  };
  return (depth.isWhole() ? "" : "more than ") + NumberText(depth.width(), kFocusDigits) + " D, from " +
         end(depth.from, depth.endsBelow) + " to " + end(depth.to, depth.endsAbove) + " D";
}

Json FocusNumber(double number) { return std::isfinite(number) ? Json(number + 0.0) : Json(nullptr); }

Json CurveJson(const FocusCurve& curve) {
  Json json = {
      {"name", curve.column.name}, {"unit", curve.column.unit}, {"larger_is_better", curve.column.higherIsBetter},
      {"values", Json::array()},   {"best", nullptr},           {"depth_of_focus", Json::array()}};
  for (const double value : curve.values) json["values"].push_back(FocusNumber(value));
  if (!curve.optimum) return json;
  const FocusOptimum& best = *curve.optimum;
  json["best"] = {{"lens_d", best.lens + 0.0}, {"value", best.value}, {"at_the_last_lens", best.atEdge}};
  for (const DepthOfFocus& depth : best.depths) {
    json["depth_of_focus"].push_back({{"share", depth.share},
                                      {"threshold", depth.threshold},
                                      {"width_d", depth.width()},
                                      {"from_d", depth.from + 0.0},
                                      {"to_d", depth.to + 0.0},
                                      {"ends_below", depth.endsBelow},
                                      {"ends_above", depth.endsAbove},
                                      {"again_outside", depth.again}});
  }
  return json;
}

}  // namespace

std::string ThroughFocusText(const FocusedEye& focused) {
  const ThroughFocus& focus = focused.focus;
  std::string text = EyeLines(focused.measured, focused.changes);
  text += ReportLine("Pupil", NumberText(focused.eye.pupil.value(), 6) + " mm");
  text += ReportLine("Light", ReferenceNote(focused.conditions));
  for (const std::string& sentence : QualityConditions(focused.metrics)) text += ReportLine("", sentence);
  text += ReportLine("Lenses", "before the eye, in dioptres; a plus lens makes the eye short-sighted");
  std::string head = Padded("Lens, D");
  for (const FocusCurve& curve : focus.curves) {
    head += Padded(curve.column.name + (HasUnit(curve.column) ? ", " + std::string(curve.column.unit) : ""));
  }
  const auto line = [&text](const std::string& label, std::string row) {
    row.resize(row.find_last_not_of(' ') + 1);
    text += ReportLine(label, row);
  };
  line("Metrics", head);
  for (std::size_t i = 0; i < focus.lenses.size(); ++i) {
    std::string row = Padded(NumberText(focus.lenses[i], kFocusDigits));
    for (std::size_t j = 0; j < focus.curves.size(); ++j) {
      const FocusCurve& curve = focus.curves[j];
      const std::size_t width =
          curve.column.name.size() + (HasUnit(curve.column) ? 2 + std::string(curve.column.unit).size() : 0);
      std::string value = Padded(FocusValueText(curve.values[i]));
      value.resize(std::max({value.size(), kFocusColumn, width + 1}), ' ');
      row += value;
    }
    line("", row);
  }
  for (std::size_t j = 0; j < focus.curves.size(); ++j) {
    const FocusCurve& curve = focus.curves[j];
    line(j == 0 ? "Best focus" : "", Padded(curve.column.name) + OptimumText(curve));
  }
  std::string label = "Depth of focus";
  for (const FocusCurve& curve : focus.curves) {
    if (!curve.optimum) continue;
    for (const DepthOfFocus& depth : curve.optimum->depths) {
      const std::string level = curve.column.higherIsBetter ? NumberText(100.0 * depth.share, 3) + " %"
                                                            : "x" + NumberText(1.0 / depth.share, 3);
      line(label, Padded(curve.column.name) + Padded("at " + level) + FocusDepthText(depth));
      label.clear();
    }
  }
  return text;
}

std::string ThroughFocusJson(const FocusedEye& focused) {
  Json json;
  json["eye"] = {{"file", focused.measured.file},
                 {"name", focused.measured.name},
                 {"eye", Word(focused.eye.side)},
                 {"pupil_diameter_mm", focused.eye.pupil.value()},
                 {"changes", focused.changes}};
  json["model"] = ModelJson(focused.conditions);
  json["conditions"] = QualityConditions(focused.metrics);
  json["lens_sign"] = "a plus lens makes the eye short-sighted; the best lens is the one to be worn";
  json["lenses_d"] = focused.focus.lenses;
  json["metrics"] = Json::array();
  for (const FocusCurve& curve : focused.focus.curves) json["metrics"].push_back(CurveJson(curve));
  json["warnings"] = focused.warnings;
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string ThroughFocusCsv(const ThroughFocus& focus) {
  std::string text = "lens_d";
  for (const FocusCurve& curve : focus.curves) {
    const std::string unit = curve.column.unit;
    text += "," + curve.column.name + (HasUnit(curve.column) ? "_" + (unit == "c/deg" ? "cpd" : unit) : "");
  }
  text += "\n";
  for (std::size_t i = 0; i < focus.lenses.size(); ++i) {
    text += ShortestText(focus.lenses[i]);
    for (const FocusCurve& curve : focus.curves) {
      text += ",";
      if (std::isfinite(curve.values[i])) text += ShortestText(curve.values[i] + 0.0);
    }
    text += "\n";
  }
  return text;
}

}  // namespace orvanel::cli
