// Samples, weights and sums of frequencies.
#include "metrics/quality/light_lattice.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>

#include "base/elementary.h"
#include "metrics/quality/area_above.h"
#include "models/physical/pupil/perfect_pupil.h"
#include "models/physical/pupil/pupil_lattice.h"
#include "models/physical/quadrature/gauss_rules.h"
#include "models/physical/spread/bessel.h"

namespace orvanel::metrics {
namespace {

using physical::LightWindow;
using physical::Paraboloid;
using physical::PlaneTransform;
using physical::Workspace;

constexpr double kPi = std::numbers::pi;
constexpr double kDegree = 60.0;  // arcmin

// The sum of |k| over a square lattice less its integral: 4 zeta(-1/2) beta(-1/2). A function with a cusp s |f| at
// frequency 0 is summed as its integral if the sample there has s times this more.
constexpr double kCuspOfLattice = 0.2290;

constexpr double kNegligible = 5.5;  // SDs in frequency, beyond which the Gaussian's transform is below 3e-7
constexpr double kFarthestGaussian = kNegligible / (2.0 * kPi);

std::size_t Size(long long n) { return static_cast<std::size_t>(n); }
int Wrapped(int k, int side) { return k < 0 ? k + side : k; }

struct Wave {
  std::vector<double> cosine, sine;
};
// exp(i k angle) for k from -last to last.
Wave WavesOf(double angle, int last) {
  Wave wave;
  for (int k = -last; k <= last; ++k) {
    const SineCosine t = SineAndCosine(k * angle);
    wave.cosine.push_back(t.cosine);
    wave.sine.push_back(t.sine);
  }
  return wave;
}

// ---- Interpolation between frequencies

// The kernel exp(beta (root(1 - z^2) - 1)) over kTaps fine steps. With lattices twice as fine and the compensation of
// its transform in the other domain, the error is 1e-5.
// Source: Barnett, Magland and af Klinteberg (2019), SIAM J. Sci. Comput. 41:C479.
constexpr int kTaps = LightLattice::kTaps;
constexpr double kBeta = 2.30 * kTaps;

double Kernel(double z) {  // z from -1 to 1
  const double root = 1.0 - z * z;
  return root > 0.0 ? Exponential(kBeta * (std::sqrt(root) - 1.0)) : 0.0;
}

// Its transform at a place of the other domain, in fractions of the fine lattice's period.
double KernelTransform(double place) {
  static const physical::GaussRule rule = physical::GaussLegendre(40);
  double sum = 0.0;
  for (std::size_t i = 0; i < rule.nodes.size(); ++i) {
    const double z = rule.nodes[i];
    sum += rule.weights[i] * Kernel(z) * SineAndCosine(kPi * kTaps * z * place).cosine;
  }
  return sum * kTaps;
}

// J1 between entries of a table, by cubic polynomials with the values and slopes at both ends. Error: 1e-8.
class BesselTable {
 public:
  BesselTable() {
    for (int k = 0; k <= kSteps * kEnd + 1; ++k) {
      const double x = static_cast<double>(k) / kSteps;
      table_.push_back({physical::BesselJ1(x), Difference(x) / kSteps});
    }
  }
  double At(double x) const {
    if (x >= kEnd) return physical::BesselJ1(x);
    const auto [below, c, t] = PieceAt(x);
    return below.value + t * (below.slope + t * (c[0] + t * c[1]));
  }
  // Of the polynomials; beyond the table with an error of 1e-8.
  double SlopeAt(double x) const {
    if (x >= kEnd) return Difference(x);
    const auto [below, c, t] = PieceAt(x);
    return kSteps * (below.slope + t * (2.0 * c[0] + t * 3.0 * c[1]));
  }

 private:
  struct Entry {
    double value, slope;  // by steps
  };
  struct Piece {
    Entry below;
    std::array<double, 2> powers;  // factors of the square and the cube
    double t;
  };
  Piece PieceAt(double x) const {
    const double place = x * kSteps;
    const auto below = static_cast<std::size_t>(place);
    const Entry a = table_[below], b = table_[below + 1];
    const double rise = b.value - a.value;
    return {
        a, {3.0 * rise - 2.0 * a.slope - b.slope, a.slope + b.slope - 2.0 * rise}, place - static_cast<double>(below)};
  }
  // The slope, by differences.
  static double Difference(double x) {
    constexpr double kStep = 0.02;
    const auto at = [](double y) { return y < 0.0 ? -physical::BesselJ1(-y) : physical::BesselJ1(y); };
    const auto difference = [&](double h) { return at(x + h) - at(x - h); };
    return (8.0 * difference(kStep) - difference(2.0 * kStep)) / (12.0 * kStep);
  }

  static constexpr int kSteps = 32, kEnd = 300;
  std::vector<Entry> table_;
};

const BesselTable& Bessel() {
  static const BesselTable table;
  return table;
}

std::complex<double> TimesPowerOfI(std::complex<double> v, int power) {
  switch ((power % 4 + 4) % 4) {
    case 1:
      return {-v.imag(), v.real()};
    case 2:
      return -v;
    case 3:
      return {v.imag(), -v.real()};
    default:
      return v;
  }
}

// Where a half spectrum has its real parts: PlaneTransform::At, as the sum of a number of the row and one of the
// column. Loops over all frequencies so need no divisions.
class SpectrumPlaces {
 public:
  explicit SpectrumPlaces(const PlaneTransform& transform) {
    for (int row = 0; row < transform.side(); ++row) rows_.push_back(transform.At(row, 0));
    for (int q = 0; q <= transform.side() / 2; ++q) columns_.push_back(transform.At(0, q));
  }
  std::size_t At(int row, int q) const { return rows_[Size(row)] + columns_[Size(q)]; }

