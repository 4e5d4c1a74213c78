// Tests status, code, text and fields of errors.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "tests/c_interface/c_eyes.h"

namespace orvanel::test {
namespace {

TEST(CCall, AnErrorHasCodeTextAndFields) {
  const EyeHandle eye = SomeEye();
  orvanel_adjustments adjustments{};
  adjustments.size = sizeof adjustments;
  adjustments.pupil_mm = 5.0;
  orvanel_eye* none = nullptr;
  ASSERT_EQ(orvanel_eye_adjusted(eye.get(), &adjustments, &none), ORVANEL_REFUSED);
  EXPECT_EQ(none, nullptr);
  const orvanel_error error = LastError();
  EXPECT_EQ(error.status, ORVANEL_REFUSED);
  EXPECT_STREQ(error.code, "pupil_larger_than_measured");
  EXPECT_NE(std::string(error.text).find("5 mm is larger than the 4 mm"), std::string::npos) << error.text;
  ASSERT_EQ(error.field_count, 2u);
  EXPECT_STREQ(error.fields[0].name, "wanted_mm");
  EXPECT_EQ(error.fields[0].number, 5.0);
  EXPECT_STREQ(error.fields[1].text, "4");
}

TEST(CCall, ACallThatSucceedsKeepsTheLastError) {
  ASSERT_EQ(orvanel_metrics_default(nullptr), ORVANEL_INVALID_ARGUMENT);
  const EyeHandle eye = SomeEye();
  EXPECT_EQ(LastError().status, ORVANEL_INVALID_ARGUMENT);
}

TEST(CCall, EachThreadHasItsOwnLastError) {
  ASSERT_EQ(orvanel_metrics_default(nullptr), ORVANEL_INVALID_ARGUMENT);
  orvanel_status other = ORVANEL_INTERNAL;
  std::thread([&] { other = LastError().status; }).join();
  EXPECT_EQ(other, ORVANEL_OK);
}

TEST(CCall, ErrorsOfLayersHaveTheirCodes) {
  std::vector<double> numbers = SomeModes();
  orvanel_eye* none = nullptr;
  const auto codeOf = [&](const orvanel_eye_input& input, orvanel_status status) {
    EXPECT_EQ(orvanel_eye_create(&input, &none), status);
    return std::string(LastError().code);
  };
  orvanel_eye_input input = InputOf(numbers);
  input.pupil_mm = 0.0;
  EXPECT_EQ(codeOf(input, ORVANEL_INVALID_EYE), "pupil_implausible");
  input.pupil_mm = std::nan("");
  EXPECT_EQ(codeOf(input, ORVANEL_INVALID_EYE), "pupil_implausible");
  input = InputOf(numbers);
  numbers[4] = std::numeric_limits<double>::infinity();
  EXPECT_EQ(codeOf(input, ORVANEL_INVALID_EYE), "coefficient_not_finite");
  EXPECT_EQ(LastError().fields[0].number, 4.0);
  numbers[4] = 2e6;
  EXPECT_EQ(codeOf(input, ORVANEL_INVALID_EYE), "wavefront_implausible");
  std::vector<double> many(300);
  EXPECT_EQ(codeOf(InputOf(many), ORVANEL_INVALID_EYE), "too_many_coefficients");
  EXPECT_EQ(orvanel_eye_parse("{", 1, &none), ORVANEL_INVALID_EYE);
  EXPECT_STREQ(LastError().code, "file_invalid");
  EXPECT_EQ(orvanel_eye_read("/no/such/eye.json", 0, &none), ORVANEL_FILE);
  EXPECT_NE(std::string(LastError().text).find("/no/such/eye.json"), std::string::npos);
  uint64_t count = 0;
  EXPECT_EQ(orvanel_metrics_count("VSX,VSXX", &count), ORVANEL_INVALID_ARGUMENT);
  EXPECT_STREQ(LastError().code, "unknown_metric");
}

TEST(CCall, AStructOfTheErrorOfAnotherSizeIsRefused) {
  orvanel_error error{};
  EXPECT_EQ(orvanel_last_error(&error), ORVANEL_INVALID_ARGUMENT);
  EXPECT_EQ(orvanel_last_error(nullptr), ORVANEL_INVALID_ARGUMENT);
}

}  // namespace
}  // namespace orvanel::test
