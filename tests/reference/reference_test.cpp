// Tests the reference against closed forms and values computed by hand.
#include "tests/support/reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>
#include <vector>

#include "tests/support/plain.h"

namespace orvanel::reference {
namespace {

constexpr double kWavelength = 0x1.340cf7e020e77p-11;
constexpr Real kPi = std::numbers::pi_v<Real>;

// Sums of up to 65536 long doubles of order 1, each with a rounding of 2^-64, and their scaling: 4e-15 at the worst.
constexpr Real kLongDoubleSums = 1e-14L;

// The engine's 2 pi is short by 6e-15, so a phase of some ten turns is off by 1e-13.
constexpr Real kShortTwoPi = 1e-13L;

std::vector<double> AberratedEye() {
  std::vector<double> c(28);
  c[4] = 7.3e-4;
  c[5] = -2.9e-4;
  c[7] = 4.1e-4;
  c[9] = -3.3e-4;
  c[11] = 1.7e-4;
  return c;
}

TEST(ReferenceZernike, RadialPolynomialsAreOneAtTheEdge) {
  for (int n = 0; n <= 8; ++n) {
    for (int m = n % 2; m <= n; m += 2)
      EXPECT_PRED3(Near, RadialPolynomial(n, m, 1.0L), 1.0L, kLongDoubleSums) << n << m;
  }
}

TEST(ReferenceZernike, TermsHaveTheirExpandedForm) {
  const Real X = 0.31L, Y = -0.73L, rho = std::hypot(X, Y);
  const Real X2 = X * X, Y2 = Y * Y, X4 = X2 * X2, Y4 = Y2 * Y2;
  EXPECT_PRED3(Near, ZernikeTerm(1, -1, X, Y), Y, kLongDoubleSums);
  EXPECT_PRED3(Near, ZernikeTerm(2, -2, X, Y), 2 * X * Y, kLongDoubleSums);
  EXPECT_PRED3(Near, ZernikeTerm(3, -3, X, Y), 3 * X2 * Y - Y * Y2, kLongDoubleSums);
  EXPECT_PRED3(Near, ZernikeTerm(3, 1, X, Y), 3 * X * X2 + 3 * X * Y2 - 2 * X, kLongDoubleSums);
  EXPECT_PRED3(Near, ZernikeTerm(5, -3, X, Y), 15 * X4 * Y + 10 * X2 * Y2 * Y - 5 * Y4 * Y - 12 * X2 * Y + 4 * Y2 * Y,
               kLongDoubleSums);
  EXPECT_PRED3(Near, ZernikeTerm(6, 4, X, Y),
               6 * X4 * X2 - 30 * X4 * Y2 - 30 * X2 * Y4 + 6 * Y4 * Y2 - 5 * X4 + 30 * X2 * Y2 - 5 * Y4,
               kLongDoubleSums);
  EXPECT_PRED3(Near, RadialPolynomial(7, 1, rho),
               35 * std::pow(rho, 7.0L) - 60 * std::pow(rho, 5.0L) + 30 * std::pow(rho, 3.0L) - 4 * rho,
               kLongDoubleSums);
  EXPECT_PRED3(Near, RadialPolynomial(8, 0, rho),
               70 * std::pow(rho, 8.0L) - 140 * std::pow(rho, 6.0L) + 90 * std::pow(rho, 4.0L) - 20 * rho * rho + 1,
               kLongDoubleSums);
}

TEST(ReferenceWavefront, DefocusBendsTheDiscOf12853Samples) {
  std::vector<double> c(28);
  c[0] = 3.0, c[1] = -2.0, c[2] = 5.0;  // piston and tilts are ignored
  c[4] = 1e-3;
  const Wavefront wavefront = SynthesizeWavefront(c, 4.1, 256, 1, 1, 1);
  EXPECT_EQ(wavefront.pupilSamples, 129);
  EXPECT_EQ(std::count_if(wavefront.w.begin(), wavefront.w.end(), [](Real w) { return w != 1000; }), 12853);
  EXPECT_PRED3(Near, wavefront.w[At(128, 128, 256)], -1e-3, 1e-18L);
  EXPECT_PRED3(Near, wavefront.w[At(128, 192, 256)], 1e-3, 1e-18L);
  EXPECT_PRED3(Near, wavefront.w[At(64, 128, 256)], 1e-3, 1e-18L);
  EXPECT_EQ(wavefront.pupilX[At(128, 192, 256)], 4.1);
  EXPECT_EQ(wavefront.pupilY[At(96, 128, 256)], -4.1 / 2);
  EXPECT_EQ(wavefront.w[At(128, 0, 256)], 1000);
  EXPECT_TRUE(std::isnan(wavefront.pupilX[At(128, 0, 256)]));
}

TEST(ReferenceWavefront, FlagsSelectSecondOrderTerms) {
  std::vector<double> c(28);
  c[3] = 1e-3, c[4] = 2e-3, c[5] = 4e-3, c[9] = 8e-3;
  const std::size_t sample = At(32 - 5, 32 + 9, 64);
  const Real X = 9.0L / 16, Y = -5.0L / 16;
  const Real astigmatism = ZernikeTerm(2, -2, X, Y) * c[3] + ZernikeTerm(2, 2, X, Y) * c[5];
  const Real defocus = ZernikeTerm(2, 0, X, Y) * c[4], trefoil = ZernikeTerm(3, 3, X, Y) * c[9];
  const auto at = [&](int a, int all, int d) { return SynthesizeWavefront(c, 3.0, 64, a, all, d).w[sample]; };
  const Real tiny = 1e-20L;
  EXPECT_PRED3(Near, at(0, 1, 0), astigmatism + defocus + trefoil, tiny);
  EXPECT_PRED3(Near, at(1, 0, 1), astigmatism + defocus + trefoil, tiny);
  EXPECT_PRED3(Near, at(0, 0, 1), defocus + trefoil, tiny);
  EXPECT_PRED3(Near, at(1, 0, 0), astigmatism + trefoil, tiny);
  EXPECT_PRED3(Near, at(0, 0, 0), trefoil, tiny);
  EXPECT_PRED3(Near, at(7, 0, 1), trefoil, tiny);
  EXPECT_PRED3(Near, at(1, 0, 7), trefoil, tiny);
}

TEST(ReferenceTransform, AWaveOnAnOblongGridIsOneSample) {
  const int rows = 6, columns = 20, p = 4, q = 13;
  ComplexPlane wave{Plane(rows * columns), Plane(rows * columns)};
  for (int j = 0; j < rows; ++j) {
    for (int k = 0; k < columns; ++k) {
      const Real angle = 2 * kPi * (static_cast<Real>(j * p) / rows + static_cast<Real>(k * q) / columns);
      wave.re[At(j, k, columns)] = std::cos(angle);
      wave.im[At(j, k, columns)] = std::sin(angle);
    }
  }
  const ComplexPlane minus = Dft2(wave, rows, columns, -1), plus = Dft2(wave, rows, columns, +1);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < columns; ++c) {
      const std::size_t i = At(r, c, columns);
      EXPECT_PRED3(Near, minus.re[i], r == p && c == q ? rows * columns : 0, kLongDoubleSums);
      EXPECT_PRED3(Near, plus.re[i], r == rows - p && c == columns - q ? rows * columns : 0, kLongDoubleSums);
      EXPECT_PRED3(Near, minus.im[i], 0, kLongDoubleSums);
      EXPECT_PRED3(Near, plus.im[i], 0, kLongDoubleSums);
    }
  }
}

