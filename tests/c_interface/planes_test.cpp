// Tests planes of the physical model: the bits are those of the layers below, images conserve light.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <thread>
#include <vector>

#include "evaluation/evaluator.h"
#include "tests/c_interface/c_eyes.h"

namespace orvanel::test {
namespace {

evaluation::Eye SomeLayerEye() {
  evaluation::Eye eye;
  eye.pupil = Millimetres(4.0);
  eye.side = eye::Side::kOd;
  eye.coefficients = eye::EyeCoefficients(eye::kOsaConvention, SomeModes());
  return eye;
}

TEST(CPlanes, PsfAndMtfHaveTheBitsOfTheLayersBelow) {
  const EyeHandle eye = SomeEye();
  orvanel_settings settings = UsualSettings();
  settings.field_arcmin = 8.0;
  settings.samples = 32;
  models::PhysicalSettings same;
  same.field = ArcMinutes(8.0);
  same.samples = 32;
  evaluation::Evaluator evaluator({models::ModelKind::kPhysical, same});
  const auto& results =
      evaluator.Evaluate(SomeLayerEye(), {models::Need::kPsf, models::Need::kMtf, models::Need::kStrehlPeak});
  orvanel_plane* made = nullptr;
  ASSERT_EQ(orvanel_psf(eye.get(), &settings, &made), ORVANEL_OK);
  const PlaneHandle psf(made);
  EXPECT_EQ(SamplesOf(psf), std::vector<double>(results.psf.begin(), results.psf.end()));
  EXPECT_EQ(FactsOf(psf).strehl_peak, results.strehlPeak);
  ASSERT_EQ(orvanel_mtf(eye.get(), &settings, &made), ORVANEL_OK);
  const PlaneHandle mtf(made);
  EXPECT_EQ(SamplesOf(mtf), std::vector<double>(results.mtf.begin(), results.mtf.end()));
  EXPECT_EQ(SamplesOf(mtf)[128 * 256 + 128], 1.0);
}

TEST(CPlanes, ThreadsMayShareAnEye) {
  const EyeHandle eye = SomeEye();
  orvanel_settings settings = UsualSettings();
  settings.samples = 16;
  std::vector<std::vector<double>> planes(4);
  std::vector<std::thread> threads;
  for (auto& plane : planes) {
    threads.emplace_back([&] {
      orvanel_plane* made = nullptr;
      if (orvanel_psf(eye.get(), &settings, &made) == ORVANEL_OK) plane = SamplesOf(PlaneHandle(made));
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(planes[0].size(), 256u);
  for (const auto& plane : planes) EXPECT_EQ(plane, planes[0]);
}

PlaneHandle Square(double inside, double surround) {
  std::vector<double> samples(24 * 24, surround);
  for (int r = 8; r < 16; ++r) std::fill_n(samples.begin() + r * 24 + 8, 8, inside);
  const orvanel_array array = orvanel_matrix(samples.data(), 24, 24);
  orvanel_plane* made = nullptr;
  EXPECT_EQ(orvanel_object(&array, 1.0, surround, &made), ORVANEL_OK) << LastError().text;
  return PlaneHandle(made);
}

TEST(CPlanes, AnImageIsLinearAndAUniformObjectStays) {
  const EyeHandle eye = SomeEye();
  const orvanel_settings settings = UsualSettings();
  const auto seen = [&](const PlaneHandle& object) {
    orvanel_plane* made = nullptr;
    EXPECT_EQ(orvanel_image(eye.get(), &settings, object.get(), nullptr, nullptr, &made), ORVANEL_OK);
    return PlaneHandle(made);
  };
  const PlaneHandle uniform = seen(Square(0.7, 0.7));
  for (const double v : SamplesOf(uniform)) ASSERT_NEAR(v, 0.7, 1e-12);
  const PlaneHandle one = seen(Square(1.0, 0.0)), three = seen(Square(3.0, 0.0));
  const std::vector<double> first = SamplesOf(one), second = SamplesOf(three);
  for (std::size_t i = 0; i < first.size(); ++i) ASSERT_NEAR(3.0 * first[i], second[i], 1e-12);
  EXPECT_LT(*std::max_element(first.begin(), first.end()), 1.0);
  EXPECT_EQ(FactsOf(one).kind, ORVANEL_IMAGE);
  EXPECT_DOUBLE_EQ(FactsOf(three).error, 3e-4);
  EXPECT_DOUBLE_EQ(FactsOf(one).x_first, -11.5);
}

TEST(CPlanes, AnImageIsCancelledAndNeedsAnObject) {
  std::vector<double> numbers = SomeModes();
  orvanel_eye_input input = InputOf(numbers);
  input.reference_nm = 555.0;
  const EyeHandle eye = MakeEye(input);
  orvanel_settings settings = UsualSettings();
  const double wavelengths[] = {500.0, 550.0, 600.0}, weights[] = {0.5, 1.0, 0.5};
  settings.light = ORVANEL_SPECTRUM;
  settings.wavelengths_nm = wavelengths;
  settings.weights = weights;
  settings.lines = 3;
  const PlaneHandle object = Square(1.0, 0.0);
  std::vector<uint64_t> steps;
  const auto note = [](void* data, uint64_t done, uint64_t total) -> int32_t {
    EXPECT_EQ(total, 3u);
    auto& all = *static_cast<std::vector<uint64_t>*>(data);
    all.push_back(done);
    return all.size() == 2 ? 1 : 0;
  };
  orvanel_plane* made = nullptr;
  EXPECT_EQ(orvanel_image(eye.get(), &settings, object.get(), note, &steps, &made), ORVANEL_CANCELLED);
  EXPECT_STREQ(LastError().code, "cancelled");
  EXPECT_EQ(steps, (std::vector<uint64_t>{1, 2}));
  EXPECT_EQ(made, nullptr);
  settings = UsualSettings();
  settings.samples = 8;
  ASSERT_EQ(orvanel_psf(eye.get(), &settings, &made), ORVANEL_OK);
  const PlaneHandle psf(made);
  EXPECT_EQ(orvanel_image(eye.get(), &settings, psf.get(), nullptr, nullptr, &made), ORVANEL_INVALID_ARGUMENT);
  EXPECT_STREQ(LastError().code, "not_an_object");
}

TEST(CPlanes, AnObjectOfNumbersThatAreNotFiniteIsRefused) {
  double samples[4] = {0.0, 1.0, std::nan(""), 0.0};
  const orvanel_array array = orvanel_matrix(samples, 2, 2);
  orvanel_plane* made = nullptr;
  EXPECT_EQ(orvanel_object(&array, 1.0, 0.0, &made), ORVANEL_INVALID_ARGUMENT);
  samples[2] = 0.0;
  EXPECT_EQ(orvanel_object(&array, -1.0, 0.0, &made), ORVANEL_INVALID_ARGUMENT);
  EXPECT_EQ(orvanel_object(&array, 1.0, std::nan(""), &made), ORVANEL_INVALID_ARGUMENT);
  const orvanel_array huge = orvanel_matrix(samples, 1 << 20, 1 << 19);
  EXPECT_EQ(orvanel_object(&huge, 1.0, 0.0, &made), ORVANEL_INVALID_ARGUMENT);
}

}  // namespace
}  // namespace orvanel::test
