// Defines the options of charts, and words refusals and reports of charts.
#include "cli/commands/options/chart_options.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "base/split.h"
#include "cli/commands/options/options.h"
#include "cli/console/report.h"
#include "targets/charts/sizes.h"

namespace orvanel::cli {

const char* const kChartNotes =
    R"(Sizes of optotypes are visual angles. An optotype of logMAR 0, decimal acuity 1 or 20/20 is 5' high, with strokes of 1'.
Each size is one line, from the top. A range of logMAR such as 0.5:-0.3 has steps of 0.1, or of --step.
The gaps in a line are one optotype wide, and the gap above a line is as high as its optotypes (Bailey and Lovie).
With 5 Sloan letters in a line and steps of 0.1 logMAR, this is the ETDRS chart.
The order is random; the same seed gives the same chart on every machine. No optotype comes twice in a line if the set
has enough. --text states the optotypes instead: letters, or directions with blanks between; lines are separated by /.
The optotypes are
  sloan       the letters C D H K N O R S V Z, as wide as high
  hotv        the letters H O T V in the same design
  landolt4    Landolt rings (ISO 8596) with the gap right, up, left, down
  landolt8    the same, and up-right, up-left, down-left, down-right
  tumbling-e  the letter E with its bars to the right, up, left, down
Patterns are sine and square gratings (--frequency), a Siemens star (--minutes is its diameter), points (their diameter)
and a checkerboard (the side of a check). The angle of bars is anticlockwise: 0 horizontal, 90 vertical.
A grating has the mean luminance 0.5. In other charts the lighter luminance is 1.
Each pixel has the mean luminance over its area, so that the light of a stroke is right at any resolution. A stroke
below one pixel gives a warning: the screen cannot show this size. The pixels per degree of a screen are those of the
degree around its middle, 2 distance tan(0.5 degrees) / pitch.
)";

namespace {

constexpr double kMinutesPerDegree = 60.0;
constexpr const char* kSizeGroup = "Sizes, one of these";
constexpr const char* kPatternGroup = "Patterns";

// Options as text of the command line.
struct ChartWords {
  std::string optotype, pattern, logMar, decimal, snellen, minutes, text, angle, phase;
  std::string step, perLine, seed, crowding, frequency, cycles, points, spacing;
  std::string weber, michelson;
  bool lightOnDark = false;
};

std::vector<ArcMinutes> LogMarSizes(const ChartWords& words) {
  std::vector<ArcMinutes> heights;
  for (const std::string_view part : Split(words.logMar)) {
    const std::size_t colon = part.find(':');
    if (colon == std::string_view::npos) {
      heights.push_back(charts::HeightOfLogMar(ParseNumber(part)));
      continue;
    }
    const double step = words.step.empty() ? 0.1 : ParseNumber(words.step);
    if (!(step > 0.0)) throw CLI::ValidationError("--step", "a step must be greater than 0");
    const std::vector<double> steps = charts::Steps(ParseNumber(part.substr(0, colon)),
                                                    ParseNumber(part.substr(colon + 1)), step, charts::kMostLines);
    if (steps.empty()) {
      throw Error(Quoted(part) + " has more than " + std::to_string(charts::kMostLines) + " steps of " +
                  NumberText(step, 6));
    }
    for (const double logMar : steps) heights.push_back(charts::HeightOfLogMar(logMar));
  }
  return heights;
}

std::vector<ArcMinutes> DecimalSizes(const std::string& list) {
  std::vector<ArcMinutes> heights;
  for (const std::string_view part : Split(list)) {
    const double acuity = ParseNumber(part);
    if (!(acuity > 0.0)) throw Error(Quoted(part) + " is not a number above 0, such as 0.5");
    heights.push_back(charts::HeightOfDecimal(acuity));
  }
  return heights;
}

std::vector<ArcMinutes> SnellenSizes(const std::string& list) {
  std::vector<ArcMinutes> heights;
  for (const std::string_view part : Split(list)) {
    const std::size_t bar = part.find('/');
    if (bar == std::string_view::npos) throw Error(Quoted(part) + " is not a fraction such as 20/40");
    const double distance = ParseNumber(part.substr(0, bar)), reference = ParseNumber(part.substr(bar + 1));
    if (!(distance > 0.0 && reference > 0.0)) throw Error(Quoted(part) + " is not a fraction such as 20/40");
    heights.push_back(charts::HeightOfDecimal(distance / reference));
  }
  return heights;
}

std::vector<ArcMinutes> MinuteSizes(const std::string& list) {
  std::vector<ArcMinutes> heights;
  for (const std::string_view part : Split(list)) heights.emplace_back(ParseNumber(part));
  return heights;
}

// Lets an option name the error of its text.
template <class Parse>
auto NamedByOption(const char* option, Parse parse) {
  try {
    return parse();
  } catch (const Error& error) {
    throw CLI::ValidationError(option, error.what());
  }
}

double ChartNumberOr(const char* option, const std::string& text, double usual) {
  return text.empty() ? usual : NamedByOption(option, [&] { return ParseNumber(text); });
}

int CountOr(const char* option, const std::string& text, int usual, int most) {
  if (text.empty()) return usual;
  return static_cast<int>(NamedByOption(option, [&] { return ParseCount(text, 1, static_cast<std::size_t>(most)); }));
}

std::uint64_t SeedOr(const std::string& text, std::uint64_t usual) {
  if (text.empty()) return usual;
  std::uint64_t seed = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seed);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw CLI::ValidationError("--seed", Quoted(text) + " is not a whole number from 0 to 18446744073709551615");
  }
  return seed;
}

