// Declares the steps of the engine in double precision, one sample after the other. Kernels are compared with them, to
// the bit where a step fixes its bits, and the benchmarks use them as a peer. Shares only sine, cosine and the table of
// Zernike polynomials with the engine.
//
// PLANES are n x n, row-major, row 0 at the top; n is a power of two. LENGTHS are millimetres.
#ifndef ORVANEL_TESTS_SUPPORT_PLAIN_H
#define ORVANEL_TESTS_SUPPORT_PLAIN_H

#include <vector>

namespace orvanel::plain {

using Plane = std::vector<double>;

struct ComplexPlane {
  Plane re, im;
};

// ---- Wavefront

// W = f c + W over the terms of orders firstOrder to 6, from 0, on the samples of the pupil; 1000 outside. x and y
// receive X and Y times the diameter, and keep what they hold outside.
void SynthesizeWavefront(const double* coefficients, double diameter, int firstOrder, int n, Plane& w, Plane& x,
                         Plane& y);

// ---- Transforms

// Radix 2, decimation in time, rows first. Direction 0: exp(+2 pi i ...), times 1/n along each axis; any other:
// exp(-2 pi i ...), not scaled.
void Fft2(ComplexPlane& x, int n, int direction);

// Origins at (n/2, n/2), unitary, exp(-2 pi i ...) for direction >= 0. Each row, then each column: odd elements
// negated, log2n stages of radix 2, decimation in frequency, bit reversal, odd elements negated, times 1/sqrt(n).
void CentredFft2(ComplexPlane& x, int direction, int n, int log2n);

// im^2 + re^2, the sample at (0, 0) moved to (n/2, n/2).
Plane ShiftedPowerSpectrum(const ComplexPlane& x, int n);

// ---- Point spread function

// cos and sin of 2 pi w / wavelength where w <= 999, 0 elsewhere.
ComplexPlane PupilFunction(const Plane& wavefront, double wavelength);

struct Psf {
  Plane plane;    // peak 1 at the centre; all 0 if the peak is
  double peak;    // of the intensity; its first sample in row-major order is the one that is centred
  double strehl;  // the peak over that of 12,853 samples, which is the reference of n = 256
};

Psf ComputePsf(const Plane& wavefront, double wavelength, int n);

// ---- Modulation transfer function, n = 256

struct TransferFunction {
  Plane mtf, phase;
};

// Modulus of the centred transform over the modulus at the centre, and the C library's atan2.
TransferFunction Mtf(const Plane& psf, int n);

// ---- Broken ring

struct RingSize {
  int raw;       // before it is rounded up to a multiple of 5
  int diameter;  // samples
  double effectiveAcuity;
};

RingSize SizeOfRing(double acuity, int n, int gridSize, double halfWidth, double focalLength);

// 0 on the ring, 1 elsewhere; gap 1 down, 2 up, 3 right, 4 left, any other: none.
Plane DrawRing(int diameter, int n, int gapDirection);

// ---- Retinal image

// Backward transform of the PSF, zero frequency at (0, 0).
ComplexPlane EyeOtf(const Plane& psf, int n);

// |forward(backward(object) times the transfer function with its rows mirrored)|^2, quadrants swapped.
Plane FilteredIntensity(ComplexPlane object, const ComplexPlane& otf, int n);

// Scaled to a total and clipped to 0 .. 1, NaN becoming 0; or stretched to 0 .. 1.
void KeepTotal(Plane& image, double total);
void Stretch(Plane& image);

}  // namespace orvanel::plain

#endif  // ORVANEL_TESTS_SUPPORT_PLAIN_H
