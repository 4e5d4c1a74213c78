// Writes docs/accuracy.md and the data of its plots: orvanel_accuracy FOLDER DATE.
#include <orvanel/optics_engine.h>
#include <orvanel/psf_peak.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/accuracy/budget.h"
#include "tests/accuracy/findings.h"
#include "tests/support/error_bounds.h"
#include "tests/support/truth.h"

namespace orvanel::accuracy {
namespace {

constexpr Real kPi = std::numbers::pi_v<Real>;
constexpr double kPerfectStrehl = 0.038463531294838;  // the library's peak of a flat pupil

#if defined(__clang__)
constexpr const char* kCompiler = "clang " __clang_version__;
#else
constexpr const char* kCompiler = "GCC " __VERSION__;
#endif

std::string Printed(const char* format, Real value, int digits) {
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), format, digits, value);
  return text.data();
}
std::string Fixed(Real value, int digits) { return Printed("%.*Lf", value, digits); }
std::string Signed(Real value, int digits) { return Printed("%+.*Lf", value, digits); }

// 9.4 × 10⁻⁴.
std::string Power(Real value) {
  static const std::array<const char*, 10> superscripts = {"⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
  if (value == 0) return "0";
  const std::string text = Printed("%.*Le", value, 1);
  const std::size_t e = text.find('e');
  const int exponent = std::stoi(text.substr(e + 1));
  std::string result = text.substr(0, e) + " × 10" + (exponent < 0 ? "⁻" : "");
  for (const char digit : std::to_string(std::abs(exponent))) {
    result += superscripts[static_cast<std::size_t>(digit - '0')];
  }
  return result;
}

// The deviations in the table of the truth file; the brightest sample is reported in words.
constexpr std::array<std::size_t, 5> kTold = {0, 1, 3, 4, 5};

std::string Name(Mode mode) { return std::string("(") + std::to_string(mode.n) + ", " + std::to_string(mode.m) + ")"; }

// Data that more than one section needs, and the files to write.
struct Page {
  std::ofstream text;
  std::string folder, date;
  Simulation flat = FlatPupil();
  BandLimitedPsf psf{flat.engine()};
  std::vector<std::vector<reference::Deviation>> truth;  // by eye
  std::vector<std::string> truthNames;

  std::ofstream Data(const std::string& name) const { return std::ofstream(folder + "/" + name + ".dat"); }
};

// ---- Opening

Real LargestDeviation(const Page& page, std::size_t what) {
  Real largest = 0;
  for (const auto& eye : page.truth) largest = std::max(largest, eye[what].largest);
  return largest;
}

void Opening(Page& page) {
  Real flat = 0, strehl = 0, mtf = 0;
  flat = std::abs(DiffractionErrorOfPlane(page.flat));
  for (const ModeBudget& budget : kModeSampling) {
    strehl = std::max(strehl, budget.strehl);
    mtf = std::max(mtf, budget.mtf);
  }
  page.text << R"(# Accuracy

This page compares the library's numbers with exact optics. The reference is a closed form, an integral with far more
digits, or a sum in more precision. None of these shares code with the library. `./dev accuracy` computes every number of
this page and draws every plot. The tests in `tests/accuracy/` and `tests/golden/` check every bound. All of this is about
the classic model; the last chapter is about [the physical model](#the-physical-model).

)"
            << "This page was made on " << page.date << " with " << kCompiler << ", kernels `" << KernelVariant()
            << "`. Other compilers and kernels give the same bits.\n";
  page.text << R"(
There are two kinds of error, and they differ by a factor of 10¹²:

| | rounding: difference from the exact formulas on the samples | sampling: difference from a round pupil without samples |
|---|---|---|
)";
  page.text << "| MTF, of 1 | " << Power(LargestDeviation(page, 4)) << " | " << Power(flat) << " flat; at most "
            << Power(mtf) << " with single modes of up to 0.2 waves RMS |\n";
  page.text << "| PSF, of its peak | " << Power(LargestDeviation(page, 3)) << " | at most " << Power(kFlatPsfSampling)
            << " flat; dark rings " << Fixed(100 * (1 / EffectiveRadius() - 1), 3) << " % too wide |\n";
  page.text << "| Strehl ratio | " << Power(LargestDeviation(page, 5)) << ", relative | at most " << Power(strehl)
            << " with single modes of up to 0.2 waves RMS |\n";
  page.text << "| encircled energy, of 1 | | at most " << Power(kEncircledEnergySampling)
            << " at the first three dark rings, " << Power(kEnergySampling) << " elsewhere |\n";
  page.text << R"(
So two decimals of a Strehl ratio are reliable, nearly three. An MTF below some 10⁻³ belongs to the staircase edge of the
sampled pupil and not to the eye, even if more digits are printed. Effects that the model leaves out are
[listed below](#where-not-to-trust-it).
)";
}

