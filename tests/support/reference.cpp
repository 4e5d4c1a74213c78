// Computes the independent reference of the optics engine.
#include "tests/support/reference.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <numbers>
#include <utility>

namespace orvanel::reference {

namespace {

constexpr double kOutside = 1000.0;
constexpr double kInsideLimit = 999.0;
constexpr double kFocalLength = 17.0;
constexpr double kPupilTwoPi = 6.28318530717958;
constexpr double kTwoOverPi = 0.636619772367582;
constexpr double kDegreesPerRadian = 57.29577951308239;

Real Factorial(int n) { return n < 2 ? 1.0L : static_cast<Real>(n) * Factorial(n - 1); }

// cos and sin of 2 pi k / n for k = 0 .. n - 1. The angle is reduced to the first quadrant as an integer, so that the
// axis directions are exact.
ComplexPlane UnitCircle(int n) {
  ComplexPlane circle;
  for (int k = 0; k < n; ++k) {
    const int quadrant = 4 * k / n;
    const Real angle = std::numbers::pi_v<Real> / 2 * static_cast<Real>(4 * k % n) / static_cast<Real>(n);
    Real c = std::cos(angle), s = std::sin(angle);
    for (int turn = 0; turn < quadrant; ++turn) {
      std::swap(c, s);
      c = -c;
    }
    circle.re.push_back(c);
    circle.im.push_back(s);
  }
  return circle;
}

// X[p] = sum over k of x[k] exp(sign 2 pi i k p / n) along `count` lines of n samples.
ComplexPlane DftOfRows(const ComplexPlane& x, int count, int n, int sign) {
  const ComplexPlane circle = UnitCircle(n);
  const Real* const cosine = circle.re.data();
  const Real* const sine = circle.im.data();
  ComplexPlane result{Plane(At(count, 0, n)), Plane(At(count, 0, n))};
  for (int line = 0; line < count; ++line) {
    const Real* const a = &x.re[At(line, 0, n)];
    const Real* const b = &x.im[At(line, 0, n)];
    for (int p = 0; p < n; ++p) {
      Real re = 0, im = 0;
      int turn = 0;  // k p mod n
      for (int k = 0; k < n; ++k) {
        const Real c = cosine[turn], s = static_cast<Real>(sign) * sine[turn];
        re += a[k] * c - b[k] * s;
        im += a[k] * s + b[k] * c;
        turn += p;
        if (turn >= n) turn -= n;
      }
      result.re[At(line, p, n)] = re;
      result.im[At(line, p, n)] = im;
    }
  }
  return result;
}

template <class T>
std::vector<T> Transposed(const std::vector<T>& plane, int rows, int columns) {
  std::vector<T> result(plane.size());
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < columns; ++c) result[At(c, r, rows)] = plane[At(r, c, columns)];
  }
  return result;
}

Plane Scaled(Plane plane, Real factor) {
  for (Real& value : plane) value *= factor;
  return plane;
}

}  // namespace

// ---- Wavefront

Real RadialPolynomial(int n, int m, Real rho) {
  Real sum = 0;
  for (int s = 0; s <= (n - m) / 2; ++s) {
    const Real sign = s % 2 == 0 ? 1.0L : -1.0L;
    sum += sign * Factorial(n - s) / (Factorial(s) * Factorial((n + m) / 2 - s) * Factorial((n - m) / 2 - s)) *
           std::pow(rho, static_cast<Real>(n - 2 * s));
  }
  return sum;
}

Real ZernikeTerm(int n, int m, Real x, Real y) {
  const Real rho = std::hypot(x, y), theta = std::atan2(y, x);
  const Real radial = RadialPolynomial(n, std::abs(m), rho);
  return m >= 0 ? radial * std::cos(static_cast<Real>(m) * theta) : radial * std::sin(static_cast<Real>(-m) * theta);
}

