// Holds one eye with its adjustments, results and warnings.
#ifndef ORVANEL_EVALUATION_SIMULATED_EYE_H
#define ORVANEL_EVALUATION_SIMULATED_EYE_H

#include <optional>
#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/letters.h"
#include "eye/adjustments.h"
#include "eye/eye.h"
#include "metrics/quality/quality.h"
#include "models/adapters/sized_image.h"
#include "models/results.h"

namespace orvanel::evaluation {

// A chart or picture of true angular size, as shown and as seen.
struct SizedView {
  const char* name = kSizedChart;        // of its files
  std::vector<std::string> description;  // lines of a report
  std::string surround;                  // what surrounds it
  SizedImage image;
  int bits = 8;         // of its PNG files
  bool linear = false;  // the values of its PNG files are light, not sRGB

  static constexpr const char* kSizedChart = "chart";
  static constexpr const char* kSizedPicture = "picture";
};

struct SimulatedEye {
  Eye measured;                      // as read from its file
  Eye eye;                           // after the adjustments
  std::vector<std::string> changes;  // describes each adjustment
  std::optional<Dropped> dropped;    // the radial orders that were dropped
  Results results;
  std::vector<CyclesPerDegree> mtfAt;  // frequencies of the report, on the library scale
  QualityRequest qualityRequest;
  std::optional<Quality> quality;  // of the physical model
  std::vector<std::string> warnings;
  std::optional<LetterViews> letters;  // of the physical model, where the blur is not too wide for them
  std::optional<FocusStrip> strip;
  std::optional<SizedView> sized;
};

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_SIMULATED_EYE_H
