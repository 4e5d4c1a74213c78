// Draws lines of letters and images them.
#include "evaluation/letters.h"

#include <iterator>
#include <numbers>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

#include "eye/eye.h"
#include "models/adapters/physical_refusal.h"
#include "targets/charts/chart.h"
#include "targets/charts/sizes.h"

namespace orvanel::evaluation {
namespace {

constexpr double kMinutesPerDegree = 60.0;
constexpr double kPixelsPerStroke = 6.0;

SizedObject LettersOf(double logMar, std::vector<std::string> letters) {
  charts::OptotypeChart content;
  content.set = charts::OptotypeSetNamed("sloan");
  content.heights = {charts::HeightOfLogMar(logMar)};
  content.names = {std::move(letters)};
  charts::ChartRequest request;
  const double pixel = content.heights[0].value() / charts::kStrokesPerOptotype / kPixelsPerStroke;
  request.pixelsPerDegree = kMinutesPerDegree / pixel;
  request.content = std::move(content);
  charts::Chart chart = std::get<charts::Chart>(charts::DrawChart(request));
  return {{std::move(chart.luminance)}, {chart.luminances.background}, ArcMinutes(pixel)};
}

}  // namespace

// 1 D over the radius r mm is r^2 / (4 sqrt 3) um of the orthonormal mode. A plus lens makes an eye short-sighted.
Eye BehindLens(Eye eye, double dioptres) {
  constexpr std::size_t kDefocus = 4;
  Coefficients osa = eye.coefficients.osa();
  if (osa.size() <= kDefocus) osa.resize(kDefocus + 2);  // a whole radial order
  const double radius = eye.pupil.value() / 2.0;
  osa[kDefocus] += dioptres * radius * radius / (4.0 * std::numbers::sqrt3);
  eye.coefficients.Replace(std::move(osa));
  return eye;
}

FocusStrip SeeStrip(const Eye& eye, const PhysicalSettings& settings, const StripRequest& request,
                    const std::function<void()>& afterImage) {
  SizedImager imager(settings);
  FocusStrip strip{request, {}};
  for (const double lens : request.lenses) {
    strip.steps.push_back({lens, imager.ImageOf(BehindLens(eye, lens), LettersOf(request.logMar, {request.letter}))});
    if (afterImage) afterImage();
  }
  return strip;
}

std::optional<LetterViews> SeeLetters(const Eye& eye, const PhysicalSettings& settings) {
  // Different letters, so that a line does not help to read the next.
  const std::vector<std::string> kLetters[] = {{"N", "C", "K", "Z", "O"},
                                               {"R", "H", "S", "D", "K"},
                                               {"D", "O", "V", "H", "R"},
                                               {"C", "Z", "R", "H", "S"},
                                               {"O", "N", "H", "R", "C"}};
  static_assert(std::size(kLetterSizes) == std::extent_v<decltype(kLetters)>);
  SizedImager imager(settings);
  LetterViews views;
  try {
    for (std::size_t i = 0; i < std::size(kLetterSizes); ++i) {
      views.lines.push_back({kLetterSizes[i], imager.ImageOf(eye, LettersOf(kLetterSizes[i], kLetters[i]))});
    }
    for (const double lens : kFocusLenses) {
      views.throughFocus.push_back(
          {lens, imager.ImageOf(BehindLens(eye, lens), LettersOf(kFocusLogMar, {kFocusLetter}))});
    }
  } catch (const PhysicalRefusal& refusal) {
    if (refusal.refusal.problem != physical::Problem::kFieldTooLarge) throw;
    return std::nullopt;
  }
  return views;
}

}  // namespace orvanel::evaluation
