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

// What the table of the truth file tells; the sample that is the brightest is told in words.
constexpr std::array<std::size_t, 5> kTold = {0, 1, 3, 4, 5};

std::string Name(Mode mode) { return std::string("(") + std::to_string(mode.n) + ", " + std::to_string(mode.m) + ")"; }

// What is needed by more than one section, and where all of it goes.
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

How near the library's numbers come to the optics that they stand for. Each is set beside a closed form, an integral
taken to far more digits, or a sum in more precision, none of which shares code with the library. `./dev accuracy` computes
every figure of this page and draws every plot; the tests in `tests/accuracy/` and `tests/golden/` hold the library to every
bound.

)"
            << "This one was made on " << page.date << " with " << kCompiler << ", kernels `" << KernelVariant()
            << "`. Other compilers and kernels give the same bits.\n";
  page.text << R"(
There are two kinds of error, and they differ by a factor of a million million:

| | rounding: from what the formulas say of the samples | sampling: from a round pupil without samples |
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
So a Strehl ratio has two decimals, nearly three, and an MTF below some 10⁻³ is the staircase's and not the eye's, however many digits
are printed. What the model leaves out is another matter: [see below](#where-not-to-trust-it).
)";
}

// ---- Rounding

void Rounding(Page& page) {
  page.text << R"(
## Rounding

An independent script computes samples of seven eyes, one of them flat, one with some ten waves, one with all 28
coefficients, in 45 decimal digits by direct sums ([tests/golden/truth](../tests/golden/truth/README.md)). The largest
differences of the library, from coefficients to results, and in brackets the smallest bound that
`tests/support/error_bounds.h` derives for one of these eyes from the number of roundings, all of them pointing the same
way:

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

The spacing of doubles at 1 is 2.2 × 10⁻¹⁶: nothing of note is lost anywhere. The sample that is the brightest was the same one
for all seven.

The sum of the PSF is another witness. By Parseval's theorem it is 65536 / (12853 S) with S the Strehl ratio, for any
wavefront. Relative to that it is off by )";
  page.text
      << Power(PsfSumError(page.flat)) << " for the flat pupil. Of this, "
      << Power(static_cast<Real>(kDisc) * kDisc / (65536.0L * 65536.0L) / kPerfectStrehl - 1)
      << R"( is the constant 0.038463531294838, the flat pupil's peak (12853 / 65536)², which has 14 digits; all Strehl
ratios carry it.
)";
}

// ---- Sampling

void Sampling(Page& page) {
  std::ofstream data = page.Data("convergence");
  page.text << R"(
## Sampling

The pupil is a disc of 12,853 samples on a square lattice, 129 across, each of which counts in full or not at all. Three
things follow, and they account for all that comes below:

- The disc has the area of a circle with a radius of )"
            << Fixed(EffectiveRadius() * kRadius, 3) << " samples, not 64: it is "
            << Fixed(100 * (1 - EffectiveRadius()), 3) << R"( % too small, as much as )"
            << Fixed(1000 * 3 * (1 - EffectiveRadius()), 1) << R"( µm of a 3 mm pupil.
- Its edge is a staircase. How many lattice points a circle holds is Gauss's circle problem: their number
  strays from the area by about the root of the circumference, so that errors fall with the power 3/2 of the samples across,
  and erratically.
- Modes differ in what they do at the edge, where all radial polynomials are 1. The higher the order the steeper they
  are there, and the more the staircase costs.

That it is sampling and no mistake shows on other grids, which the engine offers to C++ hosts: the Strehl ratio on
the axis, for 0.1 waves RMS, less the integral.

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

Without aberration the MTF is (2/π)(acos ν − ν √(1 − ν²)) at the fraction ν of the cut-off, in all directions.

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
            << Power(DiffractionCurveError(page.flat)) << R"(, most of which is its constant 2/π of 15 digits.

![MTF of the flat pupil and its error](images/accuracy-diffraction.svg)

**Cut-off.** Beyond 128 samples from zero the MTF is at most )"
            << Power(LargestBeyondCutOff(page.flat))
            << ", which is nothing but rounding. At 128 samples the disc's outermost "
            << "samples, one on each side, still meet: 1/12853 = " << Power(1.0L / kDisc)
            << R"(, and twice that at the plane's edge, where sample
−128 stands for +128 as well.

The shape does not depend on the pupil, only the axis does:

| pupil, mm | MTF ends at, cycles/degree, library scale | d / λ, optical scale | PSF plane to either side, arc minutes, optical scale | defocus whose blur fills it |
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
[Conventions](conventions.md) tells why the two scales differ by the factor 2.0023. The step that the library hands
out is `frequencyRange` / 127.5 a sample, where the samples stand `frequencyRange` / 128 apart; and the PSF's samples are
2 `psfHalfWidth` / 256 apart where the engine's pitch says 255. Axes made of these steps are 0.39 % too long. The program's
axes and numbers, and all comparisons here, have the samples where they are.
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

