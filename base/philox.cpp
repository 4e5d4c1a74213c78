// Computes the rounds of Philox.
#include "base/philox.h"

namespace orvanel {

PhiloxCounter Philox(PhiloxCounter c, std::array<std::uint32_t, 2> key) {
  constexpr int kRounds = 10;
  for (int round = 0; round < kRounds; ++round) {
    const std::uint64_t a = std::uint64_t{0xD2511F53} * c[0], b = std::uint64_t{0xCD9E8D57} * c[2];
    c = {static_cast<std::uint32_t>(b >> 32U) ^ c[1] ^ key[0], static_cast<std::uint32_t>(b),
         static_cast<std::uint32_t>(a >> 32U) ^ c[3] ^ key[1], static_cast<std::uint32_t>(a)};
    key = {key[0] + 0x9E3779B9U, key[1] + 0xBB67AE85U};
  }
  return c;
}

}  // namespace orvanel
