// Defines the search for the focus with which an eye sees best, as a model offers it.
#ifndef ORVANEL_MODELS_FOCUS_H
#define ORVANEL_MODELS_FOCUS_H

#include <cstdint>
#include <string_view>

#include "base/layers.h"
#include "base/units.h"
#include "eye/eye.h"

namespace orvanel::models {

// How a search changes the eye.
enum class FocusStrategy {
  kOptimise,  // defocus, and astigmatism if the request allows it, within bounds that the model chooses
  kWalk,      // steps of defocus from where the eye is, as long as the measure gets better
};

// What a search makes best.
enum class FocusMeasure { kStrehl, kCircle };

// What hosts write of a measure.
struct FocusMeasureText {
  std::string_view label;  // "Deviation"
  std::string_view name;   // "the deviation from a circle"
  std::string_view unit;   // empty for a ratio
  std::string_view note;   // follows the numbers: "from a circle"
  bool smallIsBest;
};
const FocusMeasureText& TextOf(FocusMeasure measure);

// A search by a measure, under the name that selects it.
struct FocusMethod {
  std::string_view name;
  FocusStrategy strategy = FocusStrategy::kOptimise;
  FocusMeasure measure = FocusMeasure::kStrehl;
};

struct FocusRequest {
  FocusMethod method;                  // one that the model offers
  Micrometres step{0.01};              // of a walk, on the orthonormal defocus coefficient
  bool astigmatism = false;            // kOptimise varies the two terms of astigmatism too
  bool withoutAstigmatism = false;     // a walk evaluates the eye without its astigmatism
  std::int64_t maximumTrials = 10000;  // of a walk
};

struct FocusQuality {
  double strehl = 0.0;
  double value = 0.0;         // of the measure
  double undersampled = 0.0;  // share of the pupil's samples, as in Results
};

struct BestFocus {
  Eye eye;  // the eye in focus; terms that the search does not change keep their bits
  FocusQuality before, after;
  std::int64_t trials = 0;  // wavefronts tried
  bool converged = true;    // false if the search ended before its end was reached
};

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_FOCUS_H
