// Comparison in long double, for EXPECT_PRED3(Near, actual, expected, bound).
#ifndef ORVANEL_TESTS_SUPPORT_NEAR_H
#define ORVANEL_TESTS_SUPPORT_NEAR_H

#include <cmath>

namespace orvanel::reference {

// Not near if any of them is not a number.
inline bool Near(long double actual, long double expected, long double bound) {
  return std::abs(actual - expected) <= bound;
}

}  // namespace orvanel::reference

#endif  // ORVANEL_TESTS_SUPPORT_NEAR_H
