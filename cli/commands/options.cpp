// Shared options, each with the word that files use for the same thing.
#include "cli/commands/options.h"

#include <CLI/App.hpp>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/console/terminal.h"
#include "files/eyes/any_eye.h"
#include "files/input_file.h"

namespace orvanel::cli {
namespace {

constexpr const char* kStatementGroup = "How the coefficients are meant, where the file does not say it";
constexpr const char* kAdjustmentGroup = "What is done to the eye first";

void AddStatementOption(CLI::App& app, const char* option, const char* key, const std::string& type,
                        const std::string& description, Statement& statement) {
  AddParsedOption(app, option, type, description, [key, &statement](const std::string& text) {
    State(statement, key, text);
  })->group(kStatementGroup);
}

}  // namespace

const char* const kEyeNotes =
    "EYE is an eye file, JSON:\n"
    "  {\"name\": \"My eye\", \"pupil_diameter_mm\": 5.5, \"eye\": \"OD\",\n"
    "   \"convention\": {\"unit\": \"um\", \"normalisation\": \"orthonormal\", \"order\": \"osa\", \"y_axis\": "
    "\"up\"},\n"
    "   \"coefficients\": [0, 0, 0, -0.11, 0.42, 0.03]}\n"
    "with coefficients from the first of the index scheme on, or as {\"Z(2,0)\": 0.42};\n"
    "or a table (.csv, .ndjson), an eye a row, with columns Z4, Z(2,0) or c[2,-2]. The convention has two short "
    "forms:\n"
    "  {\"name\": \"osa\"}      OSA/ANSI Z80.28: um, orthonormal, index scheme osa, y up\n"
    "  {\"name\": \"library\"}  mm, not normalised, index scheme osa, y down\n"
    "Units are mm, um, nm and waves (of wavelength_nm); index schemes are osa (from 0), noll and fringe\n"
    "(from 1) and named, where each coefficient comes with its term. What is not said is asked for, not guessed.\n"
    "reference_wavelength_nm, 300 to 1200, is the wavelength of light at which the coefficients hold. It is optional,\n"
    "for any unit; wavelength_nm is only the length of one wave.\n";

const char* const kColumnNotes =
    "Names of columns:\n"
    "  Z4, z 4, Z_4, Zernike 4, c4              coefficient 4 of the stated index scheme\n"
    "  Z(2,-2), c[2,-2], Z_2_-2, Z 2 -2         coefficient of radial order 2 and frequency -2\n"
    "Any other name that begins with Z and a number, or with C and is made of numbers and signs alone, is refused.\n"
    "All else is yours and carried through, such as zone, code1 or C1_visit. A note tells which columns are which.\n"
    "With --prescription-columns, sphere (sph, S), cylinder (cyl, C) and axis (ax, A) hold an error of refraction "
    "that\n"
    "is added to the eye of the row, in dioptres and degrees. All three empty: none is added.\n"
    "Words are read in either case; also R, L, right, left for the eye and microns for um.\n"
    "With --decimal-comma, semicolons or tabulators separate the columns, or all fields stand in quotes.\n";

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
  app.add_option("EYE", options.file, "The eye file or table; - is standard input, a table")
      ->required()
      ->type_name("FILE");
  AddParsedOption(app, "--row", "N", "Which eye of a table, from 1", [&options](const std::string& text) {
    const double row = ParseNumber(text);
    if (row < 1.0 || row > 1e15 || row != static_cast<double>(static_cast<std::size_t>(row))) {
      throw Error(Quoted(text) + " is no row; the first eye is 1");
    }
    options.row = static_cast<std::size_t>(row);
  });
  AddTableFormatOption(app, options.kind);
  AddTableOptions(app, options.table);
  AddStatementOptions(app, options.stated);
}

void AddTableFormatOption(CLI::App& app, std::optional<FileKind>& kind) {
  AddParsedOption(app, "--table-format", "WORD", "What the table is, whatever its name: csv, ndjson",
                  [&kind](const std::string& text) {
                    if (text != "csv" && text != "ndjson") throw Error(Quoted(text) + " is not one of csv, ndjson");
                    kind = text == "csv" ? FileKind::kCsv : FileKind::kNdjson;
                  });
}

void AddTableOptions(CLI::App& app, TableOptions& options) {
  app.add_flag("--prescription-columns", options.prescription,
               "Add the refraction in columns sphere, cylinder, axis to each eye, as --refraction does");
  app.add_flag("--decimal-comma", options.decimalComma, "Numbers of the table are written as 0,12");
}

void AddStatementOptions(CLI::App& app, Statement& stated) {
  AddStatementOption(app, "--unit", kUnitKey, "WORD", "Unit of the coefficients: " + WordsOf<Unit>(), stated);
  AddStatementOption(app, "--wavelength", kWavelengthKey, "NM", "Wavelength of the unit waves", stated);
  AddStatementOption(app, "--reference-wavelength", kReferenceKey, "NM",
                     "Wavelength of light at which the coefficients hold", stated);
  AddStatementOption(app, "--normalisation", kNormalisationKey, "WORD",
                     "Normalisation of the polynomials: " + WordsOf<Normalisation>(), stated);
  AddStatementOption(app, "--indexing,--order", kOrderKey, "WORD",
                     "Index scheme of the coefficients: " + WordsOf<Order>(), stated);
  AddStatementOption(app, "--y-axis", kYAxisKey, "WORD", "Where y grows: " + WordsOf<YAxis>(), stated);
  AddStatementOption(app, "--eye", kSideKey, "WORD", "Right eye, left eye, or not known: " + WordsOf<Side>(), stated);
  AddStatementOption(app, "--measured-pupil", kPupilKey, "MM", "Diameter over which the eye was measured", stated);
}

void AddAdjustmentOptions(CLI::App& app, Adjustments& adjustments) {
  AddParsedOption(app, "--pupil", "MM", "Diameter wanted, at most that measured; the coefficients are rescaled",
                  [&adjustments](const std::string& text) {
                    const double diameter = ParseNumber(text);
                    if (diameter <= 0.0) throw Error("a diameter is greater than 0");
                    adjustments.pupil = Millimetres(diameter);
                  })
      ->group(kAdjustmentGroup);
  app.add_flag("--extrapolate", adjustments.extrapolate, "Allow a pupil larger than measured")->group(kAdjustmentGroup);
  AddParsedOption(
      app, "--refraction", "S[,C,A]",
      "Refractive error to add, also as -2.00/-0.75x20; -2 makes the eye 2 D more short-sighted",
      [&adjustments](const std::string& text) { adjustments.refraction = ToPowerVector(ParseRefraction(text)); })
      ->group(kAdjustmentGroup);
  AddParsedOption(app, "--lens", "S,C,A[,V]",
                  "Lens to wear, also as -2.00/-0.75x20,12; V in mm is its vertex distance, 0 unless said",
                  [&adjustments](const std::string& text) {
                    adjustments.lens = ParseLens(text);
                    AtCornea(*adjustments.lens);
                  })
      ->group(kAdjustmentGroup);
  AddParsedOption(app, "--mirror", "OD|OS", "Bring the eye to this laterality: one of the other is mirrored",
                  [&adjustments](const std::string& text) {
                    const auto side = ValueOf<Side>(text);
                    if (!side || *side == Side::kUnknown) throw Error(Quoted(text) + " is neither OD nor OS");
                    adjustments.mirror = side;
                  })
      ->group(kAdjustmentGroup);
  AddParsedOption(app, "--highest-order", "N",
                  "Drop radial orders above this, over the pupil wanted; the RMS dropped is reported",
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
