// Compares the rings drawn with those requested.
#include "evaluation/rings.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"

namespace orvanel::evaluation {

double Deviation(const Ring& ring) { return ring.effectiveAcuity / ring.request.acuity - 1.0; }

bool IsFarOff(const Ring& ring) {
  constexpr double kMaxDeviation = 0.1;
  return std::abs(Deviation(ring)) > kMaxDeviation;
}

std::string DeviationText(const Ring& ring) {
  const double deviation = Deviation(ring);
  return NumberText(100.0 * std::abs(deviation), 3) + " % " + (deviation > 0.0 ? "above" : "below");
}

std::vector<ShownRing> ShownRings(const std::vector<Ring>& rings) {
  std::vector<ShownRing> shown;
  for (const Ring& ring : rings) {
    const auto same = std::find_if(shown.begin(), shown.end(), [&ring](const ShownRing& other) {
      return other.ring->effectiveAcuity == ring.effectiveAcuity && other.ring->request.gap == ring.request.gap;
    });
    if (same == shown.end()) {
      shown.push_back({&ring, {ring.request.acuity}});
    } else {
      same->requested.push_back(ring.request.acuity);
    }
  }
  return shown;
}

std::string RequestedText(const ShownRing& shown) {
  std::string text;
  for (const double acuity : shown.requested) text += (text.empty() ? "requested " : ", ") + NumberText(acuity, 4);
  return text;
}

}  // namespace orvanel::evaluation
