// Names of coefficients, in the columns of tables and the keys of eye files: "Z4", "Z(2,0)", "c[2,-2]".
#ifndef ORVANEL_CLI_CONVENTIONS_COLUMN_NAME_H
#define ORVANEL_CLI_CONVENTIONS_COLUMN_NAME_H

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "cli/conventions/convention.h"

namespace orvanel::cli {

// A number in an order that must be stated, or the term itself.
using CoefficientName = std::variant<std::size_t, ZernikeTerm>;

// Empty where the text does not look like the name of a coefficient: a letter Z or C, large or small, and then a
// digit or bracket. Throws Error where it looks like one and is none.
std::optional<CoefficientName> ParseCoefficientName(std::string_view text);

// The term that a name means. Throws Error where a number needs an order, or is not in it.
ZernikeTerm TermNamed(const CoefficientName& name, std::optional<Order> order);

// The name of a term in an order: "Z4", "Z(2,0)"; the term must have a place in it.
std::string NameIn(Order order, ZernikeTerm term);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_CONVENTIONS_COLUMN_NAME_H
