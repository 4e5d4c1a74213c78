// Sums the Zernike terms, a quadrant at a time.
//
// Compute-bound. On this grid X and Y are multiples of 1/64, and every term is exact in double precision for any order
// of its evaluation. Only W = f * c + W rounds, and one f serves the four points (+-X, +-Y).
#ifndef ORVANEL_OPTICS_KERNELS_WAVEFRONT_H
#define ORVANEL_OPTICS_KERNELS_WAVEFRONT_H

#include "optics/kernels/vectors.h"
#include "orvanel/constants.h"

namespace orvanel::ORVANEL_VARIANT {
namespace {

constexpr int kRadius = 64;

// W at (X, Y), (-X, Y), (X, -Y) and (-X, -Y).
struct Quadrants {
  V w[4] = {};

  // Adds f * c, the term of azimuthal frequency m; f = R cos(m t) for m >= 0, else R sin(|m| t).
  template <int m>
  ORVANEL_INLINE void Add(Quadrants& q, V f, double c) {
    const V p = f * c;
    constexpr bool oddInY = m < 0;
    constexpr bool oddInX = m >= 0 ? m % 2 != 0 : m % 2 == 0;
    q.w[0] = q.w[0] + p;
    q.w[1] = oddInX ? q.w[1] - p : q.w[1] + p;
    q.w[2] = oddInY ? q.w[2] - p : q.w[2] + p;
    q.w[3] = oddInX != oddInY ? q.w[3] - p : q.w[3] + p;
  }
};

ORVANEL_INLINE Quadrants WavefrontAt(V x, double y, const double* c, int firstOrder) {
  // cos(m t) and sin(m t) times rho^m, and rho^2.
  const V y1 = Splat(y);
  const V t = x * x + y1 * y1;
  const V c2 = x * x - y1 * y1;
  const V s2 = x * y1 + x * y1;
  const V c3 = x * c2 - y1 * s2;
  const V s3 = x * s2 + y1 * c2;
  const V c4 = x * c3 - y1 * s3;
  const V s4 = x * s3 + y1 * c3;
  const V c5 = x * c4 - y1 * s4;
  const V s5 = x * s4 + y1 * c4;
  const V c6 = x * c5 - y1 * s5;
  const V s6 = x * s5 + y1 * c5;

  Quadrants q;
  if (firstOrder <= 2) {
    Quadrants::Add<-2>(q, s2, c[3]);
    Quadrants::Add<0>(q, t + t - 1.0, c[4]);
    Quadrants::Add<2>(q, c2, c[5]);
  }
  const V r31 = 3.0 * t - 2.0;
  Quadrants::Add<-3>(q, s3, c[6]);
  Quadrants::Add<-1>(q, r31 * y1, c[7]);
  Quadrants::Add<1>(q, r31 * x, c[8]);
  Quadrants::Add<3>(q, c3, c[9]);

  const V r42 = 4.0 * t - 3.0;
  Quadrants::Add<-4>(q, s4, c[10]);
  Quadrants::Add<-2>(q, r42 * s2, c[11]);
  Quadrants::Add<0>(q, (6.0 * t - 6.0) * t + 1.0, c[12]);
  Quadrants::Add<2>(q, r42 * c2, c[13]);
  Quadrants::Add<4>(q, c4, c[14]);

  const V r51 = (10.0 * t - 12.0) * t + 3.0;
  const V r53 = 5.0 * t - 4.0;
  Quadrants::Add<-5>(q, s5, c[15]);
  Quadrants::Add<-3>(q, r53 * s3, c[16]);
  Quadrants::Add<-1>(q, r51 * y1, c[17]);
  Quadrants::Add<1>(q, r51 * x, c[18]);
  Quadrants::Add<3>(q, r53 * c3, c[19]);
  Quadrants::Add<5>(q, c5, c[20]);

  const V r62 = (15.0 * t - 20.0) * t + 6.0;
  const V r64 = 6.0 * t - 5.0;
  Quadrants::Add<-6>(q, s6, c[21]);
  Quadrants::Add<-4>(q, r64 * s4, c[22]);
  Quadrants::Add<-2>(q, r62 * s2, c[23]);
  Quadrants::Add<0>(q, ((20.0 * t - 30.0) * t + 12.0) * t - 1.0, c[24]);
  Quadrants::Add<2>(q, r62 * c2, c[25]);
  Quadrants::Add<4>(q, r64 * c4, c[26]);
  Quadrants::Add<6>(q, c6, c[27]);
  return q;
}

void Synthesize(const double* coefficients, int firstOrder, double* wavefront) {
  constexpr int n = 256;
  constexpr int centre = n / 2;
  constexpr double spacing = 1.0 / kRadius;
  for (int dy = 0; dy <= centre; ++dy) {
    const int down = n * (centre + dy);  // rows below and above the centre; the last above has none below
    const int up = n * (centre - dy);
    const bool both = dy < centre;
    int dx = 0;
    const double y = dy * spacing;
    for (; dx * dx + dy * dy <= kRadius * kRadius; dx += kWidth) {
      const V offset = Ramp(dx);
      const Mask inside = offset * offset <= Splat(kRadius * kRadius - dy * dy);
      const V x = offset * spacing;
      const Quadrants q = WavefrontAt(x, y, coefficients, firstOrder);
      const V outside = Splat(kWavefrontOutside);
      const int right = centre + dx;
      const int left = centre - dx - kWidth + 1;  // of the mirrored vector's first lane
      Store(wavefront + down + right, Select(inside, q.w[0], outside));
      Store(wavefront + down + left, Reverse(Select(inside, q.w[1], outside)));
      Store(wavefront + up + right, Select(inside, q.w[2], outside));
      Store(wavefront + up + left, Reverse(Select(inside, q.w[3], outside)));
    }
    // Columns 128 - dx + 1 to 128 + dx - 1 are written; the others lie outside.
    for (int c = dx; c < centre; c += kWidth) {
      if (both) Store(wavefront + down + centre + c, Splat(kWavefrontOutside));
      Store(wavefront + up + centre + c, Splat(kWavefrontOutside));
    }
    for (int c = dx == 0 ? 0 : dx; c <= centre; c += kWidth) {
      const int left = centre - c - kWidth + 1;
      if (both) Store(wavefront + down + (left < 0 ? 0 : left), Splat(kWavefrontOutside));
      Store(wavefront + up + (left < 0 ? 0 : left), Splat(kWavefrontOutside));
    }
  }
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_OPTICS_KERNELS_WAVEFRONT_H
