// Sums the OTF on a lattice of frequencies, ring by ring.
#include "models/physical/spread/encircled_light.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "base/elementary.h"
#include "models/physical/image/far_light.h"
#include "models/physical/plane_index.h"
#include "models/physical/pupil/perfect_pupil.h"
#include "models/physical/spread/bessel.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr int kLargestLattice = 8192;

// The period of the lattice, in wavelength / diameter: circles of the next periods stay clear of the light that is
// near.
double PeriodFor(const Beam& beam, double x, double y, double radius) {
  const SlopeRange slopes = SlopesOf(beam.pupil);
  const double farX = std::max(slopes.highX - x, x - slopes.lowX), farY = std::max(slopes.highY - y, y - slopes.lowY);
  constexpr double kLeast = 160.0, kClear = 40.0;
  return std::max(kLeast, 4.0 * radius + 4.0 * std::sqrt(farX * farX + farY * farY) + kClear);
}

// Of the far light of the periods around, at the middle; arcmin.
double LightAround(const Beam& beam, const FarLight& far, double period, double x, double y) {
  constexpr int kNear = 12;
  double sum = 0.0;
  for (int r = -kNear; r <= kNear; ++r) {
    for (int c = -kNear; c <= kNear; ++c) {
      if (r != 0 || c != 0) sum += far.Density(x + c * period, y + r * period);
    }
  }
  // Beyond them, the inverse cubes of a lattice add up to about 2 sqrt(8)/(kNear + 1/2), the integral beyond a square.
  const double beyond = 4.0 * std::numbers::sqrt2 / (kNear + 0.5);
  const double distance = 1e3 * period;
  sum += beyond * far.Density(x + distance, y) * 1e9;
  return sum / (beam.unitArcmin * beam.unitArcmin);
}

}  // namespace

Outcome<EncircledLight> EncircledLight::About(const Eye& eye, const Light& light, double x, double y, View view,
                                              double largestRadius, Workspace& workspace) {
  constexpr double kFarthest = 600.0;
  for (const double place : {x, y}) {
    if (!(std::fabs(place) <= kFarthest)) return Refusal{Problem::kPlace, place, -kFarthest, kFarthest};
  }
  if (!(largestRadius > 0.0 && largestRadius <= kFarthest)) {
    return Refusal{Problem::kRadius, largestRadius, 0.0, kFarthest};
  }
  const Outcome<std::vector<Beam>> beams = BeamsOf(eye, light);
  if (!beams) return beams.refusal();
  EncircledLight result;
  result.largestRadius_ = largestRadius;
  // In the sense of the slopes.
  const double slopeX = -x, slopeY = view == View::kPatient ? y : -y;
  for (const Beam& beam : *beams) {
    const double unit = beam.unitArcmin, middleX = slopeX / unit, middleY = slopeY / unit;
    const double period = PeriodFor(beam, middleX, middleY, largestRadius / unit);
    const double needed = 2.0 * std::ceil(period);
    if (!(needed <= kLargestLattice))
      return Refusal{Problem::kFieldTooLarge, needed, 0.0, 1.0 * kLargestLattice, beam.line};
    const int side = static_cast<int>(needed), half = side / 2;
    const double step = 1.0 / period, stepPerArcmin = step / unit;
    std::vector<double> re(At(side, 0, side)), im(re.size());
    if (!workspace.otf.Compute(beam.pupil, {side, step}, re.data(), im.data())) {
      return Refusal{Problem::kTooSteep, 0.0, 0.0, 0.0, beam.line};
    }
    // By the squared distance from frequency 0; of each pair with its conjugate only one.
    std::vector<double> sums(static_cast<std::size_t>(half) * static_cast<std::size_t>(half) + 1);
    for (int r = 1; r < side; ++r) {
      for (int c = half; c < side; ++c) {
        const int fy = half - r, fx = c - half, square = fx * fx + fy * fy;
        if (square == 0 || square > half * half || (fx == 0 && fy < 0)) continue;
        // Moved to the middle of the circles.
        const SineCosine turn = SineAndCosine(2.0 * kPi * step * (fx * middleX + fy * middleY));
        const std::size_t at = At(r, c, side);
        sums[static_cast<std::size_t>(square)] += 2.0 * (re[at] * turn.cosine - im[at] * turn.sine);
      }
    }
    const double area = beam.share * stepPerArcmin * stepPerArcmin;
    for (std::size_t square = 1; square < sums.size(); ++square) {
      if (sums[square] == 0.0) continue;
      const double frequency = std::sqrt(static_cast<double>(square)) * stepPerArcmin;
      result.rings_.push_back({frequency, area * sums[square] / frequency});
    }
    result.rest_.area += area;
    const FarLight far(beam.pupil, PerfectPupilOf(beam.pupil, workspace.quadrature).light, period / 2.0, 1.0);
    result.rest_.around += beam.share * LightAround(beam, far, period, middleX, middleY);
  }
  return result;
}

double EncircledLight::Within(double radius) const {
  if (!(radius > 0.0)) return 0.0;
  double sum = 0.0;
  for (const Ring& ring : rings_) sum += ring.weight * BesselJ1(2.0 * kPi * radius * ring.frequency);
  // J1(2 pi f R) R / f is pi R^2 at frequency 0.
  return radius * sum + kPi * radius * radius * (rest_.area - rest_.around);
}

double EncircledLight::DiameterOf(double share) const {
  if (!(share >= 0.0 && share <= Within(largestRadius_))) return std::numeric_limits<double>::quiet_NaN();
  double low = 0.0, high = largestRadius_;
  constexpr int kHalvings = 40;
  for (int i = 0; i < kHalvings; ++i) {
    const double middle = (low + high) / 2.0;
    (Within(middle) < share ? low : high) = middle;
  }
  return low + high;
}

}  // namespace orvanel::physical