// ---- Rounding

void Rounding(Page& page) {
  page.text << R"(
## Rounding

An independent script computes samples of seven eyes in 45 decimal digits by direct sums
([tests/golden/truth](../tests/golden/truth/README.md)). One eye is flat, one has some ten waves, and one has all 28
coefficients. The table has the largest differences of the library, from coefficients to results. The last row has the
smallest bound that `tests/support/error_bounds.h` derives for one of these eyes. A bound assumes that all roundings have
the same direction.

| eye | wavefront, waves | field | PSF | MTF | Strehl ratio |
|---|---|---|---|---|---|
)";
  std::array<Real, 6> smallest;
  smallest.fill(HUGE_VALL);
  for (std::size_t i = 0; i < page.truth.size(); ++i) {
    page.text << "| " << page.truthNames[i];
    for (const std::size_t k : kTold) {
      const Real unit = k == 0 ? kWavelength : 1;
      page.text << " | " << Power(page.truth[i][k].largest / unit);
      if (page.truth[i][k].bound > 0) smallest[k] = std::min(smallest[k], page.truth[i][k].bound / unit);
    }
    page.text << " |\n";
  }
  page.text << "| (bound)";
  for (const std::size_t k : kTold) page.text << " | (" << Power(smallest[k]) << ")";
  page.text << R"( |

The spacing of doubles at 1 is 2.2 × 10⁻¹⁶, so no significant accuracy is lost. The brightest sample was the same one for
all seven eyes.

The sum of the PSF is another check. By Parseval's theorem it is 65536 / (12853 S) with the Strehl ratio S, for any
wavefront. Its relative error is )";
  page.text
      << Power(PsfSumError(page.flat)) << " for the flat pupil. Of this, "
      << Power(static_cast<Real>(kDisc) * kDisc / (65536.0L * 65536.0L) / kPerfectStrehl - 1)
      << R"( is the error of the constant 0.038463531294838, the flat pupil's peak (12853 / 65536)² with 14 digits. All Strehl
ratios have this error.
)";
}

// ---- Sampling

void Sampling(Page& page) {
  std::ofstream data = page.Data("convergence");
  page.text << R"(
## Sampling

The pupil is a disc of 12,853 samples on a square lattice, 129 across. Each sample counts in full or not at all. Three
effects follow, and they explain all errors below:

- The disc has the area of a circle with a radius of )"
            << Fixed(EffectiveRadius() * kRadius, 3) << " samples, not 64. It is "
            << Fixed(100 * (1 - EffectiveRadius()), 3) << R"( % too small, as much as )"
            << Fixed(1000 * 3 * (1 - EffectiveRadius()), 1) << R"( µm of a 3 mm pupil.
- Its edge is a staircase. The number of lattice points in a circle is Gauss's circle problem: it differs from the area by
  about the root of the circumference. So errors decrease, irregularly, with the power 3/2 of the samples across.
- Modes differ at the edge, where all radial polynomials are 1. Modes of higher radial order are steeper there, so the
  staircase causes larger errors.

Other grids, which the engine has for C++ hosts, show that this is sampling and not a mistake. The table has the Strehl
ratio on the axis, for 0.1 waves RMS, less the integral.

