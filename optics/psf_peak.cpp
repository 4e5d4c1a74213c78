// Climbs the lobes of a PSF by local interpolation, and measures them by interpolation over the whole plane.
#include "optics/psf_peak.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "base/elementary.h"
#include "optics/samples.h"

namespace orvanel {
namespace {

constexpr int kSide = 256;

// Lobes below this share of the brightest sample are not climbed: a perfect pupil's peak in the middle of four samples
// shows 0.728 of itself.
constexpr double kWorthClimbing = 0.7;

// Those whose local interpolation comes within this share of the best are measured; it is off by some per cent.
constexpr double kWorthMeasuring = 0.95;

// Taps of the local interpolation to either side. The window suppresses the samples beyond.
constexpr int kReach = 9;
constexpr int kTaps = 2 * kReach + 1;

struct Place {
  double row, column;  // of the plane
  double value;
};

int Wrapped(int index) { return index & (kSide - 1); }

// A sample of the periodic plane.
double Sample(const PeriodicPlane& plane, int row, int column) {
  return plane.samples[SampleIndex(Wrapped(row), Wrapped(column), plane.pitch)];
}

const double* Row(const PeriodicPlane& plane, int row) { return plane.samples + SampleIndex(row, 0, plane.pitch); }

// ---- Local interpolation

// Weights of the taps at -kReach .. kReach for the place `at` between them: sin(pi t) / (pi t) under a window.
std::array<double, kTaps> LocalWeights(double at) {
  const double sine = SineAndCosine(at * std::numbers::pi).sine;
  std::array<double, kTaps> weights;
  for (int k = -kReach; k <= kReach; ++k) {
    const double t = at - k, u = t * (1.0 / (kReach + 1));
    const double w = 1.0 - u * u;
    const double window = (w * w) * (w * w);
    const double sinc = t == 0.0 ? 1.0 : (k % 2 == 0 ? sine : -sine) / (std::numbers::pi * t);
    weights[static_cast<std::size_t>(k + kReach)] = sinc * window;
  }
  return weights;
}

// The samples around one, and the function that interpolates them.
class Neighbourhood {
 public:
  Neighbourhood(const PeriodicPlane& plane, int row, int column) {
    for (int r = 0; r < kTaps; ++r) {
      for (int c = 0; c < kTaps; ++c) samples_[r][c] = Sample(plane, row + r - kReach, column + c - kReach);
    }
  }

  // At three by three places `spacing` apart around (row, column), in samples from the one in the middle.
  std::array<std::array<double, 3>, 3> At(double row, double column, double spacing) const {
    std::array<std::array<double, 3>, 3> values{};
    std::array<double, kTaps> down[3], across[3];
    for (int i = 0; i < 3; ++i) {
      down[i] = LocalWeights(row + (i - 1) * spacing);
      across[i] = LocalWeights(column + (i - 1) * spacing);
    }
    for (std::size_t i = 0; i < 3; ++i) {
      double sums[kTaps] = {};
      for (std::size_t r = 0; r < kTaps; ++r) {
        for (std::size_t c = 0; c < kTaps; ++c) sums[c] += down[i][r] * samples_[r][c];
      }
      for (std::size_t j = 0; j < 3; ++j) {
        for (std::size_t c = 0; c < kTaps; ++c) values[i][j] += across[j][c] * sums[c];
      }
    }
    return values;
  }

