// Defines sets of results that a model computes on request.
#ifndef ORVANEL_MODELS_NEEDS_H
#define ORVANEL_MODELS_NEEDS_H

#include <initializer_list>

#include "base/layers.h"

namespace orvanel::models {

enum class Need : unsigned {
  kUndersampled = 1U << 0U,    // the undersampled share of the pupil
  kWavefront = 1U << 1U,       // the map
  kWavefrontRange = 1U << 2U,  // its RMS, peak to valley and steepest step
  kStrehl = 1U << 3U,          // of the brightest sample
  kStrehlPeak = 1U << 4U,      // of the peak between samples
  kPsf = 1U << 5U,             // the plane
  kMtf = 1U << 6U,             // the plane
  kSections = 1U << 7U,        // through the MTF, and its diffraction limit
  kLineSpreads = 1U << 8U,
  kImages = 1U << 9U,  // images of objects, computed afterwards
};

class Needs {
 public:
  constexpr Needs() = default;
  constexpr Needs(std::initializer_list<Need> needs) {
    for (const Need need : needs) bits_ |= static_cast<unsigned>(need);
  }

  constexpr bool empty() const { return bits_ == 0; }
  constexpr bool Has(Need need) const { return (bits_ & static_cast<unsigned>(need)) != 0; }
  constexpr bool HasAnyOf(Needs other) const { return (bits_ & other.bits_) != 0; }

  constexpr Needs Without(Needs other) const {
    other.bits_ = bits_ & ~other.bits_;
    return other;
  }

  friend constexpr Needs operator|(Needs a, Needs b) {
    a.bits_ |= b.bits_;
    return a;
  }
  friend constexpr bool operator==(Needs, Needs) = default;

 private:
  unsigned bits_ = 0;
};

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_NEEDS_H