| samples across the pupil | defocus (2, 0) | spherical (4, 0) | (6, 6) |
|---|---|---|---|
)";
  for (const int side : {64, 128, 256, 512, 1024, 2048}) {
    page.text << "| " << side / 2 + 1;
    data << side / 2 + 1;
    for (const Mode mode : {Mode{2, 0}, Mode{4, 0}, Mode{6, 6}}) {
      const Real error = AxisStrehlOnGrid(SingleMode(mode.n, mode.m, 0.1L), side) - AxisStrehl(mode, 0.1L);
      page.text << " | " << Power(error);
      data << ' ' << std::abs(error);
    }
    page.text << " |\n";
    data << '\n';
  }
  page.text << R"(
![Error of the Strehl ratio over the samples across the pupil](images/accuracy-convergence.svg)
)";
}

// ---- The flat pupil's MTF

void FlatPupilMtf(Page& page) {
  std::ofstream data = page.Data("diffraction");
  for (const Direction& direction : Directions()) {
    for (const int i : Steps(direction, 0, 1)) {
      const Real frequency = Frequency(direction, i), ours = page.flat.Mtf(i * direction.row, i * direction.column);
      data << frequency << ' ' << DiffractionMtf(frequency) << ' ' << ours << ' ' << ours - DiffractionMtf(frequency)
           << '\n';
    }
    data << "\n\n";
  }
  data << 0 << ' ' << kFlatMtfSampling << '\n' << 1 << ' ' << kFlatMtfSampling << '\n';
  page.text << R"(
## Diffraction alone

Without aberration, the MTF at the fraction ν of the cut-off is (2/π)(acos ν − ν √(1 − ν²)) in all directions.

| ν | closed form | row | diagonal, nearest samples |
|---|---|---|---|
)";
  for (const int i : {1, 8, 16, 32, 48, 64, 80, 96, 112, 120, 127}) {
    const Real frequency = static_cast<Real>(i) / kCutOff;
    const int k = static_cast<int>(std::lround(static_cast<Real>(i) / std::numbers::sqrt2_v<Real>));
    const Direction& diagonal = Directions()[2];
    page.text << "| " << Fixed(frequency, 4) << " | " << Fixed(DiffractionMtf(frequency), 6) << " | "
              << Fixed(page.flat.Mtf(0, i), 6) << " | " << Fixed(page.flat.Mtf(k, k), 6) << " for "
              << Fixed(DiffractionMtf(Frequency(diagonal, k)), 6) << " |\n";
  }
  page.text << "\nLargest difference: ";
  for (const Direction& direction : Directions()) {
    page.text << Power(DiffractionError(page.flat, direction)) << " along the " << direction.name << ", ";
  }
  page.text << Power(DiffractionErrorOfPlane(page.flat)) << " in all the plane; bound `kFlatMtfSampling`, "
            << Power(kFlatMtfSampling) << ". Row and column are the same by symmetry.\n"
            << "The library's own curve of the diffraction limit is the closed form to "
            << Power(DiffractionCurveError(page.flat)) << R"(; most of this error is its constant 2/π with 15 digits.

![MTF of the flat pupil and its error](images/accuracy-diffraction.svg)

**Cut-off.** Beyond 128 samples from zero the MTF is at most )"
            << Power(LargestBeyondCutOff(page.flat)) << ", which is only rounding. At 128 samples the disc's outermost "
            << "samples, one on each side, still overlap: 1/12853 = " << Power(1.0L / kDisc)
            << R"(. It is twice that at the plane's edge, where sample
−128 is also sample +128.

The shape does not depend on the pupil; only the axis does:

| pupil, mm | MTF ends at, cycles/degree, library scale | d / λ, optical scale | half extent of the PSF window, arc minutes, optical scale | defocus whose blur fills it |
|---|---|---|---|---|
)";
  for (const double pupil : kPupils) {
    const Simulation eye(std::vector<double>(kCoefficients), pupil);
    const Real cutOff = static_cast<Real>(pupil) / kWavelength * kPi / 180;
    // A slope of half a wave a sample at the edge: W = 8 waves (2 rho^2 - 1), and 4 W20 / radius^2 dioptres.
    const Real dioptres = 32 * kWavelength * 1e-3L / std::pow(static_cast<Real>(pupil) * 0.5e-3L, 2.0L);
    page.text << "| " << pupil << " | " << Fixed(eye.frequencyRange(), 2) << " | " << Fixed(cutOff, 2) << " | "
              << Fixed(64 * 60 / cutOff, 1) << " | " << Fixed(dioptres, 1) << " D |\n";
  }
  page.text << R"(
