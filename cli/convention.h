// The conventions in which Zernike coefficients are published, and the way from each to the library's.
#ifndef ORVANEL_CLI_CONVENTION_H
#define ORVANEL_CLI_CONVENTION_H

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "cli/units.h"
#include "orvanel/orvanel.h"

namespace orvanel::cli {

enum class Convention {
  kLibrary,  // millimetres, polynomials without normalisation, y downwards
  kOsa,      // OSA/ANSI Z80.28: micrometres, orthonormal polynomials, y upwards
};

// A convention in the words of an eye file.
struct ConventionWords {
  std::string_view name, unit, normalisation, yAxis;
};

ConventionWords Words(Convention convention);

// Radial order n and azimuthal frequency m of coefficient j; both conventions number the terms alike.
struct ZernikeTerm {
  int n, m;
};

ZernikeTerm Term(std::size_t j);

using LibraryCoefficients = std::array<Millimetres, ORVANEL_COEFFICIENTS>;

// Coefficients as the library takes them; those not given are 0.
//   coefficients  at most 28 numbers in the unit of the convention
LibraryCoefficients ToLibrary(Convention convention, const std::vector<double>& coefficients);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_CONVENTION_H