TEST(ReferenceTransform, Fft2ScalesBackwardOnly) {
  const int n = 16;
  const ComplexPlane x{ToReal(Noise(n * n, 5)), ToReal(Noise(n * n, 71))};
  EXPECT_PRED3(Near, Fft2(x, n, 0).re[0], Sum(x.re) / (n * n), kLongDoubleSums);
  EXPECT_PRED3(Near, Fft2(x, n, 1).im[0], Sum(x.im), kLongDoubleSums);
  const ComplexPlane there = Fft2(Fft2(x, n, 0), n, 1);
  for (std::size_t i = 0; i < x.re.size(); ++i) EXPECT_PRED3(Near, there.im[i], x.im[i], kLongDoubleSums);
  EXPECT_EQ(Fft2(x, n, 2).re, x.re);
}

TEST(ReferenceTransform, CentredFft2IsUnitaryAroundTheCentre) {
  const int n = 16;
  ComplexPlane point{Zeros(n), Zeros(n)};
  point.re[At(n / 2 + 3, n / 2 - 2, n)] = 0.7L;
  const ComplexPlane wave = CentredFft2(point, n, 1);
  const int v = -5, u = 6;  // exp(-2 pi i (3 v - 2 u) / n)
  EXPECT_PRED3(Near, wave.re[At(n / 2 + v, n / 2 + u, n)], 0.7L / n * std::cos(2 * kPi * 27 / n), kLongDoubleSums);
  EXPECT_PRED3(Near, wave.im[At(n / 2 + v, n / 2 + u, n)], 0.7L / n * std::sin(2 * kPi * 27 / n), kLongDoubleSums);
  EXPECT_PRED3(Near, CentredFft2({Plane(n * n, 0.3L), Zeros(n)}, n, -1).re[At(n / 2, n / 2, n)], 0.3L * n,
               kLongDoubleSums);
}

