// The program's searches are the engine's, end, and leave nothing behind.
#include "evaluation/best_focus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "eye/eye_coefficients.h"
#include "orvanel/optics_engine.h"
#include "tests/support/captured_stdout.h"
#include "tests/support/temporary_files.h"

namespace orvanel::evaluation {
namespace {

constexpr Millimetres kPupil(4.5);

LibraryCoefficients Lopsided() {
  return ToLibrary({kOsaConvention, {0, 0, 0, -0.09, 0.34, 0.11, 0.05, -0.12, 0.07, 0, 0, 0, 0.1}});
}

std::array<double, ORVANEL_COEFFICIENTS> Bare(const LibraryCoefficients& coefficients) {
  std::array<double, ORVANEL_COEFFICIENTS> bare;
  std::transform(coefficients.begin(), coefficients.end(), bare.begin(), [](Millimetres c) { return c.value(); });
  return bare;
}

double StrehlOf(const std::array<double, ORVANEL_COEFFICIENTS>& c) {
  OpticsEngine engine(ORVANEL_GRID_SIZE);
  GridPlane psf(ORVANEL_GRID_SIZE);
  double pitch = 0.0, strehl = 0.0;
  engine.synthesizeWavefront(c.data(), kPupil.value(), 1, 1, 1);
  engine.ComputePsf(kWavelength, psf.data(), &pitch, &strehl, ORVANEL_GRID_SIZE);
  return strehl;
}

TEST(BestFocus, OptimiseGivesWhatTheEngineGives) {
  auto c = Bare(Lopsided());
  OpticsEngine engine(ORVANEL_GRID_SIZE);
  for (const bool astigmatism : {false, true}) {
    FocusSearch search;
    search.astigmatism = astigmatism;
    const FocusResult result = engine.OptimiseFocus(c.data(), kPupil.value(), search);
    FocusRequest request;
    request.astigmatism = astigmatism;
    const BestFocus best = FindBestFocus(Lopsided(), kPupil, request);
    EXPECT_EQ(Bare(best.coefficients), result.coefficients);
    EXPECT_EQ(best.trials, result.trials);
    EXPECT_EQ(best.before.strehl, StrehlOf(c));
    EXPECT_EQ(best.after.strehl, StrehlOf(result.coefficients));
    EXPECT_GT(best.after.strehl, best.before.strehl);
  }
}

TEST(BestFocus, WalksGiveWhatTheEngineGives) {
  FocusRequest request;
  request.step = Millimetres(2e-5);
  request.method = FocusMethod::kWalkToPsf;
  for (const bool without : {false, true}) {
    request.withoutAstigmatism = without;
    OpticsEngine engine(ORVANEL_GRID_SIZE);
    auto byPsf = Bare(Lopsided());
    engine.searchBestFocusByPsf(byPsf.data(), kPupil.value(), 2e-5, without ? 0 : 1);
    const BestFocus psf = FindBestFocus(Lopsided(), kPupil, request);
    EXPECT_EQ(Bare(psf.coefficients), byPsf);
    EXPECT_GT(psf.after.strehl, psf.before.strehl);
    EXPECT_TRUE(psf.converged);
  }
}

TEST(BestFocus, TheFitPrintsNothingAndLeavesTheCurrentFolderAlone) {
  const TemporaryFolder folder;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  Write(folder / "tmp_test.txt", "precious");
  FocusRequest request;
  request.method = FocusMethod::kWalkToFit;
  request.step = Millimetres(5e-3);
  const std::string printed = test::OutputOf([&] {
    const BestFocus best = FindBestFocus(Lopsided(), kPupil, request);
    EXPECT_LE(best.after.deviation, best.before.deviation);
    FindBestFocus({}, kPupil, request);  // flat: the fit has no solution
  });
  EXPECT_EQ(printed, "");
  EXPECT_EQ(std::filesystem::current_path(), std::filesystem::canonical(folder.path()));
  EXPECT_EQ(Read(folder / "tmp_test.txt"), "precious");
  std::filesystem::current_path(before);
}

TEST(BestFocus, AWalkEndsAfterItsTrials) {
  FocusRequest request;
  request.step = Millimetres(1e-9);
  request.maximumTrials = 7;
  for (const FocusMethod method : {FocusMethod::kWalkToPsf, FocusMethod::kWalkToFit}) {
    request.method = method;
    const BestFocus best = FindBestFocus(Lopsided(), kPupil, request);
    EXPECT_EQ(best.trials, 7);
    EXPECT_FALSE(best.converged);
  }
}

}  // namespace
}  // namespace orvanel::evaluation
