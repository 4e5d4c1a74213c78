// Tests the eight exports: refusals, effects of the order of calls, and which outputs are written.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

#include "orvanel/optics_engine.h"
#include "tests/support/comma_locale.h"
#include "tests/support/loaded_library.h"
#include "tests/support/redirected_stdout.h"
#include "tests/support/temporary_folder.h"

namespace orvanel {
namespace {

using test::LoadedLibrary;
using Plane = std::vector<double>;
using Section = std::array<double, ORVANEL_SECTION_SAMPLES>;
using Coefficients = std::array<double, ORVANEL_COEFFICIENTS>;

constexpr double kUntouched = -123.25;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

Plane Untouched() { return Plane(ORVANEL_PLANE_SAMPLES, kUntouched); }

bool IsUntouched(const Plane& plane) {
  return std::all_of(plane.begin(), plane.end(), [](double v) { return v == kUntouched; });
}

Coefficients SomeEye() {
  Coefficients c{};
  c[3] = 1.1e-4;
  c[4] = 2.3e-4;
  c[7] = -1.7e-4;
  c[9] = 0.6e-4;
  return c;
}

Coefficients OtherEye() {
  Coefficients c{};
  c[5] = -2.1e-4;
  c[8] = 1.3e-4;
  return c;
}

double Minimum(const Plane& plane) { return *std::min_element(plane.begin(), plane.end()); }
double Maximum(const Plane& plane) { return *std::max_element(plane.begin(), plane.end()); }
double Sum(const Plane& plane) { return std::accumulate(plane.begin(), plane.end(), 0.0); }

// A fresh load of the library, and shorthands that silence the trace line.
class Exports : public testing::Test {
 protected:
  int Enter(double pupil, const Coefficients& c) {
    library.InputPupil(pupil);
    return library.InputZer(c.data());
  }

  Plane Psf() {
    Plane plane = Untouched();
    double strehl = 0.0, halfWidth = 0.0;
    EXPECT_EQ(library.GetPSF(plane.data(), &strehl, &halfWidth), 1);
    return plane;
  }

  Plane Mtf() {
    Plane plane = Untouched();
    double range = 0.0;
    EXPECT_EQ(library.GetMTF(plane.data(), &range), 1);
    return plane;
  }

  Plane Ring(double acuity, int gapDirection) {
    Plane image = Untouched();
    double effective = 0.0;
    testing::internal::CaptureStdout();
    EXPECT_EQ(library.GetOrvanel(acuity, image.data(), &effective, nullptr, gapDirection), 1);
    testing::internal::GetCapturedStdout();
    return image;
  }

  Plane Star() {
    Plane image = Untouched();
    EXPECT_EQ(library.GetPattern(image.data()), 1);
    return image;
  }

