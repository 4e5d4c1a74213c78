// Measures the cost of a batch for each eye beyond the engine: reading, converting, passing between threads, writing.
//
// Usage: orvanel_batch_bench PROGRAM [EYES [ROUNDS]]
//
// Library and program are measured alternately, in processor time, so that other work on the machine has little effect.
// The medians of the rounds are compared. Of the classic model, the engine computes wavefront, PSF with Strehl ratio,
// and MTF of the same eyes. Of the physical model, the library computes VSX and the least-squares refraction of a tenth
// of them.
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "evaluation/quality_evaluator.h"
#include "eye/refraction.h"
#include "orvanel/optics_engine.h"

namespace {

namespace fs = std::filesystem;

using Coefficients = std::array<double, orvanel::kCoefficients>;  // mm, as the library takes them

constexpr double kPupil = 6.0;
constexpr std::size_t kPlane = 65536, kSection = 128;

double SecondsOf(int who) {
  rusage usage{};
  getrusage(who, &usage);
  const auto seconds = [](timeval time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Eyes of all radial orders up to 6, from a simple random generator.
std::vector<Coefficients> Eyes(std::size_t count) {
  std::vector<Coefficients> eyes(count);
  unsigned state = 12345;
  for (Coefficients& eye : eyes) {
    for (std::size_t j = 3; j < eye.size(); ++j) {
      state = state * 1664525U + 1013904223U;
      eye[j] = 3e-4 * (state / 4294967296.0 - 0.5);
    }
  }
  return eyes;
}

void WriteTable(const fs::path& file, const std::vector<Coefficients>& eyes) {
  std::ofstream stream(file);
  stream.precision(17);
  stream << "id,pupil_diameter_mm,eye,unit,normalisation,order,y_axis";
  for (std::size_t j = 0; j < orvanel::kCoefficients; ++j) stream << ",Z" << j;
  stream << '\n';
  for (std::size_t i = 0; i < eyes.size(); ++i) {
    stream << i << ',' << kPupil << ",OD,mm,none,osa,down";
    for (const double c : eyes[i]) stream << ',' << c;
    stream << '\n';
  }
}

double TimeEngine(const std::vector<Coefficients>& eyes) {
  orvanel::OpticsEngine engine;
  std::vector<double> mtf(kPlane), row(kSection), column(kSection), limit(kSection);
  double step = 0.0;
  const double start = SecondsOf(RUSAGE_SELF);
  for (const Coefficients& eye : eyes) {
    engine.synthesizeWavefront(eye.data(), kPupil, 1, 1, 1);
    engine.ComputeMtf(orvanel::kWavelength, mtf.data(), &step, row.data(), column.data(), limit.data(), 256);
  }
  return SecondsOf(RUSAGE_SELF) - start;
}

double TimeProgram(const std::string& command) {
  const double start = SecondsOf(RUSAGE_CHILDREN);
  if (std::system(command.c_str()) != 0) {  // NOLINT(cert-env33-c): the program as its users start it
    std::fprintf(stderr, "fails: %s\n", command.c_str());
    std::exit(1);
  }
  return SecondsOf(RUSAGE_CHILDREN) - start;
}

// VSX and the least-squares refraction, which are the parts of the program's work.
double TimeQuality(const std::vector<Coefficients>& eyes) {
  orvanel::metrics::QualityRequest request;
  request.metrics = {orvanel::metrics::QualityMetric::kVsx};
  orvanel::evaluation::QualityEvaluator evaluator(orvanel::models::PhysicalSettings(), request);
  double sum = 0.0;
  const double start = SecondsOf(RUSAGE_SELF);
  for (const Coefficients& coefficients : eyes) {
    orvanel::eye::Eye eye;
    eye.pupil = orvanel::Millimetres(kPupil);
    eye.coefficients = {orvanel::eye::kLibraryConvention, {coefficients.begin(), coefficients.end()}};
    sum += evaluator.Evaluate(eye).values.front().value +
           orvanel::eye::LeastSquaresRefraction(eye.coefficients.osa(), eye.pupil).m.value();
  }
  const double seconds = SecondsOf(RUSAGE_SELF) - start;
  if (std::isnan(sum)) std::exit(1);  // keeps the work
  return seconds;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

// Library and program in turns, for rounds.
void Compare(const char* library, const char* program, std::size_t count, int rounds,
             const std::function<double()>& timeLibrary, const std::function<double()>& timeProgram) {
  std::vector<double> own, whole;
  for (int round = 0; round < rounds; ++round) {
    own.push_back(timeLibrary());
    whole.push_back(timeProgram());
  }
  const double perEye = 1e6 / static_cast<double>(count);
  std::printf("%-44s%8.1f us an eye\n%-44s%8.1f us an eye\n%-44s%8.3f\n", library, Median(own) * perEye, program,
              Median(whole) * perEye, "ratio", Median(whole) / Median(own));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s PROGRAM [EYES [ROUNDS]]\n", argv[0]);
    return 2;
  }
  const auto count = static_cast<std::size_t>(argc > 2 ? std::strtol(argv[2], nullptr, 10) : 4000);
  const int rounds = argc > 3 ? static_cast<int>(std::strtol(argv[3], nullptr, 10)) : 7;
  const std::vector<Coefficients> eyes = Eyes(count);
  const std::vector<Coefficients> tenth(eyes.begin(), eyes.begin() + static_cast<std::ptrdiff_t>((count + 9) / 10));
  const fs::path folder = fs::temp_directory_path() / ("orvanel-batch-bench-" + std::to_string(count));
  fs::create_directories(folder);
  WriteTable(folder / "eyes.csv", eyes);
  WriteTable(folder / "tenth.csv", tenth);
  const auto command = [&](const char* table, const std::string& options) {
    return std::string("'") + argv[1] + "' batch '" + (folder / table).string() + "' -o '" +
           (folder / "results.csv").string() + "' --jobs 1 --force " + options + " >/dev/null 2>&1";
  };
  Compare(
      "engine, Strehl and MTF", "orvanel batch --model classic --jobs 1", count, rounds,
      [&] { return TimeEngine(eyes); }, [&] { return TimeProgram(command("eyes.csv", "--model classic")); });
  Compare(
      "library, VSX and refraction", "orvanel batch --metrics VSX,refraction --jobs 1", tenth.size(), rounds,
      [&] { return TimeQuality(tenth); },
      [&] { return TimeProgram(command("tenth.csv", "--metrics VSX,refraction")); });
  fs::remove_all(folder);
  return 0;
}
