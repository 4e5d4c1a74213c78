// Searches the peak on a grid, and climbs to it by Newton's method.
#include "models/physical/peak.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace orvanel::physical {
namespace {

constexpr double kSpacing = 0.35;  // of the samples of the search, in the smallest wavelength / diameter
// Of a peak, what at least is left at the nearest sample, which is at most kSpacing / sqrt(2) away: an intensity
// between 0 and M without frequencies above 1 is at least M/2 (1 + cos 2 pi d) at the distance d < 1/2 from where it
// is M, here 0.508 M. Source: Bernstein's inequality, in the form of Riesz (1914).
constexpr double kLeftAtSample = 0.5;
constexpr double kMargin = 1.5;  // around the slopes, for the pattern of a perfect pupil

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
  Search(std::span<const Beam> beams, std::span<const double> factors, ChordQuadrature& quadrature)
      : beams_(beams), factors_(factors), quadrature_(quadrature), counts_(beams.size()) {
    unit_ = std::numeric_limits<double>::infinity();
    for (const Beam& beam : beams) unit_ = std::min(unit_, beam.unitArcmin);
  }

  // Uphill from a sample, by Newton's steps where the light is curved like a hill.
  Peak Climb(double x, double y) {
    for (std::size_t i = 0; i < beams_.size(); ++i) {
      const double unit = beams_[i].unitArcmin;
      counts_[i] = ChordQuadrature::CountsFor(beams_[i].pupil, {x / unit, y / unit, 1.0, 2, 2});
    }
    IntensityJet here = At(x, y);
    constexpr int kSteps = 40;
    const double nearest = 1e-7 * unit_;  // the value is then within 1e-13
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
      if (!(length > nearest)) break;
      if (length > kSpacing * unit_) {
        dx *= kSpacing * unit_ / length;
        dy *= kSpacing * unit_ / length;
      }
      IntensityJet there = At(x + dx, y + dy);
      while (there.value < here.value && length > nearest) {
        dx *= 0.25;
        dy *= 0.25;
        length *= 0.25;
        there = At(x + dx, y + dy);
      }
      if (there.value < here.value) break;
      x += dx;
      y += dy;
      here = there;
    }
    return {here.value, x, y};
  }

  // Samples that are as high as all their neighbours, the highest first.
  Outcome<std::vector<Peak>> Hills() {
    const DirectionGrid window = Window();
    if (!(window.columns <= kMostSamples && window.rows <= kMostSamples)) {
      return Refusal{Problem::kTooManyNodes, 0.0, 0.0, static_cast<double>(kMaxNodes), beams_.front().line};
    }
    const auto columns = static_cast<std::size_t>(window.columns), rows = static_cast<std::size_t>(window.rows);
    std::vector<double> samples(columns * rows);
    for (std::size_t i = 0; i < beams_.size(); ++i) {
      const double unit = beams_[i].unitArcmin;
      const DirectionGrid grid{window.centreX / unit, window.centreY / unit, window.spacing / unit, window.columns,
                               window.rows};
      const NodeCounts counts = ChordQuadrature::CountsFor(beams_[i].pupil, grid);
      if (std::max(counts.chords, counts.nodes) > kMaxNodes) {
        return Refusal{Problem::kTooManyNodes, static_cast<double>(std::max(counts.chords, counts.nodes)), 0.0,
                       static_cast<double>(kMaxNodes), beams_[i].line};
      }
      quadrature_.Intensity(beams_[i].pupil, grid, counts,
                            {samples.data(), window.columns, false, false, factors_[i], true});
    }
    std::vector<Peak> hills;
    for (std::size_t r = 1; r + 1 < rows; ++r) {
      for (std::size_t c = 1; c + 1 < columns; ++c) {
        const double* const s = samples.data() + r * columns + c;
        const auto pitch = static_cast<std::ptrdiff_t>(columns);
        const double around =
            std::max({s[-1], s[1], s[-pitch], s[pitch], s[-pitch - 1], s[-pitch + 1], s[pitch - 1], s[pitch + 1]});
        if (*s < around) continue;
        hills.push_back({*s, window.centreX + (static_cast<double>(c) - (window.columns - 1) / 2.0) * window.spacing,
                         window.centreY + ((window.rows - 1) / 2.0 - static_cast<double>(r)) * window.spacing});
      }
    }
    std::stable_sort(hills.begin(), hills.end(), [](const Peak& a, const Peak& b) { return a.value > b.value; });
    return hills;
  }

 private:
  static constexpr int kMostSamples = 8192;  // in a row or column of the window

  IntensityJet At(double x, double y) {
    IntensityJet sum{};
    for (std::size_t i = 0; i < beams_.size(); ++i) {
      const double unit = beams_[i].unitArcmin, factor = factors_[i];
      const IntensityJet jet = IntensityOf(quadrature_.Field(beams_[i].pupil, x / unit, y / unit, counts_[i]));
      sum.value += factor * jet.value;
      sum.x += factor / unit * jet.x;
      sum.y += factor / unit * jet.y;
      sum.xx += factor / (unit * unit) * jet.xx;
      sum.xy += factor / (unit * unit) * jet.xy;
      sum.yy += factor / (unit * unit) * jet.yy;
    }
    return sum;
  }

  // A window that holds the slopes of all pupils.
  DirectionGrid Window() const {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    double lowX = infinity, highX = -infinity, lowY = infinity, highY = -infinity;
    for (const Beam& beam : beams_) {
      const SlopeRange range = SlopesOf(beam.pupil);
      const double unit = beam.unitArcmin;
      lowX = std::min(lowX, (range.lowX - kMargin) * unit);
      highX = std::max(highX, (range.highX + kMargin) * unit);
      lowY = std::min(lowY, (range.lowY - kMargin) * unit);
      highY = std::max(highY, (range.highY + kMargin) * unit);
    }
    const double spacing = kSpacing * unit_;
    const auto count = [spacing](double low, double high) {
      const double samples = (high - low) / spacing + 4.0;
      // Also of what is no number.
      return samples >= 1.0 && samples <= kMostSamples ? static_cast<int>(samples) : kMostSamples + 1;
    };
    return {(lowX + highX) / 2.0, (lowY + highY) / 2.0, spacing, count(lowX, highX), count(lowY, highY)};
  }

  std::span<const Beam> beams_;
  std::span<const double> factors_;
  ChordQuadrature& quadrature_;
  std::vector<NodeCounts> counts_;
  double unit_;  // the smallest of the beams'
};

}  // namespace

Outcome<Peak> HighestOf(std::span<const Beam> beams, std::span<const double> factors, ChordQuadrature& quadrature) {
  Search search(beams, factors, quadrature);
  const Outcome<std::vector<Peak>> hills = search.Hills();
  if (!hills) return hills.refusal();
  Peak best;
  for (const Peak& hill : *hills) {
    if (hill.value < kLeftAtSample * best.value) break;
    const Peak peak = search.Climb(hill.x, hill.y);
    if (peak.value > best.value) best = peak;
  }
  return best;
}

}  // namespace orvanel::physical
