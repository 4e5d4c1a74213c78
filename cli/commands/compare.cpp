// Implements "orvanel compare": two eyes side by side, with their differences.
#include "cli/commands/compare.h"

#include <CLI/App.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/commands/options/model_options.h"
#include "cli/commands/options/options.h"
#include "cli/commands/options/quality_options.h"
#include "cli/console/report.h"
#include "cli/console/signals.h"
#include "cli/console/terminal.h"
#include "cli/error_text.h"
#include "cli/quality/comparison_report.h"
#include "drawing/comparison/comparison_sheet.h"
#include "evaluation/comparison/comparison.h"
#include "files/eyes/any_eye.h"
#include "files/input_file.h"
#include "files/new_file.h"
#include "files/pictures/png.h"

namespace orvanel::cli {
namespace {

constexpr const char* kCompareExamples =
    "Examples:\n"
    "  orvanel compare assets/eyes/standard_observer_6mm.json assets/eyes/watson_2015_example_6mm.json --pupil 4\n"
    "  orvanel compare eyes.csv eyes.csv --row 1 --other-row 2 --pupil 3 --metric VSX,MTF@10 -o comparison.png\n"
    "  orvanel compare my_eye.json assets/eyes/perfect_3mm.json --pupil 3 --json";

constexpr const char* kCompareNotes =
    R"(EYE is A, OTHER is B: before and after, right and left, two designs. Differences are B - A. Options of eyes, columns,
adjustments and light are those of both eyes. Wavefronts and coefficients have a difference only over one pupil, so that
--pupil is needed where the pupils differ. A right and a left eye have opposite nasal sides; --mirror OD compares both
as right eyes. The sheet (-o) has wavefront, PSF, MTF and letters of both eyes with the same colour scales.
)";

struct CompareCommand {
  InputOptions input;
  std::string other;
  std::optional<std::size_t> otherRow;
  ModelOptions model;
  ComparisonRequest request;
  bool letters = false;  // also in light of several wavelengths
  std::string sheet;
  bool json = false, force = false;
};

// The second eye, which the same options describe.
InputOptions OtherInput(const CompareCommand& command) {
  InputOptions input = command.input;
  input.file = command.other;
  input.row = command.otherRow;
  return input;
}

SimulatedEye ReadAndView(const InputOptions& input, const ComparisonRequest& request) {
  const Eye measured = ReadEye(input);
  try {
    const StopAtOnce stop;
    return Viewed(measured, request);
  } catch (const Error& error) {
    throw Error(InputName(input.file) + ": " + TextOf(error));
  }
}

void RunCompare(const CompareCommand& command) {
  std::optional<NewFile> file;
  if (!command.sheet.empty()) file.emplace(command.sheet, command.force);
  ComparisonRequest request = command.request;
  request.settings = command.model.request.physical;
  request.planes = file.has_value();
  request.letters = file && (command.letters || request.settings.light.size() == 1);
  SimulatedEye first = ReadAndView(command.input, request);
  SimulatedEye second = ReadAndView(OtherInput(command), request);
  const Comparison comparison = Compared(std::move(first), std::move(second));
  for (const SimulatedEye* const eye : {&comparison.a, &comparison.b}) {
    const std::string label = eye == &comparison.a ? "A: " : "B: ";
    for (const std::string& warning : eye->warnings) PrintWarning(label + warning);
  }
  std::string report = command.json ? ComparisonJson(comparison) : ComparisonText(comparison);
  if (file) {
    const StopAtOnce stop;
    file->Write(EncodePng(DrawComparisonSheet(comparison)));
    file->Commit();
    if (!command.json) report += ReportLine("Written", command.sheet);
  }
  PrintOutput(report, file ? command.sheet + " is written" : "");
}

void CheckCompare(const CompareCommand& command) {
  if (command.model.request.kind == ModelKind::kClassic) {
    throw CLI::ValidationError("--model", "metrics of image quality need the physical model; remove --model classic");
  }
  if (command.input.file == kStandardStream && command.other == kStandardStream) {
    throw CLI::ValidationError("OTHER", "standard input cannot be both eyes");
  }
  if (command.letters && command.sheet.empty()) throw CLI::ValidationError("--letters", "needs -o");
}

}  // namespace

Run DefineCompare(CLI::App& app) {
  const auto command = std::make_shared<CompareCommand>();
  CLI::App& compare = *app.add_subcommand("compare", "Compare two eyes: numbers, metrics, and one sheet of pictures.");
  AddInputOptions(compare, command->input);
  compare.add_option("OTHER", command->other, "The eye that is compared with EYE, likewise")
      ->required()
      ->type_name("FILE");
  AddParsedOption(compare, "--other-row", "N", "Which eye of the table OTHER, from 1",
                  [command](const std::string& text) { command->otherRow = ParseRow(text); });
  AddMetricOption(compare, command->request.metrics, kUsualMetrics);
  compare.add_flag("--json", command->json, "Print the report as JSON");
  AddParsedOption(compare, "-o,--output", "FILE", "A picture to write, .png: both eyes side by side",
                  [command](const std::string& text) {
                    if (!Folded(text).ends_with(".png")) throw Error(Quoted(text) + " does not end in .png");
                    command->sheet = text;
                  });
  compare.add_flag("--letters", command->letters,
                   "Draw letters also in light of several wavelengths, which takes minutes");
  compare.add_flag("--force", command->force, "Replace an existing file");
  const std::vector<CLI::Option*> conditions =
      AddQualityConditions(compare, command->request.metrics, ModelOutput::kNumbers);
  AddModelOptions(compare, command->model, ModelOutput::kNumbers, conditions);
  AddAdjustmentOptions(compare, command->request.adjustments);
  compare.footer(std::string(kEyeNotes) + "\n" + kColumnNotes + "\n" + kModelNotes + "\n" + kQualityNotes + "\n" +
                 QualityCatalogueText() + "\n" + kCompareNotes + "\n" + kCompareExamples);
  compare.final_callback([command] { CheckCompare(*command); });
  return [command] { RunCompare(*command); };
}

}  // namespace orvanel::cli
