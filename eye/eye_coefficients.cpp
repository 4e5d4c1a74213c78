// Converts stated coefficients to canonical ones, and both to the conventions of outputs.
#include "eye/eye_coefficients.h"

#include <utility>

#include "eye/errors.h"

namespace orvanel::eye {

EyeCoefficients::EyeCoefficients(const Convention& stated, Coefficients numbers)
    : convention_(stated), osa_(Converted(numbers, stated, kOsaConvention)), stated_(std::move(numbers)) {}

Coefficients EyeCoefficients::In(const Convention& convention) const {
  return stated_ ? Converted(*stated_, convention_, convention) : Converted(osa_, kOsaConvention, convention);
}

void EyeCoefficients::Replace(Coefficients osa) {
  osa_ = std::move(osa);
  stated_.reset();
}

void EyeCoefficients::Restate(const Convention& convention) {
  stated_ = In(convention);
  convention_ = convention;
}

void EyeCoefficients::Mirror() {
  osa_ = Mirrored(std::move(osa_));
  if (stated_) stated_ = Mirrored(std::move(*stated_));
}

void EyeCoefficients::DropFrom(std::size_t index) {
  if (index >= osa_.size()) return;
  osa_.resize(index);
  if (stated_) stated_->resize(index);
}

LibraryCoefficients ToLibrary(const EyeCoefficients& coefficients) {
  const Coefficients converted = coefficients.In(kLibraryConvention);
  LibraryCoefficients library{};
  for (std::size_t j = 0; j < converted.size(); ++j) {
    if (j < library.size()) {
      library[j] = Millimetres(converted[j]);
    } else if (converted[j] != 0.0) {
      throw OrderAboveHighest(Term(j), coefficients.AsStated()[j], UnitText(coefficients.convention()),
                              Term(library.size() - 1).n);
    }
  }
  return library;
}

}  // namespace orvanel::eye
