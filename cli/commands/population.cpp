// Implements "orvanel population": draws eyes around a mean eye and writes them as a table.
#include "cli/commands/population.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <charconv>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/commands/options/options.h"
#include "cli/console/report.h"
#include "cli/console/table_output.h"
#include "cli/console/terminal.h"
#include "eye/plausibility.h"
#include "eye/population/covariance.h"
#include "eye/population/random.h"
#include "files/eyes/any_eye.h"
#include "files/input_file.h"
#include "files/interruption.h"
#include "files/new_file.h"
#include "files/tables/covariance_table.h"
#include "files/tables/eye_table.h"
#include "files/tables/eye_writer.h"

namespace orvanel::cli {
namespace {

constexpr const char* kPopulationExamples =
    "Examples:\n"
    "  orvanel population --mean mean.csv --cov covariance.csv -n 1000 --seed 7 -o population.csv\n"
    "  orvanel population --mean mean.csv --cov covariance.csv -n 3 --seed 7";

constexpr const char* kPopulationNotes =
    R"(The mean is a table of eyes with one row. Options state the parts of its convention that the table does not state.
The covariance has a row and a column for each coefficient that varies, with its name, in the square of the unit. Terms
without a column keep their mean. The matrix may lack full rank, but no combination of terms may have a negative
variance. Eye number i of a seed is the same for every N and on every machine. Mean and covariance hold at one reference
wavelength, which either table may state in the column reference_wavelength_nm.
)";

struct PopulationCommand {
  std::string mean, covariance, output;
  PartialConvention stated;
  TableOptions table;
  std::uint64_t count = 0, seed = 0;
  bool force = false;
};

std::uint64_t WholeNumber(const std::string& text, std::uint64_t least) {
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < least) {
    throw Error(Quoted(text) + " is not a whole number from " + std::to_string(least) + " to 18446744073709551615");
  }
  return number;
}

Eye ReadMean(const PopulationCommand& command, EyeTable& table) {
  TableEye mean, another;
  if (!table.Next(mean)) throw Error(command.mean + ": has no row below its header; the mean must be one row");
  if (table.Next(another)) {
    throw ErrorAt(command.mean, {another.line, 1}, "a second row; the table must have only the mean eye");
  }
  return mean.eye;
}

void RequireMeans(const PopulationCommand& command, const CovarianceTable& covariance,
                  const std::vector<std::size_t>& terms) {
  for (std::size_t i = 0; i < covariance.terms.size(); ++i) {
    if (std::find(terms.begin(), terms.end(), covariance.terms[i]) == terms.end()) {
      throw Error(command.covariance + ": " + covariance.names[i] + " has no mean; add the column to " + command.mean +
                  ", with 0 if its mean is 0");
    }
  }
}

// Mean and covariance hold at one wavelength; either may state it.
std::optional<Nanometres> ReferenceOf(const PopulationCommand& command, const Eye& mean,
                                      const CovarianceTable& covariance) {
  PartialConvention ofMean, ofCovariance;
  ofMean.reference = mean.referenceWavelength;
  ofCovariance.reference = covariance.reference;
  try {
    return Combined(ofMean, "the mean", ofCovariance, "the covariance").reference;
  } catch (const Error& error) {
    throw Error(command.covariance + ": " + error.what());
  }
}

CovarianceFactors Factorised(const PopulationCommand& command, const CovarianceTable& covariance) {
  try {
    return {covariance.matrix, covariance.names};
  } catch (const Error& error) {
    throw Error(command.covariance + ": " + error.what());
  }
}

void RunPopulation(const PopulationCommand& command) {
  InputFile meanStream(command.mean);
  EyeTable table(meanStream, InputName(command.mean), TableKindOf(KindOf(command.mean)), command.stated, command.table);
  Eye mean = ReadMean(command, table);
  const Convention& convention = mean.coefficients.convention();
  InputFile stream(command.covariance);
  const CovarianceTable covariance =
      ReadCovariance(stream, command.covariance, convention.scheme, command.table.decimalComma);
  mean.referenceWavelength = ReferenceOf(command, mean, covariance);
  std::vector<std::size_t> terms = table.Terms(convention.scheme);
  std::sort(terms.begin(), terms.end());
  RequireMeans(command, covariance, terms);
  const CovarianceFactors factors = Factorised(command, covariance);

  const EyeWriter writer({"id"}, convention.scheme, terms, mean.referenceWavelength.has_value());
  TableOutput output(command.output, command.force);
  output.Write(writer.Header());
  std::vector<double> independent(factors.rank());
  TableDoubts doubts;
  for (std::uint64_t i = 0; i < command.count; ++i) {
    StopIfInterrupted();
    for (std::size_t k = 0; k < independent.size(); ++k) {
      independent[k] = NormalNumber(command.seed, i, static_cast<std::uint32_t>(k));
    }
    const std::vector<double> deviations = factors.Correlate(independent);
    Coefficients drawn = mean.coefficients.AsStated();
    for (std::size_t k = 0; k < deviations.size(); ++k) drawn[covariance.terms[k]] += deviations[k];
    Eye eye = mean;
    eye.coefficients = {convention, std::move(drawn)};
    doubts.Add(eye, "number " + std::to_string(i + 1));
    output.Write(writer.Row(eye, {std::to_string(i + 1)}));
  }
  if (!doubts.Summary().empty()) PrintWarning(doubts.Summary());
  output.Finish();
  if (!output.isFile()) return;
  PrintOutput(ReportLine("Written", command.output + ", " + std::to_string(command.count) + " eyes, " +
                                        std::to_string(factors.rank()) + " independent variables"),
              command.output + " is written");
}

}  // namespace

Run DefinePopulation(CLI::App& app) {
  const auto command = std::make_shared<PopulationCommand>();
  CLI::App& population = *app.add_subcommand("population", "Draw eyes from a mean and a covariance.");
  population.add_option("--mean", command->mean, "Table with the mean eye; - for standard input")
      ->required()
      ->type_name("FILE");
  population
      .add_option("--cov", command->covariance, "Table with the covariance of the coefficients; - for standard input")
      ->required()
      ->type_name("FILE");
  AddParsedOption(population, "-n,--count", "N", "Number of eyes", [command](const std::string& text) {
    command->count = WholeNumber(text, 1);
  })->required();
  AddParsedOption(population, "--seed", "S", "Seed of the random numbers; the same seed gives the same eyes",
                  [command](const std::string& text) { command->seed = WholeNumber(text, 0); })
      ->required();
  population.add_option("-o,--output", command->output, "The table to write, .csv; - or nothing for standard output")
      ->type_name("FILE");
  population.add_flag("--force", command->force, "Replace an existing file");
  population.add_flag("--decimal-comma", command->table.decimalComma, "The tables have decimal commas, as in 0,12");
  AddStatementOptions(population, command->stated);
  population.footer(std::string(kPopulationNotes) + "\n" + kPopulationExamples);
  population.final_callback([command] {
    if (command->mean == kStandardStream && command->covariance == kStandardStream) {
      throw CLI::ValidationError("--cov", "standard input cannot be both mean and covariance");
    }
    if (!command->output.empty() && KindOf(command->output) != FileKind::kCsv) {
      throw CLI::ValidationError("--output", "tables are written as .csv");
    }
  });
  return [command] { RunPopulation(*command); };
}

}  // namespace orvanel::cli
