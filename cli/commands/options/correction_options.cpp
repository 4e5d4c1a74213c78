// Parses the options of the search for a lens.
#include "cli/commands/options/correction_options.h"

#include <cmath>
#include <string>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/commands/options/options.h"

namespace orvanel::cli {
namespace {

constexpr double kSmallestStep = 0.01, kLargestStep = 1.0;  // dioptres
constexpr double kSmallestAxisStep = 1.0, kLargestAxisStep = 45.0;
constexpr double kNearestVertex = 1.0, kFarthestVertex = 30.0;  // mm

double CorrectionNumber(const std::string& text, double low, double high) {
  const double number = ParseNumber(text);
  if (!(number >= low && number <= high)) {
    throw Error(Quoted(text) + " is outside of " + ShortestText(low) + " to " + ShortestText(high));
  }
  return number;
}

}  // namespace

std::vector<CLI::Option*> AddCorrectionOptions(CLI::App& app, CorrectionRequest& request) {
  return {AddParsedOption(app, "--step", "D", "Step of spheres and cylinders in the trial case, in dioptres [0.25]",
                          [&request](const std::string& text) {
                            request.grid.step = Dioptres(CorrectionNumber(text, kSmallestStep, kLargestStep));
                          }),
          AddParsedOption(app, "--axis-step", "DEG", "Step of axes in the trial case, in degrees [5]",
                          [&request](const std::string& text) {
                            const double step = CorrectionNumber(text, kSmallestAxisStep, kLargestAxisStep);
                            const double axes = 180.0 / step;
                            if (axes != std::round(axes)) throw Error("180 is not a multiple of this step");
                            request.grid.axisStep = Degrees(step);
                          }),
          app.add_flag("--sphere-only", request.grid.sphereOnly, "Search a sphere without a cylinder"),
          AddParsedOption(app, "--vertex", "MM", "Distance of all lenses from the cornea, in mm [0]",
                          [&request](const std::string& text) {
                            const double vertex = ParseNumber(text);
                            if (vertex != 0.0) CorrectionNumber(text, kNearestVertex, kFarthestVertex);
                            request.vertex = Millimetres(vertex);
                          })};
}

}  // namespace orvanel::cli
