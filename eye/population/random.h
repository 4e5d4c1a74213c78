// Computes random numbers as functions of seed, row and place, so that every platform and order gives the same ones.
#ifndef ORVANEL_EYE_POPULATION_RANDOM_H
#define ORVANEL_EYE_POPULATION_RANDOM_H

#include <cstdint>

#include "base/layers.h"

namespace orvanel::eye {

// The quantile function of the standard normal distribution, 0 < p < 1. The relative error is below 1e-15, near p = 1/2
// the absolute error. Uses only + - * / and the square root.
// Source: Wichura (1988), Algorithm AS 241: The percentage points of the normal distribution, PPND16.
double NormalQuantile(double p);

// Number `place` of row `row` of a standard normal distribution.
double NormalNumber(std::uint64_t seed, std::uint64_t row, std::uint32_t place);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_POPULATION_RANDOM_H