// Lines of names: letters one by one, or words.
std::vector<std::vector<std::string>> NamesOfLines(const std::string& text, const charts::OptotypeSet& set) {
  std::vector<std::vector<std::string>> lines(1);
  bool inWord = false;
  for (const char c : text) {
    if (c == '/') lines.emplace_back();
    const bool separates = c == '/' || c == ' ' || c == ',';
    if (!separates) {
      // The further bytes of a character beyond ASCII belong to its name.
      const bool continues = (static_cast<unsigned char>(c) & 0xc0U) == 0x80U;
      if (!inWord || (set.letters && !continues)) lines.back().emplace_back();
      lines.back().back() += c;
    }
    inWord = !separates;
  }
  return lines;
}

std::vector<ArcMinutes> ChartSizes(const ChartWords& words) {
  if (!words.logMar.empty()) return NamedByOption("--logmar", [&] { return LogMarSizes(words); });
  if (!words.decimal.empty()) return NamedByOption("--decimal", [&] { return DecimalSizes(words.decimal); });
  if (!words.snellen.empty()) return NamedByOption("--snellen", [&] { return SnellenSizes(words.snellen); });
  if (!words.minutes.empty()) return NamedByOption("--minutes", [&] { return MinuteSizes(words.minutes); });
  throw CLI::ValidationError("--optotype", "needs sizes; add --logmar, --decimal, --snellen or --minutes");
}

charts::OptotypeChart OptotypesOf(const ChartWords& words) {
  charts::OptotypeChart content;
  content.set = charts::OptotypeSetNamed(words.optotype);
  if (content.set == nullptr) {
    std::string known;
    for (const charts::OptotypeSet& set : charts::OptotypeSets()) {
      known += (known.empty() ? "" : ", ") + std::string(set.word);
    }
    throw CLI::ValidationError("--optotype", Quoted(words.optotype) + " is not one of " + known);
  }
  content.heights = ChartSizes(words);
  content.perLine = CountOr("--per-line", words.perLine, words.crowding.empty() ? 5 : 1, charts::kMostOptotypesInLine);
  content.seed = SeedOr(words.seed, content.seed);
  if (!words.text.empty()) content.names = NamesOfLines(words.text, *content.set);
  if (!words.crowding.empty()) content.crowdingGap = ChartNumberOr("--crowding", words.crowding, 0.0);
  return content;
}

// The one size of a pattern.
ArcMinutes PatternSize(const ChartWords& words) {
  if (words.minutes.empty()) throw CLI::ValidationError("--pattern", words.pattern + " needs a size; add --minutes");
  const std::vector<ArcMinutes> sizes = NamedByOption("--minutes", [&] { return MinuteSizes(words.minutes); });
  if (sizes.size() != 1) throw CLI::ValidationError("--minutes", words.pattern + " has one size");
  return sizes.front();
}

