// One eye after the other through an engine of its own.
#ifndef ORVANEL_EVALUATION_EVALUATOR_H
#define ORVANEL_EVALUATION_EVALUATOR_H

#include <string>
#include <utility>
#include <vector>

#include "base/layers.h"
#include "metrics/metrics.h"
#include "orvanel/optics_engine.h"
#include "targets/plane.h"

namespace orvanel::evaluation {

// Serves one thread at a time; different ones share nothing.
class EyeMeter {
 public:
  //   planes  whether psf and mtf are wanted too
  EyeMeter(MetricChoice choice, bool planes);

  // The values of the chosen columns; no more is computed than they need. Throws Error where the eye cannot be
  // simulated.
  std::vector<double> Measure(const Eye& eye);

  // Of the eye measured last: the share of the pupil's samples where the wavefront is too steep for them. 0 where
  // nothing is computed that needs the samples.
  double undersampled() const { return measured_.undersampled; }

  // Of the eye measured last, where planes are wanted.
  const Plane& mtf() const { return plane_; }
  OpticsEngine& engine() { return engine_; }

 private:
  void Compute(const Eye& eye);

  MetricChoice choice_;
  Cost cost_;
  OpticsEngine engine_;
  Plane plane_;  // receives the MTF, or the PSF where nothing needs more
  bool wantsPeak_ = false;
  Section rowSection_, columnSection_, diffractionLimit_;
  LineSpreads lineSpreads_;
  MeasuredEye measured_;
};

// Columns that are the same in all rows where all have this pupil, and their values.
std::vector<std::pair<std::string, double>> ConstantsOf(Millimetres pupil);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_EVALUATOR_H
