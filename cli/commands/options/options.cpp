// Defines the shared options. The words that they accept are those of eye files and tables.
#include "cli/commands/options/options.h"

#include <CLI/App.hpp>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/console/terminal.h"
#include "files/eyes/any_eye.h"
#include "files/input_file.h"

namespace orvanel::cli {
namespace {

constexpr const char* kConventionGroup = "Convention of the coefficients, if the file does not state it";
constexpr const char* kAdjustmentGroup = "Adjustments of the eye before the computation";

void AddPartOption(CLI::App& app, const char* option, const char* key, const std::string& type,
                   const std::string& description, PartialConvention& parts) {
  AddParsedOption(app, option, type, description, [key, &parts](const std::string& text) {
    SetPart(parts, key, text);
  })->group(kConventionGroup);
}

}  // namespace

const char* const kEyeNotes = R"text(EYE is an eye file in JSON:
  {"name": "My eye", "pupil_diameter_mm": 5.5, "eye": "OD",
   "convention": {"unit": "um", "normalisation": "orthonormal", "order": "osa", "y_axis": "up"},
   "coefficients": [0, 0, 0, -0.11, 0.42, 0.03]}
The list of coefficients begins with the first term of the index scheme. Names are also possible: {"Z(2,0)": 0.42}.
EYE can also be a table (.csv, .ndjson) with one eye in each row, in columns such as Z4, Z(2,0) or c[2,-2].
The convention has two short forms:
  {"name": "osa"}      OSA/ANSI Z80.28: um, orthonormal, index scheme osa, y up
  {"name": "library"}  mm, not normalised, index scheme osa, y down
Units are mm, um, nm and waves (of wavelength_nm). Index schemes are osa (from 0), noll and fringe (from 1), and
named, where each coefficient comes with its term. Nothing is guessed: an option has to state what the file does not.
reference_wavelength_nm, 300 to 1200, is the wavelength of light at which the coefficients hold. It is optional,
for any unit; wavelength_nm is only the length of one wave.
)text";

const char* const kColumnNotes = R"(Names of columns:
  Z4, z 4, Z_4, Zernike 4, c4              coefficient 4 of the stated index scheme
  Z(2,-2), c[2,-2], Z_2_-2, Z 2 -2         coefficient of radial order 2 and azimuthal frequency -2
Other names that begin with Z and a number are refused, as are other names of C with only numbers and signs.
All further columns are copied, such as zone, code1 or C1_visit. A note lists how each column is read.
With --prescription-columns, sphere (sph, S), cylinder (cyl, C) and axis (ax, A) hold a refractive error in dioptres
and degrees. It is added to the eye of the row. If all three are empty, nothing is added.
Words are read in upper and lower case. R, L, right and left also state the laterality, and microns means um.
With --decimal-comma, semicolons or tabulators separate the columns, or all fields are in quotes.
)";

CLI::Option* AddParsedOption(CLI::App& app, const std::string& name, const std::string& type,
                             const std::string& description, std::function<void(const std::string&)> parse) {
  const std::size_t start = name.find("--");
  const std::string shown = name.substr(start, name.find(',', start) - start);  // the first long name
  return app
      .add_option_function<std::string>(
          name,
          [shown, parse = std::move(parse)](const std::string& text) {
            try {
              parse(text);
            } catch (const Error& error) {
              throw CLI::ValidationError(shown, error.what());
            }
          },
          description)
      ->type_name(type);
}

void AddInputOptions(CLI::App& app, InputOptions& options) {
  app.add_option("EYE", options.file, "The eye file or table; - reads a table from standard input")
      ->required()
      ->type_name("FILE");
  AddParsedOption(app, "--row", "N", "Which eye of a table, from 1",
                  [&options](const std::string& text) { options.row = ParseRow(text); });
  AddTableFormatOption(app, options.kind);
  AddTableOptions(app, options.table);
  AddStatementOptions(app, options.stated);
}

std::size_t ParseRow(const std::string& text) {
  const double row = ParseNumber(text);
  if (row < 1.0 || row > 1e15 || row != static_cast<double>(static_cast<std::size_t>(row))) {
    throw Error(Quoted(text) + " is not a row; the first eye is 1");
  }
  return static_cast<std::size_t>(row);
}

