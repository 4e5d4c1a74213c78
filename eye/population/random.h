// Computes random numbers as functions of seed, row and place, so that every platform and order gives the same ones.
#ifndef ORVANEL_EYE_POPULATION_RANDOM_H
#define ORVANEL_EYE_POPULATION_RANDOM_H

#include <array>
#include <cstdint>

#include "base/layers.h"

namespace orvanel::eye {

// Philox 4x32 with 10 rounds, a bijection of the counter for each key.
// Source: Salmon, Moraes, Dror and Shaw (2011), Parallel random numbers: as easy as 1, 2, 3.
using PhiloxCounter = std::array<std::uint32_t, 4>;
PhiloxCounter Philox(PhiloxCounter counter, std::array<std::uint32_t, 2> key);

// The quantile function of the standard normal distribution, 0 < p < 1. The relative error is below 1e-15, near p = 1/2
// the absolute error. Uses only + - * / and the square root.
// Source: Wichura (1988), Algorithm AS 241: The percentage points of the normal distribution, PPND16.
double NormalQuantile(double p);

// Number `place` of row `row` of a standard normal distribution.
double NormalNumber(std::uint64_t seed, std::uint64_t row, std::uint32_t place);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_POPULATION_RANDOM_H
