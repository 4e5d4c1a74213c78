// Tests unusual hosts: one buffer for two outputs, a thread for each call, a fork after the load.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cfenv>
#include <csignal>
#include <thread>
#include <vector>

#include "tests/support/loaded_library.h"

namespace orvanel {
namespace {

using test::LoadedLibrary;
using Plane = std::vector<double>;

constexpr double kEye[ORVANEL_COEFFICIENTS] = {0.0, 0.0, 0.0, 0.8e-4, 1.9e-4, 0.0, 0.0, -0.6e-4, 0.3e-4};
constexpr double kOtherEye[ORVANEL_COEFFICIENTS] = {0.0, 0.0, 0.0, 0.0, 0.3e-4, -1.1e-4, 0.7e-4};

Plane Psf(const LoadedLibrary& library) {
  Plane plane(ORVANEL_PLANE_SAMPLES);
  double strehl = 0.0, halfWidth = 0.0;
  EXPECT_EQ(library.GetPSF(plane.data(), &strehl, &halfWidth), 1);
  return plane;
}

Plane Star(const LoadedLibrary& library) {
  Plane plane(ORVANEL_PLANE_SAMPLES);
  EXPECT_EQ(library.GetPattern(plane.data()), 1);
  return plane;
}

class Hosts : public testing::Test {
 protected:
  Hosts() {
    library.InputPupil(4.1);
    EXPECT_EQ(library.InputZer(kEye), 1);
  }

  // Without its line on standard output.
  Plane Ring(double* image, double* optotype) {
    double effective = 0.0;
    testing::internal::CaptureStdout();
    EXPECT_EQ(library.GetOrvanel(0.6, image, &effective, optotype, 4), 1);
    testing::internal::GetCapturedStdout();
    return {image, image + ORVANEL_PLANE_SAMPLES};
  }

  LoadedLibrary library;
};

TEST_F(Hosts, WhoLendOneBufferForImageAndOptotypeGetTheImage) {
  Plane image(ORVANEL_PLANE_SAMPLES), optotype(ORVANEL_PLANE_SAMPLES), both(ORVANEL_PLANE_SAMPLES);
  const Plane expected = Ring(image.data(), optotype.data());
  EXPECT_NE(image, optotype);
  EXPECT_EQ(Ring(both.data(), both.data()), expected);
}

TEST_F(Hosts, WhoLendOneBufferForSectionsGetTheLastOneWritten) {
  Plane row(128), column(128), limit(128), one(128);
  double range = 0.0;
  ASSERT_EQ(library.GetMTFGraph(row.data(), column.data(), limit.data(), &range), 1);
  ASSERT_EQ(library.GetMTFGraph(one.data(), one.data(), nullptr, &range), 1);
  EXPECT_EQ(one, column);
  ASSERT_EQ(library.GetMTFGraph(one.data(), one.data(), one.data(), &range), 1);
  EXPECT_EQ(one, limit);
}

TEST_F(Hosts, WhoLendOneNumberForTwoGetTheLastOneWritten) {
  Plane plane(ORVANEL_PLANE_SAMPLES);
  double strehl = 0.0, halfWidth = 0.0, one = 0.0;
  ASSERT_EQ(library.GetPSF(plane.data(), &strehl, &halfWidth), 1);
  ASSERT_NE(strehl, halfWidth);
  ASSERT_EQ(library.GetPSF(plane.data(), &one, &one), 1);
  EXPECT_EQ(one, halfWidth);
}

TEST_F(Hosts, WhoCallFromOneThreadAfterTheOtherGetTheSame) {
  const Plane psf = Psf(library), star = Star(library);
  Plane otherPsf, otherStar;
  std::thread([&] { library.InputPupil(4.1); }).join();
  std::thread([&] { EXPECT_EQ(library.InputZer(kEye), 1); }).join();
  std::thread([&] { otherPsf = Psf(library); }).join();
  std::thread([&] { otherStar = Star(library); }).join();
  EXPECT_EQ(otherPsf, psf);
  EXPECT_EQ(otherStar, star);
}

TEST_F(Hosts, WhoForkHaveAnEyeInEachProcess) {
  const Plane psf = Psf(library), star = Star(library);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    // The eye of before the fork, then one of its own.
    bool good = Psf(library) == psf;
    good = good && library.InputZer(kOtherEye) == 1 && Psf(library) != psf && Star(library) != star;
    good = good && library.InputZer(kEye) == 1 && Psf(library) == psf && Star(library) == star;
    _exit(good ? 0 : 1);
  }
  ASSERT_EQ(library.InputZer(kOtherEye), 1);
  EXPECT_NE(Psf(library), psf);
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  ASSERT_EQ(library.InputZer(kEye), 1);
  EXPECT_EQ(Psf(library), psf);
}

TEST_F(Hosts, WhoRoundUpwardsGetOtherBits) {
  const Plane psf = Psf(library);
  std::fesetround(FE_UPWARD);
  const int done = library.InputZer(kEye);
  std::fesetround(FE_TONEAREST);
  EXPECT_EQ(done, 1);
  EXPECT_NE(Psf(library), psf);
  EXPECT_EQ(library.InputZer(kEye), 1);
  EXPECT_EQ(Psf(library), psf);
}

TEST_F(Hosts, WhoseTraceNobodyReadsAreEndedBySigpipeUnlessTheyIgnoreIt) {
  for (const bool ignored : {false, true}) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      std::signal(SIGPIPE, ignored ? SIG_IGN : SIG_DFL);
      int ends[2];
      if (pipe(ends) != 0 || dup2(ends[1], STDOUT_FILENO) < 0) _exit(2);
      close(ends[0]);
      Plane image(ORVANEL_PLANE_SAMPLES);
      double effective = 0.0;
      _exit(library.GetOrvanel(0.6, image.data(), &effective, nullptr, 4) == 1 ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    if (ignored) {
      EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    } else {
      EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGPIPE) << status;
    }
  }
}

}  // namespace
}  // namespace orvanel
