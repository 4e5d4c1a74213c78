// Tests exhausted memory at any allocation. A load, an eye and a star are refused, and the next call works as if
// nothing had happened.
#include <gtest/gtest.h>
#include <malloc.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/failing_new.h"
#include "tests/support/loaded_library.h"

namespace orvanel {
namespace {

using test::FailingNew;
using test::LoadedLibrary;
using Plane = std::vector<double>;

constexpr double kPupil = 4.1;
constexpr double kEye[ORVANEL_COEFFICIENTS] = {0.0, 0.0, 0.0, 0.7e-4, -1.3e-4, 0.0, 0.4e-4, 0.9e-4};
constexpr double kUntouched = -5.5;
constexpr long kMaxAllocations = 1000;

Plane Mtf(const LoadedLibrary& library) {
  Plane plane(ORVANEL_PLANE_SAMPLES, kUntouched);
  double range = 0.0;
  EXPECT_EQ(library.GetMTF(plane.data(), &range), 1);
  return plane;
}

Plane Star(const LoadedLibrary& library) {
  Plane plane(ORVANEL_PLANE_SAMPLES, kUntouched);
  EXPECT_EQ(library.GetPattern(plane.data()), 1);
  return plane;
}

// What a library gives that never lacked memory.
struct Expected {
  Plane mtf, star;
};
const Expected& Undisturbed() {
  static const Expected expected = [] {
    LoadedLibrary library;
    library.InputPupil(kPupil);
    EXPECT_EQ(library.InputZer(kEye), 1);
    return Expected{Mtf(library), Star(library)};
  }();
  return expected;
}

// Lets an operation fail at its first allocation, then at its second, and so on until it needs no more; the argument
// tells whether this time something fails. Returns how often it failed.
long FailAtEach(const std::function<bool(long good)>& fails) {
  long good = 0;
  while (good < kMaxAllocations && fails(good)) ++good;
  EXPECT_LT(good, kMaxAllocations);
  return good;
}

TEST(Memory, ALoadWithoutItRefusesEverythingUntilThereIsSome) {
  const Expected& expected = Undisturbed();
  const long failures = FailAtEach([&](long good) {
    std::optional<LoadedLibrary> library;
    bool failed = false;
    {
      const FailingNew failing(good);
      library.emplace();
      failed = failing.HasFailed();
      if (failed) {
        library->InputPupil(kPupil);
        EXPECT_EQ(library->InputZer(kEye), 0) << good;
      }
    }
    Plane plane(ORVANEL_PLANE_SAMPLES, kUntouched);
    double a = kUntouched, b = kUntouched;
    EXPECT_EQ(library->GetPSF(plane.data(), &a, &b), failed ? 0 : 1) << good;
    EXPECT_EQ(library->GetMTF(plane.data(), &b), 0) << good;
    EXPECT_EQ(library->GetPattern(plane.data()), 0) << good;
    EXPECT_EQ(library->GetOrvanel(1.0, plane.data(), &b, nullptr, 1), 0) << good;
    EXPECT_EQ(plane[0], failed ? kUntouched : 0.0) << good;
    library->InputPupil(kPupil);
    EXPECT_EQ(library->InputZer(kEye), 1) << good;
    EXPECT_EQ(Mtf(*library), expected.mtf) << good;
    EXPECT_EQ(Star(*library), expected.star) << good;
    return failed;
  });
  EXPECT_GE(failures, 2);  // the block of planes, and who uses it
}

TEST(Memory, AFirstEyeWithoutItIsRefused) {
  const Expected& expected = Undisturbed();
  const long failures = FailAtEach([&](long good) {
    LoadedLibrary library;
    library.InputPupil(kPupil);
    {
      const FailingNew failing(good);
      if (library.InputZer(kEye) == 1) return false;
      EXPECT_TRUE(failing.HasFailed());
    }
    Plane plane(ORVANEL_PLANE_SAMPLES, kUntouched);
    double range = kUntouched;
    EXPECT_EQ(library.GetMTF(plane.data(), &range), 0);
    EXPECT_EQ(library.InputZer(kEye), 1);
    EXPECT_EQ(Mtf(library), expected.mtf);
    return true;
  });
  EXPECT_EQ(failures, 1);  // the plane
}

TEST(Memory, AFirstStarWithoutItIsRefusedAndSoIsTheStarItself) {
  const Expected& expected = Undisturbed();
  const long failures = FailAtEach([&](long good) {
    LoadedLibrary library;
    library.InputPupil(kPupil);
    EXPECT_EQ(library.InputZer(kEye), 1);
    Plane plane(ORVANEL_PLANE_SAMPLES, kUntouched);
    {
      const FailingNew failing(good);
      if (library.GetPattern(plane.data()) == 1) return false;
      EXPECT_TRUE(failing.HasFailed());
    }
    EXPECT_EQ(plane[0], kUntouched);
    EXPECT_EQ(library.GetPatternOriginal(plane.data()), 0);
    EXPECT_EQ(plane[0], kUntouched);
    EXPECT_EQ(Star(library), expected.star);
    EXPECT_EQ(library.GetPatternOriginal(plane.data()), 1);
    return true;
  });
  EXPECT_GE(failures, 2);  // the star and its spectrum
}

TEST(Memory, IsTakenByNoOtherCall) {
  const Expected& expected = Undisturbed();
  LoadedLibrary library;
  library.InputPupil(kPupil);
  ASSERT_EQ(library.InputZer(kEye), 1);
  Star(library);
  Plane plane(ORVANEL_PLANE_SAMPLES), other(ORVANEL_PLANE_SAMPLES), row(128), column(128), limit(128);
  double a = 0.0, b = 0.0;
  testing::internal::CaptureStdout();
  {
    const FailingNew failing(0);
    library.InputPupil(kPupil);
    EXPECT_EQ(library.GetPSF(plane.data(), &a, &b), 1);
    EXPECT_EQ(library.GetMTFGraph(row.data(), column.data(), limit.data(), &a), 1);
    EXPECT_EQ(library.GetOrvanel(0.7, plane.data(), &a, other.data(), 2), 1);
    EXPECT_EQ(library.GetOrvanel(0.7, plane.data(), &a, nullptr, 2), 1);
    EXPECT_EQ(library.GetPatternOriginal(plane.data()), 1);
    EXPECT_EQ(library.InputZer(kEye), 1);
    EXPECT_EQ(library.GetPattern(plane.data()), 1);
    EXPECT_EQ(library.GetMTF(other.data(), &a), 1);
    EXPECT_FALSE(failing.HasFailed());
  }
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(plane, expected.star);
  EXPECT_EQ(other, expected.mtf);
}

// Bytes that the process has allocated. Under the address sanitizer, whose leak check takes its place, 0.
std::size_t AllocatedBytes() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

TEST(Memory, OfAFailedLoadIsGivenBack) {
  Undisturbed();
  const std::size_t before = AllocatedBytes();
  for (long good = 0; good < 20; ++good) {
    std::optional<LoadedLibrary> library;
    const FailingNew failing(good);
    library.emplace();
  }
  // The dynamic loader's own tables may grow by a little; the first block of a load is 8 MiB.
  EXPECT_LT(AllocatedBytes(), before + 65536);
}

}  // namespace
}  // namespace orvanel