TEST(ReferenceTransform, TheStepsOfCentredFft2GiveItsDefinition) {
  // Radix 2 in double: 2 log2 n stages of relative error 2^-53 (pi + 1 + 4 sqrt 2) each, the tables' angles having an
  // error of their own (Higham, Accuracy and Stability of Numerical Algorithms, 24.1); twice that to be safe.
  const int n = 32;
  const Real bound = 2 * 10 * 0x1p-53L * (kPi + 1 + 4 * std::sqrt(2.0L));
  for (const int direction : {1, 0, -3}) {
    plain::ComplexPlane x{Noise(n * n, 3), Noise(n * n, 8)};
    const ComplexPlane exact = CentredFft2({ToReal(x.re), ToReal(x.im)}, n, direction);
    plain::CentredFft2(x, direction, n, 5);
    Real error = 0, norm = 0;
    for (std::size_t i = 0; i < x.re.size(); ++i) {
      error += std::pow(std::hypot(x.re[i] - exact.re[i], x.im[i] - exact.im[i]), 2.0L);
      norm += std::pow(std::hypot(exact.re[i], exact.im[i]), 2.0L);
    }
    EXPECT_LE(std::sqrt(error / norm), bound) << direction;
  }
}

TEST(ReferenceTransform, TheQuadrantSwapIsItsOwnInverse) {
  const int n = 256;
  const Plane plane = ToReal(Noise(n * n, 12));
  const Plane swapped = QuadrantSwap(plane, n);
  EXPECT_EQ(swapped[At(128, 128, n)], plane[0]);
  EXPECT_EQ(swapped[0], plane[At(128, 128, n)]);
  EXPECT_EQ(swapped[At(128, 127, n)], plane[At(0, 255, n)]);
  EXPECT_EQ(QuadrantSwap(swapped, n), plane);
  const Plane power = ShiftedPowerSpectrum<Real>({3, 1, 2, 5}, {4, 0, 1, 7}, 2);
  EXPECT_EQ(power, (Plane{74, 5, 1, 25}));
}

TEST(ReferencePsf, RecentreLineMovesTheIndexToTheMiddle) {
  EXPECT_EQ(RecentreLine<double>({0, 1, 2, 3, 4, 5, 6, 7}, 1), (std::vector<double>{5, 6, 7, 0, 1, 2, 3, 4}));
}

TEST(ReferencePsf, ThePerfectPupilHasStrehlOne) {
  const Wavefront flat = SynthesizeWavefront(std::vector<double>(28), 3.0, 256, 1, 1, 1);
  const Plane intensity = PupilIntensity(flat.w, 256, kWavelength);
  const Peak peak = FindPeak(intensity, 256);
  EXPECT_EQ(peak.row, 128);
  EXPECT_EQ(peak.column, 128);
  // The reference value has 14 digits.
  EXPECT_PRED3(Near, PsfFromIntensity(intensity, 256, 129, peak).strehl, 1.0L, 1e-13L);
}

