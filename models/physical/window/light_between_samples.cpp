// Sums the samples with weights sinc(t) exp(-t^2 / (2 sd^2)), and with the derivatives of these.
#include "models/physical/window/light_between_samples.h"

#include <array>
#include <cmath>
#include <numbers>

#include "base/elementary.h"

namespace orvanel::physical {
namespace {

// Of the samples 1 - kReach .. kReach, at the place t from sample 0, 0 <= t < 1.
template <int kReach>
struct Weights {
  std::array<double, 2 * kReach> value{}, slope{}, curvature{};
};

template <int kReach>
Weights<kReach> WeightsAt(double t, double sd) {
  constexpr double kPi = std::numbers::pi, kNear = 1e-3;
  Weights<kReach> weights;
  const SineCosine turn = SineAndCosine(kPi * t);
  for (int i = 0; i < 2 * kReach; ++i) {
    const int sample = i + 1 - kReach;
    const double d = t - sample, sign = sample % 2 == 0 ? 1.0 : -1.0;
    double value = 1.0 - kPi * kPi * d * d / 6.0, slope = -kPi * kPi * d / 3.0, curvature = -kPi * kPi / 3.0;
    if (std::fabs(d) > kNear) {
      value = sign * turn.sine / (kPi * d);
      slope = (sign * turn.cosine - value) / d;
      curvature = -kPi * kPi * value - 2.0 * slope / d;
    }
    const double gauss = Exponential(-d * d / (2.0 * sd * sd));
    const double first = -d / (sd * sd), second = first * first - 1.0 / (sd * sd);  // derivatives over gauss
    const auto at = static_cast<std::size_t>(i);
    weights.value[at] = value * gauss;
    weights.slope[at] = (slope + value * first) * gauss;
    weights.curvature[at] = (curvature + 2.0 * slope * first + value * second) * gauss;
  }
  return weights;
}

//   kReach  samples on each side
//   sd      of the Gaussian, in samples
template <int kReach>
Paraboloid Interpolated(const LightWindow& window, double sd, double x, double y) {
  // Columns go to the left.
  const double left = (window.centreX - x) / window.spacing, up = (y - window.centreY) / window.spacing;
  const double column = std::floor(left), row = std::floor(up);
  const Weights<kReach> across = WeightsAt<kReach>(left - column, sd), upwards = WeightsAt<kReach>(up - row, sd);
  Paraboloid light{};
  for (int r = 0; r < 2 * kReach; ++r) {
    double value = 0.0, slope = 0.0, curvature = 0.0;
    for (int c = 0; c < 2 * kReach; ++c) {
      const double sample =
          window.At(static_cast<int>(row) + r + 1 - kReach, static_cast<int>(column) + c + 1 - kReach);
      const auto at = static_cast<std::size_t>(c);
      value += across.value[at] * sample;
      slope += across.slope[at] * sample;
      curvature += across.curvature[at] * sample;
    }
    const auto at = static_cast<std::size_t>(r);
    light.value += upwards.value[at] * value;
    light.x -= upwards.value[at] * slope;
    light.y += upwards.slope[at] * value;
    light.xx += upwards.value[at] * curvature;
    light.xy -= upwards.slope[at] * slope;
    light.yy += upwards.curvature[at] * value;
  }
  const double square = window.spacing * window.spacing;
  return {light.value,       light.x / window.spacing, light.y / window.spacing,
          light.xx / square, light.xy / square,        light.yy / square};
}

}  // namespace

Paraboloid LightBetweenSamples(const LightWindow& window, double x, double y) {
  constexpr int kReach = 8;
  constexpr double kSd = 2.6;
  return Interpolated<kReach>(window, kSd, x, y);
}

Paraboloid LightBetweenFineSamples(const LightWindow& window, double x, double y) {
  return Interpolated<kFineReach>(window, kFineSd, x, y);
}

}  // namespace orvanel::physical
