// Declares the comparisons, each with one number. The page prints them, and the tests compare them with the bounds of
// budget.h.
#ifndef ORVANEL_TESTS_ACCURACY_FINDINGS_H
#define ORVANEL_TESTS_ACCURACY_FINDINGS_H

#include <array>
#include <vector>

#include "tests/accuracy/closed_forms.h"
#include "tests/accuracy/eyes.h"
#include "tests/accuracy/sampled.h"

namespace orvanel::accuracy {

// RMS wavefront errors that modes are tried with, waves; and those with which their MTF is.
constexpr std::array<Real, 5> kRms = {0.05L, 1 / 14.0L, 0.1L, 0.15L, 0.2L};
constexpr std::array<Real, 4> kMtfRms = {0.05L, 0.1L, 0.15L, 0.2L};

// Along each axis of the integrals: enough for single modes of 0.2 waves, and for whole eyes.
constexpr int kNodes = 48, kManyNodes = 96;

// Parts of the frequencies from 0 to the cut-off: quarters, and what is drawn.
constexpr int kBands = 4, kFineBands = 16;

// Of two numbers the one with the larger modulus.
Real Worse(Real a, Real b);

// ---- The flat pupil

Simulation FlatPupil();
Real DiffractionError(const Simulation& flat, const Direction& direction);  // with its sign, where it is largest
Real DiffractionErrorOfPlane(const Simulation& flat);
Real LargestBeyondCutOff(const Simulation& flat);
Real DiffractionCurveError(const Simulation& flat);  // of the library's own curve

// Of the PSF's samples, less the Airy pattern; 1 at the peak.
Real AiryErrorOfPlane(Simulation& flat);

// Radius of the circle with the area of the disc's samples, over the disc's own.
Real EffectiveRadius();

struct AiryRing {
  Real radius, expectedRadius;  // wavelengths over diameters
  Real intensity;               // mean over all angles, at the closed form's radius
  Real energy, expectedEnergy;  // within the closed form's radius
};
AiryRing FindAiryRing(const BandLimitedPsf& psf, int ring);

// ---- Single modes

struct ModeStrehl {
  Real closed, axis, peak;
};
ModeStrehl FindStrehl(Mode mode, Real rms);

// RMS of a mode over the samples of the disc, over that on the round disc.
Real SampledRms(Mode mode);

// The largest error of the Strehl ratio on the axis in steps of 0.01 waves up to 0.2.
Real StrehlErrorOfMode(Mode mode);

// The highest place of the PSF between its samples, relative to the brightest sample.
Real PeakBetweenSamples(Mode mode, Real rms);

// What it makes of the transfer function along a row whether the integral is taken with kNodes or kManyNodes.
Real QuadratureError(Mode mode, Real rms);

// Largest difference of the MTF from the integral over a pupil without samples, along row, column and diagonal, at
// every `every`th sample whose frequency is from `from` to below `to`.
Real MtfError(const Simulation& eye, const Polynomial& wavefront, Real from, Real to, int every, int nodes);

// The same of the library's MTF between its samples, along row and column, at every quarter of every third sample.
Real MtfErrorBetweenSamples(Simulation& eye, const Polynomial& wavefront, int nodes);

// The library's peak between samples over that of the band-limited PSF around its brightest sample, less 1; the larger
// where another lobe is higher.
Real PeakErrorBetweenSamples(Simulation& eye);

// MtfError of a mode in each fine band at every sample, the worst of kMtfRms; and the worst of each quarter.
std::array<Real, kFineBands> MtfErrorsOfMode(Mode mode);
std::array<Real, kBands> Quarters(const std::array<Real, kFineBands>& fine);

// ---- Whole eyes

// Largest change of the wavefront from one sample to the next in a row or a column, waves.
Real SteepestSlope(const OpticsEngine& engine);

// The sampled wavefront, and nothing else, transformed exactly: what rounding has done to the MTF along the three
// lines.
Real MtfRounding(Simulation& eye);

// Sum of the PSF times Strehl ratio over what it must be, less 1.
Real PsfSumError(Simulation& eye);

// Wavefront over the inner part of a pupil, from coefficients of its own and from those of the whole, without piston
// and tilt: the largest difference of any sample, waves.
Real RescaleError(const PublishedEye& eye, double pupil);

}  // namespace orvanel::accuracy

#endif  // ORVANEL_TESTS_ACCURACY_FINDINGS_H
