// Holds the Zernike coefficients of one eye: canonical numbers, and the numbers that its file or row states.
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

  // The coefficients in a convention, for output. They are converted from the stated numbers while these are valid. So
  // the stated convention returns the same bits. Otherwise they are converted from the canonical numbers.
  Coefficients In(const Convention& convention) const;
  Coefficients AsStated() const { return In(convention_); }

  // Sets another wavefront. The stated numbers become invalid; their convention stays.
  void Replace(Coefficients osa);

  // Keeps the wavefront and changes the stated convention.
  void Restate(const Convention& convention);

  // Mirrors the eye left to right, and drops the terms from this OSA index on. Both are exact in every convention, so
  // the stated numbers stay valid.
  void Mirror();
  void DropFrom(std::size_t index);

  friend bool operator==(const EyeCoefficients&, const EyeCoefficients&) = default;

 private:
  Convention convention_ = kLibraryConvention;
  Coefficients osa_;
  std::optional<Coefficients> stated_ = Coefficients();  // empty once the wavefront has changed
};

// Throws OrderAboveHighest if a term above this radial order is not 0.
//   model  the name of the model with this limit, for the message: "classic"
void RequireOrdersUpTo(int highest, const EyeCoefficients& coefficients, const std::string& model);

// Coefficients in the convention of the library. An eye stated in that convention returns the stated bits; others are
// converted as by In(). Throws Error if a term above order 6 is not 0.
LibraryCoefficients ToLibrary(const EyeCoefficients& coefficients);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_EYE_COEFFICIENTS_H
