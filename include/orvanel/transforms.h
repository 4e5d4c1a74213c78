// Computes the engine's transforms, on planes of any side that is a power of two, for C++ hosts.
//
//     orvanel::Fft2(re, im, 256, 1);            // forward, unscaled, in place
//     orvanel::Zfft2dc(re, im, 64, 256, -1);    // the general form: 64 rows of 256
//
// PLANES are pairs of rows x columns doubles, real and imaginary parts, row-major, row 0 at the top. They belong to the
// caller, must not overlap, and may have any alignment.
//
// CONVENTIONS. The transforms differ on purpose. Fft2 and Zfft2dc have their origins at element (0, 0). Backward they
// have a positive exponent and a scale; forward they have no scale. CentredFft2 has its origins at (n/2, n/2), a
// negative exponent for direction 1, and is unitary.
//
// MEMORY for tables and for some lines is allocated in each call. If memory runs out, std::bad_alloc is thrown, and the
// planes may be half transformed.
#ifndef ORVANEL_TRANSFORMS_H
#define ORVANEL_TRANSFORMS_H

namespace orvanel {

// The norm of the error divided by the norm of the result, for up to 2^16 samples. There are 16 radix-2 stages, each
// with 4 sqrt 2 roundings and a rounded factor, and two roundings of the scale. Source: Higham, Accuracy and Stability
// of Numerical Algorithms, 24.1. The factors of CentredFft2 have angles of up to pi that are rounded themselves.
constexpr double kFft2Error = 1.21e-14;
constexpr double kCentredFft2Error = 2.4e-14;

// In place, on n x n planes:
//   direction 0: X[p][q] = 1/n^2 * sum over j, k of x[j][k] * exp(+2 pi i (j p + k q) / n)
//   direction 1: X[p][q] =         sum over j, k of x[j][k] * exp(-2 pi i (j p + k q) / n)
//   any other:   the planes stay as they are
// Error: kFft2Error. Always true. n is a power of two; any other n is reported as Zfft2dc reports it.
// Source: Cooley and Tukey (1965), radix 4.
bool Fft2(double* re, double* im, int n, int direction);

// The general form behind Fft2, in place, rows first.
//   re, im  m x n: m rows of length n, each a power of two from 1
//   sign    +1: X[p][q] = 1/(m n) * sum over j, k of x[j][k] * exp(+2 pi i (j p / m + k q / n))
//           -1: X[p][q] =           sum over j, k of x[j][k] * exp(-2 pi i (j p / m + k q / n))
//           +2, -2: the same, with the rows and columns of X in bit-reversed order
//           0: the planes stay as they are
// For null planes, a length that is not a power of two, and any other sign, nothing is done. Standard error then has
// the number of the first bad argument. Error: kFft2Error, for up to 2^16 samples. Source: Cooley and Tukey (1965),
// radix 4.
void Zfft2dc(double* re, double* im, int m, int n, int sign);

// In place, on n x n planes, with j' = j - n/2 and so on, for n a power of two from 4 and log2n its logarithm:
//   direction >= 0: X[p][q] = 1/n * sum over j, k of x[j][k] * exp(-2 pi i (j' p' + k' q') / n)
//   direction < 0:  the same with a positive exponent
// Error: kCentredFft2Error.
// The passes use log2n as given. With another value the result has no meaning, but nothing outside the planes is
// written. Source: Gentleman and Sande (1966), radix 2, decimation in frequency.
void CentredFft2(double* re, double* im, int direction, int n, int log2n);

// out = re^2 + im^2 with the quadrants swapped: element (0, 0) goes to (n/2, n/2). n even; out is another plane.
void ShiftedPowerSpectrum(double* out, const double* re, const double* im, int n);

}  // namespace orvanel

#endif  // ORVANEL_TRANSFORMS_H
