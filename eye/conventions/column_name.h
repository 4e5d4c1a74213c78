// Names of coefficients, in the columns of tables and the keys of eye files: "Z4", "Z(2,0)", "c[2,-2]".
#ifndef ORVANEL_EYE_CONVENTIONS_COLUMN_NAME_H
#define ORVANEL_EYE_CONVENTIONS_COLUMN_NAME_H

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "base/layers.h"
#include "eye/conventions/convention.h"

namespace orvanel::eye {

// A number in an order that must be stated, or the term itself.
using CoefficientName = std::variant<std::size_t, ZernikeTerm>;

// Reads a name. A coefficient begins with Z, C or Zernike in letters of either case, and goes on with a number or a
// term:
//   Z4, z 4, Z_4, Zernike 4                    number 4 of an order that must be stated
//   Z(2,0), c[2,-2], Z_2_-2, Z 2 -2, Z2,-2     the term of order 2 and frequency -2
// Blanks around the name do not count. Empty where the text is something else: another beginning, no number ("zone"),
// or words behind a C with a number ("C1_visit"). Throws Error where it looks like a coefficient and is none, or may
// mean several: "Z-4", "Z4_um".
std::optional<CoefficientName> ParseCoefficientName(std::string_view text);

// The term that a name means. Throws Error where a number needs an order, or is not in it.
ZernikeTerm TermNamed(const CoefficientName& name, std::optional<Order> order);

// The name of a term in an order: "Z4", "Z(2,0)"; the term must have a place in it.
std::string NameIn(Order order, ZernikeTerm term);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_CONVENTIONS_COLUMN_NAME_H
