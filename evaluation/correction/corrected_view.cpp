// Draws Sloan letters in four sizes and filters them by the eye behind each lens.
#include "evaluation/correction/corrected_view.h"

#include <memory>
#include <variant>

#include "base/elementary.h"
#include "eye/adjustments.h"
#include "models/model.h"

namespace orvanel::evaluation {

CorrectedView ViewOfLetters(const PhysicalSettings& settings, const Eye& eye, const Correction& correction) {
  CorrectedView view;
  view.logMar = {0.4, 0.2, 0.1, 0.0};
  charts::OptotypeChart letters;
  letters.set = charts::OptotypeSetNamed("sloan");
  constexpr double kMinutes = 5.0;  // high, at logMAR 0
  for (const double size : view.logMar) letters.heights.emplace_back(kMinutes * Power(10.0, size));
  charts::ChartRequest request;
  request.content = letters;
  request.pixelsPerDegree = 400.0;
  view.chart = std::get<charts::Chart>(charts::DrawChart(request));

  ModelRequest model{ModelKind::kPhysical, settings};
  model.physical.view = physical::View::kPatient;
  model.physical.objectSide = ArcMinutes(60.0 * view.chart.field.widthDegrees);
  const std::unique_ptr<Model> physical = MakeModel(model);
  const auto seen = [&](const LensValue& lens, Plane& image) {
    Adjustments adjustments;
    adjustments.lens = lens.lens;
    Results results;
    physical->Compute(Adjusted(eye, adjustments), {Need::kImages}, results);
    physical->ImageOf(view.chart.luminance, ImageKind::kTotalLight, image);
  };
  seen(correction.none, view.without);
  seen(correction.best, view.best);
  seen(correction.inCase, view.inCase);
  return view;
}

}  // namespace orvanel::evaluation
