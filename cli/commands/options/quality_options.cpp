// Parses the options of metrics of image quality.
#include "cli/commands/options/quality_options.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/commands/options/options.h"
#include "cli/quality/contrast_table.h"
#include "metrics/quality_names.h"

namespace orvanel::cli {
namespace {

constexpr const char* kQualityGroup = "Metrics of image quality";

// Appends words to a line that is filled up to the column `indent`, and breaks lines of more than `width` characters.
std::string Filled(std::string line, std::size_t indent, const std::string& words, std::size_t width) {
  std::string text;
  line.resize(indent, ' ');
  for (std::size_t begin = 0; begin < words.size();) {
    const std::size_t end = std::min(words.find(' ', begin), words.size());
    if (line.size() > indent && line.size() + 1 + end - begin > width) {
      text += line + "\n";
      line = std::string(indent, ' ');
    }
    line += (line.size() > indent ? " " : "") + words.substr(begin, end - begin);
    begin = end + 1;
  }
  return text + line + "\n";
}

}  // namespace

const char* const kQualityNotes = R"(Metrics of image quality are those of the physical model.
The origin (--metric-origin) is the place that counts as the middle of the image of a point:
  best      where the PSF weighted by the neural contrast sensitivity is highest
  axis      where a point without aberration is
  peak      the highest place of the PSF
  centroid  the centre of gravity of the light
Ratios are to the same pupil without aberration (--metric-reference):
  same-light     in the light of --light
  monochromatic  in light of the reference wavelength alone
The contrast sensitivity of --csf is a CSV file with rows of a frequency in cycles/degree and a sensitivity. Frequencies
rise. Values between the rows are linear; there are none beyond the last row.
)";

std::string QualityCatalogueText() {
  constexpr std::size_t kWidth = 115, kIndent = 18;
  std::string text = "Metrics (name, unit, definition); + marks those of which larger values are better:\n";
  for (const QualityRow& row : QualityCatalogue()) {
    std::string line = std::string(row.higherIsBetter ? "+ " : "  ") + row.name;
    line.resize(10, ' ');
    line += row.unit;
    text += Filled(line, kIndent, row.definition, kWidth);
  }
  return text + Filled("", 0, "Source: " + std::string(QualityCatalogue().front().source) + ".", kWidth);
}

CLI::Option* AddMetricOption(CLI::App& app, QualityRequest& request, const char* usual) {
  NameMetrics(usual, request);
  return AddParsedOption(
             app, "--metric,--metrics", "LIST",
             "Metrics of image quality, separated by commas, or all; MTF@10 is the MTF at 10 cycles/degree [" +
                 std::string(usual) + "]",
             [&request](const std::string& text) { NameMetrics(text, request); })
      ->group(kQualityGroup);
}

std::vector<CLI::Option*> AddQualityConditions(CLI::App& app, QualityRequest& request, ModelOutput output) {
  const char* const origin = output == ModelOutput::kPlanes ? "--metric-origin" : "--metric-origin,--origin";
  const std::vector<CLI::Option*> options = {
      AddParsedOption(app, origin, "WORD", "Origin of the metrics: axis, peak, centroid, best [best]",
                      [&request](const std::string& text) {
                        const auto chosen = QualityOriginNamed(text);
                        if (!chosen) throw Error(Quoted(text) + " is not one of axis, peak, centroid, best");
                        request.origin = *chosen;
                      }),
      AddParsedOption(app, "--metric-reference,--reference", "WORD",
                      "Light of the pupil without aberration that ratios are to: same-light, monochromatic "
                      "[same-light]",
                      [&request](const std::string& text) {
                        const auto chosen = QualityReferenceNamed(text);
                        if (!chosen) throw Error(Quoted(text) + " is not one of same-light, monochromatic");
                        request.reference = *chosen;
                      }),
      AddParsedOption(app, "--csf", "FILE",
                      "Your own contrast sensitivity, a CSV file of frequencies and sensitivities",
                      [&request](const std::string& text) { request.contrast = ReadContrastSensitivity(text); }),
      AddParsedOption(app, "--gaussian-sd", "ARCMIN", "Standard deviation of the Gaussian of NS, in arc minutes [1]",
                      [&request](const std::string& text) {
                        const double sd = ParseNumber(text);
                        if (sd < kSmallestGaussianSdArcmin || sd > kLargestGaussianSdArcmin) {
                          throw Error(Quoted(text) + " is outside of " + ShortestText(kSmallestGaussianSdArcmin) +
                                      " to " + ShortestText(kLargestGaussianSdArcmin));
                        }
                        request.gaussianSdArcmin = sd;
                      })};
  for (CLI::Option* const option : options) option->group(kQualityGroup);
  return options;
}

}  // namespace orvanel::cli
