// Time of each export on one thread.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <vector>

#include "orvanel/orvanel.h"

namespace {

using Plane = std::vector<double>;

// An aberrated eye, in millimetres.
constexpr std::array<double, ORVANEL_COEFFICIENTS> kEye = {0.0,    0.0,     0.0,     1.1e-4,  2.3e-4, -0.7e-4, 0.4e-4,
                                                           1.3e-4, -0.9e-4, 0.5e-4,  0.3e-4,  0.2e-4, 0.6e-4,  -0.1e-4,
                                                           0.2e-4, 0.05e-4, 0.03e-4, -0.1e-4, 0.1e-4, 0.02e-4, 0.04e-4,
                                                           0.0,    0.01e-4, 0.02e-4, 0.05e-4, 0.0,    0.01e-4, 0.02e-4};

void EnterEye() {
  OrvanelInputPupil(6.0);
  OrvanelInputZer(kEye.data());
}

// The ring's trace line goes to standard output, which the benchmark's report needs for itself.
class SilentOutput {
 public:
  SilentOutput() : saved_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
  }
  ~SilentOutput() {
    std::fflush(stdout);
    dup2(saved_, STDOUT_FILENO);
    close(saved_);
  }
  SilentOutput(const SilentOutput&) = delete;
  SilentOutput& operator=(const SilentOutput&) = delete;

 private:
  int saved_;
};

void InputZer(benchmark::State& state) {
  OrvanelInputPupil(6.0);
  for ([[maybe_unused]] const auto step : state) benchmark::DoNotOptimize(OrvanelInputZer(kEye.data()));
}
BENCHMARK(InputZer)->Unit(benchmark::kMicrosecond);

void GetPSF(benchmark::State& state) {
  EnterEye();
  Plane plane(ORVANEL_PLANE_SAMPLES);
  double strehl = 0.0, halfWidth = 0.0;
  for ([[maybe_unused]] const auto step : state) {
    benchmark::DoNotOptimize(OrvanelGetPSF(plane.data(), &strehl, &halfWidth));
  }
}
BENCHMARK(GetPSF)->Unit(benchmark::kMicrosecond);

void GetOrvanel(benchmark::State& state) {
  EnterEye();
  Plane image(ORVANEL_PLANE_SAMPLES), optotype(ORVANEL_PLANE_SAMPLES);
  double effective = 0.0;
  double acuity = 0.5;
  const SilentOutput silent;
  for ([[maybe_unused]] const auto step : state) {
    acuity = acuity > 1.0 ? 0.5 : acuity + 0.01;  // a new ring each time
    benchmark::DoNotOptimize(OrvanelGetOrvanel(acuity, image.data(), &effective, optotype.data(), 3));
  }
}
BENCHMARK(GetOrvanel)->Unit(benchmark::kMicrosecond);

void GetPattern(benchmark::State& state) {
  EnterEye();
  Plane image(ORVANEL_PLANE_SAMPLES);
  for ([[maybe_unused]] const auto step : state) benchmark::DoNotOptimize(OrvanelGetPattern(image.data()));
}
BENCHMARK(GetPattern)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
