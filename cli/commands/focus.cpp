// Implements "orvanel focus": searches the best focus and reports the measures before and after. With --through,
// through_focus.cpp does the work.
#include "cli/commands/focus.h"

#include <CLI/App.hpp>
#include <span>
#include <string_view>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/coefficient_report.h"
#include "cli/commands/options/model_options.h"
#include "cli/commands/options/options.h"
#include "cli/commands/options/quality_options.h"
#include "cli/commands/through_focus.h"
#include "cli/console/report.h"
#include "cli/console/signals.h"
#include "cli/console/terminal.h"
#include "cli/error_text.h"
#include "evaluation/evaluator.h"
#include "evaluation/model_notes.h"
#include "eye/plausibility.h"
#include "files/eyes/any_eye.h"
#include "files/eyes/eye_file.h"
#include "files/interruption.h"
#include "files/new_file.h"
#include "orvanel/sampling.h"

namespace orvanel::cli {
namespace {

constexpr const char* kFocusExamples =
    "Examples:\n"
    "  orvanel focus assets/eyes/standard_observer_6mm.json\n"
    "  orvanel focus my_eye.json --astigmatism -o my_eye_in_focus.json\n"
    "  orvanel focus my_eye.json --method mtf --mtf-at 15 --light 589\n"
    "  orvanel focus my_eye.json --model classic --method psf --step 0.02 --pupil 4\n"
    "  orvanel focus assets/eyes/standard_observer_6mm.json --through -1:1:0.125 --metric VSX,MTF@10 --plot focus.png";

constexpr const char* kFocusNotes =
    R"(Methods of the physical model. Each finds the highest maximum along defocus; --astigmatism then varies both terms of
astigmatism too, to a maximum that may be a local one:
  peak            maximises the Strehl ratio at the peak
  axis            maximises the Strehl ratio on the axis
  mtf             maximises the MTF at the frequency of --mtf-at, mean of all directions
  mtf-horizontal  the same of horizontal frequencies, which are those of vertical bars
  mtf-vertical    the same of vertical frequencies
Methods of the classic model (--model classic):
  optimise  maximises the Strehl ratio within bounds of at least two waves around the given defocus; with
            --astigmatism, also varies the two terms of astigmatism
  psf       changes defocus in steps while the Strehl ratio grows; stops at the first local maximum
  fit       changes defocus in steps while the deviation of the wavefront from a circle decreases, whose radius at
            the edge is the pupil value; for most eyes it continues far beyond the best focus
psf and fit stop with an error after 10000 wavefronts; then use larger steps.
The Strehl ratio of the classic model is not reliable if the wavefront changes by more than half a wave from one sample
to the next, in more than 1 % of the pupil. optimise skips such wavefronts. If psf or fit ends at one, this is an error.
The change is given in dioptres of mean sphere, by which the refraction of the eye decreases. The prescription is the
lens at the cornea that brings the measured eye to its best focus.
)";

FocusMethod FocusMethodNamed(std::string_view name, ModelKind model) {
  std::string names;
  for (const FocusMethod& method : FocusMethodsOf(model)) {
    if (method.name == name) return method;
    names += (names.empty() ? "" : ", ") + std::string(method.name);
  }
  throw Error(Quoted(std::string(name)) + " is not one of " + names);
}

struct FocusCommand {
  InputOptions input;
  Adjustments adjustments;
  ModelOptions model;
  std::string method;  // the default if empty
  FocusRequest request;
  ThroughFocusOptions through;
  std::string output;
  bool force = false, stepGiven = false, frequencyGiven = false;
};

constexpr std::size_t kDefocus = 4;

bool Walks(const FocusCommand& command) { return command.request.method.strategy == FocusStrategy::kWalk; }

std::string SearchText(const FocusCommand& command, const BestFocus& best) {
  const std::string measure = "by " + std::string(TextOf(command.request.method.measure).name);
  const std::string trials = "; " + std::to_string(best.trials) + " wavefronts tried";
  if (!Walks(command))
    return "within bounds, " + measure + trials + (best.converged ? ", converged" : ", not converged");
  return measure + ", in steps of " + ShortestText(command.request.step.value()) + " um (orthonormal)" + trials;
}

// A walk that reached its limit has no result.
void RequireEnd(const FocusCommand& command, const BestFocus& best) {
  if (!Walks(command) || best.converged) return;
  throw Error("the walk in steps of " + ShortestText(command.request.step.value()) + " um has not ended after " +
              std::to_string(best.trials) + " wavefronts; use a larger --step or --method optimise");
}

bool FocusIsUndersampled(const FocusQuality& quality) { return quality.undersampled > kLargestUndersampledShare; }

// "the wavefront changes by more than half a wave from one sample to the next in 36 % of the pupil"
std::string FocusUndersampledText(const FocusQuality& quality) {
  return "the wavefront changes by more than half a wave from one sample to the next in " +
         NumberText(100.0 * quality.undersampled, 2) + " % of the pupil";
}

// Refuses an undersampled result, since other wavefronts have the same samples.
void RequireSampled(const FocusCommand& command, const BestFocus& best) {
  if (!FocusIsUndersampled(best.after)) return;
  if (!Walks(command)) {
    throw Error("no reliable focus was found: " + FocusUndersampledText(best.after) +
                "; use a smaller --pupil, which has more samples for the same change");
  }
  throw Error("the walk ends where " + FocusUndersampledText(best.after) +
              ", so the result is not reliable; use --method optimise");
}

std::string StrehlText(const FocusQuality& quality) {
  return FocusIsUndersampled(quality) ? "not known" : NumberText(quality.strehl, 4);
}

std::string BeforeAfter(const std::string& before, const std::string& after, const std::string& unit) {
  return before + unit + " before, " + after + unit + " after";
}

// A second-order term in both units.
std::string TermLine(const Eye& before, const Eye& after, std::size_t j) {
  const auto text = [j](const Eye& eye, const Convention& convention) {
    const Coefficients coefficients = eye.coefficients.In(convention);
    return NumberText(j < coefficients.size() ? coefficients[j] : 0.0, 5);
  };
  std::string name = Name(Term(j));
  if (j == kDefocus) name = "Defocus";
  return ReportLine(j == kDefocus ? "Defocus" : "Astigmatism",
                    BeforeAfter(text(before, kLibraryConvention), text(after, kLibraryConvention), " mm") +
                        " (library, not normalised)") +
         ReportLine("", BeforeAfter(text(before, kOsaConvention), text(after, kOsaConvention), " um") +
                            " (orthonormal, y up)" + (j == kDefocus ? "" : ", " + name));
}

// The Strehl ratio, and the measure of the search if it is another one.
std::string MeasureLines(const FocusRequest& request, const BestFocus& best) {
  const FocusMeasure measure = request.method.measure;
  const FocusMeasureText& text = TextOf(measure);
  const std::string made = text.smallIsBest ? "  <- minimised" : "  <- maximised";
  const std::string strehl = BeforeAfter(StrehlText(best.before), StrehlText(best.after), "");
  const std::string label(TextOf(FocusMeasure::kStrehl).label);
  if (IsMtf(measure)) {
    const std::string values = BeforeAfter(NumberText(best.before.value, 4), NumberText(best.after.value, 4), "");
    return ReportLine(label, strehl + " " + std::string(TextOf(FocusMeasure::kStrehlPeak).note)) +
           ReportLine(std::string(text.label), values + " at " + ShortestText(request.frequency.value()) +
                                                   " cycles/degree, " + std::string(text.note) + made);
  }
  if (measure != FocusMeasure::kCircle) {
    const std::string note = text.note.empty() ? "" : " " + std::string(text.note);
    return ReportLine(label, strehl + note + made);
  }
  const std::string unit = text.unit.empty() ? "" : " " + std::string(text.unit);
  const std::string values = BeforeAfter(NumberText(best.before.value, 6), NumberText(best.after.value, 6), unit);
  return ReportLine(label, strehl) + ReportLine(std::string(text.label), values + " " + std::string(text.note) + made);
}

std::string Report(const FocusCommand& command, const Eye& measured, const Eye& before, const BestFocus& best,
                   const std::string& light) {
  const Eye& after = best.eye;
  const auto refraction = [](const Eye& eye) { return LeastSquaresRefraction(eye.coefficients.osa(), eye.pupil); };
  std::string text = EyeLines(measured, Changes(measured, command.adjustments));
  text += ReportLine("Pupil", NumberText(before.pupil.value(), 6) + " mm");
  text += ReportLine("Model", std::string(Word(command.model.request.kind)));
  if (!light.empty()) text += ReportLine("Light", light);
  text += ReportLine("Search", SearchText(command, best));
  if (command.request.withoutAstigmatism) text += ReportLine("", "evaluated without the terms of astigmatism");
  text += MeasureLines(command.request, best);
  text += TermLine(before, after, kDefocus);
  if (command.request.astigmatism) text += TermLine(before, after, 3) + TermLine(before, after, 5);
  const auto lens = [](const PowerVector& powers) { return Text(ToRefraction(powers, CylinderSign::kMinus)); };
  text += ReportLine("Refraction", lens(refraction(before)) + " before");
  text += ReportLine("", lens(refraction(after)) + " after (least squares)");
  const double change = (refraction(after).m - refraction(before).m).value();
  text += ReportLine("Change", NumberText(change, 4) + " D of mean sphere");
  // A lens decreases the refraction of the eye by its own power.
  const PowerVector worn = refraction(before) - refraction(after);
  return text +
         ReportLine("Prescription", PrescriptionText(ToRefraction(worn, CylinderSign::kMinus)) +
                                        " at the cornea, the lens to wear for this change (as --lens)") +
         ReportLine("", "sphere/cylinder x axis, with a minus cylinder and the axis of trial frames (TABO)");
}

void RunFocus(const FocusCommand& command) {
  if (!command.through.lenses.empty()) {
    return RunThroughFocus(command.through, command.input, command.adjustments, command.model.request, command.output,
                           command.force);
  }
  const Eye measured = ReadEye(command.input);
  Eye before;
  BestFocus best;
  std::string text, light;
  try {
    std::optional<Dropped> dropped;
    before = Adjusted(measured, command.adjustments, &dropped);
    if (dropped && dropped->rms > Micrometres(0.0)) PrintWarning(Text(*dropped));
    for (const std::string& warning : EyeWarnings(before)) PrintWarning(warning);
    {
      const StopAtOnce stop;
      Evaluator evaluator(command.model.request);
      best = evaluator.FindBestFocus(before, command.request);
      const Results& conditions = evaluator.Evaluate(before, {});
      if (conditions.physical) light = ReferenceNote(conditions);
    }
    if (FocusIsUndersampled(best.before)) {
      PrintWarning(command.input.file + ": as given, " + FocusUndersampledText(best.before) +
                   ": its Strehl ratio is not known");
    }
    RequireEnd(command, best);
    RequireSampled(command, best);
    if (!command.output.empty()) text = EyeFileText(best.eye);
  } catch (const Error& error) {
    throw Error(command.input.file + ": " + TextOf(error));
  }
  std::string report = Report(command, measured, before, best, light);
  if (!command.output.empty()) {
    NewFile file(command.output, command.force);
    file.Write(text);
    file.Commit();
    report += ReportLine("Written", command.output);
  }
  PrintOutput(report, command.output.empty() ? "" : command.output + " is written");
}

void Check(FocusCommand& command) {
  if (!command.through.lenses.empty()) {
    if (!command.output.empty() && KindOf(command.output) != FileKind::kCsv) {
      throw CLI::ValidationError("--output", "the table of --through is written as .csv");
    }
    return;
  }
  const ModelKind model = command.model.request.kind;
  try {
    command.request.method =
        command.method.empty() ? FocusMethodsOf(model).front() : FocusMethodNamed(command.method, model);
  } catch (const Error& error) {
    throw CLI::ValidationError("--method", error.what());
  }
  const bool walks = Walks(command);
  if (command.frequencyGiven && !IsMtf(command.request.method.measure)) {
    throw CLI::ValidationError("--mtf-at", "needs --method mtf, mtf-horizontal or mtf-vertical");
  }
  if (walks && command.request.astigmatism) {
    throw CLI::ValidationError("--astigmatism", "needs --method optimise; psf and fit vary only defocus");
  }
  if (!walks && command.request.withoutAstigmatism) {
    throw CLI::ValidationError("--without-astigmatism", "needs --method psf or fit");
  }
  if (!walks && command.stepGiven) throw CLI::ValidationError("--step", "needs --method psf or fit");
  if (KindOf(command.output) != FileKind::kEyeFile) {
    throw CLI::ValidationError("--output", "one eye is written, as .json");
  }
}

}  // namespace

