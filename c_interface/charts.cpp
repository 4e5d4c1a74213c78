// Draws charts as objects.
#include <cmath>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "base/number_text.h"
#include "c_interface/arguments.h"
#include "c_interface/handles.h"
#include "c_interface/plane_facts.h"
#include "targets/charts/chart.h"
#include "targets/charts/sizes.h"

namespace orvanel::c_interface {
namespace {

namespace charts = targets::charts;
using charts::ChartProblem;
using charts::ChartRefusal;

// What is wrong, with the member of the request; its limits are added.
struct Words {
  const char* member;
  const char* what;
};

Words WordsOf(ChartProblem problem) {
  switch (problem) {
    case ChartProblem::kPixelsPerDegree:
      return {"pixels_per_degree", "is out of range"};
    case ChartProblem::kNoSet:
      return {"optotypes", "names no set; use sloan, hotv, landolt4, landolt8 or e"};
    case ChartProblem::kNoLines:
      return {"lines", "is out of range"};
    case ChartProblem::kHeight:
      return {"logmar", "has a size that cannot be drawn"};
    case ChartProblem::kPerLine:
      return {"per_line", "is out of range"};
    case ChartProblem::kLinesOfNames:
      return {"names", "has another number of lines than logmar"};
    case ChartProblem::kUnknownOptotype:
      return {"names", "has an optotype that is not in the set"};
    case ChartProblem::kCrowding:
      return {"crowding_gap", "is out of range"};
    case ChartProblem::kCrowdingOfMany:
      return {"crowding_gap", "needs one line with one optotype"};
    case ChartProblem::kContrast:
      return {"contrast", "is out of range"};
    case ChartProblem::kWeberOfGrating:
      return {"contrast_kind", "must be the Michelson contrast for a grating"};
    case ChartProblem::kFrequency:
      return {"frequency", "is out of range; the highest has one cycle for each pixel"};
    case ChartProblem::kAngle:
      return {"bar_degrees or phase_degrees", "is out of range"};
    case ChartProblem::kDiameter:
    case ChartProblem::kSide:
      return {"diameter_arcmin", "is too small or no number"};
    case ChartProblem::kCycles:
    case ChartProblem::kPointsPerSide:
      return {"count", "is out of range"};
    case ChartProblem::kSpacing:
      return {"spacing_arcmin", "is less than the diameter"};
    case ChartProblem::kNoField:
      return {"width_degrees", "is missing; gratings and checkerboards fill a field"};
    case ChartProblem::kField:
      return {"width_degrees or height_degrees", "is out of range"};
    case ChartProblem::kTooLarge:
      return {"pixels_per_degree", "makes the chart too large; use fewer pixels or a smaller field"};
    case ChartProblem::kDoesNotFit:
      return {"width_degrees or height_degrees", "is smaller than the content"};
    case ChartProblem::kShift:
      return {"shift", "is out of range"};
  }
  return {"chart", "cannot be drawn"};
}

[[noreturn]] void Throw(const ChartRefusal& refusal) {
  const auto [member, what] = WordsOf(refusal.problem);
  std::string text = std::string(member) + " " + what;
  if (refusal.high != 0.0 || refusal.low != 0.0) {
    text += ": " + ShortestText(refusal.value) + ", limits " + ShortestText(refusal.low) + " and " +
            ShortestText(refusal.high);
  }
  if (!refusal.word.empty()) text += ": " + Quoted(refusal.word);
  throw ArgumentError("chart_invalid", text,
                      {{"argument", std::string(member)},
                       {"value", refusal.value},
                       {"low", refusal.low},
                       {"high", refusal.high},
                       {"line", static_cast<double>(refusal.index)},
                       {"word", refusal.word}});
}

// Names separated by blanks, and lines by '/'.
std::vector<std::vector<std::string>> NamesOf(const char* text) {
  std::vector<std::vector<std::string>> lines(1);
  bool inName = false;
  for (; *text != '\0'; ++text) {
    const bool ends = *text == '/' || *text == ' ';
    if (*text == '/') lines.emplace_back();
    if (!ends && !inName) lines.back().emplace_back();
    if (!ends) lines.back().back() += *text;
    inName = !ends;
  }
  return lines;
}

charts::OptotypeChart OptotypesOf(const orvanel_chart_request& given) {
  charts::OptotypeChart content;
  RequireText(given.optotypes, "optotypes");
  content.set = charts::OptotypeSetNamed(given.optotypes);
  if (given.lines > 0) RequirePointer(given.logmar, "logmar");
  RequireWithin(static_cast<double>(given.lines), 1.0, charts::kMostLines, "lines");
  for (uint64_t i = 0; i < given.lines; ++i) {
    content.heights.push_back(charts::HeightOfLogMar(RequireWithin(given.logmar[i], -4.0, 4.0, "logmar")));
  }
  content.perLine = given.per_line;
  content.seed = given.seed;
  if (given.names != nullptr) {
    RequireText(given.names, "names");
    content.names = NamesOf(given.names);
  }
  if (!(given.crowding_gap < 0.0)) content.crowdingGap = given.crowding_gap;
  return content;
}

charts::ChartRequest RequestOf(const orvanel_chart_request& given) {
  charts::ChartRequest request;
  switch (RequireChoice(given.content, ORVANEL_CHECKERBOARD, "content")) {
    case ORVANEL_OPTOTYPES:
      request.content = OptotypesOf(given);
      break;
    case ORVANEL_SINE_GRATING:
    case ORVANEL_SQUARE_GRATING: {
      using Wave = charts::GratingPattern::Wave;
      request.content =
          charts::GratingPattern{given.content == ORVANEL_SINE_GRATING ? Wave::kSine : Wave::kSquare,
                                 CyclesPerDegree(given.frequency), given.bar_degrees, given.phase_degrees};
      break;
    }
    case ORVANEL_STAR:
      request.content = charts::StarPattern{ArcMinutes(given.diameter_arcmin), given.count};
      break;
    case ORVANEL_POINTS:
      request.content =
          charts::PointPattern{ArcMinutes(given.diameter_arcmin), given.count, ArcMinutes(given.spacing_arcmin)};
      break;
    default:
      request.content = charts::CheckPattern{ArcMinutes(given.diameter_arcmin)};
  }
  request.contrast.kind = RequireChoice(given.contrast_kind, 2, "contrast_kind") == ORVANEL_MICHELSON
                              ? charts::Contrast::Kind::kMichelson
                              : charts::Contrast::Kind::kWeber;
  request.contrast.value = given.contrast;
  request.contrast.polarity = RequireChoice(given.polarity, 2, "polarity") == ORVANEL_DARK_ON_LIGHT
                                  ? charts::Polarity::kDarkOnLight
                                  : charts::Polarity::kLightOnDark;
  request.pixelsPerDegree = given.pixels_per_degree;
  if (given.width_degrees != 0.0 || given.height_degrees != 0.0) {
    request.field = charts::Field{given.width_degrees, given.height_degrees};
  }
  return request;
}

}  // namespace
}  // namespace orvanel::c_interface