using ChartContent = decltype(charts::ChartRequest::content);

ChartContent PatternOf(const ChartWords& words) {
  if (words.pattern == "sine" || words.pattern == "square") {
    if (words.frequency.empty()) {
      throw CLI::ValidationError("--pattern", words.pattern + " needs a frequency; add --frequency");
    }
    charts::GratingPattern grating;
    using Wave = charts::GratingPattern::Wave;
    grating.wave = words.pattern == "sine" ? Wave::kSine : Wave::kSquare;
    grating.frequency = CyclesPerDegree(ChartNumberOr("--frequency", words.frequency, 0.0));
    grating.barDegrees = ChartNumberOr("--angle", words.angle, grating.barDegrees);
    grating.phaseDegrees = ChartNumberOr("--phase", words.phase, grating.phaseDegrees);
    return grating;
  }
  if (words.pattern == "star") {
    charts::StarPattern star;
    star.diameter = PatternSize(words);
    star.cycles = CountOr("--cycles", words.cycles, star.cycles, charts::kMostStarCycles);
    return star;
  }
  if (words.pattern == "points") {
    charts::PointPattern points;
    points.diameter = PatternSize(words);
    points.perSide = CountOr("--per-side", words.points, points.perSide, charts::kMostPointsPerSide);
    if (points.perSide > 1 && words.spacing.empty()) {
      throw CLI::ValidationError("--per-side", "needs the distance between points; add --spacing");
    }
    points.spacing = ArcMinutes(ChartNumberOr("--spacing", words.spacing, 0.0));
    return points;
  }
  if (words.pattern == "checkerboard") return charts::CheckPattern{PatternSize(words)};
  throw CLI::ValidationError("--pattern",
                             Quoted(words.pattern) + " is not one of sine, square, star, points, checkerboard");
}

// Which contents an option applies to.
struct Applicability {
  const char* option;
  std::vector<std::string_view> patterns;  // "" for optotypes
};

void RefuseOthers(const CLI::App& app, const std::string& pattern) {
  static const std::vector<Applicability> kApplicability = {
      {"--logmar", {""}},
      {"--decimal", {""}},
      {"--snellen", {""}},
      {"--minutes", {"", "star", "points", "checkerboard"}},
      {"--step", {""}},
      {"--per-line", {""}},
      {"--text", {""}},
      {"--seed", {""}},
      {"--crowding", {""}},
      {"--frequency", {"sine", "square"}},
      {"--angle", {"sine", "square"}},
      {"--phase", {"sine", "square"}},
      {"--cycles", {"star"}},
      {"--per-side", {"points"}},
      {"--spacing", {"points"}},
      {"--light-on-dark", {"", "star", "points", "checkerboard"}},
  };
  for (const auto& [option, patterns] : kApplicability) {
    if (app.get_option(option)->count() == 0 ||
        std::find(patterns.begin(), patterns.end(), pattern) != patterns.end()) {
      continue;
    }
    throw CLI::ValidationError(option,
                               "does not apply to " + (pattern.empty() ? "optotypes" : pattern) + "; remove it");
  }
}

charts::Contrast ContrastOf(const ChartWords& words) {
  charts::Contrast contrast;
  if (!words.weber.empty()) {
    contrast.kind = charts::Contrast::Kind::kWeber;
    contrast.value = ChartNumberOr("--weber", words.weber, 1.0);
  } else {
    contrast.value = ChartNumberOr("--michelson", words.michelson, 1.0);
  }
  contrast.polarity = words.lightOnDark ? charts::Polarity::kLightOnDark : charts::Polarity::kDarkOnLight;
  return contrast;
}

// "2", "3x2", "4deg".
charts::Field ParseField(const std::string& text) {
  constexpr std::string_view kUnit = "deg";
  std::string_view sides = Trimmed(text);
  if (sides.ends_with(kUnit)) sides.remove_suffix(kUnit.size());
  const std::size_t cross = sides.find('x');
  const double width = ParseNumber(sides.substr(0, cross));
  return {width, cross == std::string_view::npos ? width : ParseNumber(sides.substr(cross + 1))};
}

