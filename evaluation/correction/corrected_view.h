// Computes how an eye sees a chart of letters without a lens and with its best ones.
#ifndef ORVANEL_EVALUATION_CORRECTION_CORRECTED_VIEW_H
#define ORVANEL_EVALUATION_CORRECTION_CORRECTED_VIEW_H

#include "base/layers.h"
#include "evaluation/correction/best_correction.h"
#include "models/physical_settings.h"
#include "targets/charts/chart.h"

namespace orvanel::evaluation {

// Retinal images in the patient's view, linear, 0 to 1.
struct CorrectedView {
  charts::Chart chart;
  std::vector<double> logMar;  // of the lines, from the top
  Plane without, best, inCase;
};

// Throws PhysicalRefusal where the blur is too wide for a field of this size.
CorrectedView ViewOfLetters(const PhysicalSettings& settings, const Eye& eye, const Correction& correction);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_CORRECTION_CORRECTED_VIEW_H