[Conventions](conventions.md) explains why the two scales differ by the factor 2.0023. The step that the library reports is
`frequencyRange` / 127.5, but the samples are `frequencyRange` / 128 apart. The engine's pitch of the PSF is
2 `psfHalfWidth` / 255, but the samples are 2 `psfHalfWidth` / 256 apart. Axes with the reported steps are 0.39 % too long.
The program's axes and numbers, and all comparisons here, have the samples at their true positions.
)";
}

// ---- Airy

void Airy(Page& page) {
  std::ofstream data = page.Data("airy");
  for (int i = 0; i <= 240; ++i) {
    const Real radius = static_cast<Real>(i) / 60;
    const Real energy = AiryEncircledEnergy(radius), ours = page.psf.EncircledEnergy(2 * radius);
    data << radius << ' ' << page.psf.MeanAt(2 * radius) << ' ' << ours << ' ' << ours - energy << '\n';
  }
  page.text << R"(
## The Airy pattern

The first dark ring is only 2.44 samples from the centre. But a PSF has no frequencies beyond the cut-off, so its samples
determine all values between them. The mean over a circle is the sum of the transfer function times J0. The energy within
the circle is the same sum with J1. Radii are in λ / d.

| dark ring | radius | library | predicted from the disc's area | intensity there | energy within | library | difference |
|---|---|---|---|---|---|---|---|
)";
  for (int ring = 1; ring <= 3; ++ring) {
    const AiryRing found = FindAiryRing(page.psf, ring);
    page.text << "| " << ring << " | " << Fixed(found.expectedRadius, 6) << " | " << Fixed(found.radius, 6) << " | "
              << Fixed(found.expectedRadius / EffectiveRadius(), 6) << " | " << Power(found.intensity) << " | "
              << Fixed(found.expectedEnergy, 6) << " | " << Fixed(found.energy, 6) << " | "
              << Power(found.energy - found.expectedEnergy) << " |\n";
  }
  page.text
      << "\nA smaller disc gives a wider pattern. The circle of the same area predicts the radii with a relative error "
      << "of " << Power(kDarkRingRadiusSampling)
      << " (`kDarkRingRadiusSampling`). The energies do not change to first order at a dark ring; they agree "
      << "to " << Power(kEncircledEnergySampling)
      << R"( (`kEncircledEnergySampling`). No sample of the plane differs from the Airy pattern by more than )"
      << Power(std::abs(AiryErrorOfPlane(page.flat))) << R"( of the peak (`kFlatPsfSampling`).

![Airy pattern and encircled energy](images/accuracy-airy.svg)
)";
}

// ---- Single modes

