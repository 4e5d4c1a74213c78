// Aligns the columns of the report.
#include "cli/quality/quality_report.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <vector>

#include "cli/console/report.h"
#include "evaluation/quality_notes.h"
#include "metrics/quality_names.h"

namespace orvanel::cli {

using Json = nlohmann::ordered_json;

Json QualityJson(const Quality& quality, const QualityRequest& request) {
  Json json = {{"origin", Word(quality.origin)},
               {"origin_x_arcmin", quality.originX + 0.0},  // without the sign of 0
               {"origin_y_arcmin", quality.originY + 0.0},
               {"reference", Word(quality.reference)},
               {"wavelength_of_thresholds_nm", quality.primaryNm},
               {"gaussian_sd_arcmin", request.gaussianSdArcmin},
               {"notes", QualityConditions(quality, request)},
               {"metrics", Json::array()}};
  for (const QualityValue& value : quality.values) {
    const QualityRow& row = RowOf(value.metric);
    json["metrics"].push_back({{"name", row.name},
                               {"unit", row.unit},
                               {"value", value.value},
                               {"without_aberration", value.limit},
                               {"error", value.error},
                               {"note", metrics::TextOf(value.note)},
                               {"larger_is_better", row.higherIsBetter},
                               {"definition", row.definition}});
  }
  for (const MtfValue& value : quality.mtf) {
    json["metrics"].push_back({{"name", MtfName(value.frequencyCpd)},
                               {"unit", "1"},
                               {"value", value.value},
                               {"error", value.error},
                               {"larger_is_better", true},
                               {"definition", "MTF at this frequency in cycles/degree, mean over all directions."}});
  }
  return json;
}

Json QualityFactsJson(const Quality& quality) {
  Json json = {{"origin", Word(quality.origin)},
               {"origin_x_arcmin", quality.originX + 0.0},  // without the sign of 0
               {"origin_y_arcmin", quality.originY + 0.0},
               {"reference", Word(quality.reference)}};
  for (const QualityValue& value : quality.values) {
    if (std::isfinite(value.value)) json[RowOf(value.metric).name] = value.value;
  }
  for (const MtfValue& value : quality.mtf) json[MtfName(value.frequencyCpd)] = value.value;
  return json;
}

std::string QualityLines(const Quality& quality, const QualityRequest& request) {
  constexpr std::size_t kName = 9, kValue = 15;
  std::string lines;
  for (const QualityText& text : evaluation::TextsOf(quality)) {
    std::string line = text.name;
    line.resize(kName, ' ');
    line += text.value;
    if (!text.limit.empty() || !text.error.empty()) {
      line.resize(std::max(kName + kValue, line.size() + 1), ' ');
      if (!text.limit.empty()) line += text.limit + " without aberration";
      if (!text.error.empty()) line += (text.limit.empty() ? "error " : "; error ") + text.error;
    }
    if (!text.note.empty()) line += "; " + text.note;
    lines += ReportLine(lines.empty() ? "Image quality" : "", line);
  }
  for (const std::string& sentence : QualityConditions(quality, request)) {
    lines += ReportLine(lines.empty() ? "Image quality" : "", sentence);
  }
  return lines;
}

}  // namespace orvanel::cli
