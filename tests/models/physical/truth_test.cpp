// The physical model against PSFs, Strehl ratios and OTFs of an independent script, with another quadrature.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "tests/models/physical/examples.h"
#include "tests/support/physical_truth.h"

namespace orvanel::physical {
namespace {

// What the headers state.
constexpr double kPsf = 1e-9, kStrehl = 1e-9, kOtfReference = 1e-7, kOtfLattice = 1e-4;

// The eyes of the file, in its order.
constexpr const char* kEyes[] = {"perfect",         "defocus",  "coma",           "order-4",
                                 "order-6",         "order-8",  "order-10-round", "order-10-star",
                                 "half-a-wave",     "one-wave", "two-waves",      "five-waves",
                                 "stiles-crawford", "ellipse",  "infrared",       "white"};

class PhysicalTruth : public testing::TestWithParam<const char*> {
 protected:
  const TrueEye truth = ReadPhysicalTruth(ORVANEL_PHYSICAL_TRUTH, GetParam());
  Workspace workspace{*ActiveKernels()};
};

// Writes a measured error to the test's report.
void Record(const char* what, double error) { testing::Test::RecordProperty(what, testing::PrintToString(error)); }

TEST_P(PhysicalTruth, IsMetByThePointSpread) {
  const auto psf = PointSpreadOf(truth.eye, truth.light, truth.grid, PsfUnit::kStrehl, workspace);
  ASSERT_TRUE(psf);
  const double error = PsfError(truth, psf->samples);
  Record("psf", error);
  EXPECT_LE(error, kPsf);
}

TEST_P(PhysicalTruth, IsMetByTheStrehlRatios) {
  const auto ratios = StrehlRatiosOf(truth.eye, truth.light, truth.grid.view, workspace);
  ASSERT_TRUE(ratios);
  Record("axis", ratios->axis - truth.strehlOnAxis);
  Record("peak", ratios->peak - truth.strehlAtPeak);
  EXPECT_NEAR(ratios->axis, truth.strehlOnAxis, kStrehl);
  EXPECT_NEAR(ratios->peak, truth.strehlAtPeak, kStrehl);
  if (!truth.hasOnePeak) return;
  // A peak is flat: where it is lower by 1e-11, the place is 1e-5 of its width away.
  EXPECT_NEAR(ratios->peakX, truth.peakX, 1e-5);
  EXPECT_NEAR(ratios->peakY, truth.peakY, 1e-5);
}

TEST_P(PhysicalTruth, IsMetByTheOverlapIntegral) {
  const auto otf = TransferFunctionAt(truth.eye, truth.light, FrequenciesOf(truth), truth.frequencies.view, workspace);
  ASSERT_TRUE(otf);
  const double error = OtfError(truth, *otf);
  Record("otf", error);
  EXPECT_LE(error, kOtfReference);
}

TEST_P(PhysicalTruth, IsMetByTheLattice) {
  const auto otf = TransferFunctionOf(truth.eye, truth.light, truth.frequencies, workspace);
  ASSERT_TRUE(otf);
  const double error = OtfError(truth, *otf);
  Record("lattice", error);
  EXPECT_LE(error, kOtfLattice);
}

std::string EyeName(const testing::TestParamInfo<const char*>& info) {
  std::string name = info.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Of, PhysicalTruth, testing::ValuesIn(kEyes), EyeName);

TEST(PhysicalTruthFile, HasItsEyesAndAllTheirSamples) {
  const std::vector<TrueEye> eyes = ReadPhysicalTruth(ORVANEL_PHYSICAL_TRUTH);
  std::vector<std::string> names;
  for (const TrueEye& eye : eyes) {
    names.push_back(eye.name);
    EXPECT_EQ(eye.psf.size(), eye.grid.columns == 256 ? 256U : 36U) << eye.name;
    EXPECT_EQ(eye.otf.size(), eye.frequencies.side == 256 ? 64U : 14U) << eye.name;
    EXPECT_GT(eye.strehlAtPeak, 0.0) << eye.name;
    EXPECT_GE(eye.strehlAtPeak, eye.strehlOnAxis) << eye.name;
  }
  EXPECT_EQ(names, std::vector<std::string>(std::begin(kEyes), std::end(kEyes)));
}

}  // namespace
}  // namespace orvanel::physical
