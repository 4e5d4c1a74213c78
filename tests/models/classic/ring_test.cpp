// Tests the Landolt ring (broken ring) drawn for the PSF of an engine, and its trace line.
#include "optics/ring.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "optics/samples.h"
#include "orvanel/optics_engine.h"

namespace orvanel {
namespace {

// An engine as a PSF computation would leave it for this pupil.
OpticsEngine ForPupil(double pupil, int n = 256) {
  OpticsEngine engine(n);
  engine.focalLength = 17.0;
  engine.psfHalfWidth = 32 * 17.0 * kWavelength / pupil;
  return engine;
}

RingScale ScaleForPupil(double pupil) { return {256, 256, 32 * 17.0 * kWavelength / pupil, 17.0}; }

struct Ring {
  std::vector<double> plane;
  double effectiveAcuity = 0.0;
  std::string printed;
};

Ring Draw(OpticsEngine engine, double acuity, int gapDirection, int n = 256) {
  Ring ring;
  ring.plane.assign(SampleCount(n), -1.0);
  testing::internal::CaptureStdout();
  engine.DrawRingOptotype(ring.plane.data(), n, acuity, &ring.effectiveAcuity, gapDirection);
  ring.printed = testing::internal::GetCapturedStdout();
  return ring;
}

TEST(RingOptotype, ChangesNothingInTheEngine) {
  OpticsEngine engine = ForPupil(4.0);
  engine.otfValid = 1;
  engine.psfWavelength = kWavelength;
  std::vector<double> plane(65536);
  double effective = 0.0;
  testing::internal::CaptureStdout();
  engine.DrawRingOptotype(plane.data(), 256, 1.0, &effective, 3);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(engine.otfValid, 1);
  EXPECT_EQ(engine.psfWavelength, kWavelength);
  EXPECT_EQ(engine.normaliseOutput, 0);
}

TEST(RingOptotype, OfAnyAcuityIsTracedByOneLine) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double acuity : {0.0, -0.0, 1e-300, -1e-300, kInfinity, -kInfinity, std::nan("")}) {
    const Ring ring = Draw(ForPupil(4.0), acuity, 1);
    EXPECT_EQ(std::count(ring.printed.begin(), ring.printed.end(), '\n'), 1);
  }
}

struct Line {
  double acuity;
  const char* text;
};

void PrintTo(const Line& line, std::ostream* out) { *out << "acuity " << line.acuity; }

class RingTrace : public testing::TestWithParam<Line> {};

TEST_P(RingTrace, IsTheAcuityInSixDigitsATabAndTheDiameter) {
  EXPECT_EQ(Draw(ForPupil(4.0), GetParam().acuity, 3).printed, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Lines, RingTrace,
                         testing::Values(Line{1.0, "1\t40\n"}, Line{0.5, "0.5\t80\n"}, Line{0.1, "0.1\t395\n"},
                                         Line{0.123456789, "0.123457\t320\n"}, Line{2.0 / 3.0, "0.666667\t60\n"},
                                         Line{1234567.0, "1.23457e+06\t0\n"}, Line{100.0, "100\t0\n"},
                                         Line{0.001, "0.001\t39605\n"}, Line{-1.0, "-1\t-40\n"},
                                         Line{1e-5, "1e-05\t3960625\n"}));

TEST(RingOptotype, DrawnWithoutAnEngineIsTheSameAndSilent) {
  for (const int n : {64, 256}) {
    for (const int gap : {1, 2, 3, 4, 7}) {
      for (const double acuity : {0.31, 0.9, 1.7}) {
        const RingScale scale{n, 256, ScaleForPupil(4.0).psfHalfWidth};
        const Ring expected = Draw(ForPupil(4.0), acuity, gap, n);
        std::vector<double> drawn(SampleCount(n));
        testing::internal::CaptureStdout();
        DrawRing(drawn.data(), n, RingDiameter(scale, acuity), gap);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        EXPECT_EQ(drawn, expected.plane) << n << ' ' << gap << ' ' << acuity;
      }
    }
  }
}

}  // namespace
}  // namespace orvanel
