// Measures error against cost of the physical model by both methods, of the classic model, and of an FFTW version.
// Prints CSV. Errors are the largest differences from tests/reference/physical/truth.txt.
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/fftw_on_grid.h"
#include "bench/fftw_pipeline.h"
#include "models/physical/point_spread.h"
#include "models/physical/quadrature/chord_quadrature.h"
#include "models/physical/transfer_function.h"
#include "optics/kernels/dispatch.h"
#include "orvanel/optics_engine.h"
#include "tests/support/physical_truth.h"

namespace orvanel::bench {
namespace {

using namespace physical;

constexpr const char* kEye = "one-wave";  // 256 x 256 over +-10', 6 mm, 550 nm

// Of the processor.
double Seconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

// The least time of a call, ms: other work on the machine can only add to it.
double Least_ms(const std::function<void()>& call) {
  constexpr double kSeconds = 0.4;
  constexpr int kFewest = 4, kMost = 400;
  call();
  const double start = Seconds();
  double least = 1e9;
  for (int i = 0; i < kMost && (i < kFewest || Seconds() - start < kSeconds); ++i) {
    const double before = Seconds();
    call();
    least = std::min(least, Seconds() - before);
  }
  return 1e3 * least;
}

class Table {
 public:
  // Measures a call, and the unit before and after it.
  void Row(const std::string& program, const std::string& result, const std::string& setting,
           const std::function<void()>& call, const std::function<double()>& error) {
    double unit = Unit_ms();
    const double ms = Least_ms(call);
    unit = std::min(unit, Unit_ms());
    std::printf("%s,%s,%s,%.3f,%.2f,%.2e\n", program.c_str(), result.c_str(), setting.c_str(), ms, ms / unit, error());
    std::fflush(stdout);
  }
  double Unit_ms() {
    return Least_ms([this] { unit_.Run(); });
  }

