// Adds up the OTFs of all wavelengths at the same frequencies.
#include "models/physical/transfer_function.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <optional>

#include "base/elementary.h"
#include "models/physical/otf/otf_overlap.h"
#include "models/physical/plane_index.h"

namespace orvanel::physical {
namespace {

// A cycle per degree, in units of diameter / wavelength.
double CutOffs(const Beam& beam) { return beam.unitArcmin / 60.0; }

// The PSF of a view has x, or both coordinates, the other way round than the slopes.
constexpr double kSignX = -1.0;
double SignY(View view) { return view == View::kPatient ? 1.0 : -1.0; }

std::optional<Refusal> CheckGrid(const FrequencyGrid& grid) {
  constexpr double kLargestStep = 1000.0;
  if (!(grid.step > 0.0 && grid.step <= kLargestStep)) {
    return Refusal{Problem::kFrequency, grid.step, 0.0, kLargestStep};
  }
  if (grid.side < 1 || grid.side > kLargestSide) {
    return Refusal{Problem::kGridSize, static_cast<double>(grid.side), 1.0, static_cast<double>(kLargestSide)};
  }
  return std::nullopt;
}

std::optional<Refusal> CheckFrequency(double frequency, std::size_t index) {
  if (std::fabs(frequency) <= std::numeric_limits<double>::max()) return std::nullopt;
  return Refusal{Problem::kFrequency, frequency, 0.0, 0.0, static_cast<int>(index)};
}

// The lattice of all frequencies of one beam; its side is 0 where that is too large.
FrequencyLattice LatticeOf(const Beam& beam, double step) {
  const double lattice = step * CutOffs(beam), side = 2.0 * std::ceil(1.0 / lattice);
  return {side <= kMaxFrequencies ? static_cast<int>(side) : 0, lattice};
}

// Adds one beam's OTF, which is 0 beyond its lattice.
void Add(const Beam& beam, const FrequencyLattice& lattice, const double* re, const double* im, TransferFunction& sum) {
  const auto [step, side, view] = sum.grid;
  const int half = lattice.side / 2;
  const auto isInside = [half](int k) { return k > -half && k < half; };
  for (int r = 0; r < side; ++r) {
    const int down = view == View::kPatient ? r - side / 2 : side / 2 - r;
    if (!isInside(down)) continue;
    for (int c = 0; c < side; ++c) {
      const int right = side / 2 - c;
      if (!isInside(right)) continue;
      const std::size_t from = At(half + down, half + right, lattice.side), to = At(r, c, side);
      sum.re[to] += beam.share * re[from];
      sum.im[to] += beam.share * im[from];
    }
  }
}

// The overlap integrals of all beams.
class Overlaps {
 public:
  Overlaps(const std::vector<Beam>& beams, const ChordKernels& kernels) : beams_(beams) {
    for (const Beam& beam : beams) overlaps_.emplace_back(beam.pupil, kernels);
  }

  // At a frequency in the sense of the wavefront's slopes.
  Outcome<std::complex<double>> At(double x, double y) const {
    std::complex<double> sum = 0.0;
    for (std::size_t i = 0; i < beams_.size(); ++i) {
      const double scale = CutOffs(beams_[i]);
      const std::complex<double> otf = overlaps_[i].At(x * scale, y * scale);
      if (std::isnan(otf.real())) {
        return Refusal{Problem::kTooManyNodes, 0.0, 0.0, static_cast<double>(kMaxNodes), beams_[i].line};
      }
      sum += beams_[i].share * otf;
    }
    return sum;
  }

