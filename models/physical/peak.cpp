// Searches the peak on a grid, and climbs to it by Newton's method.
#include "models/physical/peak.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "models/physical/pupil/pupil_lattice.h"

namespace orvanel::physical {
namespace {

// Of the samples of the search, in the smallest wavelength / diameter; more where that saves a larger transform. At the
// nearest sample, d = spacing / sqrt(2) away, (1 + cos 2 pi d)/2 of a peak is left at least: 0.50, or 0.35.
constexpr double kSpacing = 0.35, kWidestSpacing = 0.42;
constexpr double kLeftAtSample = 0.35;
constexpr double kMargin = 1.5;                       // around the slopes, for the pattern of a perfect pupil
constexpr int kMinSamples = 256, kMaxSamples = 4096;  // in a row of the search

// The parabola through nine samples predicts a peak to some 20 %. A hill that promises less than this share of the best
// peak is not climbed.
constexpr double kPromising = 0.75;
// The window holds all slopes of the beams that have this share of the brightest. Light of others, far out of focus,
// may fold into it, thinly spread; only the choice of hills sees that.
constexpr double kBright = 0.2;

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

// From a place to the peak of the parabola that has this slope and curvature there, if it has a peak.
struct Step {
  double x, y;
  bool toPeak;
};
Step StepFrom(const IntensityJet& at) {
  const double determinant = at.xx * at.yy - at.xy * at.xy;
  if (at.xx < 0.0 && determinant > 0.0) {
    return {(at.xy * at.y - at.yy * at.x) / determinant, (at.xy * at.x - at.xx * at.y) / determinant, true};
  }
  const double curvature = std::sqrt(at.xx * at.xx + 2.0 * at.xy * at.xy + at.yy * at.yy);
  if (curvature == 0.0) return {0.0, 0.0, false};
  return {at.x / curvature, at.y / curvature, false};
}
double Length(const Step& step) { return std::sqrt(step.x * step.x + step.y * step.y); }
Step Shortened(Step step, double longest) {
  const double length = Length(step);
  if (length <= longest) return step;
  return {step.x * longest / length, step.y * longest / length, false};
}
double Gain(const IntensityJet& at, const Step& step) { return 0.5 * (at.x * step.x + at.y * step.y); }

class Search {
 public:
  Search(std::span<const Beam> beams, std::span<const double> factors, Workspace& workspace)
      : beams_(beams), factors_(factors), workspace_(workspace), counts_(beams.size()) {
    unit_ = std::numeric_limits<double>::infinity();
    for (const Beam& beam : beams) unit_ = std::min(unit_, beam.unitArcmin);
  }

  // Uphill from a place, by Newton's steps where the light is curved like a hill.
  Peak Climb(double x, double y) {
    for (std::size_t i = 0; i < beams_.size(); ++i) {
      const double unit = beams_[i].unitArcmin;
      counts_[i] = ChordQuadrature::CountsFor(beams_[i].pupil, {x / unit, y / unit, 1.0, 2, 2});
    }
    IntensityJet here = At(x, y);
    constexpr int kSteps = 60;
    const double nearest = 1e-4 * unit_;  // from where the parabola is exact to 1e-11
    for (int i = 0; i < kSteps; ++i) {
      Step step = Shortened(StepFrom(here), kSpacing * unit_);
      if (Length(step) <= nearest) return {here.value + Gain(here, step), x + step.x, y + step.y};
      IntensityJet there = At(x + step.x, y + step.y);
      while (there.value < here.value && Length(step) > nearest) {
        step = {0.25 * step.x, 0.25 * step.y, false};
        there = At(x + step.x, y + step.y);
      }
      if (there.value < here.value) break;
      x += step.x;
      y += step.y;
      here = there;
    }
    return {here.value, x, y};
  }

  // Samples that are as high as all their neighbours, each moved to the peak of the parabola through them; the highest
  // first.
  Outcome<std::vector<Peak>> Hills() {
    if (!FindWindow()) {
      return Refusal{Problem::kTooSteep, 0.0, 0.0, kWidestSpacing * kMaxSamples, beams_.front().line};
    }
    SampleWindow();
    const std::vector<double> highest = HighestOfRows();
    const double least = kLeftAtSample * kPromising * *std::max_element(highest.begin(), highest.end());
    std::vector<Peak> hills;
    for (int r = 0; r < side_; ++r) {
      if (highest[static_cast<std::size_t>(r)] < least) continue;
      for (int c = 0; c < side_; ++c) {
        const double s = Sample(r, c);
        if (s < least) continue;
        const double up = Sample(r - 1, c), down = Sample(r + 1, c), left = Sample(r, c - 1), right = Sample(r, c + 1);
        if (s < std::max({up, down, left, right})) continue;
        const double leftUp = Sample(r - 1, c - 1), rightUp = Sample(r - 1, c + 1);
        const double leftDown = Sample(r + 1, c - 1), rightDown = Sample(r + 1, c + 1);
        if (s < std::max({leftUp, rightUp, leftDown, rightDown})) continue;
        // Per sample: columns to the left and rows upwards, as directions go.
        const IntensityJet jet = {s,
                                  (left - right) / 2.0,
                                  (down - up) / 2.0,
                                  left - 2.0 * s + right,
                                  (leftDown - rightDown - leftUp + rightUp) / 4.0,
                                  up - 2.0 * s + down};
        const Step step = Shortened(StepFrom(jet), 0.7);
        const double x = centreX_ + (Folded(-c) + step.x) * spacing_, y = centreY_ + (Folded(r) + step.y) * spacing_;
        hills.push_back({s + std::max(0.0, Gain(jet, step)), x, y});
      }
    }
    std::stable_sort(hills.begin(), hills.end(), [](const Peak& a, const Peak& b) { return a.value > b.value; });
    return hills;
  }

