// Makes objects of true size from options, and shows them to the eye.
#include "cli/commands/options/sized_options.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "base/error.h"
#include "base/number_text.h"
#include "base/split.h"
#include "cli/console/report.h"
#include "cli/console/terminal.h"
#include "files/interruption.h"
#include "files/pictures/picture_file.h"
#include "targets/charts/optotype.h"

namespace orvanel::cli {

const char* const kSizedNotes =
    R"(Charts and pictures of true angular size, with the physical model:
  --chart                 draws a chart by the options of 'orvanel chart' and shows it to the eye, at 240 pixels/degree
                          unless stated
  --picture with --field  keeps all pixels of the picture, up to 4096 x 4096; --field is its width in degrees
                          (--field 4deg). --pixels-per-degree, or --screen with --distance, state its size instead
With --light display or --spd, sRGB values are decoded to light, and red, green and blue are each imaged in the light of
their primary. Chromatic aberration so shows as coloured fringes. The focus at the reference wavelength is kept, and a
uniform field keeps its colour. White is that of sRGB, D65. In other light the luminance is imaged, as grey.
The background of a chart surrounds it; the mean of each channel surrounds a picture, and the mean 0.5 a grating or
checkerboard. Nothing wraps round. The files are chart_shown.png, chart_seen.png and chart_before_after.png, or the same
with picture; --format adds their planes of light.
letters.png has lines of letters as shown and as seen, and one letter through focus. In light of several wavelengths it
takes minutes and needs --letters. --strip writes one letter through the lenses that you name, in any light.
)";

namespace {

constexpr const char* kSizedGroup = "Charts and pictures of true angular size";
constexpr double kUsualPixelsPerDegree = 240.0;
constexpr double kMinutesInDegree = 60.0;

SizedView ViewOfChart(const ChartOptions& options) {
  const charts::Chart chart = DrawnChart(options);
  if (const std::string warning = UndersampledText(chart); !warning.empty()) PrintWarning(warning);
  SizedView view;
  view.name = SizedView::kSizedChart;
  view.description = {ChartReport(options, chart)};
  // The background of a grating or checkerboard is none of its two luminances.
  const bool fills = std::holds_alternative<charts::GratingPattern>(options.request.content) ||
                     std::holds_alternative<charts::CheckPattern>(options.request.content);
  const double surround =
      fills ? (chart.luminances.target + chart.luminances.background) / 2.0 : chart.luminances.background;
  view.surround = std::string(fills ? "the mean luminance of the pattern, " : "the background of the chart, ") +
                  NumberText(surround, 4) + " of white";
  view.image.object = {{chart.luminance}, {surround}, ArcMinutes(kMinutesInDegree / chart.pixelsPerDegree)};
  return view;
}

SizedView ViewOfPicture(const SizedOptions& options, const PictureRequest& request) {
  const charts::ChartRequest& size = options.options.request;
  ObjectPicture picture = ReadWholePicture(request);
  const double degrees = size.field ? size.field->widthDegrees : picture.width / size.pixelsPerDegree;
  if (!(degrees > 0.0)) throw Error("--field: a picture is wider than 0 degrees");
  const double pixel = degrees * kMinutesInDegree / picture.width;
  SizedView view;
  view.name = SizedView::kSizedPicture;
  view.bits = picture.bits;
  view.linear = request.linear;
  view.description = {
      ReportLine("Your picture", request.file + ", " + std::to_string(picture.width) + " x " +
                                     std::to_string(picture.height) + " pixels, " +
                                     (picture.channels.size() == 1 ? "grey" : "colour") + " of " +
                                     std::to_string(picture.bits) + " bits" +
                                     (request.linear ? ", values taken as light" : ", sRGB values turned into light") +
                                     (picture.transparent ? ", white under transparent parts" : "")),
      ReportLine("", NumberText(degrees, 4) + " x " + NumberText(pixel * picture.height / kMinutesInDegree, 4) +
                         " degrees, " + NumberText(kMinutesInDegree / pixel, 4) + " pixels/degree")};
  view.surround = "the mean of each channel";
  SizedObject& object = view.image.object;
  object.pixel = ArcMinutes(pixel);
  for (const Plane& channel : picture.channels) {
    object.surround.push_back(SumOf(channel) / static_cast<double>(channel.size()));
  }
  object.channels = std::move(picture.channels);
  return view;
}

}  // namespace

