// Computes the steps of the engine, one sample after the other.
#include "tests/support/plain.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "base/elementary.h"
#include "orvanel/zernike.h"
#include "tests/support/planes.h"

namespace orvanel::plain {

using reference::Area;
using reference::At;

// ---- Wavefront

void SynthesizeWavefront(const double* coefficients, double diameter, int firstOrder, int n, Plane& w, Plane& x,
                         Plane& y) {
  const int pupilSamples = n / 2 + 1, radius = pupilSamples / 2;
  const double spacing = 2.0 / (pupilSamples - 1);
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      const std::size_t i = At(r, c, n);
      const int dx = c - n / 2, dy = r - n / 2;
      if (dx * dx + dy * dy > radius * radius) {
        w[i] = 1000.0;
        continue;
      }
      const double X = dx * spacing, Y = dy * spacing;
      const Powers powersOfX = PowersOf(X), powersOfY = PowersOf(Y);
      double sum = 0.0;
      for (int order = firstOrder; order <= 6; ++order) {
        for (int k = 0; k <= order; ++k) {
          const double f =
              ZernikeTermTable[static_cast<std::size_t>(order)][static_cast<std::size_t>(k)](powersOfX, powersOfY);
          sum = f * coefficients[order * (order + 1) / 2 + k] + sum;
        }
      }
      w[i] = sum;
      x[i] = X * diameter;
      y[i] = Y * diameter;
    }
  }
}

// ---- Transforms

namespace {

int Reversed(int j, int bits) {
  int result = 0;
  for (int bit = 0; bit < bits; ++bit) {
    if ((j >> bit & 1) != 0) result |= 1 << (bits - 1 - bit);
  }
  return result;
}

void BitReverse(double* line, int n, int log2n) {
  const Plane copy(line, line + n);
  for (int j = 0; j < n; ++j) line[j] = copy[static_cast<std::size_t>(Reversed(j, log2n))];
}

void Scale(double* line, int n, double factor) {
  for (int j = 0; j < n; ++j) line[j] = line[j] * factor;
}

void Transpose(Plane& plane, int n) {
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < r; ++c) std::swap(plane[At(r, c, n)], plane[At(c, r, n)]);
  }
}

// Rows, then columns.
template <class TransformRow>
void TransformPlane(ComplexPlane& x, int n, TransformRow transformRow) {
  for (int pass = 0; pass < 2; ++pass) {
    for (int r = 0; r < n; ++r) transformRow(&x.re[At(r, 0, n)], &x.im[At(r, 0, n)]);
    Transpose(x.re, n);
    Transpose(x.im, n);
  }
}

struct Factors {
  Plane cosine, sine;
};

void Fft(double* re, double* im, int n, int sign, const Factors& factors) {
  int log2n = 0;
  while (1 << log2n < n) ++log2n;
  BitReverse(re, n, log2n);
  BitReverse(im, n, log2n);
  for (int half = 1; half < n; half *= 2) {
    for (int group = 0; group < n; group += 2 * half) {
      for (int k = 0; k < half; ++k) {
        const auto turn = static_cast<std::size_t>(k * (n / (2 * half)));
        const double c = factors.cosine[turn], s = sign * factors.sine[turn];
        const int a = group + k, b = a + half;
        const double turnedRe = re[b] * c - im[b] * s, turnedIm = re[b] * s + im[b] * c;
        re[b] = re[a] - turnedRe;
        im[b] = im[a] - turnedIm;
        re[a] = re[a] + turnedRe;
        im[a] = im[a] + turnedIm;
      }
    }
  }
}

void NegateOdd(double* line, int n) {
  for (int j = 1; j < n; j += 2) line[j] = -line[j];
}