// "0.25mm", "4m".
Millimetres ParseLength(const std::string& text) {
  const std::string_view whole = Trimmed(text);
  const struct {
    std::string_view unit;
    double millimetres;
  } units[] = {{"mm", 1.0}, {"cm", 10.0}, {"um", 1e-3}, {"in", 25.4}, {"m", 1000.0}};
  for (const auto& [unit, millimetres] : units) {
    if (!whole.ends_with(unit)) continue;
    const double length = ParseNumber(whole.substr(0, whole.size() - unit.size())) * millimetres;
    if (!(length > 0.0)) throw Error(Quoted(text) + " is not a length above 0");
    return Millimetres(length);
  }
  throw Error(Quoted(text) + " has no unit; write it as 0.25mm, 60cm, 4m, 250um or 13in");
}

// ---- Words about charts

std::string ChartNumber(double number) { return NumberText(number, 4); }

std::string LimitsText(const charts::ChartRefusal& refusal) {
  return "from " + ChartNumber(refusal.low) + " to " + ChartNumber(refusal.high);
}

std::string RefusedLine(const charts::ChartRefusal& refusal) { return "line " + std::to_string(refusal.index + 1); }

std::string PatternRefusalText(const charts::ChartRefusal& refusal) {
  using Problem = charts::ChartProblem;
  const std::string value = ChartNumber(refusal.value);
  switch (refusal.problem) {
    case Problem::kWeberOfGrating:
      return "--weber is the contrast of a target on a background; use --michelson for a grating";
    case Problem::kFrequency:
      return "--frequency: " + value + " is not " + LimitsText(refusal) +
             " cycles/degree; the highest has one cycle for each pixel";
    case Problem::kAngle:
      return "--angle or --phase: " + value + " is not " + LimitsText(refusal) + " degrees";
    case Problem::kDiameter:
    case Problem::kSide:
      return "--minutes: " + value + " is not a size of at least " + ChartNumber(refusal.low) + "'";
    case Problem::kCycles:
      return "--cycles: " + value + " is not " + LimitsText(refusal);
    case Problem::kPointsPerSide:
      return "--per-side: " + value + " is not " + LimitsText(refusal);
    case Problem::kSpacing:
      return "--spacing: " + value + "' is less than the diameter, so that points overlap; state at least " +
             ChartNumber(refusal.low) + "'";
    default:
      return "";
  }
}

std::string RefusalText(const charts::ChartRefusal& refusal, const ChartOptions& options) {
  using Problem = charts::ChartProblem;
  const std::string value = ChartNumber(refusal.value);
  switch (refusal.problem) {
    case Problem::kPixelsPerDegree:
      return (options.screen ? "--screen and --distance give " : "--pixels-per-degree: ") + value +
             " pixels per degree, which is not " + LimitsText(refusal);
    case Problem::kNoSet:
      return "the chart has no optotypes";
    case Problem::kNoLines:
      return "the list has " + value + " sizes; a chart has 1 to " + ChartNumber(refusal.high) + " lines";
    case Problem::kHeight:
      return "the height of " + RefusedLine(refusal) + " is " + value + "'; a height is at least " +
             ChartNumber(refusal.low) + "' and finite";
    case Problem::kPerLine:
      return (refusal.index < 0 ? std::string("--per-line") : "--text: " + RefusedLine(refusal)) + " has " + value +
             " optotypes; a line has 1 to " + ChartNumber(refusal.high);
    case Problem::kLinesOfNames:
      return "--text: the number of lines is " + value + ", that of sizes is " + ChartNumber(refusal.high) +
             "; state one size for each line";
    case Problem::kUnknownOptotype: {
      const auto& set = *std::get<charts::OptotypeChart>(options.request.content).set;
      std::string known;
      for (const charts::Optotype& optotype : set.optotypes) known += " " + std::string(optotype.name);
      return "--text: " + Quoted(refusal.word) + " in " + RefusedLine(refusal) + " is not one of" + known;
    }
    case Problem::kCrowding:
      return "--crowding: " + value + " is not a gap " + LimitsText(refusal);
    case Problem::kCrowdingOfMany:
      return "--crowding draws bars around one optotype, not " + value + "; state one size, and one letter with --text";
    case Problem::kContrast:
      return "the contrast " + value + " is not above 0" +
             (std::isfinite(refusal.high) ? " and at most " + ChartNumber(refusal.high) : std::string());
    case Problem::kNoField:
      return "gratings and checkerboards fill a field; state its side in degrees with --field, such as --field 2";
    case Problem::kField:
      return "--field: " + value + " degrees is no side of a field; a side has at least half a pixel";
    case Problem::kTooLarge:
      return "the chart would have " + NumberText(refusal.value, 6) + " pixels on its longer side, at most " +
             ChartNumber(refusal.high) + " are possible; use fewer pixels per degree, smaller sizes or a smaller field";
    case Problem::kDoesNotFit:
      return "the chart has a side of " + value + " degrees, which does not fit a field of " +
             ChartNumber(refusal.high) + " degrees; use a larger --field or smaller sizes";
    case Problem::kShift:
      return "the shift " + value + " is not " + LimitsText(refusal) + " pixels";
    default:
      break;
  }
  return PatternRefusalText(refusal);
}

