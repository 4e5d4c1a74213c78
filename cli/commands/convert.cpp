// Implements "orvanel convert": converts one eye to a report or file, and a table to a table.
#include "cli/commands/convert.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/coefficient_report.h"
#include "cli/commands/options/options.h"
#include "cli/console/report.h"
#include "cli/console/table_output.h"
#include "cli/console/terminal.h"
#include "cli/error_text.h"
#include "eye/plausibility.h"
#include "files/eyes/any_eye.h"
#include "files/eyes/eye_file.h"
#include "files/input_file.h"
#include "files/interruption.h"
#include "files/new_file.h"
#include "files/tables/eye_table.h"
#include "files/tables/eye_writer.h"

namespace orvanel::cli {
namespace {

constexpr const char* kConvertExamples =
    "Examples:\n"
    "  orvanel convert assets/eyes/standard_observer_6mm.json\n"
    "  orvanel convert my_eye.json --to-unit waves --to-wavelength 550 --to-indexing noll -o my_eye_noll.json\n"
    "  orvanel convert my_eye.json --to library --pupil 4 -o my_eye_4mm.json\n"
    "  orvanel convert eyes.csv --to osa --mirror OD -o right_eyes.csv\n"
    "  orvanel convert eyes_bare.csv --unit um --normalisation orthonormal --indexing osa --y-axis up --eye OD \\\n"
    "    --measured-pupil 6 --to-indexing named";

constexpr const char* kConvertNotes =
    R"(Parts of the convention without an option stay as they are. For a single eye, a report shows the coefficients with
their names, root mean squares and refraction, and -o names the file for the converted eye. For a table, every row is
converted and written to the file of -o, or to standard output. A term that is not 0 and does not exist in the wanted
index scheme is refused: the 37 terms of fringe lack (6,-6), (6,6) and most of the radial orders above.
)";

struct ConvertCommand {
  InputOptions input;
  Adjustments adjustments;
  PartialConvention wanted;
  std::string output;
  bool force = false, plusCylinder = false;
};

// True if all eyes of a table are converted.
bool IsTable(const ConvertCommand& command) {
  return KindOf(command.input.file, command.input.kind) != FileKind::kEyeFile && !command.input.row;
}

// The convention of an eye, changed by the options.
Convention Target(Convention convention, const PartialConvention& wanted) {
  if (wanted.unit) {
    if (*wanted.unit != Unit::kWaves) convention.wavelength = Nanometres();
    if (*wanted.unit == Unit::kWaves && convention.unit != Unit::kWaves && !wanted.wavelength) {
      throw Error("the unit waves needs a wavelength; add --to-wavelength, in nm");
    }
    convention.unit = *wanted.unit;
  }
  if (wanted.wavelength) {
    if (convention.unit != Unit::kWaves) throw Error("--to-wavelength needs --to-unit waves");
    convention.wavelength = *wanted.wavelength;
  }
  if (wanted.normalisation) convention.normalisation = *wanted.normalisation;
  if (wanted.scheme) convention.scheme = *wanted.scheme;
  if (wanted.yAxis) convention.yAxis = *wanted.yAxis;
  return convention;
}

Eye ConvertedEye(Eye measured, const ConvertCommand& command, std::optional<Dropped>& dropped) {
  Eye eye = Adjusted(std::move(measured), command.adjustments, &dropped);
  eye.coefficients.Restate(Target(eye.coefficients.convention(), command.wanted));
  return eye;
}

//   prescription  true if rows have columns with a refraction
std::vector<std::size_t> TermsThatMayChange(std::vector<std::size_t> terms, const Adjustments& adjustments,
                                            bool prescription) {
  if (adjustments.refraction || adjustments.lens || prescription) {
    terms.insert(terms.end(), {OsaIndex({2, -2}), OsaIndex({2, 0}), OsaIndex({2, 2})});
  }
  if (adjustments.pupil) terms = WithLowerOrders(terms);
  std::sort(terms.begin(), terms.end());
  terms.erase(std::unique(terms.begin(), terms.end()), terms.end());
  if (adjustments.highestOrder) {
    std::erase_if(terms, [&](std::size_t j) { return Term(j).n > *adjustments.highestOrder; });
  }
  return terms;
}

std::string FileText(const Eye& eye, const std::string& file) {
  if (KindOf(file) == FileKind::kEyeFile) return EyeFileText(eye);
  std::vector<std::size_t> terms(eye.coefficients.osa().size());
  for (std::size_t j = 0; j < terms.size(); ++j) terms[j] = j;
  const EyeWriter writer({"name"}, eye.coefficients.convention().scheme, terms, eye.referenceWavelength.has_value());
  return writer.Header() + writer.Row(eye, {eye.name});
}

void ConvertEye(const ConvertCommand& command) {
  const Eye measured = ReadEye(command.input);
  std::string report, text;
  try {
    std::optional<Dropped> dropped;
    const Eye eye = ConvertedEye(measured, command, dropped);
    if (dropped && dropped->rms > Micrometres(0.0)) PrintWarning(Text(*dropped));
    for (const std::string& warning : EyeWarnings(eye)) PrintWarning(warning);
    report = EyeLines(measured, Changes(measured, command.adjustments)) +
             CoefficientReport(eye, command.plusCylinder ? CylinderSign::kPlus : CylinderSign::kMinus);
    if (!command.output.empty()) text = FileText(eye, command.output);
  } catch (const Error& error) {
    throw Error(command.input.file + ": " + TextOf(error));
  }
  if (command.output == kStandardStream) {
    PrintOutput(text, "");
    return;
  }
  if (!command.output.empty()) {
    NewFile file(command.output, command.force);
    file.Write(text);
    file.Commit();
    report += ReportLine("Written", command.output);
  }
  PrintOutput(report, command.output.empty() ? "" : command.output + " is written");
}

void ConvertTable(const ConvertCommand& command) {
  InputFile stream(command.input.file);
  const std::string name = InputName(command.input.file);
  EyeTable table(stream, name, TableKindOf(KindOf(command.input.file, command.input.kind)), command.input.stated,
                 command.input.table);
  PrintColumns(name, table.Summary());
  const std::optional<IndexScheme> scheme = command.wanted.scheme ? command.wanted.scheme : table.CommonScheme();
  if (!scheme) {
    TableEye first;
    table.Next(first);  // throws a better message if the index scheme is missing
    throw Error(name + ": the index scheme may differ from row to row; add --to-indexing");
  }
  const EyeWriter writer(table.identifierNames(), *scheme,
                         TermsThatMayChange(table.Terms(), command.adjustments, command.input.table.prescription),
                         table.MayStateReference());
  TableOutput output(command.output, command.force);
  output.Write(writer.Header());
  std::size_t count = 0;
  DroppedOfMany droppedOfAll;
  TableDoubts doubts;
  for (TableEye row; table.Next(row); ++count) {
    StopIfInterrupted();
    std::string line;
    try {
      std::optional<Dropped> dropped;
      const Eye eye = ConvertedEye(std::move(row.eye), command, dropped);
      if (dropped) droppedOfAll.Add(*dropped);
      doubts.Add(eye, "line " + std::to_string(row.line));
      line = writer.Row(eye, row.identifiers);
    } catch (const Error& error) {
      throw ErrorAt(name, {row.line, 1}, TextOf(error));
    }
    output.Write(line);
  }
  if (droppedOfAll.affected > 0) PrintWarning(Text(droppedOfAll, *command.adjustments.highestOrder));
  if (!doubts.Summary().empty()) PrintWarning(doubts.Summary());
  stream.Close();  // Windows cannot replace an open file
  output.Finish();
  if (!output.isFile()) return;
  PrintOutput(ReportLine("Written", command.output + ", " + std::to_string(count) + " eyes"),
              command.output + " is written");
}

void AddTargetOptions(CLI::App& app, PartialConvention& wanted) {
  constexpr const char* kGroup = "Convention of the result";
  const auto add = [&](const char* option, const char* key, const char* type, const std::string& description) {
    AddParsedOption(app, option, type, description, [key, &wanted](const std::string& text) {
      SetPart(wanted, key, text);
    })->group(kGroup);
  };
  AddParsedOption(app, "--to", "NAME", "Short form: osa, library", [&wanted](const std::string& text) {
    const auto convention = ConventionNamed(text);
    if (!convention) throw Error(Quoted(text) + " is not a short form; use osa or library");
    wanted = Combined(PartsOf(*convention), "--to " + text, wanted, "the command line");
  })->group(kGroup);
  add("--to-unit", kUnitKey, "WORD", "Unit: " + WordsOf<Unit>());
  add("--to-wavelength", kWavelengthKey, "NM", "Wavelength of the unit waves");
  add("--to-normalisation", kNormalisationKey, "WORD", "Normalisation: " + WordsOf<Normalisation>());
  add("--to-indexing,--to-order", kOrderKey, "WORD", "Index scheme: " + WordsOf<IndexScheme>());
  add("--to-y-axis", kYAxisKey, "WORD", "Where y grows: " + WordsOf<YAxis>());
}

}  // namespace