void CentredStage(double* re, double* im, int n, int stage, const Factors& factors) {
  const int groups = 1 << stage, span = n / groups, half = span / 2;
  for (int g = 0; g < groups; ++g) {
    for (int k = 0; k < half; ++k) {
      const double c = factors.cosine[static_cast<std::size_t>(k * groups)];
      const double s = factors.sine[static_cast<std::size_t>(k * groups)];
      const int a = g * span + k, b = a + half;
      const double dRe = re[a] - re[b], dIm = im[a] - im[b];
      re[a] = re[a] + re[b];
      im[a] = im[a] + im[b];
      re[b] = dRe * c - dIm * s;
      im[b] = dRe * s + dIm * c;
    }
  }
}

}  // namespace

void Fft2(ComplexPlane& x, int n, int direction) {
  Factors factors;
  for (int k = 0; k < n; ++k) {
    const SineCosine factor = SineAndCosineOfTurn(k, n);
    factors.cosine.push_back(factor.cosine);
    factors.sine.push_back(factor.sine);
  }
  TransformPlane(x, n, [&](double* re, double* im) {
    Fft(re, im, n, direction == 0 ? 1 : -1, factors);
    if (direction != 0) return;
    Scale(re, n, 1.0 / n);
    Scale(im, n, 1.0 / n);
  });
}

void CentredFft2(ComplexPlane& x, int direction, int n, int log2n) {
  const double theta = (direction >= 0 ? -6.283185307179586 : 6.283185307179586) / n;
  Factors factors;
  for (int k = 0; k < n; ++k) {
    const SineCosine factor = SineAndCosine(k * theta);
    factors.cosine.push_back(factor.cosine);
    factors.sine.push_back(factor.sine);
  }
  TransformPlane(x, n, [&](double* re, double* im) {
    NegateOdd(re, n);
    NegateOdd(im, n);
    for (int stage = 0; stage < log2n; ++stage) CentredStage(re, im, n, stage, factors);
    BitReverse(re, n, log2n);
    BitReverse(im, n, log2n);
    NegateOdd(re, n);
    NegateOdd(im, n);
    Scale(re, n, 1.0 / std::sqrt(static_cast<double>(n)));
    Scale(im, n, 1.0 / std::sqrt(static_cast<double>(n)));
  });
}

Plane ShiftedPowerSpectrum(const ComplexPlane& x, int n) {
  Plane power(Area(n));
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      const std::size_t i = At(r, c, n);
      power[At((r + n / 2) % n, (c + n / 2) % n, n)] = x.im[i] * x.im[i] + x.re[i] * x.re[i];
    }
  }
  return power;
}

// ---- Point spread function

ComplexPlane PupilFunction(const Plane& wavefront, double wavelength) {
  ComplexPlane field{Plane(wavefront.size()), Plane(wavefront.size())};
  for (std::size_t i = 0; i < wavefront.size(); ++i) {
    if (!(wavefront[i] <= 999.0)) continue;
    const SineCosine value = SineAndCosine((wavefront[i] / wavelength) * 6.28318530717958);
    field.re[i] = value.cosine;
    field.im[i] = value.sine;
  }
  return field;
}

Psf ComputePsf(const Plane& wavefront, double wavelength, int n) {
  ComplexPlane field = PupilFunction(wavefront, wavelength);
  Fft2(field, n, 0);
  const Plane intensity = ShiftedPowerSpectrum(field, n);
  double peak = 0.0;
  int peakRow = n / 2, peakColumn = n / 2;
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      if (intensity[At(r, c, n)] > peak) {
        peak = intensity[At(r, c, n)];
        peakRow = r;
        peakColumn = c;
      }
    }
  }
  Plane psf(intensity.size());
  if (!(peak > 0.0)) return {psf, 0.0, 0.0};
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      psf[At(r, c, n)] = (1.0 / peak) * intensity[At((r + peakRow + n / 2) % n, (c + peakColumn + n / 2) % n, n)];
    }
  }
  return {psf, peak, peak / 0.038463531294838};
}

// ---- Modulation transfer function