Wavefront SynthesizeWavefront(const std::vector<double>& coefficients, double diameter, int n, int includeAstigmatism,
                              int includeAllSecondOrder, int includeDefocus) {
  const int M = n / 2 + 1;
  std::vector<double> copy = coefficients;
  int startOrder = 3;
  if (includeAllSecondOrder == 1) {
    startOrder = 2;
  } else if (includeDefocus == 1) {
    if (includeAstigmatism == 1) {
      startOrder = 2;
    } else if (includeAstigmatism == 0) {
      startOrder = 2;
      copy[3] = copy[5] = 0.0;
    }
  } else if (includeDefocus == 0 && includeAstigmatism == 1) {
    startOrder = 2;
    copy[4] = 0.0;
  }

  const Real kUntouched = std::numeric_limits<Real>::quiet_NaN();
  const std::size_t area = Area(n);
  Wavefront result{M, Plane(area), Plane(area, kUntouched), Plane(area, kUntouched)};
  const int R = M / 2;
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      const int dx = c - n / 2, dy = r - n / 2;
      const std::size_t i = At(r, c, n);
      if (dx * dx + dy * dy > R * R) {
        result.w[i] = kOutside;
        continue;
      }
      const Real s = 2.0L / static_cast<Real>(M - 1);
      const Real X = static_cast<Real>(dx) * s, Y = static_cast<Real>(dy) * s;
      Real W = 0;
      for (int order = startOrder; order <= 6; ++order) {
        for (int k = 0; k <= order; ++k) {
          const double coefficient = copy[static_cast<std::size_t>(order * (order + 1) / 2 + k)];
          W = ZernikeTerm(order, -order + 2 * k, X, Y) * coefficient + W;
        }
      }
      result.w[i] = W;
      result.pupilX[i] = X * diameter;
      result.pupilY[i] = Y * diameter;
    }
  }
  return result;
}

// ---- Transforms

ComplexPlane Dft2(const ComplexPlane& x, int rows, int columns, int sign) {
  ComplexPlane y = DftOfRows(x, rows, columns, sign);
  y = {Transposed(y.re, rows, columns), Transposed(y.im, rows, columns)};
  y = DftOfRows(y, columns, rows, sign);
  return {Transposed(y.re, columns, rows), Transposed(y.im, columns, rows)};
}

ComplexPlane Fft2(const ComplexPlane& x, int n, int direction) {
  if (direction == 1) return Dft2(x, n, n, -1);
  if (direction != 0) return x;
  const ComplexPlane y = Dft2(x, n, n, +1);
  const Real scale = 1.0L / (static_cast<Real>(n) * static_cast<Real>(n));
  return {Scaled(y.re, scale), Scaled(y.im, scale)};
}

ComplexPlane CentredFft2(const ComplexPlane& x, int n, int direction) {
  // The centred indices j - n/2 and j - n/2 + n mean the same, so moving the centre to (0, 0) and back is all.
  const ComplexPlane y = Dft2({QuadrantSwap(x.re, n), QuadrantSwap(x.im, n)}, n, n, direction >= 0 ? -1 : +1);
  const Real scale = 1.0L / static_cast<Real>(n);
  return {Scaled(QuadrantSwap(y.re, n), scale), Scaled(QuadrantSwap(y.im, n), scale)};
}

template <class T>
std::vector<T> QuadrantSwap(const std::vector<T>& plane, int n) {
  std::vector<T> result(plane.size());
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) result[At((r + n / 2) % n, (c + n / 2) % n, n)] = plane[At(r, c, n)];
  }
  return result;
}

template <class T>
std::vector<T> ShiftedPowerSpectrum(const std::vector<T>& re, const std::vector<T>& im, int n) {
  std::vector<T> power(re.size());
  for (std::size_t i = 0; i < re.size(); ++i) power[i] = im[i] * im[i] + re[i] * re[i];
  return QuadrantSwap(power, n);
}

