// Sorts the lenses around the wanted sphere and cylinder by the distance of their power vectors.
#include "evaluation/correction/lens_grid.h"

#include <algorithm>
#include <cmath>

namespace orvanel::evaluation {
namespace {

struct Candidate {
  Refraction lens;
  double distance;  // squared, in square dioptres
};

double SquaredDistance(const PowerVector& a, const PowerVector& b) {
  const PowerVector d = a - b;
  return d.m.value() * d.m.value() + d.j0.value() * d.j0.value() + d.j45.value() * d.j45.value();
}

}  // namespace

bool DividesHalfTurn(Degrees axisStep) {
  constexpr double kHalfTurn = 180.0;
  const double axes = kHalfTurn / axisStep.value();
  return axes == std::round(axes);
}

std::vector<Refraction> LensesNear(const LensGrid& grid, const PowerVector& wanted, int count) {
  constexpr int kReach = 4;  // steps of the mean sphere; a step of the cylinder is half of one
  const double step = grid.step.value();
  const Refraction exact = ToRefraction(wanted, CylinderSign::kMinus);
  const int cylinder = grid.sphereOnly ? 0 : static_cast<int>(std::floor(exact.cylinder.value() / step + 0.5));
  const int axes = static_cast<int>(180.0 / grid.axisStep.value() + 0.5);
  std::vector<Candidate> candidates;
  for (int c = cylinder - 2 * kReach; c <= std::min(0, cylinder + 2 * kReach); ++c) {
    if (grid.sphereOnly && c < 0) continue;
    const double middle = (wanted.m.value() - c * step / 2.0) / step;
    const int sphere = static_cast<int>(std::floor(middle + 0.5));
    for (int s = sphere - kReach; s <= sphere + kReach; ++s) {
      for (int a = c == 0 ? axes : 1; a <= axes; ++a) {
        const Refraction lens{Dioptres(s * step), Dioptres(c * step), a * grid.axisStep};
        candidates.push_back({lens, SquaredDistance(ToPowerVector(lens), wanted)});
      }
    }
  }
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const Candidate& a, const Candidate& b) { return a.distance < b.distance; });
  std::vector<Refraction> lenses;
  for (const Candidate& candidate : candidates) {
    if (static_cast<int>(lenses.size()) == count) break;
    lenses.push_back(candidate.lens);
  }
  return lenses;
}

}  // namespace orvanel::evaluation
