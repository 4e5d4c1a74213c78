// What a stranger can call without an image: the objects, the circle fit and the sampling. None of them prints.
#include <orvanel/optics_engine.h>
#include <orvanel/ring.h>
#include <orvanel/sampling.h>
#include <orvanel/sector_star.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kSide = 256;
const double kPi = std::acos(-1.0);

using Plane = std::vector<double>;

// A circle around the centre of the star crosses the edges of its 40 sectors.
bool StarHasItsSectors() {
  Plane star(kSide * kSide, -1.0);
  orvanel::DrawSectorStar(star.data());
  for (const int radius : {60, 90, 120}) {
    int edges = 0;
    double before = -1.0;
    for (int k = 0; k <= 7200; ++k) {
      const double angle = 2.0 * kPi * k / 7200;
      const long row = 128 + std::lround(radius * std::sin(angle)),
                 column = 128 + std::lround(radius * std::cos(angle));
      const double value = star[static_cast<std::size_t>(row * kSide + column)];
      if (value != 0.0 && value != 1.0) return false;
      if (k > 0 && value != before) ++edges;
      before = value;
    }
    if (edges != 40) return false;
  }
  return true;
}

// The window of the PSF is half as wide for twice the pupil. A ring five times as acute is a fifth as large, to the
// rounding of its size. Acuity times diameter is the same for all rings.
bool RingFollowsTheSampling() {
  const int samples = orvanel::PupilSamples(kSide);
  const double halfWidth = orvanel::PsfHalfWidth(samples, orvanel::kWavelength, 3.0);
  if (samples != 129 || !(halfWidth > 0.0)) return false;
  if (std::fabs(orvanel::PsfHalfWidth(samples, orvanel::kWavelength, 6.0) / halfWidth - 0.5) > 1e-12) return false;
  const double step = orvanel::FrequencyStep(kSide, halfWidth);
  if (std::fabs(orvanel::FrequencyRange(kSide, step) / step - 127.5) > 1e-12) return false;

  const orvanel::RingScale scale{kSide, kSide, halfWidth};
  const int large = orvanel::RingDiameter(scale, 0.1), small = orvanel::RingDiameter(scale, 0.5);
  if (small <= 0 || large % 5 != 0 || small % 5 != 0 || std::abs(large - 5 * small) > 30) return false;
  if (std::fabs(orvanel::EffectiveAcuity(scale, large) * large / (orvanel::EffectiveAcuity(scale, small) * small) -
                1.0) > 1e-12) {
    return false;
  }
  Plane ring(kSide * kSide);
  orvanel::DrawRing(ring.data(), kSide, small, 3);
  double black = 0.0;
  for (const double v : ring) black += 1.0 - v;
  // An annulus of outer diameter D and stroke D/5, with a gap of D/5. Samples on its rims make the difference.
  const double d = small, area = kPi * (0.25 - 0.09) * d * d - 0.04 * d * d;
  return std::fabs(black - area) < kPi * (d + 0.6 * d);
}

// Samples on a circle deviate from it by rounding alone.
bool CircleFitsASphere() {
  orvanel::OpticsEngine engine;
  const double flat[orvanel::kCoefficients] = {};
  engine.synthesizeWavefront(flat, 4.0, 1, 1, 1);
  constexpr double kRadius = 9.0;
  for (std::size_t k = 0; k < engine.wavefrontPlane.size(); ++k) {
    if (engine.wavefrontPlane[k] == orvanel::kWavefrontOutside) continue;
    const double x = engine.pupilXPlane[k], y = engine.pupilYPlane[k];
    engine.wavefrontPlane[k] = kRadius - std::sqrt(kRadius * kRadius - x * x - y * y);
  }
  const orvanel::CircleFit fit = orvanel::FitCircle(engine);
  return fit.solved && std::fabs(fit.a + 2.0 * kRadius) < 1e-9 && std::fabs(fit.b) < 1e-9 && fit.deviation < 1e-9;
}

}  // namespace

int main() {
  const bool star = StarHasItsSectors(), ring = RingFollowsTheSampling(), circle = CircleFitsASphere();
  std::printf("star %d, ring %d, circle %d\n", star, ring, circle);
  return star && ring && circle ? EXIT_SUCCESS : EXIT_FAILURE;
}
