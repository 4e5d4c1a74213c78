// Aligns the columns of the table. Names of keys contain no units; each value states its own.
#include "cli/quality/uncertainty_report.h"

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

std::string Cell(const std::string& text) {
  constexpr std::size_t kWidth = 13;
  std::string cell = text;
  cell.resize(std::max(text.size() + 1, kWidth), ' ');
  return cell;
}

std::string UncertainText(double value) {
  constexpr int kDigits = 4;
  return std::isfinite(value) ? NumberText(value + 0.0, kDigits) : "-";
}

Json UncertainNumber(double value) { return std::isfinite(value) ? Json(value + 0.0) : Json(nullptr); }

std::string MethodText(const UncertainEye& uncertain) {
  return uncertain.draws == 0 ? "to first order, by gradients"
                              : std::to_string(uncertain.draws) + " eyes drawn, seed " + std::to_string(uncertain.seed);
}

}  // namespace

std::vector<std::string> UncertaintyWarnings(const std::vector<UncertainValue>& values, int draws,
                                             const std::vector<std::string>& far) {
  std::vector<std::string> warnings;
  std::string names;
  for (const UncertainValue& value : values) {
    if (value.missing > 0) {
      warnings.push_back(value.name + " has no value for " + std::to_string(value.missing) + " of the " +
                         std::to_string(draws) + " eyes drawn; they are left out");
    } else if (std::isnan(value.deviation)) {
      names += (names.empty() ? "" : ", ") + value.name;
    }
  }
  if (!names.empty()) warnings.push_back("no gradient for " + names + "; use --draws N");
  if (!far.empty()) {
    std::string list;
    for (const std::string& name : far) list += (list.empty() ? "" : ", ") + name;
    warnings.push_back("first order is wrong for " + list + ", as " + std::to_string(kFewestDraws) +
                       " drawn eyes show: far from linear within this covariance; use --draws N");
  }
  return warnings;
}

std::string UncertaintyText(const UncertainEye& uncertain) {
  std::string text = EyeLines(uncertain.measured, uncertain.changes);
  text += ReportLine("Pupil", NumberText(uncertain.eye.pupil.value(), 6) + " mm");
  text += ReportLine("Light", ReferenceNote(uncertain.conditions));
  for (const std::string& sentence : QualityConditions(uncertain.metrics)) text += ReportLine("", sentence);
  text += ReportLine("Covariance", uncertain.source);
  text += ReportLine("Method", MethodText(uncertain));
  text += ReportLine("Uncertainty", Cell("") + Cell("value") + Cell("mean") + Cell("SD") + "95 % interval");
  for (const UncertainValue& value : uncertain.values) {
    text += ReportLine("", Cell(value.name + (value.unit == "1" ? "" : ", " + value.unit)) +
                               Cell(UncertainText(value.value)) + Cell(UncertainText(value.mean)) +
                               Cell(UncertainText(value.deviation)) +
                               (std::isfinite(value.low) ? UncertainText(value.low) + " to " + UncertainText(value.high)
                                                         : std::string("-")));
  }
  return text + ReportLine("",
                           "M, J0 and J45 are the least-squares refraction: mean sphere and the crossed cylinders at "
                           "0 and 45 degrees.");
}

std::string UncertaintyJson(const UncertainEye& uncertain) {
  Json json;
  json["eye"] = {{"file", uncertain.measured.file},
                 {"name", uncertain.measured.name},
                 {"eye", Word(uncertain.eye.side)},
                 {"pupil_diameter_mm", uncertain.eye.pupil.value()},
                 {"changes", uncertain.changes}};
  json["model"] = ModelJson(uncertain.conditions);
  json["conditions"] = QualityConditions(uncertain.metrics);
  json["covariance"] = uncertain.source;
  json["method"] = uncertain.draws == 0 ? Json("first order") : Json("draws");
  if (uncertain.draws > 0) {
    json["draws"] = uncertain.draws;
    json["seed"] = uncertain.seed;
  }
  json["values"] = Json::array();
  for (const UncertainValue& value : uncertain.values) {
    json["values"].push_back({{"name", value.name},
                              {"unit", value.unit},
                              {"value", UncertainNumber(value.value)},
                              {"mean", UncertainNumber(value.mean)},
                              {"standard_deviation", UncertainNumber(value.deviation)},
                              {"interval_95", {UncertainNumber(value.low), UncertainNumber(value.high)}},
                              {"missing", value.missing}});
  }
  json["warnings"] = uncertain.warnings;
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace orvanel::cli
