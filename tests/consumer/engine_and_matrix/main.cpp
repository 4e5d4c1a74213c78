// Tests engine and matrix library together: for small aberrations, the Strehl ratio decreases by the variance of the
// phase over the pupil.
#include <orvanel/matrix.h>
#include <orvanel/optics_engine.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr double kDefocus_mm[] = {3.1e-5, 1.3e-5, 4.7e-5};

// The Strehl ratio is 1 - v y + 2 y^2 / 45 - y^3 / 315 + ..., y the square of the phase at the edge of the pupil. The
// parabola through three y misses v by the cubic term times y1 y2 + y1 y3 + y2 y3, here 0.035; the rest alternates.
constexpr double kTruncation = 0.035 / 315.0;

// v as the parabola through the three Strehl ratios has it.
double MeasuredVariance() {
  orvanel::OpticsEngine engine;
  orvanel::Matrix powers(3, 3);
  orvanel::Matrix strehl(3, 1);
  std::vector<double> psf(engine.psfPlane.size());
  for (int i = 0; i < 3; ++i) {
    double coefficients[orvanel::kCoefficients] = {};
    coefficients[4] = kDefocus_mm[i];
    double pitch = 0.0;
    engine.synthesizeWavefront(coefficients, 3.7, 1, 1, 1);
    engine.ComputePsf(orvanel::kWavelength, psf.data(), &pitch, &strehl(i, 0), engine.gridSize);
    const double phase = 2.0 * std::acos(-1.0) * kDefocus_mm[i] / orvanel::kWavelength;
    for (int j = 0; j < 3; ++j) powers(i, j) = std::pow(phase, 2 * j);
  }
  return -(powers.inv() * strehl)(1, 0);
}

// Of 2 r^2 - 1 over the samples of a disc with a radius of 64.
double VarianceOverThePupil() {
  int samples = 0;
  double sum = 0.0;
  double sumOfSquares = 0.0;
  for (int row = -64; row <= 64; ++row) {
    for (int column = -64; column <= 64; ++column) {
      const int square = row * row + column * column;
      if (square > 64 * 64) continue;
      const double value = 2.0 * square / (64.0 * 64.0) - 1.0;
      ++samples;
      sum += value;
      sumOfSquares += value * value;
    }
  }
  return sumOfSquares / samples - sum / samples * (sum / samples);
}

}  // namespace

int main() {
  const double measured = MeasuredVariance();
  const double expected = VarianceOverThePupil();
  std::printf("variance %.6f, over the samples %.6f\n", measured, expected);
  return std::fabs(measured - expected) < kTruncation ? EXIT_SUCCESS : EXIT_FAILURE;
}
