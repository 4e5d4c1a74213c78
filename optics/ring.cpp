// Draws the broken ring (Landolt ring) without anti-aliasing.
#include "optics/ring.h"

#include <algorithm>
#include <cmath>

namespace orvanel {
namespace {

constexpr double kHalfMinuteOfArc = 0.000145444;  // contract: radians, to six digits
constexpr double kRing = 0.0;
constexpr double kBackground = 1.0;

// Samples across a ring on the retina, where quotient is strokes over acuity.
double RawSize(const RingScale& scale, double quotient) {
  return quotient * scale.gridSize / scale.psfHalfWidth * scale.focalLength * kHalfMinuteOfArc;
}

// contract: the rule of size has five strokes on the full grid, three on others.
double Numerator(int n) { return n == 256 ? 5.0 : 3.0; }

// Even rings are centred between four samples, odd ones on a sample.
bool IsEven(int diameter) { return diameter % 2 == 0; }

}  // namespace

RingCircles CirclesOf(int diameter, int n) {
  const double outer = 0.5 * diameter;
  const double inner = outer - 0.2 * diameter;
  return {IsEven(diameter) ? n / 2 + 0.5 : n / 2, inner * inner, outer * outer};
}

void OpenGap(PlaneView plane, int diameter, int gapDirection) {
  if (gapDirection < 1 || gapDirection > 4) return;
  const int n = plane.side;
  const GapRange across = GapAcross(diameter, n);
  const int onward = IsEven(diameter) ? n / 2 + 1 : n / 2;
  const GapRange along = gapDirection == 1 || gapDirection == 3 ? GapRange{onward, n - 1} : GapRange{0, n / 2};
  const bool vertical = gapDirection == 1 || gapDirection == 2;
  const GapRange rows = vertical ? along : across;
  const GapRange columns = vertical ? across : along;
  for (int y = std::max(rows.first, 0); y <= std::min(rows.last, n - 1); ++y) {
    for (int x = std::max(columns.first, 0); x <= std::min(columns.last, n - 1); ++x) {
      Store(plane.samples, SampleIndex(y, x, n), kBackground);
    }
  }
}

int RingDiameter(const RingScale& scale, double acuity) {
  // Beyond these the diameter would leave the range of int.
  constexpr double kSmallest = -2147483647.0;
  constexpr double kLargest = 2147483646.0;
  const double raw = RawSize(scale, -Numerator(scale.n) / acuity);
  const int truncated = std::isnan(raw) ? 0 : static_cast<int>(std::clamp(raw, kSmallest, kLargest));
  int diameter = -2 - truncated;
  while (diameter % 5 != 0) ++diameter;
  return diameter;
}

double EffectiveAcuity(const RingScale& scale, int diameter) { return RawSize(scale, Numerator(scale.n) / diameter); }

GapRange GapAcross(int diameter, int n) {
  const int halfWidth = diameter / 10;
  return {n / 2 - halfWidth + (IsEven(diameter) ? 1 : 0), n / 2 + halfWidth};
}

void DrawRing(double* plane, int n, int diameter, int gapDirection) {
  const auto [centre, innerSquared, outerSquared] = CirclesOf(diameter, n);
  for (int y = 0; y < n; ++y) {
    for (int x = 0; x < n; ++x) {
      const double d2 = (x - centre) * (x - centre) + (y - centre) * (y - centre);
      Store(plane, SampleIndex(y, x, n), d2 <= outerSquared && d2 >= innerSquared ? kRing : kBackground);
    }
  }
  OpenGap({plane, n}, diameter, gapDirection);
}

}  // namespace orvanel