  LoadedLibrary library;
};

// ---- Refusals and load states, each from a fresh load

TEST_F(Exports, AllGettersButThePsfRefuseBeforeTheFirstEye) {
  Plane plane = Untouched(), optotype = Untouched();
  Section row, column, limit;
  row.fill(kUntouched);
  double scalar = kUntouched;
  EXPECT_EQ(library.GetMTF(plane.data(), &scalar), 0);
  EXPECT_EQ(library.GetMTFGraph(row.data(), column.data(), limit.data(), &scalar), 0);
  testing::internal::CaptureStdout();
  EXPECT_EQ(library.GetOrvanel(1.0, plane.data(), &scalar, optotype.data(), 3), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(library.GetPattern(plane.data()), 0);
  EXPECT_EQ(library.GetPatternOriginal(plane.data()), 0);
  EXPECT_TRUE(IsUntouched(plane));
  EXPECT_TRUE(IsUntouched(optotype));
  EXPECT_EQ(row[0], kUntouched);
  EXPECT_EQ(scalar, kUntouched);
}

TEST_F(Exports, PsfIsGivenFromLoadOn) {
  Plane plane = Untouched();
  double strehl = kUntouched, halfWidth = kUntouched;
  EXPECT_EQ(library.GetPSF(plane.data(), &strehl, &halfWidth), 1);
  EXPECT_NE(strehl, kUntouched);
  EXPECT_NE(halfWidth, kUntouched);
}

TEST_F(Exports, AnEyeWithoutPupilIsRefused) {
  double range = 0.0;
  Plane plane = Untouched();
  EXPECT_EQ(library.InputZer(SomeEye().data()), 0);
  EXPECT_EQ(library.GetMTF(plane.data(), &range), 0);
}

TEST_F(Exports, AnEyeWithAPupilOfZeroOrNanIsRefused) {
  for (const double pupil : {0.0, -0.0, kNan, -kNan}) {
    EXPECT_EQ(Enter(pupil, SomeEye()), 0) << pupil;
    double range = 0.0;
    Plane plane = Untouched();
    EXPECT_EQ(library.GetMTF(plane.data(), &range), 0);
    EXPECT_EQ(library.GetPattern(plane.data()), 0);
  }
}

TEST_F(Exports, AnEyeWithANegativePupilIsNotRefused) {
  EXPECT_EQ(Enter(-3.0, SomeEye()), 1);
  Plane plane = Untouched();
  double strehl = 0.0, halfWidth = 0.0;
  library.GetPSF(plane.data(), &strehl, &halfWidth);
  EXPECT_NEAR(halfWidth, -0.10654421333, 5e-12);
}

TEST_F(Exports, ARefusedEyeLeavesTheResultsOfTheLastOne) {
  Enter(3.0, SomeEye());
  const Plane psf = Psf(), mtf = Mtf();
  EXPECT_EQ(Enter(0.0, OtherEye()), 0);
  EXPECT_EQ(Psf(), psf);
  EXPECT_EQ(Mtf(), mtf);
}

TEST_F(Exports, ANewPupilChangesNothingUntilTheNextEye) {
  Enter(3.0, SomeEye());
  const Plane star = Star();
  library.InputPupil(6.0);
  Plane plane = Untouched();
  double strehl = 0.0, halfWidth = 0.0, range = 0.0;
  library.GetPSF(plane.data(), &strehl, &halfWidth);
  library.GetMTF(plane.data(), &range);
  EXPECT_NEAR(halfWidth, 0.10654421333, 5e-12);
  EXPECT_NEAR(range, 178.43356917149, 1e-9);
  EXPECT_EQ(Star(), star);
  library.InputZer(SomeEye().data());
  library.GetPSF(plane.data(), &strehl, &halfWidth);
  EXPECT_NEAR(halfWidth, 0.10654421333 / 2.0, 5e-12);
}

TEST_F(Exports, TheStarItselfIsRefusedUntilItsImageWasAskedFor) {
  Plane plane = Untouched();
  EXPECT_EQ(library.GetPatternOriginal(plane.data()), 0);
  Enter(3.0, SomeEye());
  EXPECT_EQ(library.GetPatternOriginal(plane.data()), 0);
  Ring(1.0, 3);
  EXPECT_EQ(library.GetPatternOriginal(plane.data()), 0);
  EXPECT_TRUE(IsUntouched(plane));
  Star();
  EXPECT_EQ(library.GetPatternOriginal(plane.data()), 1);
}

TEST_F(Exports, ARingWithoutImageIsRefusedAndKeepsTheFlag) {
  Enter(3.0, SomeEye());
  Plane optotype = Untouched();
  double effective = kUntouched;
  testing::internal::CaptureStdout();
  EXPECT_EQ(library.GetOrvanel(1.0, nullptr, &effective, optotype.data(), 1), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(effective, kUntouched);
  EXPECT_TRUE(IsUntouched(optotype));
  EXPECT_EQ(Maximum(Star()), 1.0);
  EXPECT_EQ(Minimum(Star()), 0.0);
}

TEST(Load, AFreshLoadStartsFromNothing) {
  Plane plane = Untouched();
  double range = 0.0;
  {
    LoadedLibrary library;
    library.InputPupil(3.0);
    EXPECT_EQ(library.InputZer(SomeEye().data()), 1);
    EXPECT_EQ(library.GetPattern(plane.data()), 1);
  }
  EXPECT_FALSE(LoadedLibrary::IsLoaded());
  LoadedLibrary library;
  EXPECT_EQ(library.InputZer(SomeEye().data()), 0);
  EXPECT_EQ(library.GetMTF(plane.data(), &range), 0);
  EXPECT_EQ(library.GetPatternOriginal(plane.data()), 0);
}

// ---- What the getters give

TEST_F(Exports, PsfAndItsScalarsAreThoseOfTheEngine) {
  Enter(4.3, SomeEye());
  OpticsEngine engine(SomeEye().data(), 4.3, 256, 1, 1, 1);
  Plane expected(ORVANEL_PLANE_SAMPLES), plane = Untouched();
  double pitch = 0.0, expectedStrehl = 0.0, strehl = 0.0, halfWidth = 0.0;
  engine.ComputePsf(kWavelength, expected.data(), &pitch, &expectedStrehl, 256);
  EXPECT_EQ(library.GetPSF(plane.data(), &strehl, &halfWidth), 1);
  EXPECT_EQ(plane, expected);
  EXPECT_EQ(strehl, expectedStrehl);
  EXPECT_EQ(halfWidth, engine.psfHalfWidth);
}

TEST_F(Exports, AllSecondOrderTermsAreUsed) {
  for (const std::size_t j : {std::size_t{3}, std::size_t{4}, std::size_t{5}}) {
    Coefficients c{};
    c[j] = 2e-4;
    Enter(3.0, c);
    Plane plane = Untouched();
    double strehl = 1.0, halfWidth = 0.0;
    library.GetPSF(plane.data(), &strehl, &halfWidth);
    EXPECT_LT(strehl, 0.5) << j;
  }
}

TEST_F(Exports, MtfRangeIsTheStepTimesHalfTheSamples) {
  Enter(3.0, SomeEye());
  Plane plane = Untouched();
  double range = 0.0;
  EXPECT_EQ(library.GetMTF(plane.data(), &range), 1);
  EXPECT_NEAR(range, 178.43, 0.005);
  EXPECT_NEAR(range / 127.5, 1.3994789739, 5e-11);
  EXPECT_EQ(plane[128 * 256 + 128], 1.0);
}

TEST_F(Exports, GraphCutsTheMtfToTheRightAndDown) {
  Enter(3.0, SomeEye());
  const Plane mtf = Mtf();
  Section row{}, column{}, limit{};
  double range = 0.0;
  EXPECT_EQ(library.GetMTFGraph(row.data(), column.data(), limit.data(), &range), 1);
  for (std::size_t i = 0; i < 128; ++i) {
    EXPECT_EQ(row[i], mtf[128 * 256 + 128 + i]);
    EXPECT_EQ(column[i], mtf[(128 + i) * 256 + 128]);
  }
  EXPECT_NE(row, column);
  EXPECT_NEAR(range, 178.43356917149, 1e-9);
}

TEST_F(Exports, GraphGivesTheDiffractionLimit) {
  Enter(3.0, SomeEye());
  Section row{}, column{}, limit{};
  double range = 0.0;
  library.GetMTFGraph(row.data(), column.data(), limit.data(), &range);
  EXPECT_NEAR(limit[0], 1.000000000000001, 4e-16);
  EXPECT_NEAR(limit[1], 0.99005, 5e-6);
  EXPECT_NEAR(limit[64], 0.39100, 5e-6);
  EXPECT_NEAR(limit[127], 0.00083, 5e-6);
  EXPECT_TRUE(std::is_sorted(limit.rbegin(), limit.rend()));
}

TEST_F(Exports, GraphWithoutDiffractionLimitFillsTheRest) {
  Enter(3.0, SomeEye());
  Section row{}, column{}, otherRow{}, otherColumn{}, limit{};
  double range = 0.0, otherRange = 0.0;
  library.GetMTFGraph(row.data(), column.data(), limit.data(), &range);
  EXPECT_EQ(library.GetMTFGraph(otherRow.data(), otherColumn.data(), nullptr, &otherRange), 1);
  EXPECT_EQ(row, otherRow);
  EXPECT_EQ(column, otherColumn);
  EXPECT_EQ(range, otherRange);
}

TEST_F(Exports, ResultsAreReplacedByEveryEye) {
  Enter(3.0, SomeEye());
  const Plane psf = Psf(), mtf = Mtf(), ring = Ring(0.5, 1), star = Star();
  Enter(3.0, OtherEye());
  EXPECT_NE(Psf(), psf);
  EXPECT_NE(Mtf(), mtf);
  EXPECT_NE(Ring(0.5, 1), ring);
  Enter(3.0, SomeEye());
  EXPECT_EQ(Psf(), psf);
  EXPECT_EQ(Mtf(), mtf);
  EXPECT_EQ(Ring(0.5, 1), ring);
  EXPECT_EQ(Star(), star);
}

TEST_F(Exports, GettersMayBeRepeatedInAnyOrder) {
  Enter(3.0, SomeEye());
  const Plane psf = Psf(), star = Star(), mtf = Mtf();
  EXPECT_EQ(Star(), star);
  EXPECT_EQ(Psf(), psf);
  EXPECT_EQ(Mtf(), mtf);
  EXPECT_EQ(Star(), star);
}

// ---- Rings

TEST_F(Exports, RingGivesImageOptotypeAndEffectiveAcuity) {
  Enter(4.0, SomeEye());
  Plane image = Untouched(), optotype = Untouched();
  double effective = 0.0;
  testing::internal::CaptureStdout();
  EXPECT_EQ(library.GetOrvanel(1.0, image.data(), &effective, optotype.data(), 3), 1);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "1\t40\n");
  EXPECT_NEAR(effective, 0.990156, 5e-7);
  EXPECT_EQ(optotype[128 * 256 + 148], 1.0);  // the gap on the right
  EXPECT_EQ(optotype[128 * 256 + 109], 0.0);  // the stroke on the left
  EXPECT_GE(Minimum(image), 0.0);
  EXPECT_LE(Maximum(image), 1.0);
}

TEST_F(Exports, RingWithoutOptotypeGivesTheSameImage) {
  Enter(4.0, SomeEye());
  Plane image = Untouched(), optotype = Untouched();
  double effective = 0.0;
  testing::internal::CaptureStdout();
  library.GetOrvanel(0.7, image.data(), &effective, optotype.data(), 2);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(Ring(0.7, 2), image);
}

TEST_F(Exports, EveryGapDirectionButDownUpAndLeftIsRight) {
  Enter(4.0, SomeEye());
  const Plane right = Ring(0.7, 3);
  for (const int gap : {0, 5, -1, 7, std::numeric_limits<int>::min()}) EXPECT_EQ(Ring(0.7, gap), right) << gap;
  for (const int gap : {1, 2, 4}) EXPECT_NE(Ring(0.7, gap), right) << gap;
}

TEST_F(Exports, RingIsNeverStretched) {
  Enter(4.0, SomeEye());
  const Plane first = Ring(0.3, 1);
  EXPECT_GT(Minimum(first), 0.0);
  Star();
  EXPECT_EQ(Ring(0.3, 1), first);
}

TEST_F(Exports, TraceLineIsFlushedBeforeTheCallReturns) {
  Enter(4.0, SomeEye());
  Plane image = Untouched();
  double effective = 0.0;
  std::string written;
  {
    const test::RedirectedStdout redirected;
    library.GetOrvanel(0.5, image.data(), &effective, nullptr, 3);
    written = redirected.Written();
  }
  EXPECT_EQ(written, "0.5\t80\n");
}

TEST_F(Exports, TraceLineHasADecimalPointUnderADecimalComma) {
  Enter(4.0, SomeEye());
  Plane image = Untouched();
  double effective = 0.0;
  const test::CommaLocale comma;
  testing::internal::CaptureStdout();
  std::printf("%g\n", 0.5);
  library.GetOrvanel(0.5, image.data(), &effective, nullptr, 3);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "0,5\n0.5\t80\n");
}

TEST_F(Exports, NothingElseIsPrintedAndNoFileIsMade) {
  const test::ScratchFolder folder;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  library.InputZer(SomeEye().data());
  Enter(4.0, SomeEye());
  Psf();
  Mtf();
  Section row, column, limit;
  double range = 0.0;
  library.GetMTFGraph(row.data(), column.data(), limit.data(), &range);
  Plane plane = Star();
  library.GetPatternOriginal(plane.data());
  library.GetOrvanel(1.0, nullptr, &range, nullptr, 3);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  Ring(1.0, 3);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

// ---- The star and the order of calls

TEST_F(Exports, StarItselfIsBlackAndWhite) {
  Enter(3.0, SomeEye());
  Star();
  Plane star = Untouched();
  EXPECT_EQ(library.GetPatternOriginal(star.data()), 1);
  EXPECT_TRUE(std::all_of(star.begin(), star.end(), [](double v) { return v == 0.0 || v == 1.0; }));
  EXPECT_EQ(star[0], 0.0);
  EXPECT_EQ(star[127 * 256 + 255], 1.0);
  EXPECT_EQ(star[128 * 256 + 255], 1.0);
  EXPECT_EQ(Sum(star), 32402.0);
}

TEST_F(Exports, StarItselfDoesNotDependOnTheEye) {
  Enter(3.0, SomeEye());
  Star();
  Plane first = Untouched(), second = Untouched();
  library.GetPatternOriginal(first.data());
  Enter(6.0, OtherEye());
  Ring(1.0, 3);
  library.GetPatternOriginal(second.data());
  EXPECT_EQ(first, second);
}

TEST_F(Exports, StarIsStretchedAfterAnEyeAndKeepsItsLightAfterARing) {
  Enter(3.0, SomeEye());
  const Plane stretched = Star();
  EXPECT_EQ(Minimum(stretched), 0.0);
  EXPECT_EQ(Maximum(stretched), 1.0);

  Ring(1.0, 3);
  const Plane clipped = Star();
  EXPECT_NE(clipped, stretched);
  EXPECT_GE(Minimum(clipped), 0.0);
  EXPECT_LE(Maximum(clipped), 1.0);
  EXPECT_LE(Sum(clipped), 32402.0 * (1.0 + 1e-12));
  EXPECT_EQ(Star(), clipped);

  library.InputZer(SomeEye().data());
  EXPECT_EQ(Star(), stretched);
}

TEST_F(Exports, StarAfterARefusedEyeStaysAsTheLastRingLeftIt) {
  Enter(3.0, SomeEye());
  Ring(1.0, 3);
  const Plane clipped = Star();
  EXPECT_EQ(Enter(0.0, SomeEye()), 0);
  EXPECT_EQ(Star(), clipped);
}

// ---- Hosts and their memory

TEST_F(Exports, BuffersMayHaveAnyAlignment) {
  const Plane expectedPsf = (Enter(4.0, SomeEye()), Psf());
  const Plane expectedMtf = Mtf(), expectedStar = Star(), expectedRing = Ring(0.7, 1);
  constexpr std::size_t kBytes = ORVANEL_PLANE_SAMPLES * sizeof(double);
  std::vector<char> memory(2 * kBytes + 512);
  const auto at = [&](std::size_t offset) { return reinterpret_cast<double*>(memory.data() + offset); };
  const auto read = [&](std::size_t offset) {
    Plane plane(ORVANEL_PLANE_SAMPLES);
    std::memcpy(plane.data(), memory.data() + offset, kBytes);
    return plane;
  };
  double scalar = 0.0;
  for (const std::size_t odd : {std::size_t{1}, std::size_t{3}, std::size_t{12}}) {
    std::memcpy(memory.data() + odd, SomeEye().data(), sizeof(Coefficients));
    ASSERT_EQ(library.InputZer(at(odd)), 1);
    ASSERT_EQ(library.GetPSF(at(odd), at(kBytes + 101), at(kBytes + 203)), 1);
    EXPECT_EQ(read(odd), expectedPsf);
    ASSERT_EQ(library.GetMTF(at(odd), at(kBytes + 101)), 1);
    EXPECT_EQ(read(odd), expectedMtf);
    ASSERT_EQ(library.GetPattern(at(odd)), 1);
    EXPECT_EQ(read(odd), expectedStar);
    ASSERT_EQ(library.GetPatternOriginal(at(odd)), 1);
    testing::internal::CaptureStdout();
    ASSERT_EQ(library.GetOrvanel(0.7, at(odd), at(2 * kBytes + 301), at(kBytes + odd + 16), 1), 1);
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(read(odd), expectedRing);
    ASSERT_EQ(library.GetMTFGraph(at(odd), at(1024 + odd), at(2048 + odd), at(4096 + odd)), 1);
    std::memcpy(&scalar, memory.data() + 4096 + odd, sizeof scalar);
    EXPECT_NEAR(scalar, 178.43356917149 * 4.0 / 3.0, 1e-9);
  }
}

TEST_F(Exports, CoefficientsOfTheHostAreOnlyRead) {
  const Coefficients before = SomeEye();
  Coefficients c = before;
  Enter(4.0, c);
  EXPECT_EQ(c, before);
}

TEST_F(Exports, CoefficientsAreCopied) {
  Coefficients c = SomeEye();
  Enter(4.0, c);
  const Plane star = Star();
  c.fill(1.0);
  EXPECT_EQ(Star(), star);
}

// ---- Coefficients that mean nothing

TEST_F(Exports, ANanCoefficientLeavesAnEyeWithoutPupilAndTheNextEyeIsRight) {
  Enter(4.0, SomeEye());
  const Plane psf = Psf(), mtf = Mtf(), ring = Ring(0.7, 1);
  for (std::size_t j = 3; j < ORVANEL_COEFFICIENTS; j += 4) {
    Coefficients broken = SomeEye();
    broken[j] = kNan;
    EXPECT_EQ(Enter(4.0, broken), 1);
    Plane plane = Untouched();
    double strehl = -1.0, halfWidth = 0.0;
    EXPECT_EQ(library.GetPSF(plane.data(), &strehl, &halfWidth), 1);
    EXPECT_TRUE(std::all_of(plane.begin(), plane.end(), [](double v) { return v == 0.0; }));
    EXPECT_EQ(strehl, 0.0);
    Mtf();
    Star();
    const Plane black = Ring(0.7, 1);
    EXPECT_EQ(Maximum(black), 0.0);
  }
  EXPECT_EQ(Enter(4.0, SomeEye()), 1);
  EXPECT_EQ(Psf(), psf);
  EXPECT_EQ(Mtf(), mtf);
  EXPECT_EQ(Ring(0.7, 1), ring);
}

TEST_F(Exports, CoefficientsBeyondAllMeasureDoNotHangAndTheNextEyeIsRight) {
  Enter(4.0, SomeEye());
  const Plane psf = Psf();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double value : {kInfinity, -kInfinity, 1e300, -1e300, 1e10, -1e10, 5e-324, 1e308}) {
    Coefficients c{};
    c[4] = value;
    c[13] = -value;
    EXPECT_EQ(Enter(4.0, c), 1) << value;
    Mtf();
    Star();
    Ring(0.7, 4);
  }
  Enter(4.0, SomeEye());
  EXPECT_EQ(Psf(), psf);
}

TEST_F(Exports, PistonAndTiltOfAnyValueChangeNothing) {
  Enter(4.0, SomeEye());
  const Plane psf = Psf(), mtf = Mtf();
  for (const double value : {0.25, kNan, std::numeric_limits<double>::infinity()}) {
    Coefficients c = SomeEye();
    c[0] = c[1] = c[2] = value;
    Enter(4.0, c);
    EXPECT_EQ(Psf(), psf);
    EXPECT_EQ(Mtf(), mtf);
  }
}

}  // namespace
}  // namespace orvanel
