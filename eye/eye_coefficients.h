// Holds one eye's Zernike coefficients: canonical numbers, and beside them the numbers that a file or row states.
#ifndef ORVANEL_EYE_EYE_COEFFICIENTS_H
#define ORVANEL_EYE_EYE_COEFFICIENTS_H

#include <cstddef>
#include <optional>
#include <string>

#include "base/layers.h"
#include "eye/conventions/convention.h"

namespace orvanel::eye {

class EyeCoefficients {
 public:
  EyeCoefficients() = default;

  // Converts the stated numbers once.
  //   numbers  by OSA index, in unit, normalisation and direction of y of the convention
  EyeCoefficients(const Convention& stated, Coefficients numbers);

  // The canonical numbers: orthonormal, by OSA index, micrometres, y up.
  const Coefficients& osa() const { return osa_; }

  // The convention that the file or row states.
  const Convention& convention() const { return convention_; }

  // The coefficients in a convention, for output. While the stated numbers hold, they are the source, so that the
  // stated convention returns them to the bit. Otherwise the canonical numbers are.
  Coefficients In(const Convention& convention) const;
  Coefficients AsStated() const { return In(convention_); }

  // Another wavefront. The stated numbers hold no longer; their convention stays.
  void Replace(Coefficients osa);

  // The same wavefront, stated in another convention from now on.
  void Restate(const Convention& convention);

  // The eye in a mirror, and the wavefront without the terms from this OSA index on. Both round nothing in any
  // convention, so that the stated numbers follow and hold.
  void Mirror();
  void DropFrom(std::size_t index);

  friend bool operator==(const EyeCoefficients&, const EyeCoefficients&) = default;

 private:
  Convention convention_ = kLibraryConvention;
  Coefficients osa_;
  std::optional<Coefficients> stated_ = Coefficients();  // empty once the wavefront has changed
};

// Throws OrderAboveHighest where a term above this radial order is not 0.
//   model  whose limit it is, for the message: "classic"
void RequireOrdersUpTo(int highest, const EyeCoefficients& coefficients, const std::string& model);

// Coefficients as the library takes them. An eye stated in the library's own convention gives the stated numbers to the
// bit, and others are converted as In() says. Throws Error where a term above order 6 is not 0.
LibraryCoefficients ToLibrary(const EyeCoefficients& coefficients);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_EYE_COEFFICIENTS_H
