// Runs the model and computes metrics of its results.
#include "evaluation/evaluator.h"

#include "evaluation/errors.h"
#include "eye/plausibility.h"

namespace orvanel::evaluation {
namespace {

// Resets the results that are no longer needed; their planes keep their memory.
void Clear(Results& results, Needs gone) {
  if (gone.empty()) return;
  if (gone.Has(Need::kUndersampled)) results.undersampled = 0.0;
  if (gone.Has(Need::kWavefront)) results.wavefront.map.Clear();
  if (gone.Has(Need::kWavefrontRange)) {
    results.wavefront.rms = results.wavefront.peakToValley = results.wavefront.steepestStep = Micrometres(0.0);
  }
  if (gone.Has(Need::kStrehl)) results.strehl = 0.0;
  if (gone.Has(Need::kStrehlPeak)) results.strehlPeak = 0.0;
  if (gone.Has(Need::kPsf)) results.psf.Clear();
  if (gone.Has(Need::kMtf)) results.mtf.Clear();
  if (gone.Has(Need::kSections)) {
    for (Curve* const curve : {&results.rowSection, &results.columnSection, &results.diffractionLimit}) curve->clear();
  }
  if (gone.Has(Need::kLineSpreads)) results.lineSpreads = {};
}

}  // namespace

const Results& Evaluator::Evaluate(const Eye& eye, Needs needs) {
  if (eye.prescription) throw PrescriptionPending();
  Clear(results_, filled_.Without(needs));
  filled_ = needs;
  model_->Compute(eye, needs, results_);
  return results_;
}

BestFocus Evaluator::FindBestFocus(const Eye& eye, const FocusRequest& request) {
  if (eye.prescription) throw PrescriptionPending();
  return model_->FindBestFocus(eye, request);
}

std::vector<double> Evaluator::Measure(const Eye& eye, const MetricChoice& choice, Needs more) {
  return ValuesOf(eye, Evaluate(eye, NeedsOf(choice) | more), choice);
}

Plane Evaluator::ImageOf(const Plane& object, ImageKind kind) {
  Plane image;
  model_->ImageOf(object, kind, image);
  return image;
}

std::vector<double> ValuesOf(const Eye& eye, const Results& results, const MetricChoice& choice) {
  return Values(choice, {results, eye.coefficients.osa(), EyeWarnings(eye).size()});
}

double ValueOf(const Eye& eye, const Results& results, std::string_view column) {
  return metrics::ValueOf(column, {results, eye.coefficients.osa(), EyeWarnings(eye).size()});
}

std::vector<std::pair<std::string, double>> ConstantsOf(Millimetres pupil, const ModelRequest& model) {
  MetricChoice choice;
  choice.model = model.kind;
  choice.doubts = false;  // the number of warnings differs from row to row
  for (const Metric* const metric : UsualMetrics(false, model.kind)) {
    if (metric->of == Of::kPupil) choice.metrics.push_back(metric);
  }
  Eye eye;
  eye.pupil = pupil;
  const std::vector<double> values = Evaluator(model).Measure(eye, choice);
  const std::vector<std::string> columns = Columns(choice);
  std::vector<std::pair<std::string, double>> constants;
  for (std::size_t i = 0; i < columns.size(); ++i) constants.emplace_back(columns[i], values[i]);
  return constants;
}

}  // namespace orvanel::evaluation