The first dark ring is 2.44 samples from the centre, too few to count samples. But a PSF has no frequencies beyond the
cut-off, so that its samples say all that there is to say between them: the mean over a circle is the sum of the
transfer function times J0, the energy within it that with J1. Radii in λ / d.

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
  page.text << "\nA smaller disc makes a wider pattern. Taken for the circle of the same area it explains the radii to "
            << Power(kDarkRingRadiusSampling)
            << " of themselves (`kDarkRingRadiusSampling`), and the energies, which do not change "
            << "to first order where the pattern is dark, stay within " << Power(kEncircledEnergySampling)
            << R"( (`kEncircledEnergySampling`). No sample of the plane differs from the Airy pattern by more than )"
            << Power(std::abs(AiryErrorOfPlane(page.flat))) << R"( of the peak (`kFlatPsfSampling`).

![Airy pattern and encircled energy](images/accuracy-airy.svg)
)";
}

// ---- Single modes

void Modes25(Page& page) {
  page.text << R"(
## Strehl ratio of single modes

On the axis, for one mode of given RMS, the Strehl ratio is an integral along the radius:
|∫ 2 r exp(2πi N a R(r)) dr|² for m = 0, and [∫ 2 r J0(2π N a R(r)) dr]² otherwise, a in waves and N = √(n + 1) or √(2(n + 1)).
The library's own Strehl ratio is that of the brightest sample, wherever it is. What stands here is sample (0, 0) of the
engine's `Fft2` of its pupil function, before the PSF is moved: the axis. Each cell has the integral and, in brackets, the
library less the integral in units of 10⁻⁴. The last two columns explain it: the RMS of the mode over the samples of the
disc, for an RMS of 1 on the round disc; and what is left of the difference at 0.05 waves if that RMS is the one that counts.

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
For small RMS it is nearly all a question of what one calls the RMS. Sine and cosine modes of even m differ because a
square lattice does, between its axes and its diagonals.

The brightest sample is on the axis in all of these cases but those of )"
            << still
            << R"(, where coma has pushed it aside. Then the last column tells another thing: the PSF's true peak lies
between samples.

| mode | RMS, waves | axis | brightest sample, the library's Strehl ratio | highest place between samples |
|---|---|---|---|---|
)" << moved;
  page.text
      << "\nHow much can be lost between samples? They are λ / 2d apart; a diffraction-limited peak in the "
         "middle of four "
      << "would show " << Fixed(AiryIntensity(std::numbers::sqrt2_v<Real> / 4), 3) << R"( of itself,
so that it loses )"
      << Fixed(100 * (1 - AiryIntensity(std::numbers::sqrt2_v<Real> / 4)), 0)
      << R"( %: Airy's pattern (2 J1(x) / x)² at x = π √2 / 4. A narrower peak would lose more; that of the pupil's rim
alone, J0(x)², would show )"
      << Fixed(std::pow(BesselJ(0, std::numbers::pi_v<Real> * std::numbers::sqrt2_v<Real> / 4), 2.0L), 3)
      << R"(. Only tilt would put a perfect peak there, which is never used, but coma does some of it:

)"
      << "| coma (3, 1), waves RMS | brightest sample | peak between samples, relative |\n|---|---|---|\n";
  for (const Real rms : {0.05L, 0.1L, 0.125L, 0.15L, 0.175L, 0.2L, 0.25L, 0.3L}) {
    page.text << "| " << Fixed(rms, 3) << " | " << Fixed(FindStrehl({3, 1}, rms).peak, 6) << " | "
              << Fixed(PeakBetweenSamples({3, 1}, rms), 4) << " |\n";
  }
  page.text << R"(
This is by far the largest departure on this page. So the program gives two Strehl ratios, that of the brightest sample and
that of the peak between samples; the table of whole eyes below has both for real eyes.
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
## Maréchal, and where he ends

With s = 2π × RMS in waves, whatever the aberration, Maréchal's estimates are (1 − s²/2)², 1 − s² and exp(−s²). All agree with the exact
value to order s²; what comes after depends on the mode.

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
  page.text << "\nAt λ/14, the usual limit of what passes for perfect, the exponential is good to "
            << Fixed(std::abs(StrehlByExponential(limit) - AxisStrehl({6, 6}, limit)), 3)
            << " for all modes shown; at 0.2 waves it says " << Fixed(StrehlByExponential(0.2L), 2)
            << " where the truth is between " << Fixed(AxisStrehl({2, 0}, 0.2L), 2) << " and "
            << Fixed(AxisStrehl({6, 6}, 0.2L), 2)
            << R"(. Eyes soon have more: see the RMS of those below. The library never uses such estimates.

