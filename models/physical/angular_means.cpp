// Interpolates the lattice of the OTF along rings by polynomials of the fifth degree in both directions.
#include "models/physical/angular_means.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "base/elementary.h"

namespace orvanel::physical {
namespace {

constexpr int kPoints = 6;  // of the interpolation along each axis

// Lagrange's weights for the points -2 .. 3 at the place t from point 0, 0 <= t < 1.
std::array<double, kPoints> Weights(double t) {
  std::array<double, kPoints> weights{};
  for (int i = 0; i < kPoints; ++i) {
    double weight = 1.0;
    for (int k = 0; k < kPoints; ++k) {
      if (k != i) weight *= (t - (k - 2)) / (i - k);
    }
    weights[static_cast<std::size_t>(i)] = weight;
  }
  return weights;
}

// The OTF at a place of the lattice's index space, (0, 0) at zero frequency.
std::complex<double> Interpolated(const TransferFunction& otf, double column, double row) {
  const int side = otf.grid.side, half = side / 2;
  const double left = std::floor(column), upper = std::floor(row);
  const auto across = Weights(column - left), down = Weights(row - upper);
  double re = 0.0, im = 0.0;
  for (int i = 0; i < kPoints; ++i) {
    const int r = std::clamp(half + static_cast<int>(upper) + i - 2, 0, side - 1);
    double lineRe = 0.0, lineIm = 0.0;
    for (int k = 0; k < kPoints; ++k) {
      const int c = std::clamp(half + static_cast<int>(left) + k - 2, 0, side - 1);
      const auto at = static_cast<std::size_t>(r) * static_cast<std::size_t>(side) + static_cast<std::size_t>(c);
      lineRe += across[static_cast<std::size_t>(k)] * otf.re[at];
      lineIm += across[static_cast<std::size_t>(k)] * otf.im[at];
    }
    re += down[static_cast<std::size_t>(i)] * lineRe;
    im += down[static_cast<std::size_t>(i)] * lineIm;
  }
  return {re, im};
}

// How far the light of the PSF that counts reaches from the axis, in arcmin.
double ReachOf(const std::vector<Beam>& beams) {
  constexpr double kTail = 4.0;  // wavelength / diameter beyond the rays
  double reach = 0.0;
  for (const Beam& beam : beams) {
    const SlopeRange slopes = SlopesOf(beam.pupil);
    const double x = std::max(std::fabs(slopes.lowX), std::fabs(slopes.highX));
    const double y = std::max(std::fabs(slopes.lowY), std::fabs(slopes.highY));
    reach = std::max(reach, (std::sqrt(x * x + y * y) + kTail) * beam.unitArcmin);
  }
  return reach;
}

}  // namespace

Outcome<std::vector<AngularMeans>> MeansOverAngleByLattice(const Eye& eye, const Light& light,
                                                           std::span<const double> frequencies, Workspace& workspace) {
  const Outcome<std::vector<Beam>> beams = BeamsOf(eye, light);
  if (!beams) return beams.refusal();
  double cutOff = 0.0;
  for (const Beam& beam : *beams) cutOff = std::max(cutOff, 60.0 / beam.unitArcmin);
  // Waves of the OTF from light at the reach have at least 12 samples.
  const double step = std::min(60.0 / ReachOf(*beams) / 12.0, cutOff / 120.0);
  const int side = 2 * static_cast<int>(std::ceil(cutOff / step)) + 2 * kPoints;
  if (!(side <= kLargestSide)) {
    return Refusal{Problem::kFieldTooLarge, static_cast<double>(side), 0.0, static_cast<double>(kLargestSide)};
  }
  const Outcome<TransferFunction> otf = TransferFunctionOf(eye, light, {step, side, View::kPatient}, workspace);
  if (!otf) return otf.refusal();

  std::vector<AngularMeans> results;
  for (const double frequency : frequencies) {
    const double radius = frequency / step;
    // Near zero frequency the OTF is a cone, which polynomials do not follow.
    constexpr double kCone = 4.0;
    if (radius < kCone) {
      const double one[] = {frequency};
      const Outcome<std::vector<AngularMeans>> exact = MeansOverAngle(eye, light, one, workspace);
      if (!exact) return exact.refusal();
      results.push_back(exact->front());
      continue;
    }
    AngularMeans means;
    if (frequency < cutOff) {
      const int count = 16 + static_cast<int>(std::ceil(std::numbers::pi * radius));  // of half a turn
      for (int i = 0; i < count; ++i) {
        const SineCosine turn = SineAndCosine((i + 0.5) * std::numbers::pi / count);
        const std::complex<double> value = Interpolated(*otf, radius * turn.cosine, radius * turn.sine);
        means.mtf += Modulus(value) / count;
        means.otf += value.real() / count;
      }
    }
    results.push_back(means);
  }
  return results;
}

}  // namespace orvanel::physical
