// Implements "orvanel refract": searches the lens that maximises a metric of image quality, and reports what it gains.
#include "cli/commands/refract.h"

#include <CLI/App.hpp>
#include <optional>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/commands/options/correction_options.h"
#include "cli/commands/options/model_options.h"
#include "cli/commands/options/options.h"
#include "cli/commands/options/quality_options.h"
#include "cli/console/report.h"
#include "cli/console/signals.h"
#include "cli/console/terminal.h"
#include "cli/correction_report.h"
#include "cli/error_text.h"
#include "drawing/correction_sheet.h"
#include "evaluation/correction/corrected_view.h"
#include "evaluation/evaluator.h"
#include "evaluation/model_notes.h"
#include "eye/plausibility.h"
#include "files/new_file.h"
#include "files/pictures/png.h"

namespace orvanel::cli {
namespace {

constexpr const char* kRefractExamples =
    "Examples:\n"
    "  orvanel refract assets/eyes/standard_observer_6mm.json\n"
    "  orvanel refract assets/eyes/standard_observer_6mm.json --pupil 4 --sphere-only --step 0.125\n"
    "  orvanel refract assets/eyes/standard_observer_6mm.json --metric SRX --vertex 12 --json\n"
    "  orvanel refract assets/eyes/standard_observer_6mm.json -o letters.png";

constexpr const char* kRefractNotes =
    R"(The lens is the one to be worn: sphere, minus cylinder, and the axis of trial frames (TABO). Of all lenses, the best is
searched from several starts along the line from the least-squares to the paraxial refraction. Its steps end at 1/200 of
the change of sphere that matters, 1.5 D / pupil in mm. A trial case has spheres and cylinders in steps of --step, and
axes in steps of --axis-step. The search can miss the best lens where a metric has several maxima; docs/refraction.md
tells how often.
A just noticeable difference is 0.049 in log10 VSX. The estimate of acuity is a regression on log10 VSX, -2.98 logMAR -
0.31, from -0.9 to 0. Source of both: Ravikumar et al. 2011.
)";

struct RefractCommand {
  InputOptions input;
  Adjustments adjustments;
  ModelOptions model;
  QualityRequest metric;
  CorrectionRequest request;
  std::string sheet;
  bool json = false, force = false;
};

std::string SheetBytes(const CorrectedEye& corrected, const PhysicalSettings& settings) {
  const Correction& found = corrected.correction;
  const std::string metric = RowOf(corrected.metric.metrics.front()).name;
  const auto value = [&](const LensValue& lens) { return metric + " " + NumberText(lens.quality.value, 4); };
  const Eye& eye = corrected.measured;
  CorrectionSheet sheet;
  sheet.name = eye.name.empty() ? eye.file : eye.name;
  sheet.conditions = "Pupil " + NumberText(corrected.eye.pupil.value(), 4) + " mm. Light " +
                     ReferenceNote(corrected.conditions) + " Lenses maximise " + metric + ".";
  if (!RowOf(corrected.metric.metrics.front()).higherIsBetter) {
    sheet.conditions.replace(sheet.conditions.rfind("maximise"), 8, "minimise");
  }
  sheet.side = corrected.eye.side;
  sheet.view = ViewOfLetters(settings, corrected.eye, found);
  sheet.without = value(found.none);
  sheet.best = value(found.best);
  sheet.inCase = value(found.inCase);
  return EncodePng(DrawCorrectionSheet(sheet, found));
}

void RunRefract(const RefractCommand& command) {
  std::optional<NewFile> file;
  if (!command.sheet.empty()) file.emplace(command.sheet, command.force);
  CorrectedEye corrected;
  corrected.measured = ReadEye(command.input);
  corrected.metric = command.metric;
  corrected.request = command.request;
  std::string picture;
  try {
    std::optional<Dropped> dropped;
    corrected.eye = Adjusted(corrected.measured, command.adjustments, &dropped);
    corrected.changes = Changes(corrected.measured, command.adjustments);
    if (dropped && dropped->rms > Micrometres(0.0)) PrintWarning(Text(*dropped));
    for (const std::string& warning : EyeWarnings(corrected.eye)) PrintWarning(warning);
    const StopAtOnce stop;
    const PhysicalSettings& settings = command.model.request.physical;
    corrected.conditions = Evaluator(command.model.request).Evaluate(corrected.eye, {});
    QualityEvaluator evaluator(settings, command.metric);
    corrected.correction = BestCorrection(evaluator, corrected.eye, command.request);
    if (file) picture = SheetBytes(corrected, settings);
  } catch (const Error& error) {
    throw Error(command.input.file + ": " + TextOf(error));
  }
  std::string report = command.json ? CorrectionJson(corrected) : CorrectionText(corrected);
  if (file) {
    file->Write(picture);
    file->Commit();
    if (!command.json) report += ReportLine("Written", command.sheet);
  }
  PrintOutput(report, file ? command.sheet + " is written" : "");
}

void CheckRefract(RefractCommand& command) {
  if (command.model.request.kind == ModelKind::kClassic) {
    throw CLI::ValidationError("--model",
                               "metrics of image quality need the physical model; remove --model classic, or "
                               "use 'orvanel focus --model classic'");
  }
  if (command.metric.metrics.size() != 1 || !command.metric.mtfAtCpd.empty()) {
    throw CLI::ValidationError("--metric", "a lens is searched by one metric of the catalogue; name only one");
  }
}

}  // namespace

Run DefineRefract(CLI::App& app) {
  const auto command = std::make_shared<RefractCommand>();
  CLI::App& refract = *app.add_subcommand("refract", "Find the lens with the best image quality of one eye.");
  AddInputOptions(refract, command->input);
  AddMetricOption(refract, command->metric, "VSX")
      ->type_name("NAME")
      ->description("Metric of image quality that the lens maximises, one of the catalogue below [VSX]");
  AddCorrectionOptions(refract, command->request);
  refract.add_flag("--json", command->json, "Print the report as JSON");
  AddParsedOption(refract, "-o,--output", "FILE", "A picture to write, .png: letters without a lens and with the best",
                  [command](const std::string& text) {
                    if (!Folded(text).ends_with(".png")) throw Error(Quoted(text) + " does not end in .png");
                    command->sheet = text;
                  });
  refract.add_flag("--force", command->force, "Replace an existing file");
  const std::vector<CLI::Option*> conditions = AddQualityConditions(refract, command->metric, ModelOutput::kNumbers);
  AddModelOptions(refract, command->model, ModelOutput::kNumbers, conditions);
  AddAdjustmentOptions(refract, command->adjustments);
  refract.footer(std::string(kEyeNotes) + "\n" + kColumnNotes + "\n" + kModelNotes + "\n" + kQualityNotes + "\n" +
                 QualityCatalogueText() + "\n" + kRefractNotes + "\n" + kRefractExamples);
  refract.final_callback([command] { CheckRefract(*command); });
  return [command] { RunRefract(*command); };
}

}  // namespace orvanel::cli