TEST(ReferencePsf, DefocusLowersTheAxisLikeASquaredSinc) {
  // The sum over the disc's samples differs from the integral by at most E (1 + phase travelled) / samples (summation
  // by parts), where E is how far the count of samples within any radius is from that circle's area.
  const Real a = 0.31L;  // waves
  std::vector<double> c(28);
  c[4] = static_cast<double>(a) * kWavelength;
  const Wavefront wavefront = SynthesizeWavefront(c, 3.0, 256, 1, 1, 1);
  const Plane intensity = PupilIntensity(wavefront.w, 256, kWavelength);

  std::vector<int> count(4098);
  for (int y = -64; y <= 64; ++y) {
    for (int x = -64; x <= 64; ++x) ++count[static_cast<std::size_t>(std::min(x * x + y * y, 4097))];
  }
  Real within = 0, E = 0;
  for (std::size_t r2 = 0; r2 <= 4096; ++r2) {
    E = std::max(E, std::abs(kPi * static_cast<Real>(r2) - within));
    within += count[r2];
    E = std::max(E, std::abs(within - kPi * static_cast<Real>(r2)));
  }
  const Real amplitude = std::sin(2 * kPi * a) / (2 * kPi * a);
  const Real bound = E * (2 + 4 * kPi * a) / within;  // one E more for samples against pi 64^2
  const Real measured = std::sqrt(intensity[At(128, 128, 256)] / 0.038463531294838);
  EXPECT_PRED3(Near, measured, amplitude, bound);
  EXPECT_LT(bound, 0.05L);
}

TEST(ReferencePsf, ATiltOfWholeSamplesIsTakenOut) {
  const int n = 64;
  const std::vector<double> eye = AberratedEye();
  const Wavefront straight = SynthesizeWavefront(eye, 4.1, n, 1, 1, 1);
  Wavefront tilted = straight;
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      Real& w = tilted.w[At(r, c, n)];
      if (w != 1000) w += kWavelength * static_cast<Real>(5 * (c - n / 2) - 3 * (r - n / 2)) / n;
    }
  }
  const Plane a = PupilIntensity(straight.w, n, kWavelength), b = PupilIntensity(tilted.w, n, kWavelength);
  const Peak peakA = FindPeak(a, n), peakB = FindPeak(b, n);
  // The backward transform has a positive exponent: a wavefront that rises to the right moves the image to the left.
  EXPECT_EQ(peakB.column, (peakA.column - 5 + n) % n);
  EXPECT_EQ(peakB.row, (peakA.row + 3) % n);
  const Plane psfA = PsfFromIntensity(a, n, 33, peakA).plane, psfB = PsfFromIntensity(b, n, 33, peakB).plane;
  for (std::size_t i = 0; i < psfA.size(); ++i) ASSERT_PRED3(Near, psfA[i], psfB[i], kShortTwoPi);
  EXPECT_EQ(psfA[At(n / 2, n / 2, n)], 1);
}

TEST(ReferencePsf, AnEmptyPupilIsZero) {
  const Plane outside(16 * 16, 1000.0L);
  const Plane intensity = PupilIntensity(outside, 16, kWavelength);
  const Psf psf = PsfFromIntensity(intensity, 16, 9, FindPeak(intensity, 16));
  EXPECT_EQ(Sum(psf.plane), 0);
  EXPECT_EQ(psf.strehl, 0);
}

TEST(ReferencePsf, TheHalfWidthOfThreeMillimetresIsTheWorkedOne) {
  const Real h = PsfHalfWidth(129, kWavelength, 3.0);
  EXPECT_PRED3(Near, h, 0.10654421333L, 5e-12L);
  EXPECT_PRED3(Near, PsfPitch(h, 256), h * 2 / 255, 1e-18L);
}

TEST(ReferenceMtf, TheTransferFunctionIsTheAutocorrelationOfThePupil) {
  const int n = 256;
  const Wavefront wavefront = SynthesizeWavefront(AberratedEye(), 4.1, n, 1, 1, 1);
  const Plane intensity = PupilIntensity(wavefront.w, n, kWavelength);
  const Peak peak = FindPeak(intensity, n);
  const TransferFunction mtf = Mtf(PsfFromIntensity(intensity, n, 129, peak).plane, n);
  const auto pupil = [&](int r, int c) {
    const Real w = wavefront.w[At(r, c, n)];
    return w == 1000 ? std::complex<Real>(0) : std::polar(1.0L, w / kWavelength * 2 * kPi);
  };
  const int shifts[][2] = {{0, 0}, {1, 0}, {0, 1}, {-17, 40}, {63, 21}, {-30, -95}};
  for (const auto& [v, u] : shifts) {
    std::complex<Real> sum = 0;
    for (int r = 64; r <= 192; ++r) {
      for (int c = 64; c <= 192; ++c) {
        if (r + v >= 0 && r + v < n && c + u >= 0 && c + u < n) sum += pupil(r + v, c + u) * std::conj(pupil(r, c));
      }
    }
    const Real recentring = 2 * kPi * static_cast<Real>(v * (peak.row - 128) + u * (peak.column - 128)) / n;
    const std::complex<Real> expected = sum / 12853.0L * std::polar(1.0L, recentring);
    const std::size_t i = At(128 + v, 128 + u, n);
    const std::complex<Real> actual = std::polar(mtf.modulation[i], mtf.phase[i]);
    EXPECT_LE(std::abs(actual - expected), kShortTwoPi) << v << ", " << u;
  }
}

