// Sums the PSF along lines, and transforms the sums at any frequency.
#include "orvanel/line_spread.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/elementary.h"
#include "optics/mtf.h"

namespace orvanel {
namespace {

constexpr int kSide = 256;
constexpr int kCutOff = kSide / 2;  // the sample on which the cut-off falls

// Image of a line through a perfect pupil: the transform of the samples of its transfer function.
LineSpread PerfectLineSpread() {
  double limit[kCutOff];
  for (int k = 0; k < kCutOff; ++k) limit[k] = DiffractionLimitAt(static_cast<double>(k) / kCutOff);
  LineSpread lineSpread;
  for (int x = 0; x < kSide; ++x) {
    double sum = limit[0];
    for (int k = 1; k < kCutOff; ++k) {
      sum += 2.0 * limit[k] * SineAndCosineOfTurn(k * std::abs(x - kSide / 2) % kSide, kSide).cosine;
    }
    lineSpread[static_cast<std::size_t>(x)] = sum / kSide;
  }
  return lineSpread;
}

// In eight lanes, so that additions do not wait for each other.
double Sum(const double* samples) {
  constexpr std::size_t kLanes = 8;
  double lanes[kLanes] = {};
  for (std::size_t i = 0; i < kSide; i += kLanes) {
    for (std::size_t l = 0; l < kLanes; ++l) lanes[l] += samples[i + l];
  }
  return ((lanes[0] + lanes[4]) + (lanes[2] + lanes[6])) + ((lanes[1] + lanes[5]) + (lanes[3] + lanes[7]));
}

}  // namespace

LineSpreads LineSpreadsOf(const double* psf) {
  LineSpreads spreads{};
  for (std::size_t r = 0; r < kSide; ++r) {
    const double* const row = psf + r * kSide;
    for (std::size_t c = 0; c < kSide; ++c) spreads.horizontal[c] += row[c];
    spreads.vertical[r] = Sum(row);
  }
  return spreads;
}

double MtfBetweenSamples(const LineSpread& lineSpread, double sample) {
  if (!(sample >= 0.0 && sample < kCutOff)) return 0.0;
  static const LineSpread kPerfect = PerfectLineSpread();
  const double total = Sum(lineSpread.data());
  const auto difference = [&](int x) {
    const auto i = static_cast<std::size_t>(x);
    return lineSpread[i] / total - kPerfect[i];
  };

  // The sum over x of difference(x) exp(-i (x - 128) step), by pairs of samples on both sides of the centre.
  const SineCosine step = SineAndCosine(sample * (std::numbers::pi / kCutOff));
  constexpr int kCentre = kSide / 2;
  double re = difference(kCentre), im = 0.0, cosine = step.cosine, sine = step.sine;
  for (int x = 1; x < kCentre; ++x) {
    const double right = difference(kCentre + x), left = difference(kCentre - x);
    re += (right + left) * cosine;
    im += (left - right) * sine;
    const double next = cosine * step.cosine - sine * step.sine;
    sine = sine * step.cosine + cosine * step.sine;
    cosine = next;
  }
  re += difference(0) * cosine;  // one half at each end of the field
  re += DiffractionLimitAt(sample / kCutOff);
  return std::sqrt(re * re + im * im);
}

}  // namespace orvanel
