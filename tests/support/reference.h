// Declares an independent reference of the optics engine: every step in long double, by direct sums.
//
// PLANES are n x n, row-major, row 0 at the top. LENGTHS are millimetres, frequencies cycles per degree.
// CONSTANTS are the engine's own doubles, also where the arithmetic around them has more precision.
// It shares no code with the engine; what is bound to double arithmetic there (the ring, the steps of CentredFft2) is
// in plain.h.
#ifndef ORVANEL_TESTS_SUPPORT_REFERENCE_H
#define ORVANEL_TESTS_SUPPORT_REFERENCE_H

#include <vector>

#include "tests/support/planes.h"

namespace orvanel::reference {

struct ComplexPlane {
  Plane re, im;
};

// ---- Wavefront

// R(n, m)(rho), m >= 0 and n - m even, by its sum of factorials.
Real RadialPolynomial(int n, int m, Real rho);

// R(n, |m|) cos(m theta) for m >= 0, R(n, |m|) sin(|m| theta) for m < 0, through the polar form of (x, y).
Real ZernikeTerm(int n, int m, Real x, Real y);

struct Wavefront {
  int pupilSamples;      // M
  Plane w;               // 1000 outside the pupil
  Plane pupilX, pupilY;  // NaN where the synthesis leaves them untouched
};

Wavefront SynthesizeWavefront(const std::vector<double>& coefficients, double diameter, int n, int includeAstigmatism,
                              int includeAllSecondOrder, int includeDefocus);

// ---- Transforms

// X[p][q] = sum over j, k of x[j][k] exp(sign 2 pi i (j p / rows + k q / columns)), by direct sums.
ComplexPlane Dft2(const ComplexPlane& x, int rows, int columns, int sign);

// Direction 0: sign +1, scaled by 1 / n^2. Direction 1: sign -1, no scale. Any other: x itself.
ComplexPlane Fft2(const ComplexPlane& x, int n, int direction);

// Unitary, both origins at (n/2, n/2), n even; sign -1 for direction >= 0 and +1 below.
ComplexPlane CentredFft2(const ComplexPlane& x, int n, int direction);

// The value at (r, c) goes to ((r + n/2) mod n, (c + n/2) mod n).
template <class T>
std::vector<T> QuadrantSwap(const std::vector<T>& plane, int n);

// im^2 + re^2 with its quadrants swapped; T is double or long double.
template <class T>
std::vector<T> ShiftedPowerSpectrum(const std::vector<T>& re, const std::vector<T>& im, int n);

// Element j becomes the former element (j + index + n/2) mod n; T is double or long double.
template <class T>
std::vector<T> RecentreLine(const std::vector<T>& line, int index);

// ---- Point spread function

// Intensity of the field of the pupil, zero tilt at (n/2, n/2); neither recentred nor normalised.
Plane PupilIntensity(const Plane& wavefront, int n, double wavelength);

struct Peak {
  Real value;  // 0 if no sample is positive; row and column are then those of the centre
  int row, column;
};

Peak FindPeak(const Plane& intensity, int n);

struct Psf {
  Plane plane;  // peak 1 at the centre; all 0 if the peak is
  Real strehl;  // -1 on grids without a reference value
};

// The peak is the caller's, so that he can choose among equals.
Psf PsfFromIntensity(const Plane& intensity, int n, int pupilSamples, const Peak& peak);

Real PsfHalfWidth(int pupilSamples, double wavelength, double diameter);
Real PsfPitch(Real halfWidth, int n);

// ---- Modulation transfer function

struct TransferFunction {
  Plane modulation, phase;
};

TransferFunction Mtf(const Plane& psf, int n);
Plane CentralPart(const Plane& mtf, int n, int s);
Plane RowSection(const Plane& mtf, int n, int s);
Plane ColumnSection(const Plane& mtf, int n, int s);
Plane DiffractionLimit(int pupilSamples, Real halfWidth, int s);
Real FrequencyStep(int n, Real halfWidth);
Real FrequencyRange(Real frequencyStep);

// ---- Retinal image

// Backward transform of the centred PSF, zero frequency at (0, 0).
ComplexPlane EyeOtf(const Plane& psf, int n);

// Squared magnitude of the object filtered with the row-mirrored transfer function; not normalised.
Plane FilteredIntensity(const Plane& object, const ComplexPlane& otf, int n);

Plane ScaledToTotal(const Plane& image, Real objectTotal);  // before the clip
Plane Clipped(Plane image);                                 // to 0 .. 1, NaN becomes 0
Plane Stretched(Plane image);                               // smallest sample 0, largest 1

// ---- Sector star, 256 x 256

std::vector<double> SectorStar();

}  // namespace orvanel::reference

#endif  // ORVANEL_TESTS_SUPPORT_REFERENCE_H