std::string AcuityText(ArcMinutes height) {
  const double decimal = charts::DecimalOfHeight(height);
  // Rounding of the logarithm must not show as -0.
  const double logMar = charts::LogMarOfHeight(height);
  return "logMAR " + ChartNumber(std::fabs(logMar) < 1e-9 ? 0.0 : logMar) + ", decimal " + ChartNumber(decimal) +
         ", 20/" + ChartNumber(20.0 / decimal) + ", " + ChartNumber(height.value()) + "'";
}

std::string ContentText(const charts::ChartRequest& request) {
  if (const auto* const optotypes = std::get_if<charts::OptotypeChart>(&request.content)) {
    std::string text(optotypes->set->description);
    if (optotypes->names.empty()) text += ", random order of seed " + std::to_string(optotypes->seed);
    if (optotypes->crowdingGap) text += ", crowding bars " + ChartNumber(*optotypes->crowdingGap) + " heights away";
    return text;
  }
  if (const auto* const grating = std::get_if<charts::GratingPattern>(&request.content)) {
    return std::string(grating->wave == charts::GratingPattern::Wave::kSine ? "sine" : "square") + " grating, " +
           ChartNumber(grating->frequency.value()) + " cycles/degree, bars at " + ChartNumber(grating->barDegrees) +
           " degrees, phase " + ChartNumber(grating->phaseDegrees) + " degrees";
  }
  if (const auto* const star = std::get_if<charts::StarPattern>(&request.content)) {
    return "Siemens star of " + std::to_string(2 * star->cycles) + " sectors, diameter " +
           ChartNumber(star->diameter.value()) + "'";
  }
  if (const auto* const points = std::get_if<charts::PointPattern>(&request.content)) {
    const std::string side = std::to_string(points->perSide);
    const std::string diameter = "diameter " + ChartNumber(points->diameter.value()) + "'";
    if (points->perSide == 1) return "point of " + diameter;
    return side + " x " + side + " points, " + diameter + ", " + ChartNumber(points->spacing.value()) + "' apart";
  }
  return "checkerboard, checks of " + ChartNumber(std::get<charts::CheckPattern>(request.content).side.value()) + "'";
}

std::string ContrastText(const charts::ChartRequest& request, const charts::Chart& chart) {
  const auto [target, background] = chart.luminances;
  std::string text = request.contrast.kind == charts::Contrast::Kind::kWeber ? "Weber " : "Michelson ";
  text += ChartNumber(request.contrast.value);
  if (std::holds_alternative<charts::GratingPattern>(request.content)) {
    return text + ", luminance from " + ChartNumber(background) + " to " + ChartNumber(target);
  }
  const bool dark = request.contrast.polarity == charts::Polarity::kDarkOnLight;
  return text + (dark ? ", dark on light" : ", light on dark") + ", luminance " + ChartNumber(target) + " on " +
         ChartNumber(background);
}