template <class T>
std::vector<T> RecentreLine(const std::vector<T>& line, int index) {
  const std::size_t n = line.size();
  std::vector<T> result(n);
  for (std::size_t j = 0; j < n; ++j) result[j] = line[(j + static_cast<std::size_t>(index) + n / 2) % n];
  return result;
}

template std::vector<double> QuadrantSwap(const std::vector<double>&, int);
template std::vector<Real> QuadrantSwap(const std::vector<Real>&, int);
template std::vector<double> ShiftedPowerSpectrum(const std::vector<double>&, const std::vector<double>&, int);
template std::vector<Real> ShiftedPowerSpectrum(const std::vector<Real>&, const std::vector<Real>&, int);
template std::vector<double> RecentreLine(const std::vector<double>&, int);
template std::vector<Real> RecentreLine(const std::vector<Real>&, int);

// ---- Point spread function

Plane PupilIntensity(const Plane& wavefront, int n, double wavelength) {
  ComplexPlane pupil{Zeros(n), Zeros(n)};
  for (std::size_t i = 0; i < wavefront.size(); ++i) {
    if (!(wavefront[i] <= kInsideLimit)) continue;
    const Real phase = wavefront[i] / wavelength * kPupilTwoPi;
    pupil.re[i] = std::cos(phase);
    pupil.im[i] = std::sin(phase);
  }
  const ComplexPlane field = Fft2(pupil, n, 0);
  return ShiftedPowerSpectrum(field.re, field.im, n);
}

Peak FindPeak(const Plane& intensity, int n) {
  Peak peak{0.0L, n / 2, n / 2};
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      if (intensity[At(r, c, n)] > peak.value) peak = {intensity[At(r, c, n)], r, c};
    }
  }
  return peak;
}

Psf PsfFromIntensity(const Plane& intensity, int n, int pupilSamples, const Peak& peak) {
  if (!(peak.value > 0)) return {Zeros(n), 0.0L};

  Plane plane;
  for (int r = 0; r < n; ++r) {
    const Plane row(&intensity[At(r, 0, n)], &intensity[At(r, 0, n)] + n);
    const Plane moved = RecentreLine(row, peak.column);
    plane.insert(plane.end(), moved.begin(), moved.end());
  }
  for (int c = 0; c < n; ++c) {
    Plane column;
    for (int r = 0; r < n; ++r) column.push_back(plane[At(r, c, n)]);
    const Plane moved = RecentreLine(column, peak.row);
    for (int r = 0; r < n; ++r) plane[At(r, c, n)] = moved[static_cast<std::size_t>(r)];
  }

  const Real s0 = plane[At(n / 2, n / 2, n)];
  Real strehl = -1.0L;
  if (n == 256 && pupilSamples == 129) strehl = s0 / 0.038463531294838;
  if (n == 128 && pupilSamples == 65) strehl = s0 / 10297681.0;
  return {Scaled(plane, 1.0L / peak.value), strehl};
}

Real PsfHalfWidth(int pupilSamples, double wavelength, double diameter) {
  const int q = (pupilSamples - 1) / 4;
  return static_cast<Real>(q) * kFocalLength * wavelength / diameter;
}

Real PsfPitch(Real halfWidth, int n) { return 2 * halfWidth / static_cast<Real>(n - 1); }

// ---- Modulation transfer function

TransferFunction Mtf(const Plane& psf, int n) {
  const ComplexPlane otf = CentredFft2({psf, Zeros(n)}, n, 1);
  const std::size_t m = At(n / 2, n / 2, n);
  const Real c0 = std::sqrt(otf.re[m] * otf.re[m] + otf.im[m] * otf.im[m]);
  TransferFunction result{Zeros(n), Zeros(n)};
  for (std::size_t i = 0; i < psf.size(); ++i) {
    result.modulation[i] = std::sqrt(otf.re[i] * otf.re[i] + otf.im[i] * otf.im[i]) / c0;
    result.phase[i] = std::atan2(otf.im[i], otf.re[i]);
  }
  return result;
}

