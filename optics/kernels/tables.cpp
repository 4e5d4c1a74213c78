// Computes the constants of the transforms.
#include "optics/kernels/tables.h"

#include <cstddef>
#include <numbers>

#include "base/elementary.h"

namespace orvanel {
namespace {

constexpr int kLength = kKernelGrid;
constexpr double kTwoPi = 2 * std::numbers::pi;

Tables MakeTables() {
  Tables tables{};
  for (int n = 0; n < 16; ++n) {
    for (int k = 0; k < 16; ++k) {
      const SineCosine factor = SineAndCosineOfTurn(n * k, kLength);
      tables.cosine[16 * n + k] = factor.cosine;
      tables.sine[16 * n + k] = factor.sine;
    }
  }
  for (int negative = 0; negative < 2; ++negative) {
    const double theta = (negative == 0 ? -kTwoPi : kTwoPi) / kLength;
    for (int k = 0; k < kLength; ++k) {
      const SineCosine factor = SineAndCosine(k * theta);
      tables.centredCosine[negative][k] = factor.cosine;
      tables.centredSine[negative][k] = factor.sine;
    }
  }
  tables.sineAndCosine = [](double x, double* sine, double* cosine) {
    const SineCosine value = SineAndCosine(x);
    *sine = value.sine;
    *cosine = value.cosine;
  };
  return tables;
}

}  // namespace

const Tables& TransformTables() {
  static const Tables tables = MakeTables();
  return tables;
}

}  // namespace orvanel
