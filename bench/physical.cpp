// Measures the results of the physical model, alternately with the unit, and prints them in units of it.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/fftw_pipeline.h"
#include "evaluation/correction/best_correction.h"
#include "metrics/quality/quality.h"
#include "models/physical/point_spread.h"
#include "models/physical/retinal_image.h"
#include "models/physical/transfer_function.h"
#include "optics/kernels/dispatch.h"

namespace orvanel::bench {
namespace {

using namespace physical;
using metrics::QualityMetric;

constexpr const char* kUnit = "Unit";
constexpr double kPupilMm = 6.0;
constexpr double kWavelengthNm = 550.0;

// Eight asymmetric eyes with aberrations of 1 wave RMS, radial orders 2 to 6. They take turns.
const Eye& EyeAt(int turn) {
  static const auto eyes = [] {
    constexpr std::array<double, 25> kShape = {0.11, 0.4,   -0.09, 0.05,  0.13,  -0.09, 0.05, 0.03,  0.02,
                                               0.1,  -0.01, 0.02,  0.005, 0.003, -0.01, 0.01, 0.002, 0.004,
                                               0.01, 0.001, 0.002, 0.005, -0.02, 0.001, 0.002};
    std::array<Eye, 8> all{};
    for (std::size_t i = 0; i < all.size(); ++i) {
      Eye& eye = all[i];
      eye.diameterMm = kPupilMm;
      eye.referenceNm = kWavelengthNm;
      double squares = 0.0;
      for (std::size_t j = 0; j < kShape.size(); ++j) {
        const double mode = kShape[j] * (1.0 + 0.4 * static_cast<double>((3 * i + 5 * j) % 7) / 7.0);
        eye.modesUm[j + 3] = mode;
        squares += mode * mode;
      }
      for (double& mode : eye.modesUm) mode *= kWavelengthNm * 1e-3 / std::sqrt(squares);
    }
    return all;
  }();
  return eyes[static_cast<std::size_t>(turn) % eyes.size()];
}

Light Monochromatic() { return {{kWavelengthNm, 1.0}}; }

template <class T>
const T& Checked(const Outcome<T>& outcome) {
  if (outcome) return *outcome;
  throw std::runtime_error("The physical model refuses a benchmark: problem " +
                           std::to_string(static_cast<int>(outcome.refusal().problem)));
}

// One kind of result: its title, and its computation for the eye of a turn.
struct Result {
  std::string name;
  std::string title;
  std::function<void(int turn)> once;
};

std::function<void(int)> PointSpreads(const Light& light, const Kernels& kernels) {
  const auto workspace = std::make_shared<Workspace>(kernels);
  return [workspace, light](int turn) {
    const RetinalGrid grid{0.0, 0.0, 20.0 / 256, 256, 256};
    benchmark::DoNotOptimize(Checked(PointSpreadOf(EyeAt(turn), light, grid, PsfUnit::kStrehl, *workspace)).samples[0]);
  };
}

// The image of an object with slanted stripes, by the filters of two eyes that are made once.
std::function<void(int)> Images(double pixelArcmin, const Kernels& kernels) {
  constexpr int kSide = 512;
  const auto workspace = std::make_shared<Workspace>(kernels);
  const auto filters = std::make_shared<std::map<int, ImageFilter>>();
  std::vector<double> object(kSide * kSide);
  for (std::size_t i = 0; i < object.size(); ++i) object[i] = (i / 7 + i / kSide / 7) % 2 == 0 ? 1.0 : 0.0;
  return [workspace, filters, object, pixelArcmin](int turn) {
    const int eye = turn % 2;
    auto filter = filters->find(eye);
    if (filter == filters->end()) {
      const ObjectSize size{kSide, kSide, pixelArcmin, 0};
      filter = filters->emplace(eye, Checked(ImageFilter::Of(EyeAt(eye), Monochromatic(), size, *workspace))).first;
    }
    benchmark::DoNotOptimize(Checked(filter->second.ImageOf(object.data(), 0.5, View::kPatient, *workspace)).outside);
  };
}

std::function<void(int)> Qualities(const std::vector<QualityMetric>& wanted, const Kernels& kernels,
                                   bool gradient = false) {
  const auto workspace = std::make_shared<metrics::QualityWorkspace>(kernels);
  return [workspace, wanted, gradient](int turn) {
    metrics::QualityRequest request;
    request.metrics = wanted;
    request.gradient = gradient;
    const metrics::QualityOutcome quality = QualityOf(EyeAt(turn), Monochromatic(), request, *workspace);
    if (!quality) throw std::runtime_error("Metrics of image quality refuse a benchmark.");
    benchmark::DoNotOptimize(quality->values[0].value);
  };
}

// The search of a lens, with the kernels that the program chooses.
std::function<void(int)> BestLenses() {
  metrics::QualityRequest request;
  request.metrics = {QualityMetric::kVsx};
  models::PhysicalSettings settings;
  settings.light = Monochromatic();
  const auto evaluator = std::make_shared<evaluation::QualityEvaluator>(settings, request);
  return [evaluator](int turn) {
    const Eye& physical = EyeAt(turn);
    eye::Eye measured;
    measured.pupil = Millimetres(physical.diameterMm);
    measured.referenceWavelength = Nanometres(physical.referenceNm);
    measured.coefficients.Replace({physical.modesUm.begin(), physical.modesUm.end()});
    benchmark::DoNotOptimize(BestCorrection(*evaluator, measured, {}).best.quality.value);
  };
}

std::vector<QualityMetric> AllQualities() {
  std::vector<QualityMetric> all;
  for (const metrics::QualityRow& row : metrics::QualityCatalogue()) all.push_back(row.metric);
  return all;
}

std::vector<Result> Results(const Kernels& kernels) {
  const auto workspace = std::make_shared<Workspace>(kernels);
  std::vector<Result> results = {
      {"PointSpread", "PSF 256 x 256 over +-10', by quadrature", PointSpreads(Monochromatic(), kernels)},
      {"Strehl", "Strehl ratio on the axis and at the peak",
       [workspace](int turn) {
         benchmark::DoNotOptimize(
             Checked(StrehlRatiosOf(EyeAt(turn), Monochromatic(), View::kPatient, *workspace)).peak);
       }},
      {"TransferFunction", "OTF 256 x 256 to the cut-off, within 1e-4",
       [workspace](int turn) {
         constexpr double kCutOff = 1000.0 * kPupilMm / (kWavelengthNm * 1e-3) * 3.14159265358979323846 / 180.0;
         const FrequencyGrid grid{kCutOff / 128.0, 256};
         benchmark::DoNotOptimize(Checked(TransferFunctionOf(EyeAt(turn), Monochromatic(), grid, *workspace)).re[0]);
       }},
      {"Overlap", "OTF at 16 frequencies, by overlap integrals",
       [workspace](int turn) {
         std::vector<Frequency> frequencies;
         for (int i = 1; i <= 16; ++i) frequencies.push_back({9.0 * i, 4.0 * i});  // to 158 of 190 cycles per degree
         benchmark::DoNotOptimize(
             Checked(TransferFunctionAt(EyeAt(turn), Monochromatic(), frequencies, View::kPatient, *workspace))[0]);
       }},
      {"WhitePointSpread", "PSF 256 x 256 over +-10', 31 wavelengths", PointSpreads(WhiteLight(), kernels)},
      {"FourMetrics", "VSX, VSOTF, SRX and NS at the origin `best`",
       Qualities({QualityMetric::kVsx, QualityMetric::kVsOtf, QualityMetric::kSrx, QualityMetric::kNs}, kernels)},
      {"FourMetricsAndGradients", "the same with gradients",
       Qualities({QualityMetric::kVsx, QualityMetric::kVsOtf, QualityMetric::kSrx, QualityMetric::kNs}, kernels, true)},
      {"OneMetric", "VSX at the origin `best`", Qualities({QualityMetric::kVsx}, kernels)},
      {"OneMetricAndGradient", "the same with its gradient", Qualities({QualityMetric::kVsx}, kernels, true)},
      {"AllMetrics", "all metrics of image quality", Qualities(AllQualities(), kernels)},
      {"AllMetricsAndGradients", "the same with gradients", Qualities(AllQualities(), kernels, true)},
      {"BestLens", "best lens by VSX, and that of the trial case",
       &kernels == ActiveKernels() ? BestLenses() : nullptr},
      {"Image", "retinal image 512 x 512 of pixels of 0.5', eye known", Images(0.5, kernels)},
  };
  return results;
}

// Keeps the minimum time of each benchmark, since other work on the machine can only add to it.
class Least : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      const double microseconds = 1e6 * run.cpu_accumulated_time / static_cast<double>(run.iterations);
      double& least = least_us.try_emplace(run.run_name.function_name, microseconds).first->second;
      least = std::min(least, microseconds);
    }
  }
  std::map<std::string, double> least_us;
};

