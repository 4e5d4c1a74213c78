// Tests the MTF between its samples against sums in long double, closed forms and the sections.
#include "orvanel/line_spread.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <numeric>
#include <vector>

#include "orvanel/optics_engine.h"

namespace orvanel {
namespace {

using Real = long double;
using Coefficients = std::array<double, kCoefficients>;

constexpr int kSide = 256;
constexpr double kRounding = 1e-13;  // of sums of 256 and 65536 numbers whose total is 1

struct Transfer {
  std::vector<double> psf = std::vector<double>(kSide * kSide), mtf = psf;
  std::array<double, 128> row{}, column{}, limit{};
};

Transfer TransferOf(const Coefficients& coefficients) {
  Transfer transfer;
  OpticsEngine engine(coefficients.data(), 3.0, kSide, 1, 1, 1);
  double step = 0.0;
  engine.ComputeMtf(kWavelength, transfer.mtf.data(), &step, transfer.row.data(), transfer.column.data(),
                    transfer.limit.data(), kSide);
  engine.psfPlane.CopyTo(transfer.psf.data());
  return transfer;
}

Coefficients Lopsided() {
  Coefficients c{};
  c[3] = 0.31 * kWavelength;
  c[4] = -0.47 * kWavelength;
  c[7] = 0.62 * kWavelength;
  c[9] = 0.23 * kWavelength;
  c[11] = -0.17 * kWavelength;
  return c;
}

Real PerfectMtf(Real share) {
  return 2 / std::numbers::pi_v<Real> * (std::acos(share) - share * std::sqrt(1 - share * share));
}

TEST(LineSpread, IsTheSumAlongTheLine) {
  const Transfer transfer = TransferOf(Lopsided());
  const LineSpreads spreads = LineSpreadsOf(transfer.psf.data());
  for (std::size_t i = 0; i < kSide; ++i) {
    Real column = 0, row = 0;
    for (std::size_t k = 0; k < kSide; ++k) {
      column += transfer.psf[k * kSide + i];
      row += transfer.psf[i * kSide + k];
    }
    ASSERT_NEAR(spreads.horizontal[i], static_cast<double>(column), kRounding * 10.0) << i;
    ASSERT_NEAR(spreads.vertical[i], static_cast<double>(row), kRounding * 10.0) << i;
  }
}

TEST(LineSpread, MtfAtWholeSamplesIsThatOfTheSections) {
  const Transfer transfer = TransferOf(Lopsided());
  const LineSpreads spreads = LineSpreadsOf(transfer.psf.data());
  for (std::size_t i = 0; i < 128; ++i) {
    ASSERT_NEAR(MtfBetweenSamples(spreads.horizontal, static_cast<double>(i)), transfer.row[i], kRounding) << i;
    ASSERT_NEAR(MtfBetweenSamples(spreads.vertical, static_cast<double>(i)), transfer.column[i], kRounding) << i;
  }
}

TEST(LineSpread, MtfOfAPerfectPupilIsTheClosedFormAtAnyFrequency) {
  const LineSpreads spreads = LineSpreadsOf(TransferOf(Coefficients{}).psf.data());
  constexpr double kFlatMtfSampling = 9.5e-4;  // the staircase of the pupil's edge
  for (double sample = 0.0; sample < 128.0; sample += 0.173) {
    const auto expected = static_cast<double>(PerfectMtf(sample / 128.0L));
    ASSERT_NEAR(MtfBetweenSamples(spreads.horizontal, sample), expected, kFlatMtfSampling) << sample;
    ASSERT_NEAR(MtfBetweenSamples(spreads.vertical, sample), expected, kFlatMtfSampling) << sample;
  }
}

// What the header promises, in long double and without recurrence.
Real Expected(const LineSpread& lineSpread, Real sample) {
  const Real total = std::accumulate(lineSpread.begin(), lineSpread.end(), 0.0L);
  constexpr Real kTurn = 2 * std::numbers::pi_v<Real> / kSide;
  std::complex<Real> sum = PerfectMtf(sample / 128);
  for (int x = -128; x < 128; ++x) {
    Real perfect = 1;
    for (int k = 1; k < 128; ++k) perfect += 2 * PerfectMtf(k / 128.0L) * std::cos(kTurn * static_cast<Real>(k * x));
    const Real difference = lineSpread[static_cast<std::size_t>(x + 128)] / total - perfect / kSide;
    // The sample at the end of the field stands at both ends.
    sum += x == -128 ? difference * std::cos(kTurn * x * sample) : difference * std::polar(1.0L, -kTurn * x * sample);
  }
  return std::abs(sum);
}

TEST(LineSpread, MtfOfAnyLineIsTheTransformOfWhatItHasMoreThanAPerfectPupils) {
  LineSpread lineSpread;
  for (std::size_t i = 0; i < kSide; ++i) {
    const auto x = static_cast<double>(i);
    lineSpread[i] = 1.0 / (1.0 + std::pow((x - 121.0) / 9.0, 2.0)) + 0.4 / (1.0 + std::pow((x - 190.0) / 3.0, 4.0));
  }
  for (const double sample : {0.3, 0.5, 1.0, 7.77, 31.5, 64.25, 127.9}) {
    EXPECT_NEAR(MtfBetweenSamples(lineSpread, sample), static_cast<double>(Expected(lineSpread, sample)), kRounding)
        << sample;
  }
}

TEST(LineSpread, MtfEndsAtTheCutOff) {
  const LineSpreads spreads = LineSpreadsOf(TransferOf(Lopsided()).psf.data());
  EXPECT_NEAR(MtfBetweenSamples(spreads.horizontal, 0.0), 1.0, kRounding);
  EXPECT_GT(MtfBetweenSamples(spreads.horizontal, 127.4), 0.0);
  for (const double sample :
       {128.0, 1e9, -0.5, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(MtfBetweenSamples(spreads.horizontal, sample), 0.0) << sample;
  }
}

}  // namespace
}  // namespace orvanel