void Modes25(Page& page) {
  page.text << R"(
## Strehl ratio of single modes

On the axis, the Strehl ratio of one mode of given RMS is an integral along the radius. It is
|∫ 2 r exp(2πi N a R(r)) dr|² for m = 0 and [∫ 2 r J0(2π N a R(r)) dr]² otherwise, with a in waves and N = √(n + 1) or
√(2(n + 1)). The library's own Strehl ratio is that of the brightest sample at any position. This table has the axis instead:
sample (0, 0) of the engine's `Fft2` of its pupil function, before the PSF is moved. Each cell has the integral and, in
brackets, the library less the integral in units of 10⁻⁴. The last two columns explain the difference. One is the RMS of the
mode over the samples of the disc, for an RMS of 1 on the round disc. The other is the rest of the difference at 0.05 waves
if the integral uses that RMS.

| mode | 0.05 waves | 1/14 | 0.1 | 0.15 | 0.2 | bound up to 0.2, 10⁻⁴ | RMS over the samples | left, 10⁻⁴ |
|---|---|---|---|---|---|---|---|---|
)";
  std::string moved, still;
  for (const ModeBudget& budget : kModeSampling) {
    page.text << "| " << Name(budget.mode);
    bool peakIsOnAxis = true;
    for (const Real rms : kRms) {
      const ModeStrehl strehl = FindStrehl(budget.mode, rms);
      page.text << " | " << Fixed(strehl.closed, 6) << " (" << Signed((strehl.axis - strehl.closed) * 1e4L, 1) << ")";
      peakIsOnAxis = peakIsOnAxis && std::abs(strehl.peak - strehl.axis) < 1e-9L;
      if (strehl.peak - strehl.axis >= 1e-9L) {
        moved += std::string("| ") + Name(budget.mode) + " | " + Fixed(rms, 2) + " | " + Fixed(strehl.axis, 6) + " | " +
                 Fixed(strehl.peak, 6) + " | " + Fixed(strehl.peak * PeakBetweenSamples(budget.mode, rms), 6) + " |\n";
      }
    }
    const Real ratio = SampledRms(budget.mode);
    const Real left = FindStrehl(budget.mode, kRms[0]).axis - AxisStrehl(budget.mode, kRms[0] * ratio);
    page.text << " | " << Fixed(budget.strehl * 1e4L, 1) << " | " << Fixed(ratio, 4) << " | " << Signed(left * 1e4L, 2)
              << " |\n";
    if (!peakIsOnAxis) still += (still.empty() ? "" : ", ") + Name(budget.mode);
  }
  page.text << R"(
For small RMS, nearly all of the difference follows from the definition of the RMS. Sine and cosine modes of even m differ
because a square lattice differs between its axes and its diagonals.

The brightest sample is on the axis in all of these cases except )"
            << still << R"(, where coma moves it away. There the PSF's true peak is between
samples, as the last column shows.

| mode | RMS, waves | axis | brightest sample, the library's Strehl ratio | peak between samples |
|---|---|---|---|---|
)" << moved;
  page.text
      << "\nHow much of a peak can the samples miss? They are λ / 2d apart. In the middle of four samples, "
      << "a diffraction-limited peak shows samples of " << Fixed(AiryIntensity(std::numbers::sqrt2_v<Real> / 4), 3)
      << R"(,
which is )"
      << Fixed(100 * (1 - AiryIntensity(std::numbers::sqrt2_v<Real> / 4)), 0)
      << R"( % less: Airy's pattern (2 J1(x) / x)² at x = π √2 / 4. A narrower peak loses more; that of the pupil's rim
alone, J0(x)², shows samples of )"
      << Fixed(std::pow(BesselJ(0, std::numbers::pi_v<Real> * std::numbers::sqrt2_v<Real> / 4), 2.0L), 3)
      << R"(. Only tilt, which is never used, moves a perfect peak there, but coma has a part of this effect:

)"
      << "| coma (3, 1), waves RMS | brightest sample | peak between samples, relative |\n|---|---|---|\n";
  for (const Real rms : {0.05L, 0.1L, 0.125L, 0.15L, 0.175L, 0.2L, 0.25L, 0.3L}) {
    page.text << "| " << Fixed(rms, 3) << " | " << Fixed(FindStrehl({3, 1}, rms).peak, 6) << " | "
              << Fixed(PeakBetweenSamples({3, 1}, rms), 4) << " |\n";
  }
  page.text << R"(
This is by far the largest error on this page. So the program reports two Strehl ratios: of the brightest sample, and of the
peak between samples. The table of whole eyes below has both for real eyes.
)";
}

// ---- Marechal

