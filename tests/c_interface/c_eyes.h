// Eyes and handles of the C interface for its tests.
#ifndef ORVANEL_TESTS_C_INTERFACE_C_EYES_H
#define ORVANEL_TESTS_C_INTERFACE_C_EYES_H

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "orvanel/c_interface.h"

namespace orvanel::test {

struct Release {
  void operator()(orvanel_eye* eye) const { orvanel_eye_release(eye); }
  void operator()(orvanel_plane* plane) const { orvanel_plane_release(plane); }
  void operator()(orvanel_reasons* reasons) const { orvanel_reasons_release(reasons); }
};
using EyeHandle = std::unique_ptr<orvanel_eye, Release>;
using PlaneHandle = std::unique_ptr<orvanel_plane, Release>;
using ReasonsHandle = std::unique_ptr<orvanel_reasons, Release>;

// The last error of this thread.
inline orvanel_error LastError() {
  orvanel_error error{};
  error.size = sizeof error;
  EXPECT_EQ(orvanel_last_error(&error), ORVANEL_OK);
  return error;
}

// Micrometres, orthonormal, by OSA index: some of each kind of mode, 0.3 um RMS in all.
inline std::vector<double> SomeModes() { return {0, 0, 0, 0.08, 0.21, -0.05, 0.03, 0.09, -0.06, 0.02, 0, 0.01, 0.1}; }

inline orvanel_eye_input InputOf(std::vector<double>& numbers) {
  orvanel_eye_input input{};
  input.size = sizeof input;
  input.coefficients = orvanel_vector(numbers.data(), static_cast<int64_t>(numbers.size()));
  input.convention = orvanel_osa_convention();
  input.pupil_mm = 4.0;
  input.laterality = ORVANEL_OD;
  return input;
}

inline EyeHandle MakeEye(const orvanel_eye_input& input) {
  orvanel_eye* eye = nullptr;
  EXPECT_EQ(orvanel_eye_create(&input, &eye), ORVANEL_OK) << LastError().text;
  return EyeHandle(eye);
}

inline EyeHandle SomeEye() {
  std::vector<double> numbers = SomeModes();
  return MakeEye(InputOf(numbers));
}

inline orvanel_settings UsualSettings() {
  orvanel_settings settings{};
  settings.size = sizeof settings;
  EXPECT_EQ(orvanel_settings_default(&settings), ORVANEL_OK);
  return settings;
}

inline orvanel_metrics_request RequestOf(const char* metrics) {
  orvanel_metrics_request request{};
  request.size = sizeof request;
  EXPECT_EQ(orvanel_metrics_default(&request), ORVANEL_OK);
  request.metrics = metrics;
  return request;
}

inline orvanel_plane_facts FactsOf(const PlaneHandle& plane) {
  orvanel_plane_facts facts{};
  facts.size = sizeof facts;
  EXPECT_EQ(orvanel_plane_get_facts(plane.get(), &facts), ORVANEL_OK);
  return facts;
}

// The samples of a plane, row by row.
inline std::vector<double> SamplesOf(const PlaneHandle& plane) {
  const orvanel_array samples = FactsOf(plane).samples;
  return {samples.data, samples.data + samples.shape[0] * samples.shape[1]};
}

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_C_INTERFACE_C_EYES_H