Plane CentralPart(const Plane& mtf, int n, int s) {
  Plane part;
  for (int r = 0; r < s; ++r) {
    for (int c = 0; c < s; ++c) part.push_back(mtf[At(n / 2 - s / 2 + r, n / 2 - s / 2 + c, n)]);
  }
  return part;
}

Plane RowSection(const Plane& mtf, int n, int s) {
  Plane section;
  for (int i = 0; i < s / 2; ++i) section.push_back(mtf[At(n / 2, n / 2 + i, n)]);
  return section;
}

Plane ColumnSection(const Plane& mtf, int n, int s) {
  Plane section;
  for (int i = 0; i < s / 2; ++i) section.push_back(mtf[At(n / 2 + i, n / 2, n)]);
  return section;
}

Plane DiffractionLimit(int pupilSamples, Real halfWidth, int s) {
  Plane curve;
  for (int i = 0; i < s / 2; ++i) {
    const Real x =
        2 * halfWidth / static_cast<Real>(pupilSamples - 1) * static_cast<Real>(i) * (1.0L / (2 * halfWidth));
    curve.push_back((std::acos(x) - x * std::sqrt(1 - x * x)) * kTwoOverPi);
  }
  return curve;
}

Real FrequencyStep(int n, Real halfWidth) {
  const Real degreesPerMillimetre = std::atan(1.0L / kFocalLength) * kDegreesPerRadian;
  return 2 * (static_cast<Real>(n) * 0.25L / halfWidth) / degreesPerMillimetre / static_cast<Real>(n - 1);
}

Real FrequencyRange(Real frequencyStep) { return frequencyStep * 127.5L; }

// ---- Retinal image

ComplexPlane EyeOtf(const Plane& psf, int n) { return Fft2({psf, Zeros(n)}, n, 0); }

Plane FilteredIntensity(const Plane& object, const ComplexPlane& otf, int n) {
  const ComplexPlane spectrum = Fft2({object, Zeros(n)}, n, 0);
  ComplexPlane product{Zeros(n), Zeros(n)};
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      const std::size_t k = At(r, c, n), m = At(n - 1 - r, c, n);
      product.re[k] = otf.re[m] * spectrum.re[k] - spectrum.im[k] * otf.im[m];
      product.im[k] = spectrum.re[k] * otf.im[m] + otf.re[m] * spectrum.im[k];
    }
  }
  const ComplexPlane field = Fft2(product, n, 1);
  return ShiftedPowerSpectrum(field.re, field.im, n);
}

Plane ScaledToTotal(const Plane& image, Real objectTotal) {
  const Real T = Sum(image);
  Plane result = image;
  for (Real& v : result) v = objectTotal * v / T;
  return result;
}

Plane Clipped(Plane image) {
  for (Real& v : image) {
    if (v > 1) v = 1;
    if (!(v >= 0)) v = 0;
  }
  return image;
}

Plane Stretched(Plane image) {
  Real largest = image[0], smallest = image[0];
  for (const Real v : image) {
    if (v > largest) largest = v;
    if (v < smallest) smallest = v;
  }
  for (Real& v : image) v = (v - smallest) / (largest - smallest);
  return image;
}

// ---- Sector star

std::vector<double> SectorStar() {
  const int n = 256;
  std::vector<double> plane;
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      double t = std::atan2(127.5 - r, c - 127.5) * (180.0 / std::numbers::pi);
      if (t < 0.0) t += 360.0;
      const int s = static_cast<int>(std::floor((t + 4.5) / 9.0)) % 40;
      plane.push_back(s % 2 == 0 ? 1.0 : 0.0);
    }
  }
  plane[At(139, 130, n)] = 1.0;
  plane[At(140, 59, n)] = 1.0;
  return plane;
}

}  // namespace orvanel::reference
