// Computes the general transform: radix 4, decimation in time, on bundles of lines.
#include <bit>
#include <cstdio>
#include <utility>
#include <vector>

#include "base/elementary.h"
#include "optics/lines.h"
#include "optics/samples.h"
#include "orvanel/transforms.h"

namespace orvanel {
namespace {

// What a transform of lines of one length needs: its factors exp(2 pi i k / length) and its order of elements.
struct LineTransform {
  explicit LineTransform(int n);

  std::size_t length;
  std::vector<double> cosine;
  std::vector<double> sine;
  std::vector<std::size_t> order;  // bit reversal
};

LineTransform::LineTransform(int n) : length(static_cast<std::size_t>(n)) {
  const int bits = std::countr_zero(length);
  for (int k = 0; k < n; ++k) {
    const SineCosine factor = SineAndCosineOfTurn(k, n);
    cosine.push_back(factor.cosine);
    sine.push_back(factor.sine);
    order.push_back(BitReversed(static_cast<std::size_t>(k), bits));
  }
}

struct Complex {
  double re;
  double im;
};

Complex Times(Complex a, double c, double s) { return {a.re * c - a.im * s, a.re * s + a.im * c}; }

// First pass of a length that is an odd power of two: pairs of neighbours.
void Radix2Pass(LineBundle& x, std::size_t length) {
  for (std::size_t j = 0; j < length * kLanes; j += 2 * kLanes) {
    for (std::size_t l = j; l < j + kLanes; ++l) {
      const Complex a = {x.re[l], x.im[l]};
      const Complex b = {x.re[l + kLanes], x.im[l + kLanes]};
      x.re[l] = a.re + b.re;
      x.im[l] = a.im + b.im;
      x.re[l + kLanes] = a.re - b.re;
      x.im[l + kLanes] = a.im - b.im;
    }
  }
}

// Joins four transforms of `span` elements each into one of 4 * span; two radix-2 passes in one.
void Radix4Pass(LineBundle& x, const LineTransform& transform, std::size_t span) {
  double* const re = x.re.data();
  double* const im = x.im.data();
  const std::size_t stride = transform.length / (4 * span);
  const std::size_t step = span * kLanes;
  for (std::size_t group = 0; group < transform.length; group += 4 * span) {
    for (std::size_t k = 0; k < span; ++k) {
      const double c1 = transform.cosine[k * stride], s1 = transform.sine[k * stride];
      const double c2 = transform.cosine[2 * k * stride], s2 = transform.sine[2 * k * stride];
      const double c3 = transform.cosine[3 * k * stride], s3 = transform.sine[3 * k * stride];
      const std::size_t first = (group + k) * kLanes;
      for (std::size_t l = first; l < first + kLanes; ++l) {
        const Complex a = {re[l], im[l]};
        const Complex b = Times({re[l + step], im[l + step]}, c2, s2);
        const Complex c = Times({re[l + 2 * step], im[l + 2 * step]}, c1, s1);
        const Complex d = Times({re[l + 3 * step], im[l + 3 * step]}, c3, s3);
        const Complex sum = {a.re + b.re, a.im + b.im};
        const Complex difference = {a.re - b.re, a.im - b.im};
        const Complex otherSum = {c.re + d.re, c.im + d.im};
        const Complex turned = {d.im - c.im, c.re - d.re};  // i (c - d)
        re[l] = sum.re + otherSum.re;
        im[l] = sum.im + otherSum.im;
        re[l + step] = difference.re + turned.re;
        im[l + step] = difference.im + turned.im;
        re[l + 2 * step] = sum.re - otherSum.re;
        im[l + 2 * step] = sum.im - otherSum.im;
        re[l + 3 * step] = difference.re - turned.re;
        im[l + 3 * step] = difference.im - turned.im;
      }
    }
  }
}

// X[p] = scale * sum over j of x[j] * exp(2 pi i j p / length) on `count` lines; in bit-reversed order if so asked.
void TransformAxis(double* re, double* im, int count, int length, LineLayout at, double scale, bool reversed) {
  const LineTransform transform(length);
  const auto source = [&](std::size_t j) { return transform.order[j]; };
  const auto target = [&](std::size_t j) { return reversed ? transform.order[j] : j; };
  const auto passes = [&](LineBundle& x) {
    std::size_t span = 1;
    if (std::countr_zero(transform.length) % 2 == 1) {
      Radix2Pass(x, transform.length);
      span = 2;
    }
    for (; span < transform.length; span *= 4) Radix4Pass(x, transform, span);
  };
  TransformLines(re, im, count, length, at, source, passes, scale, target);
}

// The number of the first bad argument of Zfft2dc; 0 if all are good.
int BadArgument(const double* re, const double* im, int m, int n, int sign) {
  const auto isLength = [](int length) { return length >= 1 && std::has_single_bit(static_cast<unsigned>(length)); };
  if (re == nullptr) return 1;
  if (im == nullptr) return 2;
  if (!isLength(m)) return 3;
  if (!isLength(n)) return 4;
  if (sign < -2 || sign > 2) return 5;
  return 0;
}

}  // namespace

void Zfft2dc(double* re, double* im, int m, int n, int sign) {
  if (const int bad = BadArgument(re, im, m, n, sign); bad != 0) {
    // contract: the message.
    std::fprintf(stderr, "MKL ERROR : Parameter %d of ZFFT2DC\n", bad);
    return;
  }
  if (sign == 0) return;
  // Exchanging real and imaginary parts before and after turns the sign of the exponent.
  if (sign < 0) std::swap(re, im);
  const bool reversed = sign == 2 || sign == -2;
  TransformAxis(re, im, m, n, RowsOf(n), sign > 0 ? 1.0 / n : 1.0, reversed);
  TransformAxis(re, im, n, m, ColumnsOf(n), sign > 0 ? 1.0 / m : 1.0, reversed);
}

bool Fft2(double* re, double* im, int n, int direction) {
  if (direction == 0) Zfft2dc(re, im, n, n, 1);
  if (direction == 1) Zfft2dc(re, im, n, n, -1);
  return true;
}

void ShiftedPowerSpectrum(double* out, const double* re, const double* im, int n) {
  const int half = n / 2;
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      const std::size_t from = SampleIndex(r, c, n);
      out[SampleIndex(r < half ? r + half : r - half, c < half ? c + half : c - half, n)] =
          im[from] * im[from] + re[from] * re[from];
    }
  }
}

}  // namespace orvanel