void AddPatternOptions(CLI::App& app, ChartWords& words) {
  const auto addPattern = [&](const char* name, std::string& text, const char* type, const char* description) {
    app.add_option(name, text, description)->type_name(type)->group(kPatternGroup);
  };
  addPattern("--frequency", words.frequency, "CPD", "Frequency of a grating in cycles/degree");
  addPattern("--angle", words.angle, "DEGREES", "Angle of the bars, anticlockwise from horizontal; 90 if left out");
  addPattern("--phase", words.phase, "DEGREES", "Phase of the wave at the middle of the field; 0 if left out");
  addPattern("--cycles", words.cycles, "N", "Pairs of sectors of a star; 20 if left out");
  addPattern("--per-side", words.points, "N", "Points in each row and column; 1 if left out");
  addPattern("--spacing", words.spacing, "MINUTES", "Distance between the centres of points in arc minutes");
}

}  // namespace

std::function<void()> AddChartOptions(CLI::App& app, ChartOptions& options) {
  const auto words = std::make_shared<ChartWords>();
  CLI::Option* const optotype =
      app.add_option("--optotype", words->optotype, "Optotypes: sloan, hotv, landolt4, landolt8, tumbling-e")
          ->type_name("WORD");
  app.add_option("--pattern", words->pattern,
                 "A pattern instead of optotypes: sine, square, star, points, checkerboard")
      ->type_name("WORD")
      ->excludes(optotype);
  CLI::Option* const sizes[] = {
      app.add_option("--logmar", words->logMar, "logMAR of each line, as 0.3,0.1,0 or 0.5:-0.3")->type_name("SIZES"),
      app.add_option("--decimal", words->decimal, "Decimal acuity of each line, as 0.5,0.8,1")->type_name("SIZES"),
      app.add_option("--snellen", words->snellen, "Snellen fraction of each line, as 20/40,20/20")->type_name("SIZES"),
      app.add_option("--minutes", words->minutes, "Height of each line in arc minutes; the size of a pattern")
          ->type_name("SIZES"),
  };
  for (CLI::Option* const size : sizes) {
    size->group(kSizeGroup);
    for (CLI::Option* const other : sizes) {
      if (other != size) size->excludes(other);
    }
  }
  app.add_option("--step", words->step, "Step of a range of logMAR; 0.1 if left out")->type_name("LOGMAR");
  CLI::Option* const perLine =
      app.add_option("--per-line", words->perLine, "Optotypes in a line; 5 if left out")->type_name("N");
  CLI::Option* const seed =
      app.add_option("--seed", words->seed, "Seed of the random order; 1 if left out")->type_name("S");
  app.add_option("--text", words->text, "The optotypes instead of a random order, as DSRKN/CKZOH or right,up/left,down")
      ->type_name("TEXT")
      ->excludes(perLine)
      ->excludes(seed);
  app.add_option("--crowding", words->crowding,
                 "Draw bars around one optotype, with this gap in heights of the optotype, such as 0.5")
      ->type_name("GAP");
  AddPatternOptions(app, *words);
  CLI::Option* const weber =
      app.add_option("--weber", words->weber, "Weber contrast, difference over background")->type_name("CONTRAST");
  app.add_option("--michelson", words->michelson, "Michelson contrast, difference over sum; 1 if left out")
      ->type_name("CONTRAST")
      ->excludes(weber);
  app.add_flag("--light-on-dark", words->lightOnDark, "Draw light targets on a dark background");
  AddParsedOption(app, "--field", "DEGREES",
                  "Side of the field, or width x height as in 3x2; fits the chart and a margin if left out",
                  [&options](const std::string& text) { options.request.field = ParseField(text); });
  return [&app, &options, words] {
    if (words->optotype.empty() && words->pattern.empty()) throw CLI::RequiredError("--optotype or --pattern");
    if (words->pattern.empty()) {
      options.request.content = OptotypesOf(*words);
    } else {
      options.request.content = PatternOf(*words);
    }
    RefuseOthers(app, words->pattern);
    options.request.contrast = ContrastOf(*words);
  };
}

