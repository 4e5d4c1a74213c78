// Draws random eyes for searches, and searches their best lens densely.
#ifndef ORVANEL_TESTS_SUPPORT_RANDOM_EYES_H
#define ORVANEL_TESTS_SUPPORT_RANDOM_EYES_H

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "evaluation/correction/best_correction.h"
#include "eye/adjustments.h"
#include "eye/conventions/mode.h"
#include "eye/population/random.h"

namespace orvanel::evaluation {

// Radial orders 3 to 6, with the spread of healthy eyes, twice or three times it in half of the eyes, over pupils of
// about 5 mm. The refraction is near 0: a search does not depend on it.
inline Eye RandomEye(std::uint64_t index) {
  constexpr std::uint64_t kSeed = 5;
  constexpr double kSpread[] = {0.0, 0.0, 0.0, 0.1, 0.04, 0.02, 0.015};  // um over 6 mm, by order
  constexpr double kSpherical = 0.08, kSpreadOfSpherical = 0.1;
  const double pupil = std::clamp(5.0 + 1.2 * NormalNumber(kSeed, index, 200), 2.5, 7.5);
  const double factor = index % 4 == 3 ? 3.0 : index % 4 == 2 ? 2.0 : 1.0;
  Coefficients osa(28, 0.0);
  for (std::size_t j = 6; j < osa.size(); ++j) {
    const ZernikeTerm term = Term(j);
    const bool spherical = j == 12;
    double mode = factor * (spherical ? kSpreadOfSpherical : kSpread[term.n]) *
                  NormalNumber(kSeed, index, static_cast<std::uint32_t>(j));
    if (spherical) mode += kSpherical;
    for (int k = 0; k < term.n; ++k) mode *= pupil / 6.0;
    osa[j] = mode;
  }
  Eye eye;
  eye.pupil = Millimetres(pupil);
  eye.coefficients = {kOsaConvention, osa};
  return eye;
}

// The highest value of a metric of which higher is better, by brute force: about 500 lenses or more on a lattice around
// the line from the least-squares to the paraxial refraction, then steps along each coordinate from the four best that
// are apart.
inline double DenselySearched(QualityEvaluator& evaluator, const Eye& eye) {
  using Point = std::vector<double>;
  const PowerVector from = LeastSquaresRefraction(eye.coefficients.osa(), eye.pupil);
  const PowerVector to = ParaxialRefraction(eye.coefficients.osa(), eye.pupil);
  const double width = FocusWidth(eye.pupil).value(), step = 0.6 * width;
  const auto value = [&](const Point& p) {
    Adjustments adjustments;
    adjustments.refraction = PowerVector{Dioptres(-p[0]), Dioptres(-p[1]), Dioptres(-p[2])};
    return evaluator.Evaluate(Adjusted(eye, adjustments)).values.front().value;
  };
  const auto middle = [](Dioptres a, Dioptres b) { return (a.value() + b.value()) / 2.0; };
  std::vector<std::pair<double, Point>> lattice;
  const double last = std::max(from.m.value(), to.m.value()) + 1.5 * step;
  for (double m = std::min(from.m.value(), to.m.value()) - 1.5 * step; m <= last; m += step) {
    for (int a = -3; a <= 3; ++a) {
      for (int b = -3; b <= 3; ++b) {
        const Point p = {m, middle(from.j0, to.j0) + a * step, middle(from.j45, to.j45) + b * step};
        lattice.emplace_back(value(p), p);
      }
    }
  }
  std::stable_sort(lattice.begin(), lattice.end(), [](const auto& x, const auto& y) { return x.first > y.first; });
  double highest = lattice.front().first;
  std::vector<Point> seen;
  for (std::size_t i = 0; i < lattice.size() && seen.size() < 8; ++i) {
    auto [best, p] = lattice[i];
    const bool isNear = std::any_of(seen.begin(), seen.end(), [&, here = p](const Point& q) {
      double square = 0.0;
      for (std::size_t k = 0; k < 3; ++k) square += (here[k] - q[k]) * (here[k] - q[k]);
      return square < 0.8 * step * step;
    });
    if (isNear) continue;
    seen.push_back(p);
    for (double size = step / 2.0; size > 0.01 * width; size /= 2.0) {
      for (bool better = true; better;) {
        better = false;
        for (std::size_t k = 0; k < 6; ++k) {
          Point trial = p;
          trial[k / 2] += k % 2 == 0 ? size : -size;
          const double at = value(trial);
          if (!(at > best)) continue;
          best = at;
          p = trial;
          better = true;
        }
      }
    }
    seen.push_back(p);
    highest = std::max(highest, best);
  }
  return highest;
}

}  // namespace orvanel::evaluation

#endif  // ORVANEL_TESTS_SUPPORT_RANDOM_EYES_H