Run DefineConvert(CLI::App& app) {
  const auto command = std::make_shared<ConvertCommand>();
  CLI::App& convert = *app.add_subcommand("convert", "Show or write coefficients in another convention.");
  AddInputOptions(convert, command->input);
  convert
      .add_option("-o,--output", command->output,
                  "The file to write: .json, or .csv for a table; - writes a table to standard output")
      ->type_name("FILE");
  convert.add_flag("--force", command->force, "Replace an existing file");
  convert.add_flag("--plus-cylinder", command->plusCylinder, "Report refraction with a positive cylinder");
  AddTargetOptions(convert, command->wanted);
  AddAdjustmentOptions(convert, command->adjustments);
  convert.footer(std::string(kEyeNotes) + "\n" + kColumnNotes + "\n" + kConvertNotes + "\n" + kConvertExamples);
  convert.final_callback([command] {
    const bool table = IsTable(*command);
    const bool toTable = KindOf(command->output) == FileKind::kCsv;
    if (KindOf(command->output) == FileKind::kNdjson) {
      throw CLI::ValidationError("--output", "tables are written as .csv");
    }
    if (table && !command->output.empty() && !toTable) {
      throw CLI::ValidationError("--output", "a table is written as .csv; choose one eye of it with --row");
    }
  });
  return [command] {
    if (IsTable(*command)) {
      ConvertTable(*command);
    } else {
      ConvertEye(*command);
    }
  };
}

}  // namespace orvanel::cli