std::function<void()> AddSizedOptions(CLI::App& app, SizedOptions& options) {
  options.chart =
      app.add_flag("--chart", options.showsChart, "Show a chart to the eye, drawn by the options of 'orvanel chart'");
  options.chart->group(kSizedGroup);
  const std::vector<CLI::Option*> before = app.get_options();
  const std::function<void()> readChart = AddChartOptions(app, options.options);
  const std::vector<CLI::Option*> withChart = app.get_options();
  const std::function<void()> readResolution = AddResolutionOptions(app, options.options);
  const auto isNew = [&before](const CLI::Option* option) {
    return std::find(before.begin(), before.end(), option) == before.end();
  };
  for (CLI::Option* const option : app.get_options()) {
    if (isNew(option)) option->group(kSizedGroup);
  }
  CLI::Option* const field = app.get_option("--field");
  for (CLI::Option* const option : withChart) {
    if (isNew(option) && option != field) option->needs(options.chart);
  }
  return [&app, &options, readChart, readResolution, field] {
    const auto given = [&app](const char* name) { return app.get_option(name)->count() > 0; };
    const bool resolution = given("--pixels-per-degree") || given("--screen");
    if (given("--chart")) {
      options.content = SizedOptions::Content::kChart;
      readChart();
      if (!resolution) options.options.request.pixelsPerDegree = kUsualPixelsPerDegree;
      readResolution();
      return;
    }
    if (field->count() == 0 && !resolution) return;
    if (!given("--picture")) {
      throw CLI::RequiredError(field->count() > 0 ? "--chart or --picture, of which --field is the size,"
                                                  : "--chart or --picture");
    }
    if (field->count() > 0 && resolution) {
      throw CLI::ValidationError("--field", "is the size of the picture; remove the pixels per degree or the screen");
    }
    options.content = SizedOptions::Content::kPicture;
    if (resolution) readResolution();
    const std::optional<charts::Field>& size = options.options.request.field;
    if (size && size->widthDegrees != size->heightDegrees) {
      throw CLI::ValidationError("--field", "write the width of the picture alone, such as 4deg");
    }
    const double number = size ? size->widthDegrees : options.options.request.pixelsPerDegree;
    if (!(number > 0.0)) {
      throw CLI::ValidationError(size ? "--field" : "--pixels-per-degree",
                                 NumberText(number, 6) + " is not a number above 0");
    }
  };
}

std::function<void()> AddStripOptions(CLI::App& app, StripRequest& request) {
  const auto list = std::make_shared<std::string>();
  app.add_option("--strip", *list,
                 "Write strip.png: one letter through these lenses, in dioptres, separated by commas, from 1 to 20")
      ->type_name("LIST")
      ->group(kSizedGroup);
  app.add_option("--strip-letter", request.letter, "The letter of the strip, one of Sloan's ten")
      ->capture_default_str()
      ->type_name("LETTER")
      ->needs("--strip")
      ->group(kSizedGroup);
  app.add_option("--strip-logmar", request.logMar, "Its size in logMAR, -0.5 to 1.5")
      ->capture_default_str()
      ->type_name("NUMBER")
      ->needs("--strip")
      ->check(CLI::Range(-0.5, 1.5))
      ->group(kSizedGroup);
  return [&app, &request, list] {
    if (app.get_option("--strip")->count() == 0) return;
    constexpr std::size_t kMostLenses = 20;
    constexpr double kStrongest = 20.0;
    for (const std::string_view part : Split(*list)) {
      double lens = 0.0;
      try {
        lens = ParseNumber(part);
      } catch (const Error&) {
        throw CLI::ValidationError("--strip", Quoted(part) + " is not a number of dioptres, such as -0.5");
      }
      if (!(std::abs(lens) <= kStrongest)) {
        throw CLI::ValidationError("--strip", Quoted(part) + " is not from -20 to 20 dioptres");
      }
      request.lenses.push_back(lens);
    }
    if (request.lenses.size() > kMostLenses) {
      throw CLI::ValidationError("--strip", std::to_string(request.lenses.size()) + " lenses; write at most 20");
    }
    if (!charts::FindOptotype(*charts::OptotypeSetNamed("sloan"), request.letter)) {
      throw CLI::ValidationError("--strip-letter",
                                 Quoted(request.letter) + " is not one of C, D, H, K, N, O, R, S, V, Z");
    }
  };
}

FocusStrip SeenStrip(const Eye& eye, const PhysicalSettings& settings, const StripRequest& request) {
  Progress progress("Lenses", request.lenses.size());
  return SeeStrip(eye, settings, request, [&progress] {
    StopIfInterrupted();
    progress.Advance();
  });
}

void RefuseBesideSized(const CLI::App& app, const ModelOptions& model) {
  const char* const chosen = app.get_option("--chart")->count() > 0 ? "--chart" : "--picture";
  if (model.request.kind == ModelKind::kClassic) {
    throw CLI::ValidationError(chosen, "of true angular size needs the physical model; remove --model classic");
  }
  for (const char* const name : {"--fit", "--object-angle"}) {
    if (std::string(chosen) == "--picture" && app.get_option(name)->count() > 0) {
      throw CLI::ValidationError(name, "does not apply to a picture of true angular size; remove it");
    }
  }
  if (app.get_option("--json")->count() > 0) throw CLI::ValidationError("--json", "writes no files; remove --chart");
}

std::optional<SizedView> SizedViewOf(const SizedOptions& options, const PictureRequest& picture) {
  switch (options.content) {
    case SizedOptions::Content::kNone:
      break;
    case SizedOptions::Content::kChart:
      return ViewOfChart(options.options);
    case SizedOptions::Content::kPicture:
      return ViewOfPicture(options, picture);
  }
  return std::nullopt;
}

SizedView Seen(SizedView view, const Eye& eye, const PhysicalSettings& settings) {
  SizedImager imager(settings);
  Progress progress("Wavelengths", imager.Lines());
  view.image = imager.ImageOf(eye, std::move(view.image.object), [&progress] {
    StopIfInterrupted();
    progress.Advance();
  });
  return view;
}

}  // namespace orvanel::cli
