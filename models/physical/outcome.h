// Results of the physical model, and the reason where there is none: a code and its numbers, from which hosts make
// sentences in their own words.
#ifndef ORVANEL_MODELS_PHYSICAL_OUTCOME_H
#define ORVANEL_MODELS_PHYSICAL_OUTCOME_H

#include <utility>
#include <variant>

namespace orvanel::physical {

enum class Problem {
  kPupilDiameter,
  kMode,     // not finite; index is that of the mode
  kOutline,  // no ellipse, or not inside the pupil; value is its largest distance from the centre, in radii
  kStilesCrawford,
  kAchromaticAxis,
  kReferenceWavelength,
  kNoReferenceWavelength,  // the light has several wavelengths, and that of the modes is unknown
  kNoLight,                // no line, or no weight above 0
  kWavelength,             // of the line `index`
  kWeight,                 // negative or not finite, of the line `index`
  kGridSpacing,
  kGridSize,
  kGridCentre,
  kFrequency,  // not finite, or a step that is too fine: low is the finest
  kPixelSize,
  kObjectSize,
  kMargin,
  kLuminance,      // no number or too large; index is that of the pixel, or -1 for the surround
  kFieldTooLarge,  // value is the side of the lattice that it takes, in pixels or frequencies
  kTooSteep,       // the wavefront, for the lattice of the OTF or the search of the peak, in the line `index`
  kTooManyNodes,   // the wavefront or the field needs more than `high` quadrature nodes, for the line `index`
  kPlace,          // on the retina: not finite or too far; index is that of the place, or -1 for a single one
  kRadius,         // of a circle on the retina
  kDirection,      // not finite
};

// What is wrong. value is the number in question, low and high are its limits; each is 0 where it has no meaning.
struct Refusal {
  Problem problem{};
  double value = 0.0;
  double low = 0.0;
  double high = 0.0;
  int index = -1;
};

// A result or a refusal.
template <class T>
class Outcome {
 public:
  Outcome(T result) : value_(std::move(result)) {}  // NOLINT(google-explicit-constructor): returned as it is
  Outcome(Refusal refusal) : value_(refusal) {}     // NOLINT(google-explicit-constructor)

  explicit operator bool() const { return std::holds_alternative<T>(value_); }
  const T& operator*() const { return std::get<T>(value_); }
  T& operator*() { return std::get<T>(value_); }
  const T* operator->() const { return &std::get<T>(value_); }
  const Refusal& refusal() const { return std::get<Refusal>(value_); }

 private:
  std::variant<T, Refusal> value_;
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_OUTCOME_H
