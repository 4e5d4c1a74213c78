// Tests hosts whose ORVANEL_KERNELS is empty or unknown.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <string>
#include <vector>

#include "tests/support/loaded_library.h"

namespace orvanel {
namespace {

using test::LoadedLibrary;
using Plane = std::vector<double>;

constexpr double kEye[ORVANEL_COEFFICIENTS] = {0.0, 0.0, 0.0, 0.8e-4, 1.9e-4, 0.0, 0.0, -0.6e-4, 0.3e-4};

class KernelsOfAHost : public testing::Test {
 protected:
  ~KernelsOfAHost() override { unsetenv("ORVANEL_KERNELS"); }
};

Plane Psf() {
  const LoadedLibrary library;
  Plane plane(ORVANEL_PLANE_SAMPLES);
  double strehl = 0.0, halfWidth = 0.0;
  library.InputPupil(4.1);
  EXPECT_EQ(library.InputZer(kEye), 1);
  EXPECT_EQ(library.GetPSF(plane.data(), &strehl, &halfWidth), 1);
  return plane;
}

TEST_F(KernelsOfAHost, AreThoseOfTheCpuWhereTheNameIsEmpty) {
  unsetenv("ORVANEL_KERNELS");
  const Plane expected = Psf();
  setenv("ORVANEL_KERNELS", "", 1);
  testing::internal::CaptureStderr();
  EXPECT_EQ(Psf(), expected);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(KernelsOfAHost, OfAnUnknownNameMakeEveryCallRefuseWithOneMessage) {
  setenv("ORVANEL_KERNELS", "sse9", 1);
  testing::internal::CaptureStderr();
  {
    const LoadedLibrary library;
    Plane plane(ORVANEL_PLANE_SAMPLES, -5.5);
    double a = -5.5, b = -5.5;
    library.InputPupil(4.1);
    for (int turn = 0; turn < 3; ++turn) {
      EXPECT_EQ(library.InputZer(kEye), 0);
      EXPECT_EQ(library.GetPSF(plane.data(), &a, &b), 0);
      EXPECT_EQ(library.GetMTF(plane.data(), &a), 0);
      EXPECT_EQ(library.GetMTFGraph(plane.data(), plane.data(), plane.data(), &a), 0);
      EXPECT_EQ(library.GetOrvanel(0.5, plane.data(), &a, nullptr, 1), 0);
      EXPECT_EQ(library.GetPattern(plane.data()), 0);
      EXPECT_EQ(library.GetPatternOriginal(plane.data()), 0);
    }
    EXPECT_EQ(plane, Plane(ORVANEL_PLANE_SAMPLES, -5.5));
    EXPECT_EQ(a, -5.5);
    EXPECT_EQ(b, -5.5);
  }
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_EQ(said.find("orvanel: ORVANEL_KERNELS is 'sse9'; this CPU runs baseline"), 0U) << said;
  EXPECT_EQ(said.find('\n'), said.size() - 1) << said;
}

}  // namespace
}  // namespace orvanel