 private:
  UnitTransform unit_;
};

// ---- The physical model

// Of every eye of the truth.
void MeasureEyes(Table& table, const std::vector<TrueEye>& eyes) {
  for (const TrueEye& truth : eyes) {
    Workspace workspace(*ActiveKernels());
    PointSpread psf;
    table.Row(
        "physical", "PSF", truth.name,
        [&] { psf = *PointSpreadOf(truth.eye, truth.light, truth.grid, PsfUnit::kStrehl, workspace); },
        [&] { return PsfError(truth, psf.samples); });
    StrehlRatios ratios;
    table.Row(
        "physical", "Strehl", truth.name,
        [&] { ratios = *StrehlRatiosOf(truth.eye, truth.light, truth.grid.view, workspace); },
        [&] {
          return std::max(std::fabs(ratios.axis - truth.strehlOnAxis), std::fabs(ratios.peak - truth.strehlAtPeak));
        });
    TransferFunction otf;
    table.Row(
        "physical", "OTF lattice", truth.name,
        [&] { otf = *TransferFunctionOf(truth.eye, truth.light, truth.frequencies, workspace); },
        [&] { return OtfError(truth, otf); });
    const std::vector<Frequency> frequencies = FrequenciesOf(truth);
    std::vector<std::complex<double>> exact;
    table.Row(
        "physical", "OTF overlap", truth.name,
        [&] { exact = *TransferFunctionAt(truth.eye, truth.light, frequencies, truth.frequencies.view, workspace); },
        [&] { return OtfError(truth, exact); });
  }
}

// With every number of quadrature nodes.
void MeasureNodes(Table& table, const TrueEye& truth) {
  const Pupil pupil = PupilInLight(truth.eye, truth.light[0].wavelengthNm);
  const double unit = pupil.wavelengthUm / truth.eye.diameterMm * 10.8 / std::numbers::pi;
  const int side = truth.grid.columns;
  const DirectionGrid grid{0.0, 0.0, truth.grid.spacing / unit, side, side};
  ChordQuadrature quadrature(ChordKernelsOf(*ActiveKernels()));
  std::vector<double> samples(static_cast<std::size_t>(side * side));
  const auto measure = [&](NodeCounts counts, const std::string& name) {
    table.Row(
        "quadrature", "PSF", name,
        [&] {
          quadrature.Intensity(pupil, grid, counts, {samples.data(), side, true, false});
        },
        [&] { return PsfError(truth, samples); });
  };
  for (const int n : {32, 48, 64, 80, 96, 112, 128, 144, 160, 192}) measure({n, n}, std::to_string(n));
  const NodeCounts chosen = ChordQuadrature::CountsFor(pupil, grid);
  measure(chosen, "chosen: " + std::to_string(chosen.chords) + " x " + std::to_string(chosen.nodes));
}

// On lattices of more samples across, for finer frequencies.
void MeasureLattices(Table& table, const TrueEye& truth) {
  for (const int finer : {1, 4, 8}) {
    TrueEye eye = truth;
    eye.frequencies.step /= finer;
    eye.frequencies.side *= finer;
    const int half = truth.frequencies.side / 2;
    for (auto& sample : eye.otf) {
      sample.row = half * finer + (sample.row - half) * finer;
      sample.column = half * finer + (sample.column - half) * finer;
    }
    Workspace workspace(*ActiveKernels());
    TransferFunction otf;
    table.Row(
        "lattice", "OTF", std::to_string(std::max(256, 128 * finer)),
        [&] { otf = *TransferFunctionOf(eye.eye, eye.light, eye.frequencies, workspace); },
        [&] { return OtfError(eye, otf); });
  }
}

// ---- The classic model, at its own wavelength, against the physical one at the same places and frequencies.

void MeasureClassic(Table& table, const TrueEye& truth) {
  constexpr int kSide = 256;
  Eye eye = truth.eye;
  const Light light = {{kWavelength * 1e6, 1.0}};
  // The classic modes are not orthonormal, in mm, with y downwards. They leave piston and tilt out.
  double coefficients[28] = {};
  std::size_t j = 0;
  for (int n = 0; n <= 6; ++n) {
    for (int m = -n; m <= n; m += 2, ++j) {
      coefficients[j] = (m < 0 ? -1e-3 : 1e-3) * eye.modesUm[j] * std::sqrt((n + 1) * (m == 0 ? 1.0 : 2.0));
    }
  }
  Workspace workspace(*ActiveKernels());
  // Samples are half of wavelength / diameter apart.
  const double spacing = 0.5 * kWavelength * 1e3 / eye.diameterMm * 10.8 / std::numbers::pi;
  const PointSpread exact = *PointSpreadOf(
      eye, light, {-spacing / 2, spacing / 2, spacing, kSide, kSide, View::kRetina}, PsfUnit::kStrehl, workspace);
  OpticsEngine engine;
  std::vector<double> psf(kSide * kSide), mtf(kSide * kSide);
  double pitch = 0.0, strehl = 0.0, step = 0.0;
  const auto at = [](int row, int column) { return static_cast<std::size_t>((row & 255) * kSide + (column & 255)); };
  table.Row(
      "classic", "PSF", "128",
      [&] {
        engine.synthesizeWavefront(coefficients, eye.diameterMm, 1, 1, 1);
        engine.ComputePsf(kWavelength, psf.data(), &pitch, &strehl, kSide);
      },
      [&] {
        // Its brightest sample is in the middle.
        const auto peak =
            static_cast<int>(std::max_element(exact.samples.begin(), exact.samples.end()) - exact.samples.begin());
        const int down = peak / kSide - kSide / 2, right = peak % kSide - kSide / 2;
        double largest = 0.0;
        for (int r = 0; r < kSide; ++r) {
          for (int c = 0; c < kSide; ++c) {
            largest = std::max(largest, std::fabs(strehl * psf[at(r - down, c - right)] - exact.samples[at(r, c)]));
          }
        }
        return largest;
      });
  table.Row(
      "classic", "MTF", "128",
      [&] {
        engine.synthesizeWavefront(coefficients, eye.diameterMm, 1, 1, 1);
        engine.ComputeMtf(kWavelength, mtf.data(), &step, nullptr, nullptr, nullptr, kSide);
      },
      [&] {
        std::vector<Frequency> frequencies;
        const double perSample = eye.diameterMm / kWavelength * std::numbers::pi / 180 / 128;
        for (const auto& sample : truth.otf) {
          frequencies.push_back({(sample.column - 128) * perSample, (128 - sample.row) * perSample});
        }
        const auto otf = *TransferFunctionAt(eye, light, frequencies, View::kRetina, workspace);
        double largest = 0.0;
        for (std::size_t i = 0; i < otf.size(); ++i) {
          const double classic = mtf[at(truth.otf[i].row, truth.otf[i].column)];
          largest = std::max(largest, std::fabs(classic - std::abs(otf[i])));
        }
        return largest;
      });
}

// ---- FFTW

void MeasureFftw(Table& table, const TrueEye& truth) {
  for (const int side : {512, 1024, 2048, 4096}) {
    PsfByFftw fftw(truth, side);
    std::vector<double> psf(truth.grid.columns * static_cast<std::size_t>(truth.grid.rows));
    table.Row(
        "FFTW", "PSF", std::to_string(side), [&] { fftw.Compute(truth.eye, psf.data()); },
        [&] { return PsfError(truth, psf); });
  }
  for (const int finer : {1, 2, 4, 8}) {
    OtfByFftw fftw(truth, finer);
    TransferFunction otf{truth.frequencies, {}, {}};
    table.Row(
        "FFTW", "OTF", std::to_string(256 * finer), [&] { fftw.Compute(truth.eye, otf); },
        [&] { return OtfError(truth, otf); });
  }
}

int Main(int argc, char** argv) {
  if (ActiveKernels() == nullptr) throw std::runtime_error(WhyNoKernels());
  if (argc == 2 && std::strcmp(argv[1], "--unit") == 0) {
    Table table;
    while (std::getchar() != EOF) {
      std::printf("%.6f\n", table.Unit_ms());
      std::fflush(stdout);
    }
    return 0;
  }
  const std::vector<TrueEye> eyes = ReadPhysicalTruth(ORVANEL_PHYSICAL_TRUTH);
  const TrueEye eye = ReadPhysicalTruth(ORVANEL_PHYSICAL_TRUTH, kEye);
  Table table;
  std::printf("program,result,setting,ms,U,error\n");
  MeasureNodes(table, eye);
  MeasureLattices(table, eye);
  MeasureClassic(table, eye);
  MeasureFftw(table, eye);
  MeasureEyes(table, eyes);
  return 0;
}

}  // namespace
}  // namespace orvanel::bench

int main(int argc, char** argv) {
  try {
    return orvanel::bench::Main(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orvanel_physical_accuracy: %s\n", error.what());
    return 1;
  }
}
