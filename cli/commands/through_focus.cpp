// Implements "orvanel focus --through": metrics of image quality behind a range of lenses.
#include "cli/commands/through_focus.h"

#include <optional>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/commands/options/quality_options.h"
#include "cli/console/report.h"
#include "cli/console/signals.h"
#include "cli/console/terminal.h"
#include "cli/error_text.h"
#include "cli/quality/focus_report.h"
#include "drawing/quality/focus_figure.h"
#include "evaluation/evaluator.h"
#include "evaluation/model_notes.h"
#include "evaluation/quality_notes.h"
#include "eye/plausibility.h"
#include "files/new_file.h"
#include "files/pictures/png.h"

namespace orvanel::cli {
namespace {

ColourPicture PlotOf(const FocusedEye& focused) {
  FocusSheet sheet;
  sheet.name = focused.measured.name.empty() ? focused.measured.file : focused.measured.name;
  sheet.conditions =
      "Pupil " + NumberText(focused.eye.pupil.value(), 4) + " mm. Light " + ReferenceNote(focused.conditions);
  for (const std::string& sentence : QualityConditions(focused.metrics)) sheet.conditions += " " + sentence;
  sheet.warnings = focused.warnings;
  return DrawFocusSheet(sheet, focused.focus);
}

}  // namespace

const char* const kThroughFocusNotes =
    R"(Through focus (--through) computes metrics of the physical model with each lens of a range, from the first to the last
in steps. Lenses are spheres before the eye, in dioptres. A plus lens makes the eye short-sighted, so that the best lens
is the one to be worn. The best focus and the depth of focus lie between lenses: smooth metrics are interpolated by
cubics with the slopes of parabolas through three lenses, the others by lines. The depth of focus is the interval around
the best focus in which a metric is at least 80 or 50 % of its best value. Where small values are better, the value is
at most 1.25 or 2 times its best one. The report goes to standard output, the table to a CSV file (-o), the curves to a
picture (--plot).
)";

std::vector<CLI::Option*> AddThroughFocusOptions(CLI::App& app, ThroughFocusOptions& options,
                                                 const std::vector<CLI::Option*>& others) {
  CLI::Option* const through =
      AddParsedOption(app, "--through", "FIRST:LAST:STEP",
                      "Compute metrics of image quality with each lens of a range, in dioptres, as in -2:2:0.125",
                      [&options](const std::string& text) { options.lenses = LensesOfRange(text); });
  std::vector<CLI::Option*> own = {AddMetricOption(app, options.metrics, "VSX")};
  for (CLI::Option* const option : AddQualityConditions(app, options.metrics, ModelOutput::kNumbers)) {
    own.push_back(option);
  }
  own.push_back(AddParsedOption(app, "--plot", "FILE", "A picture of the curves to write, .png",
                                [&options](const std::string& text) {
                                  if (!Folded(text).ends_with(".png")) {
                                    throw Error(Quoted(text) + " does not end in .png");
                                  }
                                  options.plot = text;
                                }));
  own.push_back(app.add_flag("--json", options.json, "Print the report of --through as JSON"));
  for (CLI::Option* const option : own) option->needs(through);
  for (CLI::Option* const option : others) through->excludes(option);
  own.push_back(through);
  return own;
}

void RunThroughFocus(const ThroughFocusOptions& options, const InputOptions& input, const Adjustments& adjustments,
                     const ModelRequest& model, const std::string& table, bool force) {
  std::optional<NewFile> tableFile, plotFile;
  if (!table.empty()) tableFile.emplace(table, force);
  if (!options.plot.empty()) plotFile.emplace(options.plot, force);
  FocusedEye focused;
  focused.measured = ReadEye(input);
  focused.metrics = options.metrics;
  std::string picture;
  try {
    std::optional<Dropped> dropped;
    focused.eye = Adjusted(focused.measured, adjustments, &dropped);
    focused.changes = Changes(focused.measured, adjustments);
    focused.warnings = EyeWarnings(focused.eye);
    if (dropped && dropped->rms > Micrometres(0.0)) focused.warnings.push_back(Text(*dropped));
    const StopAtOnce stop;
    focused.conditions = Evaluator(model).Evaluate(focused.eye, {});
    QualityEvaluator evaluator(model.physical, options.metrics);
    focused.focus = ThroughFocusOf(evaluator, focused.eye, options.lenses);
    for (const std::string& warning : FocusWarnings(focused.focus)) focused.warnings.push_back(warning);
    if (plotFile) picture = EncodePng(PlotOf(focused));
  } catch (const Error& error) {
    throw Error(input.file + ": " + TextOf(error));
  }
  for (const std::string& warning : focused.warnings) PrintWarning(warning);
  std::string report = options.json ? ThroughFocusJson(focused) : ThroughFocusText(focused);
  std::string written;
  const auto write = [&](std::optional<NewFile>& file, const std::string& name, const std::string& bytes) {
    if (!file) return;
    file->Write(bytes);
    file->Commit();
    if (!options.json) report += ReportLine("Written", name);
    written += (written.empty() ? "" : " and ") + name;
  };
  write(tableFile, table, tableFile ? ThroughFocusCsv(focused.focus) : "");
  write(plotFile, options.plot, picture);
  PrintOutput(report, written.empty() ? "" : "written: " + written);
}

}  // namespace orvanel::cli
