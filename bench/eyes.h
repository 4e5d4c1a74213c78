// Defines the inputs of every measured call, eyes and objects. They take turns, so that no call repeats its last input.
#ifndef ORVANEL_BENCH_EYES_H
#define ORVANEL_BENCH_EYES_H

#include <array>
#include <cstddef>

#include "orvanel/orvanel.h"

namespace orvanel::bench {

using Coefficients = std::array<double, ORVANEL_COEFFICIENTS>;

constexpr double kPupil_mm = 6.0;

// Eight asymmetric eyes, with half to twice the usual aberration.
inline const Coefficients& EyeAt(int turn) {
  static const auto eyes = [] {
    constexpr Coefficients kEveryday = {0.0,    0.0,     0.0,     1.1e-4,  2.3e-4,   -0.7e-4, 0.4e-4,
                                        1.3e-4, -0.9e-4, 0.5e-4,  0.3e-4,  0.2e-4,   0.6e-4,  -0.1e-4,
                                        0.2e-4, 0.05e-4, 0.03e-4, -0.1e-4, 0.1e-4,   0.02e-4, 0.04e-4,
                                        0.1e-4, 0.01e-4, 0.02e-4, 0.05e-4, -0.02e-4, 0.01e-4, 0.02e-4};
    std::array<Coefficients, 8> scaled{};
    for (std::size_t eye = 0; eye < scaled.size(); ++eye) {
      const double factor = 0.5 + 1.5 * static_cast<double>(eye) / 7.0;
      for (std::size_t k = 0; k < kEveryday.size(); ++k) scaled[eye][k] = factor * kEveryday[k];
    }
    return scaled;
  }();
  return eyes[static_cast<std::size_t>(turn) % eyes.size()];
}

// The decimal acuities of a reading chart: for a pupil of 6 mm rings of 240 down to 30 samples.
struct Ring {
  double acuity;
  int gapDirection;
};
inline Ring RingAt(int turn) {
  constexpr std::array<double, 10> kAcuities = {0.25, 0.32, 0.4, 0.5, 0.63, 0.8, 1.0, 1.25, 1.6, 2.0};
  return {kAcuities[static_cast<std::size_t>(turn) % kAcuities.size()], turn % 4 + 1};
}

}  // namespace orvanel::bench

#endif  // ORVANEL_BENCH_EYES_H
