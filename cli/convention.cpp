// From published Zernike coefficients to the library's.
#include "cli/convention.h"

#include <cmath>

namespace orvanel::cli {
namespace {

// The orthonormal polynomial is the bare one times this. The sine terms (m < 0) are odd in y, which the library counts
// downwards, so that they change sign.
double OsaFactor(ZernikeTerm term) {
  const double norm = std::sqrt(term.m == 0 ? term.n + 1.0 : 2.0 * (term.n + 1.0));
  return term.m < 0 ? -norm : norm;
}

}  // namespace

ConventionWords Words(Convention convention) {
  if (convention == Convention::kOsa) return {"osa", "um", "orthonormal", "up"};
  return {"library", "mm", "none", "down"};
}

ZernikeTerm Term(std::size_t j) {
  int n = 0;
  int first = 0;  // index of the first term of order n
  while (first + n < static_cast<int>(j)) first += ++n;
  return {n, 2 * (static_cast<int>(j) - first) - n};
}

LibraryCoefficients ToLibrary(Convention convention, const std::vector<double>& coefficients) {
  LibraryCoefficients library{};
  for (std::size_t j = 0; j < coefficients.size(); ++j) {
    library.at(j) = convention == Convention::kOsa ? ToMillimetres(Micrometres(coefficients[j] * OsaFactor(Term(j))))
                                                   : Millimetres(coefficients[j]);
  }
  return library;
}

}  // namespace orvanel::cli
