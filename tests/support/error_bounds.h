// Declares bounds of the difference between library and exact results, derived step by step, and measures differences.
//
// All are worst cases: errors that all point the same way, gathered in one sample. What is measured is some thousand
// times smaller, and any misreading is larger by as much.
#ifndef ORVANEL_TESTS_SUPPORT_ERROR_BOUNDS_H
#define ORVANEL_TESTS_SUPPORT_ERROR_BOUNDS_H

#include <numbers>
#include <string>
#include <vector>

#include "tests/support/reference.h"

namespace orvanel::reference {

constexpr Real kUlp = 0x1p-53L;  // relative error of one rounding
constexpr Real kPi = std::numbers::pi_v<Real>;

// Norm of a transform's error relative to the norm of the result: 16 radix-2 stages of 4 sqrt 2 roundings each and one
// of the twiddle factor, and two for the scale (Higham, Accuracy and Stability of Numerical Algorithms, theorem 24.2).
// A larger radix rounds less.
constexpr Real kTransformError = (16 * (4 * std::numbers::sqrt2_v<Real> + 1) + 2) * kUlp;

// The same where a table's angles, up to pi in size for the entries used, are themselves rounded twice.
constexpr Real kCentredTransformError = (16 * (4 * std::numbers::sqrt2_v<Real> + 1 + 2 * kPi) + 4) * kUlp;

// One polynomial of order 6 has at most 10 monomials of 7 factors: 6 + 9 roundings. Times its coefficient, and added
// to at most 25 terms.
constexpr Real kWavefrontRoundings = 15 + 1 + 25;

// The phase is rounded twice and its cosine and sine are good to two units in the last place.
constexpr Real kPhaseRoundings = 2, kSineRoundings = 4;

// A quantity from at most ten elementary operations.
constexpr Real kScalarError = 10 * kUlp;

// Puts an error and its bound into the test's record, which --gtest_output=json:FILE writes out.
void Record(const std::string& what, Real error, Real bound);

// Largest difference of two planes, infinite if one of them holds something that is not a number. It is
// recorded together with its bound.
Real Difference(const std::string& what, const Plane& actual, const Plane& expected, Real bound);

// Norm of the difference over the norm of the exact plane.
Real RelativeError(const ComplexPlane& actual, const ComplexPlane& exact);

// No monomials of R(n, m) cos(m theta) or R(n, m) sin(m theta), m >= 0, add up in modulus to more than this on the unit
// disc: the moduli of R's coefficients, each (n - s over s) (n - 2s over (n - m)/2 - s), times what cos(m theta) and
// sin(m theta) come to when written out with all signs positive.
Real TermMagnitude(int n, int m);

// Of any sample of the wavefront, mm.
Real WavefrontError(const std::vector<double>& coefficients);

// Norm of the error of the field in the image, relative to the field's own norm. 0 for wavefrontError judges the step
// from the wavefront held alone.
Real FieldError(const Plane& wavefront, Real wavefrontError);

// A sample of the PSF is |F|^2 / |F peak|^2. No sample of F is off by more than the whole error's norm, and
// |F| / |F peak| is at most 1, so that numerator and denominator bring 2 fieldError |F| / |F peak| each; the norm of F
// over its peak is the root of the PSF's sum.
Real PsfError(const Plane& psf, Real fieldError);

// Of the transfer function over its value at zero: the PSF's error summed is 2 fieldError of the PSF's sum (Cauchy and
// Schwarz), and the transform adds its own share of the PSF's norm. fieldError is 0 if the PSF is taken as it is.
Real OtfError(const Plane& psf, int n, Real fieldError);

// Modulus and the modulus at zero frequency may both be off.
Real MtfError(Real otfError);

// The angle between two numbers whose difference is d times the smaller of them is at most pi d.
Real WeightedPhaseError(Real otfError);

// Error of any sample of the image before normalisation, |G|^2 with G the filtered object.
Real ImageError(const Plane& object, const Plane& psf, const Plane& image, int n, Real fieldError);

// Scaled to the object's total; summing the samples one by one rounds as often as there are samples.
Real ScaledImageError(const Plane& object, const Plane& image, int n, Real imageError);

// Stretched to span 0 to 1: the sample and both ends of the range may be off.
Real StretchedImageError(const Plane& image, Real imageError);

// True if the brightest sample is so far above the second that rounding cannot exchange them.
bool HasOnePeak(const Plane& intensity, Real psfError);

}  // namespace orvanel::reference

#endif  // ORVANEL_TESTS_SUPPORT_ERROR_BOUNDS_H
