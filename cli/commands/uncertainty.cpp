// Implements "orvanel uncertainty": metrics and refraction with mean, standard deviation and interval.
#include "cli/commands/uncertainty.h"

#include <CLI/App.hpp>
#include <optional>
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
#include "cli/quality/uncertainty_report.h"
#include "evaluation/evaluator.h"
#include "eye/plausibility.h"
#include "eye/population/covariance.h"
#include "files/input_file.h"
#include "files/tables/covariance_table.h"
#include "files/tables/eye_table.h"

namespace orvanel::cli {
namespace {

constexpr const char* kUncertaintyExamples =
    "Examples:\n"
    "  orvanel uncertainty assets/eyes/watson_2015_example_6mm.json --cov covariance.csv --pupil 3\n"
    "  orvanel uncertainty assets/eyes/watson_2015_example_6mm.json --cov covariance.csv --pupil 3 --metric RMSw,PV "
    "--draws 100";

constexpr const char* kUncertaintyNotes =
    R"(The coefficients of the eye are uncertain, by one of these:
  --cov FILE  a covariance, as 'orvanel population' reads it: a row and a column for each coefficient that is
              uncertain, in the square of the unit of the eye, over the measured pupil
  --repeated  EYE is a table whose rows are measurements of one eye. The eye is their mean, and the covariance is that
              of this mean; with --single it is that of one measurement
Without --draws, uncertainties are of first order: by the gradients of the metrics. The mean is the value of the eye, and
the interval is 1.96 standard deviations to both sides. With --draws N they are those of N eyes from a normal
distribution; the interval is between their quantiles at 2.5 and 97.5 %. Metrics without a gradient need --draws, and so
do uncertainties so large that metrics are far from linear: 40 drawn eyes check it, and a warning names these metrics.
)";

constexpr std::size_t kMostDraws = 1000000;

struct UncertaintyCommand {
  InputOptions input;
  Adjustments adjustments;
  ModelOptions model;
  QualityRequest metrics;
  std::string covariance;
  int draws = 0;
  std::uint64_t seed = 1;
  bool repeated = false, single = false, json = false;
};

// Of a table in the convention of the eye, in the canonical one. The table may state the reference wavelength of both.
CoefficientSpread SpreadOfTable(const UncertaintyCommand& command, Eye& eye) {
  const Convention& convention = eye.coefficients.convention();
  InputFile stream(command.covariance);
  const CovarianceTable table =
      ReadCovariance(stream, command.covariance, convention.scheme, command.input.table.decimalComma);
  if (table.reference && eye.referenceWavelength && *table.reference != *eye.referenceWavelength) {
    throw Error(command.covariance + ": its reference wavelength of " + ShortestText(table.reference->value()) +
                " nm is not that of the eye, " + ShortestText(eye.referenceWavelength->value()) + " nm");
  }
  if (table.reference) eye.referenceWavelength = table.reference;
  try {
    const CovarianceFactors factors(table.matrix, table.names);  // refuses what is no covariance, by these names
  } catch (const Error& error) {
    throw Error(command.covariance + ": " + error.what());
  }
  CoefficientSpread spread{table.terms, table.matrix};
  const std::size_t n = table.terms.size();
  std::vector<double> factors;
  for (const std::size_t term : table.terms) {
    Coefficients unit(term + 1, 0.0);
    unit[term] = 1.0;
    factors.push_back(EyeCoefficients(convention, unit).osa()[term]);
  }
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) spread.covariance[i * n + j] *= factors[i] * factors[j];
  }
  return spread;
}

// The rows of a table, which must be over one pupil of one side.
std::vector<Eye> MeasurementsOf(const InputOptions& input) {
  InputFile stream(input.file);
  EyeTable table(stream, InputName(input.file), TableKindOf(KindOf(input.file, input.kind)), input.stated, input.table);
  PrintColumns(InputName(input.file), table.Summary());
  std::vector<Eye> eyes;
  TableEye row;
  while (table.Next(row)) {
    if (!eyes.empty() && (row.eye.pupil != eyes.front().pupil || row.eye.side != eyes.front().side ||
                          row.eye.referenceWavelength != eyes.front().referenceWavelength)) {
      throw ErrorAt(InputName(input.file), {row.line, 1},
                    "pupil, laterality or reference wavelength is not that of the first row; repeated measurements are "
                    "of one eye");
    }
    eyes.push_back(row.eye);
  }
  if (eyes.size() < 2) throw Error(InputName(input.file) + ": repeated measurements need two rows or more");
  return eyes;
}