TEST(ReferenceMtf, SectionsAndTheCentralPartStartAtTheCentre) {
  const Plane plane = ToReal(Noise(64, 4));
  EXPECT_EQ(RowSection(plane, 8, 6), (Plane{plane[36], plane[37], plane[38]}));
  EXPECT_EQ(ColumnSection(plane, 8, 6), (Plane{plane[36], plane[44], plane[52]}));
  EXPECT_EQ(CentralPart(plane, 8, 2), (Plane{plane[27], plane[28], plane[35], plane[36]}));
}

TEST(ReferenceMtf, ScalesHaveTheirWorkedValues) {
  const Real h = PsfHalfWidth(129, kWavelength, 3.0);
  EXPECT_PRED3(Near, FrequencyStep(256, h), 1.3994789739L, 5e-11L);
  EXPECT_PRED3(Near, FrequencyRange(FrequencyStep(256, h)), 178.43L, 5e-3L);
  const Plane limit = DiffractionLimit(129, h, 256);
  EXPECT_PRED3(Near, limit[0], 1.0L, 2e-15L);  // the constant 2/pi has 15 digits
  EXPECT_PRED3(Near, limit[1], 0.99005L, 5e-6L);
  EXPECT_PRED3(Near, limit[64], 0.39100L, 5e-6L);
  EXPECT_PRED3(Near, limit[127], 0.00083L, 5e-6L);
}

TEST(ReferenceRing, SizesHaveTheirWorkedValues) {
  const auto size = [](double diameter, double acuity) {
    return plain::SizeOfRing(acuity, 256, 256, 32 * 17.0 * kWavelength / diameter, 17.0);
  };
  const struct {
    double pupil, acuity;
    int raw, diameter;
    double effective;
  } worked[] = {{4.0, 1.0, 37, 40, 0.990156},
                {4.0, 0.5, 77, 80, 0.495078},
                {6.0, 1.0, 57, 60, 0.990156},
                {3.0, 2.0, 12, 15, 1.98031},
                {4.0, 0.1, 394, 395, 0.100269}};
  for (const auto& row : worked) {
    const plain::RingSize ring = size(row.pupil, row.acuity);
    EXPECT_EQ(ring.raw, row.raw);
    EXPECT_EQ(ring.diameter, row.diameter);
    EXPECT_PRED3(Near, ring.effectiveAcuity, row.effective, 5e-6 * row.effective);
  }
  EXPECT_EQ(size(4.0, 40.0).diameter, 0);
  EXPECT_TRUE(std::isinf(size(4.0, 40.0).effectiveAcuity));
  EXPECT_LT(size(4.0, -1.0).diameter, 0);
}

TEST(ReferenceRing, AnEvenRingOpensBetweenSamples) {
  const std::vector<double> plane = plain::DrawRing(40, 256, 3), closed = plain::DrawRing(40, 256, 0);
  for (int y = 0; y < 256; ++y) {
    for (int x = 0; x < 256; ++x) {
      const double d2 = (x - 128.5) * (x - 128.5) + (y - 128.5) * (y - 128.5);
      const bool ring = d2 >= 144 && d2 <= 400, bar = y >= 125 && y <= 132 && x >= 129;
      ASSERT_EQ(closed[At(y, x, 256)], ring ? 0.0 : 1.0);
      ASSERT_EQ(plane[At(y, x, 256)], ring && !bar ? 0.0 : 1.0);
    }
  }
}