void Marechal(Page& page) {
  std::ofstream data = page.Data("strehl");
  const std::array<Mode, 4> modes = {{{2, 0}, {3, 1}, {4, 0}, {6, 6}}};
  for (int i = 0; i <= 60; ++i) {
    const Real rms = static_cast<Real>(i) / 200;
    data << rms << ' ' << StrehlByMarechal(rms) << ' ' << StrehlBySquare(rms) << ' ' << StrehlByExponential(rms);
    for (const Mode mode : modes) {
      const Real closed = AxisStrehl(mode, rms), ours = AxisStrehlOfEngine(SingleMode(mode.n, mode.m, rms));
      data << ' ' << closed << ' ' << ours << ' ' << ours - closed;
    }
    data << '\n';
  }
  page.text << R"(
## Limits of Maréchal's estimates

For any aberration, with s = 2π × RMS in waves, Maréchal's estimates are (1 − s²/2)², 1 − s² and exp(−s²). All agree with the
exact value to order s²; higher orders depend on the mode.

| RMS, waves | (1 − s²/2)² | 1 − s² | exp(−s²) | (2, 0) | (3, 1) | (4, 0) | (6, 6) |
|---|---|---|---|---|---|---|---|
)";
  for (const Real rms : kRms) {
    page.text << "| " << Fixed(rms, 4) << " | " << Fixed(StrehlByMarechal(rms), 4) << " | "
              << Fixed(StrehlBySquare(rms), 4) << " | " << Fixed(StrehlByExponential(rms), 4);
    for (const Mode mode : modes) page.text << " | " << Fixed(AxisStrehl(mode, rms), 4);
    page.text << " |\n";
  }
  const Real limit = 1 / 14.0L;
  page.text << "\nAt λ/14, the usual limit of a diffraction-limited system, the exponential is correct to "
            << Fixed(std::abs(StrehlByExponential(limit) - AxisStrehl({6, 6}, limit)), 3)
            << " for all modes shown. At 0.2 waves it gives " << Fixed(StrehlByExponential(0.2L), 2)
            << ", but the exact values are between " << Fixed(AxisStrehl({2, 0}, 0.2L), 2) << " and "
            << Fixed(AxisStrehl({6, 6}, 0.2L), 2)
            << R"(. Many eyes have a larger RMS, as the tables below show. The library never uses such estimates.

![Strehl ratio on the axis over the RMS wavefront error](images/accuracy-strehl.svg)
)";
}

// ---- MTF of modes

void ModesMtf(Page& page) {
  std::ofstream data = page.Data("modes");
  page.text << R"(
## MTF of single modes

With aberrations there is no closed form, but an integral: the overlap of the pupil with its shifted copy, over a lens with
known borders. It is computed by Gauss-Legendre quadrature in coordinates without singularities. The results of 48 and 96
nodes along each axis differ by no more than )"
            << Power(QuadratureError({6, 6}, 0.2L)) << R"( for 0.2 waves of (6, 6).

The table has the largest difference of the library along row, column and diagonal, in units of 10⁻⁴, for RMS 0.05, 0.1,
0.15 and 0.2 waves. The columns are quarters of the frequencies up to the cut-off.

| mode | 0 to ¼ | ¼ to ½ | ½ to ¾ | ¾ to 1 | bound, 10⁻⁴ |
|---|---|---|---|---|---|
)";
  for (const ModeBudget& budget : kModeSampling) {
    page.text << "| " << Name(budget.mode);
    const auto fine = MtfErrorsOfMode(budget.mode);
    for (const Real error : Quarters(fine)) page.text << " | " << Signed(error * 1e4L, 1);
    for (const Real error : fine) data << std::abs(error) * 1e4L << ' ';
    data << '\n';
    page.text << " | " << Fixed(budget.mtf * 1e4L, 1) << " |\n";
  }
  page.text << "| **bound, 10⁻⁴**";
  for (const Real bound : kBandMtfSampling) page.text << " | " << Fixed(bound * 1e4L, 1);
  page.text << R"( | |

![Largest MTF error by mode and frequency](images/accuracy-modes.svg)
)";
}

// ---- Whole eyes

Real Rms(const std::vector<double>& coefficients) {
  const std::vector<Real> waves = InWaves(coefficients);
  Real squares = 0;
  for (const Mode mode : Modes()) {
    squares += std::pow(waves[static_cast<std::size_t>(IndexOf(mode))] / NormalisationFactor(mode), 2.0L);
  }
  return std::sqrt(squares);
}