 private:
  const std::vector<Beam>& beams_;
  std::vector<OtfOverlap> overlaps_;
};

// Means at the directions (i + offset) / count of half a turn; the other half has the conjugates.
Outcome<AngularMeans> MeansAt(const Overlaps& overlaps, double frequency, int count, double offset) {
  AngularMeans means;
  for (int i = 0; i < count; ++i) {
    const SineCosine turn = SineAndCosine((i + offset) * std::numbers::pi / count);
    const Outcome<std::complex<double>> otf = overlaps.At(frequency * turn.cosine, frequency * turn.sine);
    if (!otf) return otf.refusal();
    means.mtf += Modulus(*otf) / count;
    means.otf += otf->real() / count;
  }
  return means;
}

Outcome<AngularMeans> MeansOf(const Overlaps& overlaps, double frequency) {
  constexpr int kMinCount = 32, kMaxCount = 4096;
  constexpr double kChange = 2e-6;
  Outcome<AngularMeans> means = MeansAt(overlaps, frequency, kMinCount, 0.0);
  for (int count = kMinCount; means && count < kMaxCount; count *= 2) {
    const Outcome<AngularMeans> between = MeansAt(overlaps, frequency, count, 0.5);
    if (!between) return between;
    const AngularMeans both{(means->mtf + between->mtf) / 2.0, (means->otf + between->otf) / 2.0};
    const double change = std::fabs(both.mtf - means->mtf) + std::fabs(both.otf - means->otf);
    means = both;
    if (change <= kChange) break;
  }
  return means;
}

}  // namespace

Outcome<TransferFunction> TransferFunctionOf(const Eye& eye, const Light& light, const FrequencyGrid& grid,
                                             Workspace& workspace) {
  if (const std::optional<Refusal> refusal = CheckGrid(grid)) return *refusal;
  const Outcome<std::vector<Beam>> beams = BeamsOf(eye, light);
  if (!beams) return beams.refusal();
  for (const Beam& beam : *beams) {
    if (LatticeOf(beam, grid.step).side == 0) {
      return Refusal{Problem::kFrequency, grid.step, 2.0 / (kMaxFrequencies * CutOffs(beam)), 0.0, beam.line};
    }
  }
  TransferFunction sum{grid, std::vector<double>(At(grid.side, 0, grid.side)),
                       std::vector<double>(At(grid.side, 0, grid.side))};
  for (const Beam& beam : *beams) {
    const FrequencyLattice lattice = LatticeOf(beam, grid.step);
    workspace.re.Reserve(At(lattice.side, 0, lattice.side));
    workspace.im.Reserve(At(lattice.side, 0, lattice.side));
    double *const re = workspace.re.data(), *const im = workspace.im.data();
    if (!workspace.otf.Compute(beam.pupil, lattice, re, im)) {
      return Refusal{Problem::kTooSteep, 0.0, 0.0, 0.0, beam.line};
    }
    Add(beam, lattice, re, im, sum);
  }
  return sum;
}

Outcome<std::vector<std::complex<double>>> TransferFunctionAt(const Eye& eye, const Light& light,
                                                              std::span<const Frequency> frequencies, View view,
                                                              const Workspace& workspace) {
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    if (const std::optional<Refusal> refusal = CheckFrequency(frequencies[i].x, i)) return *refusal;
    if (const std::optional<Refusal> refusal = CheckFrequency(frequencies[i].y, i)) return *refusal;
  }
  const Outcome<std::vector<Beam>> beams = BeamsOf(eye, light);
  if (!beams) return beams.refusal();
  const Overlaps overlaps(*beams, workspace.chords);
  std::vector<std::complex<double>> results;
  for (const Frequency& f : frequencies) {
    const Outcome<std::complex<double>> otf = overlaps.At(kSignX * f.x, SignY(view) * f.y);
    if (!otf) return otf.refusal();
    results.push_back(*otf);
  }
  return results;
}

Outcome<std::vector<AngularMeans>> MeansOverAngle(const Eye& eye, const Light& light,
                                                  std::span<const double> frequencies, const Workspace& workspace) {
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    if (const std::optional<Refusal> refusal = CheckFrequency(frequencies[i], i)) return *refusal;
  }
  const Outcome<std::vector<Beam>> beams = BeamsOf(eye, light);
  if (!beams) return beams.refusal();
  const Overlaps overlaps(*beams, workspace.chords);
  std::vector<AngularMeans> results;
  for (const double frequency : frequencies) {
    const Outcome<AngularMeans> means = MeansOf(overlaps, frequency);
    if (!means) return means.refusal();
    results.push_back(*means);
  }
  return results;
}

}  // namespace orvanel::physical