TEST(ReferenceRing, AnOddRingOpensAroundTheCentreSample) {
  const std::vector<double> closed = plain::DrawRing(15, 256, 5);
  EXPECT_EQ(closed[At(128, 122, 256)], 0.0);
  const auto changed = [&](int direction) {
    const std::vector<double> open = plain::DrawRing(15, 256, direction);
    int top = 256, bottom = -1, left = 256, right = -1;
    for (int y = 0; y < 256; ++y) {
      for (int x = 0; x < 256; ++x) {
        if (open[At(y, x, 256)] == closed[At(y, x, 256)]) continue;
        top = std::min(top, y), bottom = std::max(bottom, y), left = std::min(left, x), right = std::max(right, x);
      }
    }
    return std::vector<int>{top, bottom, left, right};
  };
  // Stroke samples at distances 4.5 to 7.5, in the three middle lines.
  EXPECT_EQ(changed(1), (std::vector<int>{133, 135, 127, 129}));
  EXPECT_EQ(changed(2), (std::vector<int>{121, 123, 127, 129}));
  EXPECT_EQ(changed(3), (std::vector<int>{127, 129, 133, 135}));
  EXPECT_EQ(changed(4), (std::vector<int>{127, 129, 121, 123}));
}

TEST(ReferenceRing, SmallAndNegativeDiametersOpenAsTheIndicesSay) {
  const auto sum = [](int diameter, int direction) {
    double total = 0;
    for (const double v : plain::DrawRing(diameter, 64, direction)) total += v;
    return total;
  };
  EXPECT_EQ(sum(0, 2), 64 * 64);
  EXPECT_EQ(sum(-5, 1), sum(-5, 0) + 1);  // one column of the single stroke sample below the centre
  EXPECT_EQ(sum(-10, 1), sum(10, 0));
}

TEST(ReferenceImage, APointSpreadOfTwoPointsAddsTwoObjectsMirroredTopToBottom) {
  // A PSF point `a` rows below and `b` columns right of the centre shows the object a rows higher and b columns
  // further right, times exp(-2 pi i a / n) because the mirror index is n - 1 - r.
  const int n = 16, a1 = 2, b1 = -1, a2 = -3, b2 = 4;
  const Real weight = 0.6L;
  Plane psf = Zeros(n);
  psf[At(n / 2 + a1, n / 2 + b1, n)] = 1;
  psf[At(n / 2 + a2, n / 2 + b2, n)] = weight;
  const Plane object = ToReal(Noise(n * n, 9));
  const Plane image = FilteredIntensity(object, EyeOtf(psf, n), n);
  const auto shifted = [&](int r, int c, int a, int b) {
    return object[At((r + a + n) % n, (c - b + n) % n, n)] * std::polar(1.0L, -2 * kPi * static_cast<Real>(a) / n);
  };
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      const Real expected = std::norm(shifted(r, c, a1, b1) + weight * shifted(r, c, a2, b2));
      EXPECT_PRED3(Near, image[At(r, c, n)] * std::pow(static_cast<Real>(n), 4.0L), expected, kLongDoubleSums);
    }
  }
}

TEST(ReferenceImage, NormalisationsKeepTheTotalOrSpanTheRange) {
  const Plane image{0.5L, 2, 0.25L, 0.25L};
  EXPECT_EQ(ScaledToTotal(image, 1.5L), (Plane{0.25L, 1, 0.125L, 0.125L}));
  EXPECT_EQ(Clipped(ScaledToTotal(image, 3)), (Plane{0.5L, 1, 0.25L, 0.25L}));
  EXPECT_EQ(Clipped(ScaledToTotal({0, 0}, 1)), (Plane{0, 0}));
  EXPECT_EQ(Stretched({0.75L, 2.25L, 0.25L}), (Plane{0.25L, 1, 0}));
}

TEST(ReferenceStar, HasFortySectorsAndTwoExceptions) {
  const std::vector<double> star = SectorStar();
  double sum = 0;
  for (const double v : star) sum += v;
  EXPECT_EQ(sum, 32402);
  EXPECT_EQ(star[At(0, 0, 256)], 0.0);
  EXPECT_EQ(star[At(127, 255, 256)], 1.0);
  EXPECT_EQ(star[At(128, 255, 256)], 1.0);
  EXPECT_EQ(star[At(0, 127, 256)], 1.0);
  EXPECT_EQ(star[At(139, 130, 256)], 1.0);
  EXPECT_EQ(star[At(140, 59, 256)], 1.0);
}

}  // namespace
}  // namespace orvanel::reference
