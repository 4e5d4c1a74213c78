// Search of the peak of the point spread function, on a grid and by Newton's method.
#include "models/physical/strehl.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace orvanel::physical {
namespace {

constexpr double kSpacing = 0.35;  // of the samples of the search, in wavelength / diameter
// Of a peak, what at least is left at the nearest sample, which is at most kSpacing / sqrt(2) away: an intensity
// between 0 and M without frequencies above 1 is at least M/2 (1 + cos 2 pi d) at the distance d < 1/2 from where it
// is M, here 0.508 M. Source: Bernstein's inequality, in the form of Riesz (1914).
constexpr double kLeftAtSample = 0.5;
constexpr double kMargin = 1.5;  // around the slopes, for the pattern of a perfect pupil

struct Peak {
  double value, x, y;
};

// The intensity |U|^2 with its slope and curvature.
struct IntensityJet {
  double value, x, y, xx, xy, yy;
};
IntensityJet IntensityOf(const FieldJet& f) {
  const auto product = [](std::complex<double> a, std::complex<double> b) {
    return a.real() * b.real() + a.imag() * b.imag();
  };
  return {product(f.u, f.u),
          2.0 * product(f.u, f.x),
          2.0 * product(f.u, f.y),
          2.0 * (product(f.u, f.xx) + product(f.x, f.x)),
          2.0 * (product(f.u, f.xy) + product(f.x, f.y)),
          2.0 * (product(f.u, f.yy) + product(f.y, f.y))};
}

class Search {
 public:
  Search(const Pupil& pupil, ChordQuadrature& quadrature) : pupil_(pupil), quadrature_(quadrature) {}

  // Uphill from a sample, by Newton's steps where the intensity is curved like a hill.
  Peak Climb(double x, double y) {
    const NodeCounts counts = ChordQuadrature::CountsFor(pupil_, {x, y, 1.0, 2, 2});
    const auto at = [&](double a, double b) { return IntensityOf(quadrature_.Field(pupil_, a, b, counts)); };
    IntensityJet here = at(x, y);
    constexpr int kSteps = 40;
    for (int step = 0; step < kSteps; ++step) {
      const double determinant = here.xx * here.yy - here.xy * here.xy;
      double dx, dy;
      if (here.xx < 0.0 && determinant > 0.0) {
        dx = (here.xy * here.y - here.yy * here.x) / determinant;
        dy = (here.xy * here.x - here.xx * here.y) / determinant;
      } else {
        const double curvature = std::sqrt(here.xx * here.xx + 2.0 * here.xy * here.xy + here.yy * here.yy);
        if (curvature == 0.0) break;
        dx = here.x / curvature;
        dy = here.y / curvature;
      }
      double length = std::sqrt(dx * dx + dy * dy);
      if (!(length > 1e-7)) break;  // the value is then within 1e-13
      if (length > kSpacing) {
        dx *= kSpacing / length;
        dy *= kSpacing / length;
      }
      IntensityJet there = at(x + dx, y + dy);
      while (there.value < here.value && length > 1e-7) {
        dx *= 0.25;
        dy *= 0.25;
        length *= 0.25;
        there = at(x + dx, y + dy);
      }
      if (there.value < here.value) break;
      x += dx;
      y += dy;
      here = there;
    }
    return {here.value, x, y};
  }

  // Samples that are as high as all their neighbours, the highest first.
  std::vector<Peak> Hills(const DirectionGrid& grid) {
    const std::size_t columns = static_cast<std::size_t>(grid.columns), rows = static_cast<std::size_t>(grid.rows);
    std::vector<double> samples(columns * rows);
    quadrature_.Intensity(pupil_, grid, ChordQuadrature::CountsFor(pupil_, grid), {samples.data(), grid.columns});
    std::vector<Peak> hills;
    for (std::size_t r = 1; r + 1 < rows; ++r) {
      for (std::size_t c = 1; c + 1 < columns; ++c) {
        const double* const s = samples.data() + r * columns + c;
        const auto pitch = static_cast<std::ptrdiff_t>(columns);
        const double around =
            std::max({s[-1], s[1], s[-pitch], s[pitch], s[-pitch - 1], s[-pitch + 1], s[pitch - 1], s[pitch + 1]});
        if (*s < around) continue;
        hills.push_back({*s, grid.centreX + (static_cast<double>(c) - (grid.columns - 1) / 2.0) * grid.spacing,
                         grid.centreY + ((grid.rows - 1) / 2.0 - static_cast<double>(r)) * grid.spacing});
      }
    }
    std::stable_sort(hills.begin(), hills.end(), [](const Peak& a, const Peak& b) { return a.value > b.value; });
    return hills;
  }

 private:
  const Pupil& pupil_;
  ChordQuadrature& quadrature_;
};

// A window that holds the slopes of the whole pupil.
DirectionGrid WindowOf(const Pupil& pupil) {
  const SlopeRange range = SlopesOf(pupil);
  const auto count = [](double low, double high) { return static_cast<int>((high - low) / kSpacing) + 4; };
  return {(range.lowX + range.highX) / 2.0, (range.lowY + range.highY) / 2.0, kSpacing,
          count(range.lowX - kMargin, range.highX + kMargin), count(range.lowY - kMargin, range.highY + kMargin)};
}

}  // namespace

Strehl StrehlOf(const Pupil& pupil, ChordQuadrature& quadrature) {
  const auto onAxis = [&quadrature](const Pupil& p) {
    return std::norm(quadrature.Field(p, 0.0, 0.0, ChordQuadrature::CountsFor(p, {0.0, 0.0, 1.0, 1, 1})).u);
  };
  const double perfect = onAxis(Flat(pupil));
  Strehl strehl;
  strehl.axis = onAxis(pupil) / perfect;
  Search search(pupil, quadrature);
  Peak best{0.0, 0.0, 0.0};
  for (const Peak& hill : search.Hills(WindowOf(pupil))) {
    if (hill.value < kLeftAtSample * best.value) break;
    const Peak peak = search.Climb(hill.x, hill.y);
    if (peak.value > best.value) best = peak;
  }
  strehl.peak = best.value / perfect;
  strehl.peakX = best.x;
  strehl.peakY = best.y;
  return strehl;
}

}  // namespace orvanel::physical
