// The engine's calls, as few as do.
#include "evaluation/evaluator.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/error.h"
#include "eye/adjustments.h"
#include "eye/plausibility.h"
#include "models/sampling.h"
#include "orvanel/sampling.h"

namespace orvanel::evaluation {
EyeMeter::EyeMeter(MetricChoice choice, bool planes)
    : choice_(std::move(choice)),
      cost_(planes ? Cost::kMtf : CostOf(choice_)),
      engine_(ORVANEL_GRID_SIZE),
      plane_(cost_ >= Cost::kPsf ? ORVANEL_PLANE_SAMPLES : 0) {
  measured_.rowSection = &rowSection_;
  measured_.columnSection = &columnSection_;
  measured_.diffractionLimit = &diffractionLimit_;
  measured_.lineSpreads = &lineSpreads_;
  wantsPeak_ = std::any_of(choice_.metrics.begin(), choice_.metrics.end(),
                           [](const Metric* metric) { return metric->cost == Cost::kPsf; });
}

void EyeMeter::Compute(const Eye& eye) {
  if (cost_ == Cost::kCoefficients) return;
  const auto coefficients = Bare(ToLibrary(eye.coefficients));
  // No polynomial exceeds 1.
  double height = 0.0;
  for (const double c : coefficients) height += std::abs(c);
  if (!(height < kLargestInside)) throw Error("the wavefront may be a metre high; check the unit of the coefficients");
  engine_.synthesizeWavefront(coefficients.data(), eye.pupil.value(), 1, 1, 1);
  measured_.undersampled =
      UndersampledShare(engine_.wavefrontPlane.data(), ORVANEL_GRID_SIZE, engine_.pupilSamples, kWavelength);
  if (cost_ == Cost::kWavefront) return;
  if (cost_ == Cost::kStrehl) {
    measured_.strehl = engine_.ComputeStrehl(kWavelength);
    return;
  }
  double step = 0.0;
  if (cost_ == Cost::kPsf) {
    engine_.ComputePsf(kWavelength, plane_.data(), &step, &measured_.strehl, ORVANEL_GRID_SIZE);
  } else {
    engine_.ComputeMtf(kWavelength, plane_.data(), &step, rowSection_.data(), columnSection_.data(),
                       diffractionLimit_.data(), ORVANEL_GRID_SIZE);
  }
  measured_.strehl = engine_.strehlRatio;
  if (wantsPeak_) measured_.strehlPeak = measured_.strehl * engine_.FindPsfPeak().value;
  if (!choice_.mtfAt.empty()) lineSpreads_ = LineSpreadsOf(engine_.psfPlane.data());
}

std::vector<double> EyeMeter::Measure(const Eye& eye) {
  measured_.eye = &eye;
  measured_.osa = eye.coefficients.osa();
  measured_.scales = ScalesOf(eye.pupil);
  measured_.doubts = EyeWarnings(eye).size();
  Compute(eye);
  return Values(choice_, measured_);
}

std::vector<std::pair<std::string, double>> ConstantsOf(Millimetres pupil) {
  MetricChoice choice;
  choice.doubts = false;  // those about an eye's refraction differ from row to row
  for (const Metric* const metric : UsualMetrics(false)) {
    if (metric->cost == Cost::kPupil) choice.metrics.push_back(metric);
  }
  Eye eye;
  eye.pupil = pupil;
  const std::vector<double> values = EyeMeter(choice, false).Measure(eye);
  const std::vector<std::string> columns = Columns(choice);
  std::vector<std::pair<std::string, double>> constants;
  for (std::size_t i = 0; i < columns.size(); ++i) constants.emplace_back(columns[i], values[i]);
  return constants;
}

}  // namespace orvanel::evaluation