 private:
  IntensityJet At(double x, double y) {
    IntensityJet sum{};
    for (std::size_t i = 0; i < beams_.size(); ++i) {
      const double unit = beams_[i].unitArcmin, factor = factors_[i];
      const IntensityJet jet =
          IntensityOf(workspace_.quadrature.Field(beams_[i].pupil, x / unit, y / unit, counts_[i]));
      sum.value += factor * jet.value;
      sum.x += factor / unit * jet.x;
      sum.y += factor / unit * jet.y;
      sum.xx += factor / (unit * unit) * jet.xx;
      sum.xy += factor / (unit * unit) * jet.xy;
      sum.yy += factor / (unit * unit) * jet.yy;
    }
    return sum;
  }

  // A window that holds the slopes of all pupils. False where there is none.
  bool FindWindow() {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    double lowX = infinity, highX = -infinity, lowY = infinity, highY = -infinity;
    const double bright = kBright * *std::max_element(factors_.begin(), factors_.end());
    for (std::size_t i = 0; i < beams_.size(); ++i) {
      if (factors_[i] < bright) continue;
      const SlopeRange range = SlopesOf(beams_[i].pupil);
      const double unit = beams_[i].unitArcmin;
      lowX = std::min(lowX, (range.lowX - kMargin) * unit);
      highX = std::max(highX, (range.highX + kMargin) * unit);
      lowY = std::min(lowY, (range.lowY - kMargin) * unit);
      highY = std::max(highY, (range.highY + kMargin) * unit);
    }
    const double width = std::max(highX - lowX, highY - lowY);
    const double least = kSpacing * unit_, most = kWidestSpacing * unit_;
    if (!(width > 0.0 && width <= kMaxSamples * most)) return false;
    centreX_ = (lowX + highX) / 2.0;
    centreY_ = (lowY + highY) / 2.0;
    side_ = PlaneTransform::SideFor(std::max(kMinSamples, static_cast<int>(std::ceil(width / most))));
    spacing_ = std::max(least, width / side_);
    return true;
  }

  // The transform of the pupils' samples, which are as far apart as makes the same grid of directions of all. Index k
  // is the direction -k spacing along x and k spacing along y from the centre; the upper half of the indices is
  // negative.
  void SampleWindow() {
    const PlaneTransform& transform = workspace_.transforms.Of(side_);
    workspace_.sum.Reserve(static_cast<std::size_t>(side_) * static_cast<std::size_t>(side_));
    for (std::size_t i = 0; i < beams_.size(); ++i) {
      const Pupil& pupil = beams_[i].pupil;
      const double unit = beams_[i].unitArcmin, across = side_ * spacing_ / unit;
      const PupilLattice lattice{static_cast<int>(std::ceil(across)) + 2 * kMaskReach, 2.0 / across};
      const SampledOutline& outline = workspace_.outlines.Of(pupil.outline, lattice, 1);
      const std::size_t samples = static_cast<std::size_t>(lattice.side) * static_cast<std::size_t>(outline.pitch());
      workspace_.re.Reserve(samples);
      workspace_.im.Reserve(samples);
      double *const re = workspace_.re.data(), *const im = workspace_.im.data();
      outline.FieldOf(pupil, {}, centreX_ / unit, centreY_ / unit, workspace_.chords, re, im);
      const double cells =
          std::numbers::pi * pupil.outline.semiAxisA * pupil.outline.semiAxisB / (lattice.step * lattice.step);
      transform.PowerSpectrum({re, im, outline.pitch(), lattice.side, outline.pitch()}, factors_[i] / (cells * cells),
                              i > 0, workspace_.sum.data(), workspace_.transforms.memory);
    }
  }

  std::vector<double> HighestOfRows() const {
    std::vector<double> highest(static_cast<std::size_t>(side_));
    const double* row = workspace_.sum.data();
    for (double& most : highest) {
      for (int c = 0; c < side_; ++c) most = most < row[c] ? row[c] : most;
      row += side_;
    }
    return highest;
  }

  int Wrapped(int k) const { return k < 0 ? k + side_ : k < side_ ? k : k - side_; }
  int Folded(int k) const { return Wrapped(k) < side_ / 2 ? Wrapped(k) : Wrapped(k) - side_; }
  double Sample(int row, int column) const {
    return workspace_.sum.data()[static_cast<std::size_t>(Wrapped(row)) * static_cast<std::size_t>(side_) +
                                 static_cast<std::size_t>(Wrapped(column))];
  }

  std::span<const Beam> beams_;
  std::span<const double> factors_;
  Workspace& workspace_;
  std::vector<NodeCounts> counts_;
  double unit_;  // the smallest of the beams'
  double centreX_ = 0.0, centreY_ = 0.0;
  int side_ = 0;
  double spacing_ = 0.0;
};

}  // namespace

Outcome<Peak> HighestOf(std::span<const Beam> beams, std::span<const double> factors, Workspace& workspace) {
  Search search(beams, factors, workspace);
  const Outcome<std::vector<Peak>> hills = search.Hills();
  if (!hills) return hills.refusal();
  Peak best;
  for (const Peak& hill : *hills) {
    if (hill.value < kPromising * best.value) break;
    const Peak peak = search.Climb(hill.x, hill.y);
    if (peak.value > best.value) best = peak;
  }
  return best;
}

}  // namespace orvanel::physical
