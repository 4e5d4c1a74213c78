// Implements "orvanel chart": draws a chart and writes it to a file.
#include "cli/commands/chart.h"

#include <CLI/App.hpp>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/commands/options/chart_options.h"
#include "cli/commands/options/options.h"
#include "cli/console/report.h"
#include "cli/console/terminal.h"
#include "files/new_file.h"
#include "files/pictures/picture_pixels.h"
#include "files/planes/format.h"

namespace orvanel::cli {
namespace {

constexpr const char* kChartExamples =
    "Examples:\n"
    "  orvanel chart --optotype sloan --logmar 0.5:-0.3 --pixels-per-degree 120 -o chart.png\n"
    "  orvanel chart --optotype sloan --logmar 1:-0.3 --screen 0.25mm --distance 4m -o screen.png\n"
    "  orvanel chart --optotype landolt8 --decimal 0.5,1 --per-line 8 --seed 7 --pixels-per-degree 200 -o rings.png\n"
    "  orvanel chart --optotype hotv --minutes 20 --text V --crowding 0.5 --pixels-per-degree 120 -o crowded.png\n"
    "  orvanel chart --pattern sine --frequency 6 --angle 45 --michelson 0.5 --field 2 --pixels-per-degree 120 \\\n"
    "    -o grating.npy";

constexpr const char* kChartFileNotes =
    R"(The ending of the file chooses its format:
  .png   grey pixels of 8 bits, or 16 with --bits 16; as sRGB, or proportional to the luminance with --linear
  .npy, .csv, .tiff   the luminance as numbers, linear, 0 to 1
)";

constexpr std::string_view kPngEnding = ".png";

struct ChartCommand {
  ChartOptions options;
  std::string output;
  const Format* format = nullptr;  // null for PNG
  int bits = 8;
  bool linear = false, force = false;
};

// The format of numbers that a file name ends in; null for PNG.
const Format* ChartFormat(const std::string& file) {
  const std::string folded = Folded(file);
  if (folded.ends_with(kPngEnding)) return nullptr;
  for (const char* const name : {"npy", "csv", "tiff"}) {
    if (folded.ends_with("." + std::string(name))) return &FormatNamed(name);
  }
  throw Error(Quoted(file) + " ends in none of .png, .npy, .csv, .tiff");
}

std::string EncodedChart(const ChartCommand& command, const charts::Chart& chart) {
  if (command.format == nullptr) return EncodePicture({chart.luminance}, command.linear, command.bits);
  NamedPlane plane{"chart", "luminance of a chart, 0 to 1", "1", &chart.luminance, 0.0, {}, {}};
  plane.spacings = {{"sample_spacing_arcmin", 60.0 / chart.pixelsPerDegree}};
  return command.format->encode({{plane}, {}});
}

void RunChart(const ChartCommand& command) {
  NewFile file(command.output, command.force);
  const charts::Chart chart = DrawnChart(command.options);
  if (const std::string warning = UndersampledText(chart); !warning.empty()) PrintWarning(warning);
  file.Write(EncodedChart(command, chart));
  file.Commit();
  PrintOutput(ChartReport(command.options, chart) + ReportLine("Written", command.output),
              command.output + " is written");
}

}  // namespace

Run DefineChart(CLI::App& app) {
  const auto command = std::make_shared<ChartCommand>();
  CLI::App& chart = *app.add_subcommand("chart", "Draw an acuity chart or a test pattern at its visual angle.");
  const std::function<void()> readChart = AddChartOptions(chart, command->options);
  const std::function<void()> readResolution = AddResolutionOptions(chart, command->options);
  AddParsedOption(chart, "-o,--output", "FILE", "The file to write, .png, .npy, .csv or .tiff",
                  [command](const std::string& text) {
                    command->output = text;
                    command->format = ChartFormat(text);
                  })
      ->required();
  AddParsedOption(chart, "--bits", "WORD", "Bits of a pixel in PNG files: 8, 16", [command](const std::string& text) {
    if (text != "8" && text != "16") throw Error(Quoted(text) + " is not one of 8, 16");
    command->bits = text == "8" ? 8 : 16;
  });
  chart.add_flag("--linear", command->linear, "The pixels of PNG files are proportional to the luminance, not sRGB");
  chart.add_flag("--force", command->force, "Replace an existing file");
  chart.footer(std::string(kChartNotes) + "\n" + kChartFileNotes + "\n" + kChartExamples);
  chart.final_callback([readChart, readResolution] {
    readChart();
    readResolution();
  });
  return [command] { RunChart(*command); };
}

}  // namespace orvanel::cli
