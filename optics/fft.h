// The two transforms of the engine and the centred power spectrum.
//
// They differ on purpose: Fft2 has its origins at element (0, 0), a positive exponent and the scale 1/n^2 for direction
// 0, and no scale for direction 1; CentredFft2 has its origins at (n/2, n/2), a negative exponent for direction 1, and
// is unitary.
#ifndef ORVANEL_OPTICS_FFT_H
#define ORVANEL_OPTICS_FFT_H

namespace orvanel {

// Norm of the error over the norm of the result, for up to 2^16 samples: 16 radix-2 stages of 4 sqrt 2 roundings and a
// rounded factor each, and two roundings of the scale (Higham, Accuracy and Stability of Numerical Algorithms, 24.1).
// The factors of CentredFft2 have angles of up to pi that are rounded themselves.
constexpr double kFft2Error = 1.21e-14;
constexpr double kCentredFft2Error = 2.4e-14;

// In place, on n x n planes:
//   direction 0: X[p][q] = 1/n^2 * sum over j, k of x[j][k] * exp(+2 pi i (j p + k q) / n)
//   direction 1: X[p][q] =         sum over j, k of x[j][k] * exp(-2 pi i (j p + k q) / n)
//   any other:   the planes stay as they are
// Error: kFft2Error. Always true. n is a power of two; any other n is reported as Zfft2dc reports it.
// Source: Cooley and Tukey (1965), radix 4.
bool Fft2(double* re, double* im, int n, int direction);

// The general form behind Fft2: m rows of length n, in place, rows first.
//   sign +1: exp(+2 pi i ...), scaled by 1/m along columns and 1/n along rows
//   sign -1: exp(-2 pi i ...), not scaled
//   sign +2, -2: the same, with rows and columns in bit-reversed order
//   sign 0: the planes stay as they are
// An axis of length 1 stays as it is. Null planes, a length that is not a power of two, and any other sign are reported
// on standard error with the number of the first bad argument, and nothing is done.
void Zfft2dc(double* re, double* im, int m, int n, int sign);

// In place, on n x n planes, with j' = j - n/2 and so on, for n a power of two from 4 and log2n its logarithm:
//   direction >= 0: X[p][q] = 1/n * sum over j, k of x[j][k] * exp(-2 pi i (j' p' + k' q') / n)
//   direction < 0:  the same with a positive exponent
// Error: kCentredFft2Error.
// The passes use log2n as given: with another value the result means nothing, but nothing outside the planes is
// touched. Source: Gentleman and Sande (1966), radix 2, decimation in frequency.
void CentredFft2(double* re, double* im, int direction, int n, int log2n);

// out = re^2 + im^2 with the quadrants swapped: element (0, 0) goes to (n/2, n/2). n even; out is another plane.
void ShiftedPowerSpectrum(double* out, const double* re, const double* im, int n);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_FFT_H
