// Declares the generator of random integers: Philox 4x32 with 10 rounds, a bijection of the counter for each key.
// Source: Salmon, Moraes, Dror and Shaw (2011), Parallel random numbers: as easy as 1, 2, 3.
#ifndef ORVANEL_BASE_PHILOX_H
#define ORVANEL_BASE_PHILOX_H

#include <array>
#include <cstdint>

namespace orvanel {

using PhiloxCounter = std::array<std::uint32_t, 4>;
PhiloxCounter Philox(PhiloxCounter counter, std::array<std::uint32_t, 2> key);

}  // namespace orvanel

#endif  // ORVANEL_BASE_PHILOX_H