![Strehl ratio on the axis over the RMS wavefront error](images/accuracy-strehl.svg)
)";
}

// ---- MTF of modes

void ModesMtf(Page& page) {
  std::ofstream data = page.Data("modes");
  page.text
      << R"(
## MTF of single modes

With aberrations there is no closed form, but an integral: the overlap of the pupil with its moved self, over a lens whose
borders are known, taken here by Gauss and Legendre's rule in coordinates in which nothing is singular; whether 48 nodes
or 96 are taken along each axis makes no more than )"
      << Power(QuadratureError({6, 6}, 0.2L))
      << R"( for 0.2 waves of (6, 6). The largest difference of the library along row, column and diagonal, for RMS 0.05,
0.1, 0.15 and 0.2 waves, in units of 10⁻⁴, by quarters of the frequencies up to the cut-off:

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

Two published eyes, both measured with 6 mm pupils ([assets/eyes](../assets/README.md) has the sources), looked at
through smaller ones: the coefficients of the inner part of the wavefront come from those of the whole by algebra.
At 7.5 mm the same polynomial is continued beyond what was measured: a test of the arithmetic, not an eye. Rounding is the
difference from the overlap of the sampled pupil with itself, summed in long double; sampling that from the integral;
both the largest along row, column and diagonal. The steepest slope is the change of the wavefront between neighbouring samples.

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
      << " (`kEyeMtfSampling`). What goes wrong with the standard observer at 7.5 mm is seen in the slope: where it "
      << "exceeds " << Fixed(kSteepestTrustedSlope, 1)
      << R"( waves a sample, the light from there leaves the PSF's plane on one side and comes in again on the
other, and high frequencies are wrong by as much as )"
      << Power(kSteepEyeMtfSampling) << R"( (`kSteepEyeMtfSampling`). The table of pupils above has the limit in
dioptres for plain defocus.

The last column is the rescale identity: the library's wavefront from the coefficients of the inner pupil, less the
inner part of the whole pupil's wavefront. Piston and tilt come up on the way, which the library leaves out; they are left
out of the difference too.

![MTF of the standard observer at five pupils, and its error](images/accuracy-eyes.svg)
)";
}

// ---- Between samples

void BetweenSamples(Page& page) {
  page.text << R"(
## Between the samples

The same eyes again. `MtfBetweenSamples`, behind the program's `--mtf-at`, takes the transfer function less that of a
perfect pupil for band-limited; its error is the largest at quarters, halves and three quarters of samples along row and
column, against the integral. `PeakBetweenSamples` climbs every lobe of the PSF whose brightest sample is at least 0.7 of the
plane's; its error is that against the band-limited PSF around the brightest sample in long double, relative.

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
Where the wavefront changes by no more than )"
            << Fixed(kSteepestTrustedSlope, 1)
            << R"( waves a sample, the MTF between samples is as good as at samples, to )"
            << Power(kEyeMtfBetweenSamples) << R"( (`kEyeMtfBetweenSamples`), and for the flat pupil to )"
            << Power(kFlatMtfBetweenSamples) << R"( (`kFlatMtfBetweenSamples`). The peak is right to )"
            << Power(kPeakBetweenSamples)
            << R"( of itself (`kPeakBetweenSamples`). Both Strehl ratios of any eye are printed by

    orvanel simulate assets/eyes/watson_2015_example_6mm.json --pupil 4.1 -o watson
)";
}

// ---- Limits

void Limits(Page& page) {
  page.text << R"(
## Where not to trust it

- **Scales.** Frequencies, half widths and ring sizes are those of a pupil of twice the stated diameter, and small angles
  add 0.115 %; [conventions](conventions.md) has both. The numbers above are free of it: fractions of the cut-off, λ / d.
- **Large blur.** Beyond half a wave a sample at the pupil's edge the PSF wraps round. The library does not tell, the
  program warns; the last column of the table of pupils has the limit for defocus.
- **Small MTFs.** The error is absolute: where the MTF is less than some 10⁻³, it is all error. The plot of whole eyes shows
  where that begins.
- **Retinal images** are the squared magnitude of the filtered object, not the convolution with the PSF; their
  contrast is not that of incoherent light. They follow their formulas to 1e-14, which says nothing about eyes.
- **One wavelength,** 587.56 nm, unless one calls for white light, which is three.
- **A hard-edged pupil, evenly bright.** That receptors prefer light through its centre (Stiles and Crawford) is left out,
  and so is scatter.
- **Order 6** is where the wavefront ends.
- **The library's Strehl ratio is that of the brightest sample,** not of the axis. It loses up to 27 % of a
  peak between samples that is as wide as a perfect one, and more of a narrower one; the program prints both.

## Where it is held

| | |
|---|---|
| `tests/accuracy/budget.h` | the bounds named here |
| `tests/accuracy/budget_test.cpp` | holds the library to them, by the same functions that made this page |
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
