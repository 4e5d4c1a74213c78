// Tests that the searches of the model are those of the engine, end, and do not change later results.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "eye/conventions/mode.h"
#include "models/adapters/classic_model.h"
#include "orvanel/optics_engine.h"
#include "tests/support/captured_stdout.h"
#include "tests/support/temporary_files.h"

namespace orvanel::models {
namespace {

constexpr Millimetres kPupil(4.5);

Eye Lopsided() {
  Eye eye;
  eye.pupil = kPupil;
  eye.coefficients = {kOsaConvention, {0, 0, 0, -0.09, 0.34, 0.11, 0.05, -0.12, 0.07, 0, 0, 0, 0.1}};
  return eye;
}

// The same wavefront in the convention of the engine, whose numbers a search returns to the bit.
Eye LopsidedOfLibrary() {
  Eye eye = Lopsided();
  const auto bare = Bare(ToLibrary(eye.coefficients));
  eye.coefficients = {kLibraryConvention, {bare.begin(), bare.end()}};
  return eye;
}

std::array<double, ORVANEL_COEFFICIENTS> BareOf(const Eye& eye) { return Bare(ToLibrary(eye.coefficients)); }

FocusRequest By(std::string_view name) {
  FocusRequest request;
  for (const FocusMethod& method : FocusMethodsOf(ModelKind::kClassic)) {
    if (method.name == name) request.method = method;
  }
  EXPECT_EQ(request.method.name, name);
  return request;
}

BestFocus Find(const Eye& eye, const FocusRequest& request) { return ClassicModel().FindBestFocus(eye, request); }

double StrehlOf(const Eye& eye) {
  Results results;
  ClassicModel().Compute(eye, {Need::kStrehl}, results);
  return results.strehl;
}

TEST(ClassicFocus, OptimiseGivesWhatTheEngineGives) {
  const Eye eye = LopsidedOfLibrary();
  OpticsEngine engine(ORVANEL_GRID_SIZE);
  for (const bool astigmatism : {false, true}) {
    FocusSearch search;
    search.astigmatism = astigmatism;
    const FocusResult result = engine.OptimiseFocus(BareOf(eye).data(), kPupil.value(), search);
    FocusRequest request = By("optimise");
    request.astigmatism = astigmatism;
    const BestFocus best = Find(eye, request);
    EXPECT_EQ(BareOf(best.eye), result.coefficients);
    EXPECT_EQ(best.trials, result.trials);
    EXPECT_EQ(best.before.strehl, StrehlOf(eye));
    EXPECT_EQ(best.after.strehl, StrehlOf(best.eye));
    EXPECT_EQ(best.after.value, best.after.strehl);
    EXPECT_GT(best.after.strehl, best.before.strehl);
  }
}

TEST(ClassicFocus, TheWalkByThePsfGivesWhatTheEngineGives) {
  const Eye eye = LopsidedOfLibrary();
  FocusRequest request = By("psf");
  request.step = Micrometres(0.01);
  const double step = ToMillimetres(request.step * NormFactor(Term(4))).value();
  for (const bool without : {false, true}) {
    request.withoutAstigmatism = without;
    OpticsEngine engine(ORVANEL_GRID_SIZE);
    auto byPsf = BareOf(eye);
    engine.searchBestFocusByPsf(byPsf.data(), kPupil.value(), step, without ? 0 : 1);
    const BestFocus best = Find(eye, request);
    EXPECT_EQ(BareOf(best.eye), byPsf);
    EXPECT_GT(best.after.strehl, best.before.strehl);
    EXPECT_TRUE(best.converged);
  }
}

TEST(ClassicFocus, TermsThatTheSearchDoesNotChangeKeepTheirStatedNumbers) {
  const Eye eye = Lopsided();
  const BestFocus best = Find(eye, By("optimise"));
  const Coefficients before = eye.coefficients.AsStated(), after = best.eye.coefficients.AsStated();
  EXPECT_EQ(best.eye.coefficients.convention(), eye.coefficients.convention());
  ASSERT_EQ(after.size(), before.size());
  for (std::size_t j = 0; j < before.size(); ++j) EXPECT_EQ(after[j] == before[j], j != 4) << j;
  EXPECT_NEAR(StrehlOf(best.eye), best.after.strehl, 1e-9);
}

TEST(ClassicFocus, AnEyeOfFewTermsGetsThoseThatTheSearchVaries) {
  Eye eye;
  eye.pupil = kPupil;
  eye.coefficients = {kOsaConvention, {0.1}};
  EXPECT_EQ(Find(eye, By("optimise")).eye.coefficients.AsStated().size(), 6U);
}

TEST(ClassicFocus, TheDeviationIsThatOfTheFittedCircle) {
  const Eye eye = LopsidedOfLibrary();
  FocusRequest request = By("fit");
  request.step = Micrometres(5.0);
  const BestFocus best = Find(eye, request);
  OpticsEngine engine(ORVANEL_GRID_SIZE);
  engine.synthesizeWavefront(BareOf(eye).data(), kPupil.value(), 1, 0, 1);
  EXPECT_EQ(best.before.value, 1e3 * FitCircle(engine).deviation);
  EXPECT_EQ(best.before.strehl, StrehlOf(eye));
  EXPECT_LE(best.after.value, best.before.value);
}

TEST(ClassicFocus, TheFitPrintsNothingAndLeavesTheCurrentFolderAlone) {
  const TemporaryFolder folder;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  Write(folder / "tmp_test.txt", "precious");
  FocusRequest request = By("fit");
  request.step = Micrometres(5.0);
  Eye flat;
  flat.pupil = kPupil;
  const std::string printed = test::OutputOf([&] {
    Find(Lopsided(), request);
    Find(flat, request);  // the fit has no solution
  });
  EXPECT_EQ(printed, "");
  EXPECT_EQ(std::filesystem::current_path(), std::filesystem::canonical(folder.path()));
  EXPECT_EQ(Read(folder / "tmp_test.txt"), "precious");
  std::filesystem::current_path(before);
}

TEST(ClassicFocus, AWalkEndsAfterItsTrials) {
  for (const std::string_view name : {"psf", "fit"}) {
    FocusRequest request = By(name);
    request.step = Micrometres(1e-6);
    request.maximumTrials = 7;
    const BestFocus best = Find(Lopsided(), request);
    EXPECT_EQ(best.trials, 7);
    EXPECT_FALSE(best.converged);
  }
}

TEST(ClassicFocus, NextEyesHaveTheSameResults) {
  const Needs needs = {Need::kStrehl, Need::kPsf, Need::kUndersampled};
  ClassicModel searched, fresh;
  searched.FindBestFocus(Lopsided(), By("psf"));
  Results after, alone;
  searched.Compute(LopsidedOfLibrary(), needs, after);
  fresh.Compute(LopsidedOfLibrary(), needs, alone);
  EXPECT_EQ(after.psf, alone.psf);
  EXPECT_EQ(after.strehl, alone.strehl);
  EXPECT_EQ(after.undersampled, alone.undersampled);
}

}  // namespace
}  // namespace orvanel::models
