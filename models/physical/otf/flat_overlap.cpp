// The overlap of an ellipse with itself, in closed form.
#include "models/physical/otf/flat_overlap.h"

#include <cmath>
#include <numbers>

#include "base/elementary.h"

namespace orvanel::physical {

FlatOverlap::FlatOverlap(const Ellipse& outline)
    : cosine_(SineAndCosine(outline.angle).cosine),
      sine_(SineAndCosine(outline.angle).sine),
      semiAxisA_(outline.semiAxisA),
      semiAxisB_(outline.semiAxisB) {}

double FlatOverlap::At(double fx, double fy) const {
  const double along = (fx * cosine_ + fy * sine_) / semiAxisA_;
  const double across = (fy * cosine_ - fx * sine_) / semiAxisB_;
  const double v = std::sqrt(along * along + across * across);
  return v < 1.0 ? 2.0 / std::numbers::pi * (ArcCosine(v) - v * std::sqrt((1.0 - v) * (1.0 + v))) : 0.0;
}

}  // namespace orvanel::physical
