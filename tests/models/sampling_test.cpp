// Tests that the sampling by pupil has the bits of the results of the engine.
#include "models/sampling.h"

#include <gtest/gtest.h>

#include <vector>

#include "models/errors.h"
#include "orvanel/optics_engine.h"
#include "orvanel/orvanel.h"
#include "orvanel/ring.h"

namespace orvanel::models {
namespace {

TEST(Sampling, HasTheBitsOfTheEngine) {
  OpticsEngine engine;
  const double flat[kCoefficients] = {};
  std::vector<double> plane(ORVANEL_PLANE_SAMPLES), section(ORVANEL_SECTION_SAMPLES);
  for (int i = 0; i < 60; ++i) {
    const double pupil = 0.7 + 0.1371 * i;
    engine.synthesizeWavefront(flat, pupil, 1, 1, 1);
    double step = 0.0;
    engine.ComputeMtf(kWavelength, plane.data(), &step, section.data(), section.data(), section.data(),
                      ORVANEL_GRID_SIZE);
    EXPECT_EQ(PsfHalfWidth(Millimetres(pupil)).value(), engine.psfHalfWidth) << pupil;
    EXPECT_EQ(FrequencyRange(Millimetres(pupil)).value(), step * 127.5) << pupil;
  }
}

TEST(Sampling, RingsAreThoseThatTheEngineDraws) {
  OpticsEngine engine;
  const double flat[kCoefficients] = {};
  std::vector<double> drawn(ORVANEL_PLANE_SAMPLES), expected(ORVANEL_PLANE_SAMPLES);
  double pitch = 0.0, strehl = 0.0;
  for (const double pupil : {2.0, 3.3, 6.1, 8.0}) {
    engine.synthesizeWavefront(flat, pupil, 1, 1, 1);
    engine.ComputePsf(kWavelength, expected.data(), &pitch, &strehl, ORVANEL_GRID_SIZE);
    for (int i = 1; i < 30; ++i) {
      const double acuity = 0.07 * i;
      double effective = 0.0;
      testing::internal::CaptureStdout();
      engine.DrawRingOptotype(expected.data(), ORVANEL_GRID_SIZE, acuity, &effective, 3);
      testing::internal::GetCapturedStdout();
      const int diameter = RingDiameter(Millimetres(pupil), acuity);
      DrawRing(drawn.data(), ORVANEL_GRID_SIZE, diameter, 3);
      EXPECT_EQ(drawn, expected) << pupil << ' ' << acuity;
      EXPECT_EQ(EffectiveAcuity(Millimetres(pupil), diameter), effective);
    }
  }
}

TEST(Sampling, AnAcuityBeyondTheSamplesHasNoRing) {
  try {
    RingDiameter(Millimetres(3.0), 1e9);
    FAIL();
  } catch (const RingTooSmall& error) {
    EXPECT_EQ(error.acuity, 1e9);
  }
  EXPECT_GT(RingDiameter(Millimetres(3.0), 1e-9), 1000000);
}

}  // namespace
}  // namespace orvanel::models