Run DefineFocus(CLI::App& app) {
  const auto command = std::make_shared<FocusCommand>();
  CLI::App& focus = *app.add_subcommand("focus", "Find the defocus with the best image quality of one eye.");
  AddInputOptions(focus, command->input);
  std::vector<CLI::Option*> searching = {AddParsedOption(
      focus, "--method", "WORD",
      "Method of the search: peak, axis, mtf, mtf-horizontal, mtf-vertical; of the classic model: optimise, psf, "
      "fit [peak; optimise]",
      [command](const std::string& text) { command->method = text; })};
  searching.push_back(AddParsedOption(focus, "--step", "UM",
                                      "Step of psf and fit, on the orthonormal coefficient [0.01]",
                                      [command](const std::string& text) {
                                        command->request.step = Micrometres(ParseNumber(text));
                                        if (command->request.step <= Micrometres(0.0))
                                          throw Error("a step must be greater than 0");
                                        command->stepGiven = true;
                                      }));
  searching.push_back(AddParsedOption(focus, "--mtf-at", "CPD", "Frequency of the methods mtf, in cycles/degree [10]",
                                      [command](const std::string& text) {
                                        command->request.frequency = CyclesPerDegree(ParseNumber(text));
                                        if (command->request.frequency <= CyclesPerDegree(0.0))
                                          throw Error("a frequency must be above 0");
                                        command->frequencyGiven = true;
                                      }));
  searching.push_back(
      focus.add_flag("--astigmatism", command->request.astigmatism, "Also vary both terms of astigmatism"));
  searching.push_back(focus.add_flag("--without-astigmatism", command->request.withoutAstigmatism,
                                     "Search as if the eye had no astigmatism, as with a cylinder that corrects it"));
  const std::vector<CLI::Option*> through = AddThroughFocusOptions(focus, command->through, searching);
  focus
      .add_option("-o,--output", command->output,
                  "The eye file to write, of the eye in its best focus; with --through the table, .csv")
      ->type_name("FILE");
  focus.add_flag("--force", command->force, "Replace an existing file");
  AddModelOptions(focus, command->model, ModelOutput::kNumbers, through);
  AddAdjustmentOptions(focus, command->adjustments);
  focus.footer(std::string(kEyeNotes) + "\n" + kColumnNotes + "\n" + kModelNotes + "\n" + kFocusNotes + "\n" +
               kThroughFocusNotes + "\n" + kQualityNotes + QualityCatalogueText() + "\n" + kFocusExamples);
  focus.final_callback([command] { Check(*command); });
  return [command] { RunFocus(*command); };
}

}  // namespace orvanel::cli