TransferFunction Mtf(const Plane& psf, int n) {
  ComplexPlane otf{psf, Plane(psf.size())};
  CentredFft2(otf, 1, n, 8);
  const auto modulus = [&](std::size_t i) { return std::sqrt(otf.re[i] * otf.re[i] + otf.im[i] * otf.im[i]); };
  const double zeroFrequency = modulus(At(n / 2, n / 2, n));
  TransferFunction result{Plane(psf.size()), Plane(psf.size())};
  for (std::size_t i = 0; i < psf.size(); ++i) {
    result.mtf[i] = modulus(i) / zeroFrequency;
    result.phase[i] = std::atan2(otf.im[i], otf.re[i]);
  }
  return result;
}

// ---- Broken ring

RingSize SizeOfRing(double acuity, int n, int gridSize, double halfWidth, double focalLength) {
  constexpr double halfMinuteOfArc = 0.000145444;
  const double K = n == 256 ? 5.0 : 3.0;
  const double X = -K / acuity * gridSize / halfWidth * focalLength * halfMinuteOfArc;
  const int raw = -2 - static_cast<int>(X);
  int D = raw;
  while (D % 5 != 0) ++D;
  return {raw, D, K / D * gridSize / halfWidth * focalLength * halfMinuteOfArc};
}

Plane DrawRing(int diameter, int n, int gapDirection) {
  const int D = diameter;
  const bool even = D % 2 == 0;
  const int e = even ? 1 : 0;
  const double c = n / 2 + (even ? 0.5 : 0.0);
  const double R = 0.5 * D, r = R - 0.2 * D;

  Plane plane(Area(n));
  for (int y = 0; y < n; ++y) {
    for (int x = 0; x < n; ++x) {
      const double d2 = (x - c) * (x - c) + (y - c) * (y - c);
      plane[At(y, x, n)] = d2 <= R * R && d2 >= r * r ? 0.0 : 1.0;
    }
  }
  if (gapDirection < 1 || gapDirection > 4) return plane;

  const int hw = D / 10;
  const int lo = n / 2 - hw + e;
  const double hi = n / 2 + hw + e - (even ? 0.00001 : 0.0);
  const bool towardsTheEnd = gapDirection == 1 || gapDirection == 3;
  const int first = towardsTheEnd ? n / 2 + e : 0, last = towardsTheEnd ? n - 1 : n / 2;
  for (int k = std::max(lo, 0); k <= hi && k < n; ++k) {
    for (int along = first; along <= last; ++along) {
      plane[gapDirection <= 2 ? At(along, k, n) : At(k, along, n)] = 1.0;
    }
  }
  return plane;
}

// ---- Retinal image

ComplexPlane EyeOtf(const Plane& psf, int n) {
  ComplexPlane otf{psf, Plane(psf.size())};
  Fft2(otf, n, 0);
  return otf;
}

Plane FilteredIntensity(ComplexPlane object, const ComplexPlane& otf, int n) {
  Fft2(object, n, 0);
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      const std::size_t k = At(r, c, n), m = At(n - 1 - r, c, n);
      const double re = otf.re[m] * object.re[k] - object.im[k] * otf.im[m];
      object.im[k] = object.re[k] * otf.im[m] + otf.re[m] * object.im[k];
      object.re[k] = re;
    }
  }
  Fft2(object, n, 1);
  return ShiftedPowerSpectrum(object, n);
}

void KeepTotal(Plane& image, double total) {
  double sum = 0.0;
  for (const double v : image) sum += v;
  for (double& v : image) {
    v = (total * v) / sum;
    if (v > 1.0) v = 1.0;
    if (!(v >= 0.0)) v = 0.0;
  }
}

void Stretch(Plane& image) {
  double largest = image[0], smallest = image[0];
  for (const double v : image) {
    if (v > largest) largest = v;
    if (v < smallest) smallest = v;
  }
  for (double& v : image) v = (v - smallest) / (largest - smallest);
}

}  // namespace orvanel::plain