void RunUncertainty(const UncertaintyCommand& command) {
  UncertainEye uncertain;
  CoefficientSpread spread;
  std::vector<std::string> far;  // from first order
  if (command.repeated) {
    const std::vector<Eye> eyes = MeasurementsOf(command.input);
    std::vector<Coefficients> measurements;
    for (const Eye& eye : eyes) measurements.push_back(eye.coefficients.osa());
    uncertain.measured = eyes.front();
    uncertain.measured.file = InputName(command.input.file);
    uncertain.measured.coefficients.Replace(MeanOf(measurements));
    spread = SpreadOf(measurements, !command.single);
    uncertain.source =
        (command.single ? "of one of " : "of the mean of ") + std::to_string(eyes.size()) + " measurements";
  } else {
    uncertain.measured = ReadEye(command.input);
    spread = SpreadOfTable(command, uncertain.measured);
    uncertain.source = command.covariance + ", " + std::to_string(spread.terms.size()) + " uncertain coefficients";
  }
  uncertain.metrics = command.metrics;
  uncertain.draws = command.draws;
  uncertain.seed = command.seed;
  try {
    std::optional<Dropped> dropped;
    uncertain.eye = Adjusted(uncertain.measured, command.adjustments, &dropped);
    uncertain.changes = Changes(uncertain.measured, command.adjustments);
    uncertain.warnings = EyeWarnings(uncertain.eye);
    if (dropped && dropped->rms > Micrometres(0.0)) uncertain.warnings.push_back(Text(*dropped));
    const StopAtOnce stop;
    uncertain.conditions = Evaluator(command.model.request).Evaluate(uncertain.eye, {});
    const auto drawn = [&](int draws) {
      return DrawnUncertainty(command.model.request.physical, command.metrics, uncertain.measured, command.adjustments,
                              spread, draws, command.seed);
    };
    if (command.draws == 0) {
      uncertain.values = FirstOrderUncertainty(command.model.request.physical, command.metrics, uncertain.measured,
                                               command.adjustments, spread);
      far = FarFromFirstOrder(uncertain.values, drawn(kFewestDraws), kFewestDraws);
    } else {
      uncertain.values = drawn(command.draws);
    }
  } catch (const Error& error) {
    throw Error(InputName(command.input.file) + ": " + TextOf(error));
  }
  for (const std::string& warning : UncertaintyWarnings(uncertain.values, command.draws, far)) {
    uncertain.warnings.push_back(warning);
  }
  for (const std::string& warning : uncertain.warnings) PrintWarning(warning);
  PrintOutput(command.json ? UncertaintyJson(uncertain) : UncertaintyText(uncertain), "");
}

void CheckUncertainty(const UncertaintyCommand& command) {
  if (command.repeated == !command.covariance.empty()) {
    throw CLI::ValidationError("--cov", "state a covariance, or --repeated for a table of measurements of one eye");
  }
  if (command.single && !command.repeated) throw CLI::ValidationError("--single", "needs --repeated");
  if (command.repeated && command.input.row) throw CLI::ValidationError("--row", "--repeated takes all rows");
  if (command.repeated && command.input.table.prescription) {
    throw CLI::ValidationError("--prescription-columns", "cannot be averaged by --repeated");
  }
  if (command.model.request.kind == ModelKind::kClassic) {
    throw CLI::ValidationError("--model", "metrics of image quality need the physical model; remove --model classic");
  }
}

}  // namespace

Run DefineUncertainty(CLI::App& app) {
  const auto command = std::make_shared<UncertaintyCommand>();
  CLI::App& uncertainty =
      *app.add_subcommand("uncertainty", "Compute how uncertain metrics and refraction of one eye are.");
  AddInputOptions(uncertainty, command->input);
  uncertainty.add_option("--cov", command->covariance, "Table with the covariance of the coefficients")
      ->type_name("FILE");
  uncertainty.add_flag("--repeated", command->repeated, "EYE is a table of measurements of one eye");
  uncertainty.add_flag("--single", command->single, "Of one measurement of --repeated, not of their mean");
  AddParsedOption(uncertainty, "--draws", "N", "Draw N eyes, 40 or more; without it, by gradients",
                  [command](const std::string& text) {
                    command->draws = static_cast<int>(ParseCount(text, kFewestDraws, kMostDraws));
                  });
  AddParsedOption(uncertainty, "--seed", "S", "Seed of the random numbers [1]",
                  [command](const std::string& text) { command->seed = ParseCount(text, 0, 1000000000); });
  uncertainty.add_flag("--json", command->json, "Print the report as JSON");
  AddMetricOption(uncertainty, command->metrics, "VSX,RMSw");
  const std::vector<CLI::Option*> conditions =
      AddQualityConditions(uncertainty, command->metrics, ModelOutput::kNumbers);
  AddModelOptions(uncertainty, command->model, ModelOutput::kNumbers, conditions);
  AddAdjustmentOptions(uncertainty, command->adjustments);
  uncertainty.footer(std::string(kEyeNotes) + "\n" + kColumnNotes + "\n" + kModelNotes + "\n" + kQualityNotes + "\n" +
                     QualityCatalogueText() + "\n" + kUncertaintyNotes + "\n" + kUncertaintyExamples);
  uncertainty.final_callback([command] { CheckUncertainty(*command); });
  return [command] { RunUncertainty(*command); };
}

}  // namespace orvanel::cli