void WholeEyes(Page& page) {
  page.text << R"(
## Whole eyes at five pupils

Two published eyes were both measured with 6 mm pupils ([assets/eyes](../assets/README.md) has the sources). For smaller
pupils, the coefficients of the inner part of the wavefront follow from those of the whole by algebra. At 7.5 mm the same
polynomial is continued beyond the measured pupil: this tests the arithmetic and is not a real eye.

Rounding is the difference from the overlap of the sampled pupil with itself, summed in long double. Sampling is the
difference from the integral. Both are the largest along row, column and diagonal. The steepest slope is the largest change
of the wavefront between neighbouring samples.

| eye | pupil, mm | RMS, waves | Strehl ratio | steepest slope, waves | rounding | sampling | rescaled wavefront, waves |
|---|---|---|---|---|---|---|---|
)";
  for (const PublishedEye& eye : PublishedEyes()) {
    for (const double pupil : kPupils) {
      const std::vector<double> c = AtPupil(eye, pupil);
      Simulation simulation(c, pupil);
      const Polynomial wavefront(InWaves(c));
      page.text << "| " << eye.name << " | " << pupil << " | " << Fixed(Rms(c), 2) << " | "
                << Fixed(simulation.engine().strehlRatio, 4) << " | " << Fixed(SteepestSlope(simulation.engine()), 2)
                << " | " << Power(std::abs(MtfRounding(simulation))) << " | "
                << Power(std::abs(MtfError(simulation, wavefront, 0, 1, 1, kManyNodes))) << " | "
                << Power(std::abs(RescaleError(eye, pupil))) << " |\n";
      std::ofstream data =
          page.Data(std::string(&eye == PublishedEyes().data() ? "observer-" : "watson-") + Fixed(pupil, 1));
      for (const int i : Steps(Directions()[0], 0, 1)) {
        const Real exact = std::abs(TransferFunction(wavefront, Frequency(Directions()[0], i), 0, kManyNodes));
        data << Frequency(Directions()[0], i) << ' ' << exact << ' ' << simulation.Mtf(0, i) << ' '
             << simulation.Mtf(0, i) - exact << '\n';
      }
    }
  }
  page.text
      << "\nUp to 6 mm the MTF is that of the round pupil to " << Power(kEyeMtfSampling)
      << " (`kEyeMtfSampling`). The error of the standard observer at 7.5 mm has its cause in the slope. Where it "
      << "exceeds " << Fixed(kSteepestTrustedSlope, 1)
      << R"( waves a sample, the light leaves the PSF's plane on one side and enters again on the other.
High frequencies are then wrong by up to )"
      << Power(kSteepEyeMtfSampling) << R"( (`kSteepEyeMtfSampling`). The table of pupils above has the limit in
dioptres for pure defocus.

The last column is the rescale identity: the library's wavefront from the coefficients of the inner pupil, less the
inner part of the whole pupil's wavefront. Rescaling produces piston and tilt, which the library leaves out; the difference
leaves them out too.

![MTF of the standard observer at five pupils, and its error](images/accuracy-eyes.svg)
)";
}

// ---- Between samples

void BetweenSamples(Page& page) {
  page.text << R"(
## Between the samples

The table has the same eyes. `MtfBetweenSamples`, which the program's `--mtf-at` uses, treats the difference from a perfect
pupil's transfer function as band-limited. Its error is the largest difference from the integral at quarters, halves and
three quarters of samples along row and column. `PeakBetweenSamples` climbs every lobe of the PSF whose brightest sample is
at least 0.7 of the plane's. Its error is relative to the band-limited PSF around the brightest sample in long double.

| eye | pupil, mm | MTF error at samples | between samples | Strehl ratio, brightest sample | peak between samples | lost | error of the peak |
|---|---|---|---|---|---|---|---|
)";
  for (const PublishedEye& eye : PublishedEyes()) {
    for (const double pupil : kPupils) {
      const std::vector<double> c = AtPupil(eye, pupil);
      Simulation simulation(c, pupil);
      const Polynomial wavefront(InWaves(c));
      const double strehl = simulation.engine().strehlRatio;
      const double peak = strehl * orvanel::PeakBetweenSamples(simulation.engine().psfPlane.data()).value;
      page.text << "| " << eye.name << " | " << pupil << " | "
                << Power(std::abs(MtfError(simulation, wavefront, 0, 1, 1, kManyNodes))) << " | "
                << Power(std::abs(MtfErrorBetweenSamples(simulation, wavefront, kManyNodes))) << " | "
                << Fixed(strehl, 4) << " | " << Fixed(peak, 4) << " | " << Fixed(100 * (1 - strehl / peak), 1)
                << " % | " << Power(std::abs(PeakErrorBetweenSamples(simulation))) << " |\n";
    }
  }
  page.text << R"(
