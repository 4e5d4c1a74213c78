// Parses the options of the search for a lens.
#include "cli/commands/options/correction_options.h"

#include <string>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/commands/options/options.h"

namespace orvanel::cli {
namespace {

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
                            request.grid.step = Dioptres(CorrectionNumber(text, kSmallestTrialStep, kLargestTrialStep));
                          }),
          AddParsedOption(app, "--axis-step", "DEG", "Step of axes in the trial case, in degrees [5]",
                          [&request](const std::string& text) {
                            const Degrees step(CorrectionNumber(text, kSmallestAxisStep, kLargestAxisStep));
                            if (!DividesHalfTurn(step)) throw Error("180 is not a multiple of this step");
                            request.grid.axisStep = step;
                          }),
          app.add_flag("--sphere-only", request.grid.sphereOnly, "Search a sphere without a cylinder"),
          AddParsedOption(app, "--vertex", "MM", "Distance of all lenses from the cornea, in mm [0]",
                          [&request](const std::string& text) { request.vertex = VertexDistance(ParseNumber(text)); })};
}

}  // namespace orvanel::cli