using namespace orvanel::c_interface;  // NOLINT(google-build-using-namespace): the functions of C have no namespace

orvanel_status orvanel_chart_default(orvanel_chart_request* request) noexcept {
  return Call([&] {
    RequireStruct(request, "orvanel_chart_request");
    const orvanel::targets::charts::OptotypeChart usual;
    const orvanel::targets::charts::GratingPattern grating;
    const orvanel::targets::charts::StarPattern star;
    *request = {};
    request->size = sizeof *request;
    request->content = ORVANEL_OPTOTYPES;
    request->contrast_kind = ORVANEL_MICHELSON;
    request->contrast = 1.0;
    request->polarity = ORVANEL_DARK_ON_LIGHT;
    request->per_line = usual.perLine;
    request->optotypes = "sloan";
    request->seed = usual.seed;
    request->crowding_gap = -1.0;
    request->bar_degrees = grating.barDegrees;
    request->count = star.cycles;
  });
}

orvanel_status orvanel_chart(const orvanel_chart_request* request, orvanel_plane** plane) noexcept {
  return Call([&] {
    RequireStruct(request, "orvanel_chart_request");
    RequirePointer(plane, "plane");
    namespace charts = orvanel::targets::charts;
    auto outcome = DrawChart(RequestOf(*request));
    if (const auto* const refusal = std::get_if<charts::ChartRefusal>(&outcome)) Throw(*refusal);
    auto& chart = std::get<charts::Chart>(outcome);
    // The background of a grating or checkerboard is none of its two luminances.
    const bool fills = request->content == ORVANEL_SINE_GRATING || request->content == ORVANEL_SQUARE_GRATING ||
                       request->content == ORVANEL_CHECKERBOARD;
    const auto& luminances = chart.luminances;
    const int columns = chart.luminance.columns(), rows = chart.luminance.rows();
    const bool undersampled = chart.IsUndersampled();
    auto made = PlaneOf(ORVANEL_OBJECT, std::move(chart.luminance));
    constexpr double kMinutesInDegree = 60.0;
    SetAxes(*made, kMinutesInDegree / chart.pixelsPerDegree, (columns - 1) / 2.0, (rows - 1) / 2.0, "arcmin");
    made->facts.surround = fills ? (luminances.target + luminances.background) / 2.0 : luminances.background;
    if (undersampled) {
      made->warnings =
          "pixels are wider than the finest detail of the chart: the plane has its light, but cannot show "
          "it; use more pixels per degree";
    }
    *plane = made.release();
  });
}