If the wavefront changes by no more than )"
            << Fixed(kSteepestTrustedSlope, 1) << R"( waves a sample, the MTF between samples has an error of up to )"
            << Power(kEyeMtfBetweenSamples)
            << R"( (`kEyeMtfBetweenSamples`), as at samples. For the flat pupil it is up to )"
            << Power(kFlatMtfBetweenSamples) << R"( (`kFlatMtfBetweenSamples`). The peak is correct to )"
            << Power(kPeakBetweenSamples)
            << R"(, relative (`kPeakBetweenSamples`). This command prints both Strehl ratios of an eye:

    orvanel simulate assets/eyes/watson_2015_example_6mm.json --pupil 4.1 -o watson
)";
}

// ---- Limits

void Limits(Page& page) {
  page.text << R"(
## Where not to trust it

- **Scales.** Frequencies, half extents and ring sizes are those of a pupil of twice the stated diameter, and small angles
  add 0.115 %; [conventions](conventions.md) has both. The numbers above do not depend on this: they are fractions of the
  cut-off, or in λ / d.
- **Large blur.** If the wavefront changes by more than half a wave a sample at the pupil's edge, the PSF wraps round. The
  library does not report it, but the program warns. The last column of the table of pupils has the limit for defocus.
- **Small MTFs.** The error is absolute: an MTF below some 10⁻³ is only error. The plot of whole eyes shows where this
  begins.
- **Retinal images** are the squared magnitude of the filtered object, not the convolution with the PSF; their
  contrast is not that of incoherent light. They follow their formulas to 1e-14, but this is no statement about eyes.
- **One wavelength,** 587.56 nm, except for white light, which has three.
- **A hard-edged pupil of uniform brightness.** The model leaves out that receptors prefer light through its centre (Stiles
  and Crawford), and scatter.
- **Radial order 6** is the highest of the wavefront.
- **The library's Strehl ratio is that of the brightest sample,** not of the axis. It misses up to 27 % of a peak between
  samples if the peak is as wide as a perfect one, and more if it is narrower. The program prints both.

## Where it is tested

| | |
|---|---|
| `tests/accuracy/budget.h` | the bounds named here |
| `tests/accuracy/budget_test.cpp` | checks the library against them, with the functions that made this page |
| `tests/accuracy/closed_forms_test.cpp` | the closed forms against published values and each other |
| `tests/golden/truth_test.cpp` | the library against the script of 45 digits |
| `tests/reference/` | every sample of every plane against an engine in long double |
)";
}

void WritePage(const std::string& folder, const std::string& date) {
  Page page;
  page.folder = folder;
  page.date = date;
  page.text.open(folder + "/accuracy.md");
  for (const reference::TrueEye& eye : reference::ReadTruth(ORVANEL_TRUTH)) {
    page.truth.push_back(DeviationsFromTruth(eye));
    page.truthNames.push_back(eye.name);
  }
  Opening(page);
  Rounding(page);
  Sampling(page);
  FlatPupilMtf(page);
  Airy(page);
  Modes25(page);
  Marechal(page);
  ModesMtf(page);
  WholeEyes(page);
  BetweenSamples(page);
  Limits(page);
  page.text.close();
  if (!page.text) throw std::runtime_error("cannot write " + folder + "/accuracy.md");
}

}  // namespace
}  // namespace orvanel::accuracy

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: orvanel_accuracy FOLDER DATE\n";
    return EXIT_FAILURE;
  }
  try {
    orvanel::accuracy::WritePage(argv[1], argv[2]);
  } catch (const std::exception& error) {
    std::cerr << "orvanel_accuracy: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
}