int Main(int argc, char** argv) {
  std::vector<std::string> flags = {argv[0], "--benchmark_enable_random_interleaving=true",
                                    "--benchmark_repetitions=30", "--benchmark_min_time=0.005"};
  flags.insert(flags.end(), argv + 1, argv + argc);
  std::vector<char*> arguments;
  for (std::string& flag : flags) arguments.push_back(flag.data());
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

  const auto unit = std::make_shared<UnitTransform>();
  benchmark::RegisterBenchmark(kUnit, [unit](benchmark::State& state) {
    unit->Run();
    for ([[maybe_unused]] const auto step : state) unit->Run();
  });
  std::vector<const Kernels*> tables(RunnableKernels().rbegin(), RunnableKernels().rend());
  std::vector<Result> titles;
  for (const Kernels* kernels : tables) {
    titles = Results(*kernels);
    for (const Result& result : titles) {
      if (!result.once) continue;
      const std::string name = result.name + "/" + kernels->name;
      // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the library keeps it to the end
      benchmark::RegisterBenchmark(name.c_str(), [result](benchmark::State& state) {
        int turn = 0;
        result.once(turn++);
        result.once(turn++);
        for ([[maybe_unused]] const auto step : state) result.once(turn++);
      });
    }
  }
  Least least;
  benchmark::RunSpecifiedBenchmarks(&least);

  const double unit_us = least.least_us[kUnit];
  std::printf("In units of U = %.0f us, the complex transform of 256 x 256 by FFTW; pupil of %.0f mm, 1 wave RMS:\n\n",
              unit_us, kPupilMm);
  std::printf("| physical model, one thread |");
  for (const Kernels* kernels : tables) std::printf(" %s |", kernels->name);
  std::printf("\n|---|");
  for (std::size_t i = 0; i < tables.size(); ++i) std::printf("---|");
  for (const Result& result : titles) {
    std::printf("\n| %s |", result.title.c_str());
    for (const Kernels* kernels : tables) {
      const auto found = least.least_us.find(result.name + "/" + kernels->name);
      if (found == least.least_us.end() || !(unit_us > 0.0)) {
        std::printf(" - |");
      } else {
        std::printf(" %.2f |", found->second / unit_us);
      }
    }
  }
  std::printf("\n");
  return 0;
}

}  // namespace
}  // namespace orvanel::bench

int main(int argc, char** argv) {
  try {
    return orvanel::bench::Main(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orvanel_physical_bench: %s\n", error.what());
    return 1;
  }
}
