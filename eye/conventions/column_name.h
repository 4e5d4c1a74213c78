// Parses and formats the names of coefficients in tables and eye files: "Z4", "Z(2,0)", "c[2,-2]".
#ifndef ORVANEL_EYE_CONVENTIONS_COLUMN_NAME_H
#define ORVANEL_EYE_CONVENTIONS_COLUMN_NAME_H

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "base/layers.h"
#include "eye/conventions/convention.h"

namespace orvanel::eye {

// An index in an index scheme that must be stated, or the term itself.
using CoefficientName = std::variant<std::size_t, ZernikeTerm>;

// Parses a name. A coefficient begins with Z, C or Zernike in upper or lower case, followed by an index or a term:
//   Z4, z 4, Z_4, Zernike 4                    index 4 of an index scheme that must be stated
//   Z(2,0), c[2,-2], Z_2_-2, Z 2 -2, Z2,-2     the term of radial order 2 and azimuthal frequency -2
// Blanks around the name are ignored. The result is empty for other names: another beginning, no number ("zone"), or C
// and a number followed by words ("C1_visit"). Throws InvalidCoefficientName if the name looks like a coefficient but
// is not one, or is ambiguous: "Z-4", "Z4_um".
std::optional<CoefficientName> ParseCoefficientName(std::string_view text);

// The term of a name. Throws IndexWithoutScheme and IndexNotInScheme.
ZernikeTerm TermNamed(const CoefficientName& name, std::optional<IndexScheme> scheme);

// The name of a term in an index scheme: "Z4", "Z(2,0)". The scheme must contain the term.
std::string NameIn(IndexScheme scheme, ZernikeTerm term);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_CONVENTIONS_COLUMN_NAME_H
