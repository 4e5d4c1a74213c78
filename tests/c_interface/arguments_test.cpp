// Tests that arguments which break the rules are refused by name, and hostile ones change nothing.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "tests/c_interface/c_eyes.h"

namespace orvanel::test {
namespace {

TEST(CArguments, StructsOfAnotherSizeAreRefused) {
  std::vector<double> numbers = SomeModes();
  orvanel_eye* none = nullptr;
  for (const uint64_t size : {uint64_t{0}, uint64_t{1}, uint64_t{sizeof(orvanel_eye_input)} + 8, ~uint64_t{0}}) {
    orvanel_eye_input input = InputOf(numbers);
    input.size = size;
    EXPECT_EQ(orvanel_eye_create(&input, &none), ORVANEL_INVALID_ARGUMENT) << size;
    EXPECT_STREQ(LastError().code, "wrong_size");
    EXPECT_EQ(LastError().fields[2].number, static_cast<double>(sizeof input));
    input = InputOf(numbers);
    input.convention.size = size;
    EXPECT_EQ(orvanel_eye_create(&input, &none), ORVANEL_INVALID_ARGUMENT) << size;
    input = InputOf(numbers);
    input.coefficients.size = size;
    EXPECT_EQ(orvanel_eye_create(&input, &none), ORVANEL_INVALID_ARGUMENT) << size;
  }
  EXPECT_EQ(none, nullptr);
}

TEST(CArguments, APartOfAConventionThatIsNotStatedIsNotGuessed) {
  std::vector<double> numbers = SomeModes();
  orvanel_eye* none = nullptr;
  const auto textOf = [&](void (*change)(orvanel_eye_input&)) {
    orvanel_eye_input input = InputOf(numbers);
    change(input);
    EXPECT_EQ(orvanel_eye_create(&input, &none), ORVANEL_INVALID_ARGUMENT);
    return std::string(LastError().text);
  };
  EXPECT_EQ(textOf([](orvanel_eye_input& i) { i.convention.unit = 0; }),
            "convention.unit is not stated; set it to one of the constants of the header");
  EXPECT_EQ(textOf([](orvanel_eye_input& i) { i.convention.normalisation = 3; }),
            "convention.normalisation is 3, which is none of its constants");
  EXPECT_EQ(textOf([](orvanel_eye_input& i) { i.convention.indexing = -1; }),
            "convention.indexing is -1, which is none of its constants");
  EXPECT_EQ(textOf([](orvanel_eye_input& i) { i.convention.y_axis = 0; }),
            "convention.y_axis is not stated; set it to one of the constants of the header");
  EXPECT_EQ(textOf([](orvanel_eye_input& i) { i.laterality = 0; }),
            "laterality is not stated; set it to one of the constants of the header");
  EXPECT_EQ(textOf([](orvanel_eye_input& i) { i.convention.unit = ORVANEL_WAVES; }),
            "convention.wavelength_nm is 0, outside of 300 to 1200");
}

TEST(CArguments, ArraysHaveTheirDimensionsAndStrides) {
  // Every second number, from the last to the first.
  std::vector<double> sparse = {0.2, 9, 0.1, 9, 0, 9, 0, 9, 0};
  orvanel_eye_input input = InputOf(sparse);
  input.coefficients.data = sparse.data() + 8;
  input.coefficients.shape[0] = 5;
  input.coefficients.strides[0] = -16;
  const EyeHandle eye = MakeEye(input);
  uint64_t count = 0;
  double numbers[5] = {};
  ASSERT_EQ(orvanel_eye_coefficients(eye.get(), &input.convention, numbers, 5, &count), ORVANEL_OK);
  EXPECT_EQ(std::vector<double>(numbers, numbers + count), (std::vector<double>{0, 0, 0, 0.1, 0.2}));

  orvanel_eye* none = nullptr;
  input.coefficients.dimensions = 2;
  EXPECT_EQ(orvanel_eye_create(&input, &none), ORVANEL_INVALID_ARGUMENT);
  input.coefficients.dimensions = 1;
  for (const int64_t length : {int64_t{-1}, std::numeric_limits<int64_t>::max()}) {
    input.coefficients.shape[0] = length;
    EXPECT_EQ(orvanel_eye_create(&input, &none), ORVANEL_INVALID_ARGUMENT) << length;
  }
  input.coefficients.shape[0] = 5;
  input.coefficients.data = nullptr;
  EXPECT_EQ(orvanel_eye_create(&input, &none), ORVANEL_INVALID_ARGUMENT);
}

TEST(CArguments, SettingsOutOfRangeAreRefusedByName) {
  const EyeHandle eye = SomeEye();
  orvanel_plane* none = nullptr;
  const auto textOf = [&](void (*change)(orvanel_settings&)) {
    orvanel_settings settings = UsualSettings();
    change(settings);
    const orvanel_status status = orvanel_psf(eye.get(), &settings, &none);
    EXPECT_TRUE(status == ORVANEL_INVALID_ARGUMENT || status == ORVANEL_REFUSED) << status;
    return std::string(LastError().text);
  };
  EXPECT_EQ(textOf([](orvanel_settings& s) { s.light = 0; }),
            "settings.light is not stated; set it to one of the constants of the header");
  EXPECT_EQ(textOf([](orvanel_settings& s) { s.samples = 1 << 30; }),
            "settings.samples is 1073741824, outside of 2 to 4096");
  EXPECT_EQ(textOf([](orvanel_settings& s) { s.field_arcmin = std::nan(""); }),
            "settings.field_arcmin is nan, outside of 0.001 to 600");
  EXPECT_EQ(textOf([](orvanel_settings& s) { s.light = ORVANEL_SPECTRUM; }),
            "settings.wavelengths_nm is null; pass an address");
  EXPECT_EQ(textOf([](orvanel_settings& s) { s.light = ORVANEL_WHITE; }),
            "light of several wavelengths needs the reference wavelength, at which the coefficients hold");
  EXPECT_EQ(none, nullptr);
}

// Every member of a struct is overwritten by bytes that no caller would pass. Addresses stay: no library can tell a
// wrong one.
template <class Struct>
Struct Hostile(Struct given, std::mt19937& random, std::initializer_list<std::pair<std::size_t, std::size_t>> kept) {
  const Struct before = given;
  unsigned char bytes[sizeof given];
  std::memcpy(bytes, &given, sizeof given);
  const int changes = 1 + static_cast<int>(random() % 3);
  for (int i = 0; i < changes; ++i) {
    const std::size_t at = random() % (sizeof given / 4) * 4;
    constexpr uint32_t kWords[] = {0, 1, 0xffffffffU, 0x7fffffffU, 0x80000000U, 0x7ff00000U, 0xfff80000U, 5, 4096};
    const uint32_t word = random() % 4 == 0 ? static_cast<uint32_t>(random()) : kWords[random() % std::size(kWords)];
    std::memcpy(bytes + at, &word, sizeof word);
  }
  for (const auto& [at, size] : kept)
    std::memcpy(bytes + at, reinterpret_cast<const unsigned char*>(&before) + at, size);
  std::memcpy(&given, bytes, sizeof given);
  return given;
}

TEST(CArguments, HostileStructsGiveAStatusAndNoHandle) {
  std::mt19937 random(7);  // NOLINT(cert-msc51-cpp): the same each time
  std::vector<double> numbers = SomeModes();
  int refused = 0;
  for (int i = 0; i < 20000; ++i) {
    // The address, the shape and the strides of the memory stay.
    const orvanel_eye_input input = Hostile(InputOf(numbers), random,
                                            {{offsetof(orvanel_eye_input, coefficients.data), sizeof(double*)},
                                             {offsetof(orvanel_eye_input, coefficients.shape), sizeof(int64_t) * 6},
                                             {offsetof(orvanel_eye_input, name), sizeof(char*)}});
    orvanel_eye* eye = nullptr;
    const orvanel_status status = orvanel_eye_create(&input, &eye);
    EXPECT_EQ(status == ORVANEL_OK, eye != nullptr);
    EXPECT_NE(status, ORVANEL_INTERNAL) << LastError().text;
    refused += status != ORVANEL_OK;
    orvanel_eye_release(eye);
  }
  EXPECT_GT(refused, 10000);
  const EyeHandle eye = SomeEye();
  for (int i = 0; i < 20000; ++i) {
    orvanel_adjustments usual{};
    usual.size = sizeof usual;
    const orvanel_adjustments adjustments = Hostile(usual, random, {});
    orvanel_eye* made = nullptr;
    const orvanel_status status = orvanel_eye_adjusted(eye.get(), &adjustments, &made);
    EXPECT_EQ(status == ORVANEL_OK, made != nullptr);
    EXPECT_NE(status, ORVANEL_INTERNAL) << LastError().text;
    orvanel_eye_release(made);
  }
  for (int i = 0; i < 300; ++i) {
    orvanel_settings usual = UsualSettings();
    usual.samples = 4;
    orvanel_settings settings =
        Hostile(usual, random, {{offsetof(orvanel_settings, wavelengths_nm), 2 * sizeof(double*) + sizeof(uint64_t)}});
    if (settings.samples > 64) settings.samples = -settings.samples;  // no time for large planes
    orvanel_plane* made = nullptr;
    const orvanel_status status = orvanel_psf(eye.get(), &settings, &made);
    EXPECT_EQ(status == ORVANEL_OK, made != nullptr);
    EXPECT_NE(status, ORVANEL_INTERNAL) << LastError().text;
    orvanel_plane_release(made);
  }
  for (int i = 0; i < 2000; ++i) {
    orvanel_chart_request usual{};
    usual.size = sizeof usual;
    ASSERT_EQ(orvanel_chart_default(&usual), ORVANEL_OK);
    const double size = 0.5;
    usual.logmar = &size;
    usual.lines = 1;
    usual.pixels_per_degree = 20.0;
    const orvanel_chart_request request =
        Hostile(usual, random,
                {{offsetof(orvanel_chart_request, optotypes), sizeof(char*) + sizeof(double*) + sizeof(uint64_t)},
                 {offsetof(orvanel_chart_request, names), sizeof(char*)}});
    orvanel_plane* made = nullptr;
    const orvanel_status status = orvanel_chart(&request, &made);
    EXPECT_EQ(status == ORVANEL_OK, made != nullptr);
    EXPECT_NE(status, ORVANEL_INTERNAL) << LastError().text;
    orvanel_plane_release(made);
  }
}

TEST(CArguments, NullIsRefusedEverywhere) {
  orvanel_eye* eye = nullptr;
  orvanel_plane* plane = nullptr;
  uint64_t count = 0;
  double number = 0.0;
  const std::vector<orvanel_status> statuses = {
      orvanel_eye_create(nullptr, &eye),
      orvanel_eye_parse(nullptr, 0, &eye),
      orvanel_eye_read(nullptr, 0, &eye),
      orvanel_eye_get_facts(nullptr, nullptr),
      orvanel_eye_text(nullptr, nullptr, 0, &count),
      orvanel_eye_coefficients(nullptr, nullptr, nullptr, 0, &count),
      orvanel_eye_rms(nullptr, 0, 1, &number),
      orvanel_eye_refraction(nullptr, ORVANEL_PARAXIAL, nullptr),
      orvanel_eye_adjusted(nullptr, nullptr, &eye),
      orvanel_settings_default(nullptr),
      orvanel_psf(nullptr, nullptr, &plane),
      orvanel_mtf(nullptr, nullptr, &plane),
      orvanel_wavefront(nullptr, nullptr, &plane),
      orvanel_object(nullptr, 1.0, 1.0, &plane),
      orvanel_image(nullptr, nullptr, nullptr, nullptr, nullptr, &plane),
      orvanel_plane_get_facts(nullptr, nullptr),
      orvanel_chart_default(nullptr),
      orvanel_chart(nullptr, &plane),
      orvanel_metric_at(0, nullptr),
      orvanel_metrics_default(nullptr),
      orvanel_metrics_count(nullptr, &count),
      orvanel_metrics_of_rows(nullptr, nullptr, 1, nullptr, nullptr, nullptr, nullptr),
      orvanel_metrics_of_eyes(nullptr, nullptr, 1, 1, nullptr, nullptr, nullptr, nullptr),
      orvanel_reason_of_row(nullptr, 0, nullptr),
      orvanel_correction_default(nullptr),
      orvanel_refract(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
      orvanel_classic(nullptr, ORVANEL_CLASSIC_PSF, 1.0, 3, &plane)};
  for (std::size_t i = 0; i < statuses.size(); ++i) EXPECT_EQ(statuses[i], ORVANEL_INVALID_ARGUMENT) << i;
  orvanel_eye_release(nullptr);
  orvanel_plane_release(nullptr);
  orvanel_reasons_release(nullptr);
}

}  // namespace
}  // namespace orvanel::test