std::function<void()> AddResolutionOptions(CLI::App& app, ChartOptions& options) {
  const auto screen = std::make_shared<charts::Screen>();
  CLI::Option* const resolution =
      AddParsedOption(app, "--pixels-per-degree", "N", "Resolution of the picture",
                      [&options](const std::string& text) { options.request.pixelsPerDegree = ParseNumber(text); });
  CLI::Option* const pitch =
      AddParsedOption(app, "--screen", "PITCH", "Distance between the pixels of a screen, such as 0.25mm",
                      [screen](const std::string& text) { screen->pixelPitch = ParseLength(text); });
  CLI::Option* const distance =
      AddParsedOption(app, "--distance", "LENGTH", "Distance of the eye from the screen, such as 4m",
                      [screen](const std::string& text) { screen->distance = ParseLength(text); });
  pitch->needs(distance)->excludes(resolution);
  distance->needs(pitch);
  return [&options, screen, resolution, pitch] {
    if (resolution->count() == 0 && pitch->count() == 0 && options.request.pixelsPerDegree == 0.0) {
      throw CLI::RequiredError("--pixels-per-degree, or --screen with --distance,");
    }
    if (pitch->count() == 0) return;
    options.screen = *screen;
    options.request.pixelsPerDegree = charts::PixelsPerDegree(*screen);
  };
}

charts::Chart DrawnChart(const ChartOptions& options) {
  auto outcome = charts::DrawChart(options.request);
  if (const auto* const refusal = std::get_if<charts::ChartRefusal>(&outcome))
    throw Error(RefusalText(*refusal, options));
  return std::get<charts::Chart>(std::move(outcome));
}

std::string ChartReport(const ChartOptions& options, const charts::Chart& chart) {
  const charts::ChartRequest& request = options.request;
  std::string report = ReportLine("Chart", ContentText(request));
  for (std::size_t i = 0; i < chart.lines.size(); ++i) {
    const charts::ChartLine& line = chart.lines[i];
    std::string names;
    for (const int k : line.optotypes) {
      const auto& set = *std::get<charts::OptotypeChart>(request.content).set;
      names += " " + std::string(set.optotypes[static_cast<std::size_t>(k)].name);
    }
    report += ReportLine("Line " + std::to_string(i + 1),
                         AcuityText(line.height) + ", stroke " + ChartNumber(line.strokePixels) + " pixels:" + names);
  }
  report += ReportLine("Contrast", ContrastText(request, chart));
  if (options.screen) {
    report += ReportLine("Screen", "pixel pitch " + ChartNumber(options.screen->pixelPitch.value()) + " mm at " +
                                       ChartNumber(options.screen->distance.value()) + " mm");
  }
  return report + ReportLine("Picture", std::to_string(chart.luminance.columns()) + " x " +
                                            std::to_string(chart.luminance.rows()) + " pixels, " +
                                            ChartNumber(chart.field.widthDegrees) + " x " +
                                            ChartNumber(chart.field.heightDegrees) + " degrees, " +
                                            ChartNumber(chart.pixelsPerDegree) + " pixels/degree");
}

std::string UndersampledText(const charts::Chart& chart) {
  if (!chart.IsUndersampled()) return "";
  if (chart.lines.empty()) {
    return "the finest detail is " + ChartNumber(chart.finestPixels) +
           " pixels wide; the screen cannot show it; use more pixels per degree";
  }
  const auto fine = static_cast<std::size_t>(
      std::count_if(chart.lines.begin(), chart.lines.end(), [](const auto& line) { return line.IsUndersampled(); }));
  const ArcMinutes smallest = charts::kHeightOfAcuityOne * (kMinutesPerDegree / chart.pixelsPerDegree);
  const std::string which = chart.lines.size() == 1
                                ? "this size"
                                : std::to_string(fine) + " of " + std::to_string(chart.lines.size()) + " sizes";
  return "the screen cannot show " + which + ", because the strokes are below one pixel (the finest " +
         ChartNumber(chart.finestPixels) + "); it shows optotypes from " + ChartNumber(smallest.value()) +
         "' (logMAR " + ChartNumber(charts::LogMarOfHeight(smallest)) +
         "); use a greater distance or more pixels per degree";
}

}  // namespace orvanel::cli