 private:
  double samples_[kTaps][kTaps];
};

// The maximum of the lobe around a sample that no neighbour exceeds: Newton's steps, with derivatives from differences.
Place Climb(const PeriodicPlane& plane, int row, int column) {
  const Neighbourhood around(plane, row, column);
  Place top{0.0, 0.0, 0.0};
  for (const double spacing : {0.5, 0.25, 0.125, 0.0625}) {
    const auto f = around.At(top.row, top.column, spacing);
    const double down = (f[2][1] - f[0][1]) / 2.0, right = (f[1][2] - f[1][0]) / 2.0;
    const double downs = f[2][1] - 2.0 * f[1][1] + f[0][1], rights = f[1][2] - 2.0 * f[1][1] + f[1][0];
    const double cross = (f[2][2] - f[2][0] - f[0][2] + f[0][0]) / 4.0;
    const double determinant = downs * rights - cross * cross;
    top.value = f[1][1];
    if (!(downs < 0.0 && determinant > 0.0)) continue;  // no maximum here: use a smaller spacing
    const auto step = [](double change) { return std::clamp(change, -1.0, 1.0); };
    const double dr = step((cross * right - rights * down) / determinant);
    const double dc = step((cross * down - downs * right) / determinant);
    top.row = std::clamp(top.row + spacing * dr, -1.0, 1.0);
    top.column = std::clamp(top.column + spacing * dc, -1.0, 1.0);
    top.value = f[1][1] + (down * dr + right * dc) / 2.0;
  }
  return {row + top.row, column + top.column, top.value};
}

// ---- Interpolation over the whole plane

using Line = std::array<double, kSide>;

// Weights of the samples 0 to 255 for the place `at`: the band-limited function of period 256 that is 1
// at one sample and 0 at the others, sin(pi t) / (256 tan(pi t / 256)).
Line Weights(double at) {
  static const std::array<SineCosine, kSide> kTurns = [] {
    std::array<SineCosine, kSide> turns;
    for (int k = 0; k < kSide; ++k) turns[static_cast<std::size_t>(k)] = SineAndCosineOfTurn(k, 2 * kSide);
    return turns;
  }();
  const int nearest = static_cast<int>(std::floor(at + 0.5));
  const double beyond = at - nearest;
  const double sine = SineAndCosine(beyond * std::numbers::pi).sine / kSide;
  const SineCosine turn = SineAndCosine(beyond * (std::numbers::pi / kSide));
  Line weights;
  // By the distance k from the nearest sample, for which pi (beyond - k) / 256 is the difference of two known angles.
  for (int k = 0; k < kSide; ++k) {
    const SineCosine& back = kTurns[static_cast<std::size_t>(k)];
    const double s = turn.sine * back.cosine - turn.cosine * back.sine;
    const double c = turn.cosine * back.cosine + turn.sine * back.sine;
    const double weight = s == 0.0 ? 1.0 : (k % 2 == 0 ? sine : -sine) * (c / s);
    weights[static_cast<std::size_t>(Wrapped(nearest + k))] = weight;
  }
  return weights;
}

double ValueAt(const PeriodicPlane& plane, double row, double column) {
  const Line down = Weights(row), across = Weights(column);
  Line sums{};
  for (int r = 0; r < kSide; r += 4) {
    const double* const weights = down.data() + r;
    const double *const r0 = Row(plane, r), *const r1 = Row(plane, r + 1);
    const double *const r2 = Row(plane, r + 2), *const r3 = Row(plane, r + 3);
    for (std::size_t c = 0; c < kSide; ++c) {
      sums[c] += (weights[0] * r0[c] + weights[1] * r1[c]) + (weights[2] * r2[c] + weights[3] * r3[c]);
    }
  }
  double value = 0.0;
  for (std::size_t c = 0; c < kSide; ++c) value += across[c] * sums[c];
  return value;
}

// ---- Lobes

// Whether no sample beside this one is brighter; of equal ones the first counts.
bool IsTop(const PeriodicPlane& plane, int row, int column) {
  const double value = Sample(plane, row, column);
  for (int r = -1; r <= 1; ++r) {
    for (int c = -1; c <= 1; ++c) {
      const double beside = Sample(plane, row + r, column + c);
      const bool before = r < 0 || (r == 0 && c < 0);
      if (beside > value || (before && beside == value)) return false;
    }
  }
  return true;
}

// The largest of a row, in eight lanes, so that comparisons do not wait for each other.
double Largest(const double* row) {
  constexpr int kLanes = 8;
  double lanes[kLanes] = {};
  for (int c = 0; c < kSide; c += kLanes) {
    for (int l = 0; l < kLanes; ++l) lanes[l] = row[c + l] > lanes[l] ? row[c + l] : lanes[l];
  }
  return *std::max_element(lanes, lanes + kLanes);
}

// From a sample to a place, the shorter way round.
double FromSample(double place, int sample) {
  const double distance = place - sample;
  return distance >= kSide / 2 ? distance - kSide : distance < -kSide / 2 ? distance + kSide : distance;
}

}  // namespace

PsfPeak PeakOf(const PeriodicPlane& plane) {
  const double brightest = Sample(plane, plane.row, plane.column);
  if (!(brightest > 0.0)) return {1.0, 0.0, 0.0};
  const double threshold = kWorthClimbing * brightest;
  std::vector<Place> lobes;
  for (int r = 0; r < kSide; ++r) {
    const double* const row = Row(plane, r);
    if (Largest(row) < threshold) continue;
    for (int c = 0; c < kSide; ++c) {
      if (row[c] >= threshold && IsTop(plane, r, c)) lobes.push_back(Climb(plane, r, c));
    }
  }

  double highest = 0.0;
  for (const Place& lobe : lobes) highest = std::max(highest, lobe.value);
  PsfPeak peak{1.0, 0.0, 0.0};
  for (const Place& lobe : lobes) {
    if (lobe.value < kWorthMeasuring * highest) continue;
    const double value = ValueAt(plane, lobe.row, lobe.column) / brightest;
    if (value <= peak.value) continue;
    peak = {value, FromSample(lobe.row, plane.row), FromSample(lobe.column, plane.column)};
  }
  return peak;
}

PsfPeak PeakBetweenSamples(const double* psf) { return PeakOf({psf, kSide, kSide / 2, kSide / 2}); }

}  // namespace orvanel
