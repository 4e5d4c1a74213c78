// Converts stated coefficients to canonical ones, and both to the conventions of outputs.
#include "eye/eye_coefficients.h"

#include <algorithm>
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

void RequireOrdersUpTo(int highest, const EyeCoefficients& coefficients, const std::string& model) {
  const std::size_t first = OsaIndex({highest, highest}) + 1;
  if (coefficients.osa().size() <= first) return;
  const Coefficients stated = coefficients.AsStated();
  for (std::size_t j = first; j < stated.size(); ++j) {
    if (stated[j] == 0.0) continue;
    throw OrderAboveHighest(Term(j), stated[j], UnitText(coefficients.convention()), highest, model);
  }
}

LibraryCoefficients ToLibrary(const EyeCoefficients& coefficients) {
  LibraryCoefficients library{};
  RequireOrdersUpTo(Term(library.size() - 1).n, coefficients, "classic");
  const Coefficients converted = coefficients.In(kLibraryConvention);
  const std::size_t count = std::min(converted.size(), library.size());
  for (std::size_t j = 0; j < count; ++j) library[j] = Millimetres(converted[j]);
  return library;
}

}  // namespace orvanel::eye