 private:
  std::vector<std::size_t> rows_, columns_;
};

// Weights of the samples from those of their spectrum: the sum of re cos + im sin over the frequencies, at all samples.
// It is the real part plus the imaginary part of the transform of a real plane. That has (re + im) / 2 at each
// frequency and (re - im) / 2 at its conjugate.
class SpectrumWeights {
 public:
  SpectrumWeights(const PlaneTransform& transform, int width, Workspace& workspace)
      : transform_(transform), places_(transform), width_(width), side_(transform.side()), workspace_(workspace) {
    const std::size_t size = Size(1LL * side_ * side_);
    workspace.re.Reserve(size);
    workspace.im.Reserve(transform.SpectrumSize());
    workspace.weights.Reserve(size);
    plane_ = workspace.re.data();
    std::fill_n(plane_, size, 0.0);
  }
  // p and q within half a side.
  void Add(int p, int q, double re, double im) {
    plane_[Size(1LL * Wrapped(p, side_) * side_ + Wrapped(q, side_))] += (re + im) / 2.0;
    plane_[Size(1LL * Wrapped(-p, side_) * side_ + Wrapped(-q, side_))] += (re - im) / 2.0;
  }
  // The spectrum, from which At has weights.
  void Transform() {
    transform_.HalfSpectrum(plane_, side_, side_, side_, workspace_.im.data(), workspace_.transforms.memory);
  }
  // Columns up to half a side.
  double At(int row, int column) const {
    const double* const v = workspace_.im.data() + places_.At(row, column);
    return v[0] + v[width_];
  }
  // Into workspace.weights.
  void StoreAll() {
    double* const samples = workspace_.weights.data();
    const int half = side_ / 2;
    for (int row = 0; row < side_; ++row) {
      double* const to = samples + Size(1LL * row * side_);
      double* const mirrored = samples + Size(1LL * (row == 0 ? 0 : side_ - row) * side_);
      for (int q = 0; q <= half; ++q) {
        const double* const v = workspace_.im.data() + places_.At(row, q);
        to[q] = v[0] + v[width_];
        if (q > 0 && q < half) mirrored[side_ - q] = v[0] - v[width_];
      }
    }
  }