void AddTableFormatOption(CLI::App& app, std::optional<FileKind>& kind) {
  AddParsedOption(app, "--table-format", "WORD", "Format of the table; overrides the ending of its name: csv, ndjson",
                  [&kind](const std::string& text) {
                    if (text != "csv" && text != "ndjson") throw Error(Quoted(text) + " is not one of csv, ndjson");
                    kind = text == "csv" ? FileKind::kCsv : FileKind::kNdjson;
                  });
}

void AddTableOptions(CLI::App& app, TableOptions& options) {
  app.add_flag("--prescription-columns", options.prescription,
               "Add the refraction in columns sphere, cylinder, axis to each eye, as --refraction does");
  app.add_flag("--decimal-comma", options.decimalComma, "The table has decimal commas, as in 0,12");
}

void AddStatementOptions(CLI::App& app, PartialConvention& stated) {
  AddPartOption(app, "--unit", kUnitKey, "WORD", "Unit of the coefficients: " + WordsOf<Unit>(), stated);
  AddPartOption(app, "--wavelength", kWavelengthKey, "NM", "Wavelength of the unit waves", stated);
  AddPartOption(app, "--reference-wavelength", kReferenceKey, "NM",
                "Wavelength of light at which the coefficients hold", stated);
  AddPartOption(app, "--normalisation", kNormalisationKey, "WORD",
                "Normalisation of the polynomials: " + WordsOf<Normalisation>(), stated);
  AddPartOption(app, "--indexing,--order", kOrderKey, "WORD",
                "Index scheme of the coefficients: " + WordsOf<IndexScheme>(), stated);
  AddPartOption(app, "--y-axis", kYAxisKey, "WORD", "Where y grows: " + WordsOf<YAxis>(), stated);
  AddPartOption(app, "--eye", kSideKey, "WORD", "Laterality, the right or left eye: " + WordsOf<Side>(), stated);
  AddPartOption(app, "--measured-pupil", kPupilKey, "MM", "Pupil diameter of the measurement", stated);
}

void AddAdjustmentOptions(CLI::App& app, Adjustments& adjustments) {
  AddParsedOption(app, "--pupil", "MM", "Pupil diameter to rescale the coefficients to, at most the measured one",
                  [&adjustments](const std::string& text) {
                    const double diameter = ParseNumber(text);
                    if (diameter <= 0.0) throw Error("a diameter must be greater than 0");
                    adjustments.pupil = Millimetres(diameter);
                  })
      ->group(kAdjustmentGroup);
  app.add_flag("--extrapolate", adjustments.extrapolate, "Allow a pupil larger than the measured one")
      ->group(kAdjustmentGroup);
  AddParsedOption(
      app, "--refraction", "S[,C,A]",
      "Refractive error to add, also as -2.00/-0.75x20; -2 makes the eye 2 D more short-sighted",
      [&adjustments](const std::string& text) { adjustments.refraction = ToPowerVector(ParseRefraction(text)); })
      ->group(kAdjustmentGroup);
  AddParsedOption(app, "--lens", "S,C,A[,V]",
                  "Lens to wear, also as -2.00/-0.75x20,12; V is the vertex distance in mm, 0 if left out",
                  [&adjustments](const std::string& text) {
                    adjustments.lens = ParseLens(text);
                    AtCornea(*adjustments.lens);
                  })
      ->group(kAdjustmentGroup);
  AddParsedOption(app, "--mirror", "OD|OS", "Mirror the eye if it has the other laterality",
                  [&adjustments](const std::string& text) {
                    const auto side = ValueOf<Side>(text);
                    if (!side || *side == Side::kUnknown) throw Error(Quoted(text) + " is neither OD nor OS");
                    adjustments.mirror = side;
                  })
      ->group(kAdjustmentGroup);
  AddParsedOption(app, "--highest-order", "N",
                  "Drop radial orders above this, after rescaling the pupil; the RMS dropped is reported",
                  [&adjustments](const std::string& text) {
                    adjustments.highestOrder = static_cast<int>(ParseCount(text, 2, kLargestOrder));
                  })
      ->group(kAdjustmentGroup);
}

void PrintColumns(const std::string& file, const std::string& summary) { PrintNote(file + ": " + summary); }

Eye ReadEye(const InputOptions& options) {
  std::string columns;
  Eye eye = ReadEye(options.file, options.stated, options.row, options.kind, options.table, &columns);
  if (!columns.empty()) PrintColumns(InputName(options.file), columns);
  return eye;
}

}  // namespace orvanel::cli
