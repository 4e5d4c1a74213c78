// Defines requests and results of searches for the best focus, and the methods that a model offers.
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
  kOptimise,  // varies defocus, and astigmatism if the request allows it, within bounds that the model chooses
  kWalk,      // changes defocus in steps, as long as the measure improves
};

// The quantity that a search optimises.
enum class FocusMeasure { kStrehl, kCircle, kStrehlAxis, kStrehlPeak, kMtfMean, kMtfHorizontal, kMtfVertical };

// The words for a measure in reports.
struct FocusMeasureText {
  std::string_view label;  // "Deviation"
  std::string_view name;   // "the deviation from a circle"
  std::string_view unit;   // empty for a ratio
  std::string_view note;   // follows the numbers: "from a circle"
  bool smallIsBest;
};
const FocusMeasureText& TextOf(FocusMeasure measure);

// True for the modulation at one frequency.
bool IsMtf(FocusMeasure measure);

// A search by a measure, and the name that selects it.
struct FocusMethod {
  std::string_view name;
  FocusStrategy strategy = FocusStrategy::kOptimise;
  FocusMeasure measure = FocusMeasure::kStrehl;
};

struct FocusRequest {
  FocusMethod method;                  // one that the model offers
  Micrometres step{0.01};              // of a walk, on the orthonormal defocus coefficient
  bool astigmatism = false;            // kOptimise also varies the two terms of astigmatism
  bool withoutAstigmatism = false;     // a walk evaluates the eye without its astigmatism
  std::int64_t maximumTrials = 10000;  // of a walk
  CyclesPerDegree frequency{10.0};     // of measures that are an MTF
};

struct FocusQuality {
  double strehl = 0.0;        // of the physical model, at the peak unless the measure is that on the axis
  double value = 0.0;         // of the measure
  double undersampled = 0.0;  // share of the pupil's samples, as in Results
};

struct BestFocus {
  Eye eye;  // the eye in focus; terms that the search does not change keep their bits
  FocusQuality before, after;
  std::int64_t trials = 0;  // wavefronts tried
  bool converged = true;    // false if the search reached its limit first
};

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_FOCUS_H