 private:
  const PlaneTransform& transform_;
  SpectrumPlaces places_;
  int width_, side_;
  Workspace& workspace_;
  double* plane_;
};

// Frequencies -last to last of a half spectrum of 2 side samples, without the phase of the middle's move by half a
// window.
std::vector<std::complex<double>> FrequenciesAroundZero(const double* spectrum, int width,
                                                        const PlaneTransform& transform, int side, int last) {
  const int pitch = 2 * last + 1;
  const SpectrumPlaces places(transform);
  std::vector<std::complex<double>> frequencies(Size(1LL * pitch * pitch));
  for (int q = 0; q <= last; ++q) {
    for (int p = -last; p <= last; ++p) {
      const double* const v = spectrum + places.At(Wrapped(p, 2 * side), q);
      const std::complex<double> value = TimesPowerOfI({v[0], v[width]}, -(p + q));
      frequencies[Size(1LL * (p + last) * pitch + q + last)] = value;
      frequencies[Size(1LL * (last - p) * pitch + last - q)] = std::conj(value);
    }
  }
  return frequencies;
}

}  // namespace

PerfectLight PerfectLightOf(const std::vector<physical::Beam>& beams, physical::ChordQuadrature& quadrature) {
  PerfectLight result;
  result.beams = beams;
  result.unit = beams.front().unitArcmin;
  for (physical::Beam& beam : result.beams) {
    beam.pupil = Flat(beam.pupil);
    const physical::PerfectPupil perfect = PerfectPupilOf(beam.pupil, quadrature);
    result.factors.push_back(beam.share * DensityOf(beam, perfect));
    result.peak += result.factors.back() * perfect.peak;
    result.light = perfect.light;
    result.unit = std::min(result.unit, beam.unitArcmin);
  }
  return result;
}

LightLattice::LightLattice(const PerfectLight& perfect, int side, const Weighting& weighting, Workspace& workspace)
    : side_(side),
      decimation_(1),
      width_(workspace.chords.width),
      unit_(perfect.unit),
      spacing_(physical::kWindowSpacing * perfect.unit),
      period_(side * spacing_),
      weighting_(weighting),
      overlap_(perfect.beams.front().pupil.outline) {
  for (const physical::Beam& beam : perfect.beams) parts_.push_back({beam.share, beam.unitArcmin});
  const double cutOff = 1.0 / perfect.unit;
  const double wanted = std::max(weighting.contrast.end() / kDegree, kFarthestGaussian / weighting.gaussianSd);
  // The weights at the end of the contrast sensitivity, and interpolation, reach some steps beyond.
  constexpr double kReach = physical::kMaskReach + 2.0;
  const double farthest = std::min(wanted, cutOff) + kReach / period_;
  if (0.5 / spacing_ - cutOff > farthest) decimation_ = 2;
  rim_ = RimTransmission(perfect.beams.front().pupil) / perfect.light;
  MakeRuns(farthest);
  MakeCorrection(perfect, workspace);
  MakeWeights(perfect);
  MakePolar();
}

void LightLattice::MakeRuns(double farthest) {
  const int last = std::min(static_cast<int>(farthest * period_) + 1, side_ / decimation_ / 2 - 1);
  for (int q = 0; q <= last; ++q) {
    const int half = static_cast<int>(std::sqrt(static_cast<double>(last * last - q * q)));
    // Of q = 0, conjugates are left out as well.
    const int first = q == 0 ? 0 : -half;
    runs_.push_back({q, first, half - first + 1, count_});
    count_ += Size(half - first + 1);
  }
}

double LightLattice::Exact(double fx, double fy) const {
  double sum = 0.0;
  for (const Part& part : parts_) sum += part.share * overlap_.At(fx * part.unit, fy * part.unit);
  return sum;
}

// The error of a flat overlap comes from the places where two rims cross. With attenuation it is the same, times the
// transmission there.
void LightLattice::MakeCorrection(const PerfectLight& perfect, Workspace& workspace) {
  PerfectLight bright = perfect;
  for (std::size_t i = 0; i < bright.beams.size(); ++i) {
    physical::Pupil& pupil = bright.beams[i].pupil;
    pupil.stilesCrawford = {};
    bright.factors[i] = bright.beams[i].share * DensityOf(bright.beams[i], {});
  }
  LightWindow window;
  window.side = side_;
  window.spacing = spacing_;
  SampleLight(bright.beams, bright.factors, window, workspace);
  flat_.assign(window.samples, window.samples + Size(1LL * side_ * side_));
  for (double& sample : flat_) sample *= rim_;
  TransformAll(window, workspace);
  const PlaneTransform& transform = workspace.transforms.Of(side_);
  const int half = side_ / 2;
  const auto overlapAt = [&](int row, int q) {
    const double* const v = spectrum_.data() + transform.At(row, q);
    return std::sqrt(v[0] * v[0] + v[width_] * v[width_]) * spacing_ * spacing_;
  };
  allCorrection_.resize(Size(1LL * side_ * (half + 1)));
  std::vector<double> lacking(allCorrection_.size());
  const auto at = [half](int row, int q) { return Size(1LL * row * (half + 1) + q); };
  for (int row = 0; row < side_; ++row) {
    for (int q = 0; q <= half; ++q) {
      const int p = row < half ? row : row - side_;
      const double exact = Exact(q / period_, -p / period_);
      lacking[at(row, q)] = exact > 0.0 ? exact - overlapAt(row, q) : -2.0;
    }
  }
  if (perfect.beams.front().pupil.stilesCrawford.rho != 0.0) {
    SampleLight(perfect.beams, perfect.factors, window, workspace);
    TransformAll(window, workspace);
  }
  constexpr double kLeast = 1e-4;  // where next to nothing overlaps, samples of the rim decide
  for (int row = 0; row < side_; ++row) {
    for (int q = 0; q <= half; ++q) {
      const double overlap = overlapAt(row, q), lack = lacking[at(row, q)];
      allCorrection_[at(row, q)] = lack == -2.0 ? 0.0 : overlap > kLeast ? 1.0 + rim_ * lack / overlap : 1.0;
    }
  }
  correction_.resize(count_);
  for (const Run& run : runs_) {
    for (int i = 0; i < run.count; ++i) {
      correction_[run.at + Size(i)] = allCorrection_[at(Wrapped(run.first + i, side_), run.q)];
    }
  }
}

void LightLattice::MakeWeights(const PerfectLight& perfect) {
  const double end = weighting_.contrast.end() / kDegree;
  const double area = 1.0 / (period_ * period_);
  const int last = runs_.back().q;
  // Weights that make the sum over the disc of frequencies an integral.
  const physical::PupilLattice lattice{2 * last + 1, 1.0 / (end * period_)};
  const std::vector<double> disc = physical::MaskOf({}, lattice);
  // The slope of the OTF at frequency 0, of a disc as large as the outline.
  const physical::Ellipse& outline = perfect.beams.front().pupil.outline;
  for (const physical::Beam& beam : perfect.beams) {
    cusp_ -= rim_ * beam.share * 4.0 / kPi * beam.unitArcmin / std::sqrt(outline.semiAxisA * outline.semiAxisB);
  }
  contrast_.resize(count_);
  gaussian_.resize(count_);
  for (const Run& run : runs_) {
    for (int i = 0; i < run.count; ++i) {
      const int p = run.first + i;
      const double f = std::sqrt(1.0 * p * p + 1.0 * run.q * run.q) / period_;
      const double pair = p == 0 && run.q == 0 ? area : 2.0 * area;
      const std::size_t at = run.at + Size(i);
      const double spread = 2.0 * kPi * f * weighting_.gaussianSd;
      contrast_[at] = pair * weighting_.contrast.Continued(f * kDegree) *
                      disc[Size(1LL * (p + last) * lattice.side + run.q + last)];
      gaussian_[at] = pair * Exponential(-spread * spread / 2.0);
    }
  }
  const double slope = weighting_.contrast.SlopeAtZero() * kDegree + weighting_.contrast.Continued(0.0) * cusp_;
  contrast_[0] += area * kCuspOfLattice * slope / period_;
  gaussian_[0] += area * kCuspOfLattice * cusp_ / period_;
}

void LightLattice::MakePolar() {
  constexpr int kRadii = 96, kDirections = 96;
  radii_ = kRadii;
  directions_ = kDirections;
  const double end = std::min(weighting_.contrast.end() / kDegree, 1.0 / unit_);
  radialStep_ = end / radii_;
  for (int a = 0; a < directions_; ++a) {
    const SineCosine t = SineAndCosine(kPi * ((a + 0.5) / directions_ - 0.5));
    for (int j = 1; j <= radii_; ++j) {
      const double fx = j * radialStep_ * t.cosine, fy = j * radialStep_ * t.sine;
      const double fineQ = 2.0 * fx * period_, fineP = -2.0 * fy * period_;
      PolarPlace place{};
      place.perfect = rim_ * Exact(fx, fy);
      place.firstQ = static_cast<int>(std::ceil(fineQ - kTaps / 2.0));
      place.firstP = static_cast<int>(std::ceil(fineP - kTaps / 2.0));
      for (int k = 0; k < kTaps; ++k) {
        place.alongQ[Size(k)] = Kernel((place.firstQ + k - fineQ) * 2.0 / kTaps);
        place.alongP[Size(k)] = Kernel((place.firstP + k - fineP) * 2.0 / kTaps);
      }
      polar_.push_back(place);
    }
  }
  const int side = side_ / decimation_;
  for (int k = 0; k < side; ++k) {
    const int folded = k < side / 2 ? k : k - side;
    compensation_.push_back(1.0 / KernelTransform(static_cast<double>(folded) / (2.0 * side)));
  }
}

int LightLattice::FarthestFine() const {
  return static_cast<int>(std::ceil(2.0 * radii_ * radialStep_ * period_)) + kTaps;
}

void LightLattice::Decimate(const LightWindow& window, double* samples) const {
  const int side = side_ / decimation_;
  for (int r = 0; r < side; ++r) {
    const double* const from = window.samples + Size(1LL * r * decimation_ * side_);
    for (int c = 0; c < side; ++c) samples[Size(1LL * r * side + c)] = from[Size(1LL * c * decimation_)];
  }
}

LightLattice::LowFrequencies LightLattice::LowOf(const LightWindow& window, Workspace& workspace) const {
  const int side = side_ / decimation_;
  const PlaneTransform& transform = workspace.transforms.Of(side);
  const double* samples = window.samples;
  if (decimation_ > 1) {
    workspace.re.Reserve(Size(1LL * side * side));
    Decimate(window, workspace.re.data());
    samples = workspace.re.data();
  }
  workspace.im.Reserve(transform.SpectrumSize());
  double* const spectrum = workspace.im.data();
  transform.HalfSpectrum(samples, side, side, side, spectrum, workspace.transforms.memory);
  const double cell = spacing_ * decimation_ * spacing_ * decimation_;
  LowFrequencies low;
  low.centreX = window.centreX;
  low.centreY = window.centreY;
  low.re.resize(count_);
  low.im.resize(count_);
  for (const Run& run : runs_) {
    for (int i = 0; i < run.count; ++i) {
      const double* const v = spectrum + transform.At(Wrapped(run.first + i, side), run.q);
      const std::size_t at = run.at + Size(i);
      const double factor = correction_[at] * cell;
      low.re[at] = v[0] * factor;
      low.im[at] = v[width_] * factor;
    }
  }
  return low;
}

// The sample (p, q) has the phase 2 pi (p y - q x) / period.
physical::Paraboloid LightLattice::Weighted(const LowFrequencies& low, const std::vector<double>& weights,
                                            Place place) const {
  const double x = place.x - low.centreX, y = place.y - low.centreY;
  const double step = 2.0 * kPi / period_;
  const int last = runs_.back().q;
  const Wave rows = WavesOf(-step * y, last);
  Paraboloid sum{};
  for (const Run& run : runs_) {
    double re = 0.0, im = 0.0, reP = 0.0, imP = 0.0, rePp = 0.0, imPp = 0.0;
    for (int i = 0; i < run.count; ++i) {
      const std::size_t at = run.at + Size(i);
      const int p = run.first + i;
      const double c = rows.cosine[Size(p + last)], s = rows.sine[Size(p + last)];
      const double a = low.re[at] * weights[at], b = low.im[at] * weights[at];
      const double u = a * c - b * s, v = a * s + b * c;
      re += u;
      im += v;
      reP += p * u;
      imP += p * v;
      rePp += p * (p * u);
      imPp += p * (p * v);
    }
    const SineCosine t = SineAndCosine(step * run.q * x);
    const auto realPart = [&t](double u, double v) { return u * t.cosine - v * t.sine; };
    const auto imaginaryPart = [&t](double u, double v) { return u * t.sine + v * t.cosine; };
    const double alongX = step * run.q, alongY = -step;
    sum.value += realPart(re, im);
    sum.x -= alongX * imaginaryPart(re, im);
    sum.y -= alongY * imaginaryPart(reP, imP);
    sum.xx -= alongX * alongX * realPart(re, im);
    sum.xy -= alongX * alongY * realPart(reP, imP);
    sum.yy -= alongY * alongY * realPart(rePp, imPp);
  }
  return sum;
}

void LightLattice::WeightsOfLow(Place place, const LowWeights& neural, const LowWeights& gaussian,
                                Workspace& workspace) const {
  SpectrumWeights spectrum(workspace.transforms.Of(side_ / decimation_), width_, workspace);
  const double step = 2.0 * kPi / period_, cell = spacing_ * decimation_ * spacing_ * decimation_;
  const int last = runs_.back().q;
  const Wave rows = WavesOf(-step * place.y, last), columns = WavesOf(step * place.x, last);
  for (const Run& run : runs_) {
    const double cosineX = columns.cosine[Size(run.q + last)], sineX = columns.sine[Size(run.q + last)];
    for (int i = 0; i < run.count; ++i) {
      const std::size_t at = run.at + Size(i);
      const int p = run.first + i;
      const double cosineY = rows.cosine[Size(p + last)], sineY = rows.sine[Size(p + last)];
      const double cosine = cosineX * cosineY - sineX * sineY, sine = sineX * cosineY + cosineX * sineY;
      const double ofNeural = contrast_[at], ofGaussian = gaussian_[at], factor = correction_[at] * cell;
      const double value = factor * (ofNeural * neural.value + ofGaussian * gaussian.value);
      const double slope =
          factor * step *
          (ofNeural * (neural.x * run.q - neural.y * p) + ofGaussian * (gaussian.x * run.q - gaussian.y * p));
      spectrum.Add(p, run.q, value * cosine - slope * sine, -(value * sine + slope * cosine));
    }
  }
  spectrum.Transform();
  spectrum.StoreAll();
}

physical::LightWindow LightLattice::WindowOfLow(const LightWindow& window) const {
  LightWindow coarse = window;
  coarse.side = side_ / decimation_;
  coarse.spacing = spacing_ * decimation_;
  return coarse;
}

// The neural image on the samples of the window; its hills are climbed.
physical::Peak LightLattice::LargestNeural(const LightWindow& window, const LowFrequencies& low,
                                           Workspace& workspace) const {
  const int side = side_ / decimation_;
  const PlaneTransform& transform = workspace.transforms.Of(side);
  workspace.re.Reserve(std::max(Size(1LL * side * side), transform.SpectrumSize()));
  workspace.im.Reserve(transform.SpectrumSize());
  Decimate(window, workspace.re.data());
  double* const filter = workspace.im.data();
  std::fill_n(filter, transform.SpectrumSize(), 0.0);
  for (const Run& run : runs_) {
    for (int i = 0; i < run.count; ++i) {
      const std::size_t at = run.at + Size(i);
      const int p = run.first + i;
      // Of both a frequency and its conjugate, which share the weight, in the first column.
      const double weight = contrast_[at] * correction_[at] * (p == 0 && run.q == 0 ? 1.0 : 0.5);
      filter[transform.At(Wrapped(p, side), run.q)] = weight;
      if (run.q == 0 && p > 0) filter[transform.At(side - p, 0)] = weight;
    }
  }
  physical::WantedPlane wanted{};
  wanted.samples = workspace.re.data();
  wanted.pitch = side;
  wanted.rows = wanted.columns = side;
  transform.Filter(workspace.re.data(), side, side, side, filter, wanted, workspace.transforms.memory);
  LightWindow neural = WindowOfLow(window);
  neural.samples = workspace.re.data();
  constexpr double kShare = 0.6, kPromising = 0.9, kLongest = 0.25, kNearest = 1e-5, kSame = 1e-9, kApart = 0.05;
  physical::Peak best;
  bool isFirst = true;
  double highest = 0.0;
  for (const physical::Hill& hill : HillsIn(neural, kShare)) {
    if (isFirst) highest = hill.value;
    if (hill.value < kPromising * highest) break;
    const physical::Peak peak = physical::Climb(
        [&](double x, double y) {
          return Neural(low, {x, y});
        },
        hill.x, hill.y, kLongest, kNearest);
    const bool isSame = !isFirst && std::fabs(peak.value - best.value) <= kSame * std::fabs(best.value);
    const bool isElsewhere = physical::Length({peak.x - best.x, peak.y - best.y, false}) > kApart;
    if (isFirst || peak.value > best.value) best = peak;
    if (isSame && isElsewhere) best.isolated = false;
    isFirst = false;
  }
  return best;
}

// The light less that of an evenly bright pupil has a transform that is smooth at frequency 0. It is interpolated
// between the frequencies of a window twice as large, half of it empty.
LightLattice::Means LightLattice::MeansOf(const LightWindow& window, Place place, Workspace& workspace) const {
  const int side = side_ / decimation_, half = side / 2;
  const PlaneTransform& transform = workspace.transforms.Of(2 * side);
  workspace.re.Reserve(Size(1LL * side * side));
  workspace.im.Reserve(transform.SpectrumSize());
  double* const samples = workspace.re.data();
  double* const spectrum = workspace.im.data();
  const double cell = spacing_ * decimation_ * spacing_ * decimation_;
  for (int r = 0; r < side; ++r) {
    const int row = r < half ? r + half : r - half;
    for (int c = 0; c < side; ++c) {
      const std::size_t at = Size(1LL * r * decimation_ * side_ + 1LL * c * decimation_);
      samples[Size(1LL * row * side + (c < half ? c + half : c - half))] =
          cell * compensation_[Size(r)] * compensation_[Size(c)] * (window.samples[at] - flat_[at]);
    }
  }
  transform.HalfSpectrum(samples, side, side, side, spectrum, workspace.transforms.memory);
  const int last = FarthestFine();
  const int pitch = 2 * last + 1;
  const std::vector<std::complex<double>> fine = FrequenciesAroundZero(spectrum, width_, transform, side, last);
  const double x = place.x - window.centreX, y = place.y - window.centreY;
  Means means;
  means.step = radialStep_;
  means.points.resize(polar_.size());
  means.mtf.assign(Size(radii_ + 1), 0.0);
  means.otf.assign(Size(radii_ + 1), 0.0);
  means.mtf[0] = means.otf[0] = 1.0;
  for (int a = 0; a < directions_; ++a) {
    const SineCosine t = SineAndCosine(kPi * ((a + 0.5) / directions_ - 0.5));
    // To the place, by one step of the frequencies more each time.
    const SineCosine step = SineAndCosine(2.0 * kPi * radialStep_ * (t.cosine * x + t.sine * y));
    SineCosine turn{0.0, 1.0};
    for (int j = 1; j <= radii_; ++j) {
      const PolarPlace& at = polar_[Size(1LL * a * radii_ + j - 1)];
      double otfRe = at.perfect, otfIm = 0.0;
      for (int r = 0; r < kTaps; ++r) {
        const std::complex<double>* const row =
            fine.data() + Size(1LL * (at.firstP + r + last) * pitch + at.firstQ + last);
        double re = 0.0, im = 0.0;
        for (int k = 0; k < kTaps; ++k) {
          re += at.alongQ[Size(k)] * row[k].real();
          im += at.alongQ[Size(k)] * row[k].imag();
        }
        otfRe += at.alongP[Size(r)] * re;
        otfIm += at.alongP[Size(r)] * im;
      }
      turn = {turn.sine * step.cosine + turn.cosine * step.sine, turn.cosine * step.cosine - turn.sine * step.sine};
      means.points[Size(1LL * a * radii_ + j - 1)] = {otfRe, otfIm};
      means.mtf[Size(j)] += std::sqrt(otfRe * otfRe + otfIm * otfIm) / directions_;
      means.otf[Size(j)] += (otfRe * turn.cosine - otfIm * turn.sine) / directions_;
    }
  }
  return means;
}

// Each step of MeansOf backwards.
LightLattice::Slope LightLattice::WeightsOfMeans(const LightWindow& window, const Means& means, Place place,
                                                 const MeanWeights& wanted, Workspace& workspace) const {
  const int last = FarthestFine(), pitch = 2 * last + 1;
  std::vector<std::complex<double>> fine(Size(1LL * pitch * pitch));
  const double x = place.x - window.centreX, y = place.y - window.centreY;
  Slope slope;
  for (int a = 0; a < directions_; ++a) {
    const SineCosine t = SineAndCosine(kPi * ((a + 0.5) / directions_ - 0.5));
    const SineCosine step = SineAndCosine(2.0 * kPi * radialStep_ * (t.cosine * x + t.sine * y));
    SineCosine turn{0.0, 1.0};
    for (int j = 1; j <= radii_; ++j) {
      const std::complex<double> otf = means.points[Size(1LL * a * radii_ + j - 1)];
      turn = {turn.sine * step.cosine + turn.cosine * step.sine, turn.cosine * step.cosine - turn.sine * step.sine};
      const double modulus = std::sqrt(otf.real() * otf.real() + otf.imag() * otf.imag());
      const double ofModulus = modulus > 0.0 ? wanted.mtf[Size(j)] / (directions_ * modulus) : 0.0;
      const double ofReal = wanted.otf[Size(j)] / directions_;
      const double re = ofModulus * otf.real() + ofReal * turn.cosine;
      const double im = ofModulus * otf.imag() - ofReal * turn.sine;
      const double along = -ofReal * 2.0 * kPi * j * radialStep_ * (otf.real() * turn.sine + otf.imag() * turn.cosine);
      slope.x += along * t.cosine;
      slope.y += along * t.sine;
      const PolarPlace& at = polar_[Size(1LL * a * radii_ + j - 1)];
      for (int r = 0; r < kTaps; ++r) {
        std::complex<double>* const row = fine.data() + Size(1LL * (at.firstP + r + last) * pitch + at.firstQ + last);
        const double rowRe = at.alongP[Size(r)] * re, rowIm = at.alongP[Size(r)] * im;
        for (int k = 0; k < kTaps; ++k)
          row[k] += std::complex<double>(at.alongQ[Size(k)] * rowRe, at.alongQ[Size(k)] * rowIm);
      }
    }
  }
  const int side = side_ / decimation_, half = side / 2;
  SpectrumWeights spectrum(workspace.transforms.Of(2 * side), width_, workspace);
  for (int q = 0; q <= last; ++q) {
    for (int p = -last; p <= last; ++p) {
      std::complex<double> value = fine[Size(1LL * (p + last) * pitch + q + last)];
      if (q > 0) value += std::conj(fine[Size(1LL * (last - p) * pitch + last - q)]);
      value = TimesPowerOfI(value, p + q);
      spectrum.Add(p, q, value.real(), value.imag());
    }
  }
  spectrum.Transform();
  const double cell = spacing_ * decimation_ * spacing_ * decimation_;
  double* const weights = workspace.weights.data();
  for (int r = 0; r < side; ++r) {
    const int row = r < half ? r + half : r - half;
    for (int c = 0; c < side; ++c) {
      weights[Size(1LL * r * side + c)] =
          cell * compensation_[Size(r)] * compensation_[Size(c)] * spectrum.At(row, c < half ? c + half : c - half);
    }
  }
  return slope;
}

void LightLattice::TransformAll(const LightWindow& window, Workspace& workspace) {
  const PlaneTransform& transform = workspace.transforms.Of(side_);
  spectrum_.Reserve(transform.SpectrumSize());
  transform.HalfSpectrum(window.samples, side_, side_, side_, spectrum_.data(), workspace.transforms.memory);
}

LightLattice::Volumes LightLattice::VolumesOf(Workspace& workspace) const {
  const SpectrumPlaces places(workspace.transforms.Of(side_));
  const int half = side_ / 2;
  Volumes volumes;
  for (int q = 0; q <= half; ++q) {
    const double pair = q == 0 || q == half ? 1.0 : 2.0;
    for (int row = 0; row < side_; ++row) {
      const double correction = allCorrection_[Size(1LL * row * (half + 1) + q)];
      if (correction == 0.0) continue;  // beyond the cut-off
      const double* const v = spectrum_.data() + places.At(row, q);
      const double square = (v[0] * v[0] + v[width_] * v[width_]) * correction * correction;
      volumes.modulus += pair * std::sqrt(square);
      volumes.squaredModulus += pair * square;
    }
  }
  const double cell = spacing_ * spacing_, area = 1.0 / (period_ * period_);
  volumes.modulus *= cell * area;
  volumes.squaredModulus *= cell * cell * area;
  return volumes;
}

void LightLattice::WeightsOfVolumes(const Volumes& wanted, Workspace& workspace) const {
  const PlaneTransform& transform = workspace.transforms.Of(side_);
  const SpectrumPlaces places(transform);
  const int half = side_ / 2;
  const double cell = spacing_ * spacing_, area = 1.0 / (period_ * period_);
  SpectrumWeights spectrum(transform, width_, workspace);
  for (int row = 0; row < side_; ++row) {
    for (int q = 0; q <= half; ++q) {
      const double correction = allCorrection_[Size(1LL * row * (half + 1) + q)];
      if (correction == 0.0) continue;
      const double pair = q == 0 || q == half ? 1.0 : 2.0;
      const double* const v = spectrum_.data() + places.At(row, q);
      const double modulus = std::sqrt(v[0] * v[0] + v[width_] * v[width_]);
      const double ofModulus = modulus > 0.0 ? wanted.modulus * std::fabs(correction) * cell / modulus : 0.0;
      const double ofSquare = wanted.squaredModulus * 2.0 * correction * correction * cell * cell;
      const double factor = pair * area * (ofModulus + ofSquare);
      spectrum.Add(row < half ? row : row - side_, q, factor * v[0], factor * v[width_]);
    }
  }
  spectrum.Transform();
  spectrum.StoreAll();
}

// Each frequency goes to six nodes of a radial lattice, so that sums of smooth functions of the frequency stay the
// same.
LightLattice::Circles LightLattice::CirclesAbout(const LightWindow& window, Place place, Workspace& workspace) {
  const SpectrumPlaces places(workspace.transforms.Of(side_));
  const int half = side_ / 2;
  if (radial_.empty()) {
    for (int row = 0; row < side_; ++row) {
      const int p = row < half ? row : row - side_;
      for (int q = 0; q <= half; ++q) {
        if (allCorrection_[Size(1LL * row * (half + 1) + q)] == 0.0 || (q == 0 && p < 0)) continue;
        Radial radial{};
        const double node = kRadialNodes * std::sqrt(1.0 * p * p + 1.0 * q * q);
        radial.row = row;
        radial.q = q;
        radial.first = static_cast<int>(node) - 2;
        for (int k = 0; k < kRadialTaps; ++k) {
          double weight = q == 0 && p == 0 ? 1.0 : 2.0;
          for (int i = 0; i < kRadialTaps; ++i) {
            if (i != k) weight *= (node - radial.first - i) / (k - i);
          }
          radial.weights[Size(k)] = weight;
        }
        radial_.push_back(radial);
      }
    }
  }
  const double cell = spacing_ * spacing_, area = 1.0 / (period_ * period_), step = 2.0 * kPi / period_;
  const Wave rows = WavesOf(-step * (place.y - window.centreY), half);
  const Wave columns = WavesOf(step * (place.x - window.centreX), half);
  Circles circles;
  circles.step_ = 1.0 / (kRadialNodes * period_);
  circles.weights_.assign(Size(2LL * kRadialNodes * half + kRadialTaps), 0.0);
  for (const Radial& radial : radial_) {
    const std::size_t r = Size(radial.row < half ? radial.row + half : radial.row - half), c = Size(radial.q + half);
    const double* const v = spectrum_.data() + places.At(radial.row, radial.q);
    const double cosine = rows.cosine[r] * columns.cosine[c] - rows.sine[r] * columns.sine[c];
    const double sine = rows.cosine[r] * columns.sine[c] + rows.sine[r] * columns.cosine[c];
    const double otf = allCorrection_[Size(1LL * radial.row * (half + 1) + radial.q)] * cell * area *
                       (v[0] * cosine - v[width_] * sine);
    for (int k = 0; k < kRadialTaps; ++k) {
      // Functions of the radial frequency are even.
      circles.weights_[Size(std::abs(radial.first + k))] += otf * radial.weights[Size(k)];
    }
  }
  circles.weights_[0] += area * kCuspOfLattice * cusp_ / period_;
  return circles;
}

double LightLattice::Circles::Within(double radius) const {
  // J1(2 pi f R) R / f is pi R^2 at frequency 0.
  double sum = weights_[0] * kPi * radius * radius;
  for (std::size_t k = 1; k < weights_.size(); ++k) {
    if (weights_[k] == 0.0) continue;
    const double f = static_cast<double>(k) * step_;
    sum += weights_[k] * radius / f * Bessel().At(2.0 * kPi * radius * f);
  }
  return sum;
}

double LightLattice::Circles::SlopeAt(double radius) const {
  double sum = weights_[0] * 2.0 * kPi * radius;
  for (std::size_t k = 1; k < weights_.size(); ++k) {
    if (weights_[k] == 0.0) continue;
    const double f = static_cast<double>(k) * step_, x = 2.0 * kPi * radius * f;
    sum += weights_[k] * (Bessel().At(x) / f + radius * 2.0 * kPi * Bessel().SlopeAt(x));
  }
  return sum;
}

LightLattice::Slope LightLattice::WeightsOfCircle(const LightWindow& window, Place place, double radius,
                                                  Workspace& workspace) const {
  const PlaneTransform& transform = workspace.transforms.Of(side_);
  const SpectrumPlaces places(transform);
  const int half = side_ / 2;
  const double cell = spacing_ * spacing_, area = 1.0 / (period_ * period_), step = 2.0 * kPi / period_;
  const Wave rows = WavesOf(-step * (place.y - window.centreY), half);
  const Wave columns = WavesOf(step * (place.x - window.centreX), half);
  const double nodeStep = 1.0 / (kRadialNodes * period_);
  std::vector<double> ofNodes(Size(2LL * kRadialNodes * half + kRadialTaps));
  ofNodes[0] = kPi * radius * radius;
  for (std::size_t k = 1; k < ofNodes.size(); ++k) {
    const double f = static_cast<double>(k) * nodeStep;
    ofNodes[k] = radius / f * Bessel().At(2.0 * kPi * radius * f);
  }
  SpectrumWeights spectrum(transform, width_, workspace);
  Slope slope;
  for (const Radial& radial : radial_) {
    const int p = radial.row < half ? radial.row : radial.row - side_;
    const std::size_t r = Size(p + half), c = Size(radial.q + half);
    const double* const v = spectrum_.data() + places.At(radial.row, radial.q);
    const double cosine = rows.cosine[r] * columns.cosine[c] - rows.sine[r] * columns.sine[c];
    const double sine = rows.cosine[r] * columns.sine[c] + rows.sine[r] * columns.cosine[c];
    double factor = 0.0;
    for (int k = 0; k < kRadialTaps; ++k) factor += radial.weights[Size(k)] * ofNodes[Size(std::abs(radial.first + k))];
    factor *= allCorrection_[Size(1LL * radial.row * (half + 1) + radial.q)] * cell * area;
    spectrum.Add(p, radial.q, factor * cosine, -factor * sine);
    const double along = -factor * step * (v[0] * sine + v[width_] * cosine);
    slope.x += along * radial.q;
    slope.y -= along * p;
  }
  spectrum.Transform();
  spectrum.StoreAll();
  return slope;
}

// The light of a growing circle grows.
double LightLattice::Circles::RadiusOf(double share, double first, double largest) const {
  double low = 0.0, high = first, belowLow = -share;
  double aboveHigh = Within(high) - share;
  while (aboveHigh < 0.0) {
    if (high >= largest) return std::numeric_limits<double>::quiet_NaN();
    low = high;
    belowLow = aboveHigh;
    high = std::min(1.5 * high, largest);
    aboveHigh = Within(high) - share;
  }
  // The secant, with halvings so that both ends move; then Newton's method, to rounding.
  constexpr int kSteps = 6;
  for (int i = 0; i < kSteps; ++i) {
    const double middle = i % 3 == 2 ? (low + high) / 2.0 : low - belowLow * (high - low) / (aboveHigh - belowLow);
    const double value = Within(middle) - share;
    (value < 0.0 ? low : high) = middle;
    (value < 0.0 ? belowLow : aboveHigh) = value;
  }
  double radius = low - belowLow * (high - low) / (aboveHigh - belowLow);
  constexpr int kNewton = 3;
  for (int i = 0; i < kNewton; ++i) {
    const double slope = SlopeAt(radius);
    if (!(slope > 0.0)) break;
    radius = std::clamp(radius - (Within(radius) - share) / slope, low, high);
  }
  return radius;
}

// The autocorrelation is the transform of the squared modulus, here on a lattice of places twice as fine.
double LightLattice::AreaOfAutocorrelation(double width, Workspace& workspace) const {
  const SpectrumPlaces spectrumPlaces(workspace.transforms.Of(side_));
  const PlaneTransform& fine = workspace.transforms.Of(2 * side_);
  const SpectrumPlaces finePlaces(fine);
  const int half = side_ / 2;
  workspace.re.Reserve(Size(1LL * side_ * side_));
  workspace.im.Reserve(fine.SpectrumSize());
  double* const squares = workspace.re.data();
  double* const places = workspace.im.data();
  // Frequency 0 is in the middle.
  for (int row = 0; row < side_; ++row) {
    const int p = row < half ? row : row - side_;
    for (int q = 0; q <= half; ++q) {
      const double correction = allCorrection_[Size(1LL * row * (half + 1) + q)];
      const double* const v = spectrum_.data() + spectrumPlaces.At(row, q);
      const double square = correction == 0.0 ? 0.0 : correction * correction * (v[0] * v[0] + v[width_] * v[width_]);
      if (q < half) squares[Size(1LL * (p + half) * side_ + q + half)] = square;
      if (p > -half) squares[Size(1LL * (half - p) * side_ + half - q)] = square;
    }
  }
  for (int c = 0; c < side_; ++c) squares[Size(c)] = 0.0;  // the highest frequency, which has no pair
  fine.HalfSpectrum(squares, side_, side_, side_, places, workspace.transforms.memory);
  const int fineSide = 2 * side_;
  const auto at = [&](int row, int column) {
    // Of a negative column, the mirrored place; without the phase of the middle's move by half a period.
    const int r = column < 0 ? -row : row, c = std::abs(column);
    const double* const v = places + finePlaces.At(Wrapped(r, fineSide), c);
    switch (((r + c) % 4 + 4) % 4) {  // real part of v times (-i)^(r + c)
      case 1:
        return v[width_];
      case 2:
        return -v[0];
      case 3:
        return -v[width_];
      default:
        return v[0];
    }
  };
  // The part of the half plane that every second place shows. Places farther apart than the light is wide are dark.
  const int reach = std::min(side_ - 8, static_cast<int>(2.0 * width / spacing_) + 8);
  const double highest = at(0, 0);
  constexpr double kShare = 0.3;
  int rows = 0, columns = 0;
  for (int c = 0; c < reach; c += 2) {
    for (int r = -(reach / 2) * 2; r < reach; r += 2) {
      // r + c is even.
      const double value = places[finePlaces.At(Wrapped(r, fineSide), c)] * ((r + c) % 4 == 0 ? 1.0 : -1.0);
      if (value < kShare * highest) continue;
      rows = std::max(rows, std::abs(r));
      columns = c;
    }
  }
  rows = std::min(rows + 8, side_ - 1);
  columns = std::min(columns + 8, side_ - 1);
  const int pitch = columns + kAreaRim + 1;
  std::vector<double> halfPlane(Size(1LL * (2 * rows + 1) * pitch));
  for (int r = -rows; r <= rows; ++r) {
    for (int c = -kAreaRim; c <= columns; ++c) halfPlane[Size(1LL * (r + rows) * pitch + c + kAreaRim)] = at(r, c);
  }
  const double cells = AreaAbove(0.5 * highest, halfPlane.data(), 2 * rows + 1, pitch);
  return 2.0 * cells * spacing_ * spacing_ / 4.0;
}

}  // namespace orvanel::metrics
