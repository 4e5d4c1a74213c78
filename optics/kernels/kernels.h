// What the vector kernels offer: one table of functions per instruction set, all for planes of 256 x 256 samples and
// all with the same bits. `dispatch.h` chooses a table; the steps of the engine pass it what they own.
#ifndef ORVANEL_OPTICS_KERNELS_KERNELS_H
#define ORVANEL_OPTICS_KERNELS_KERNELS_H

namespace orvanel {

// Constants made once per process by the library's own arithmetic.
struct Tables {
  double cosine[256];  // element 16 n + k: cosine and sine of n k / 256 of a turn
  double sine[256];
  double centredCosine[2][256];  // those of CentredFft2, for a direction of at least 0 and for a negative one
  double centredSine[2][256];
  void (*sineAndCosine)(double x, double* sine, double* cosine);  // any x, for the rare large ones
};

// What a kernel may write to without anybody seeing it, aligned to 64 bytes.
struct Scratch {
  void* plane;  // kPlaneBytes
  void* lines;  // kLinesBytes
};
constexpr int kPlaneBytes = 16 * 256 * 256;
constexpr int kLinesBytes = 24 * 256 * 8;

// Rows of an intensity plane are longer than 256: the first samples come once more behind the last.
constexpr int kIntensityPitch = 264;

// The spectrum of a real plane: columns 0 to 128, from which the others follow; kSpectrumBytes, aligned to 64 bytes, in
// an order that is the kernels' own.
constexpr int kSpectrumBytes = 16 * 136 * 264;

// A PSF to be: factor * intensity, the sample (row, column) at its centre.
struct Recentring {
  const double* intensity;
  double factor;
  int row;
  int column;
};

// An object: its spectrum, or else what realRows has left, of which an image makes the spectrum, in its place. That is
// then complete: the next image takes it as such.
struct ObjectSpectrum {
  const void* complete;
  void* rows;
};

// A transfer function, zero frequency at (0, 0): as a spectrum, or else as two planes.
struct TransferPlanes {
  const void* spectrum;
  const double* re;
  const double* im;
};

struct Kernels {
  const char* name;

  // W inside the pupil, 1000 outside.
  void (*synthesize)(const double* coefficients, int firstOrder, double* wavefront);

  // Intensity of the field of a wavefront, without the scale 1/n^2 of the field, zero frequency at (0, 0), in rows of
  // kIntensityPitch; and its maximum in each row. Without a plane for the intensity only the maxima are made.
  void (*intensity)(const double* wavefront, double wavelength, const Tables& tables, const Scratch& scratch,
                    double* intensity, double* rowMaxima);

  // psf = factor * intensity with the sample at its origin moved to the centre.
  void (*recentre)(const Recentring& from, double* psf);

  // In place on planes of 256 rows of 256: the backward transform times scale.
  void (*transform)(double* re, double* im, double scale, const Tables& tables, const Scratch& scratch);

  // In place, CentredFft2.
  void (*centredTransform)(double* re, double* im, int direction, const Tables& tables, const Scratch& scratch);

  // Backward transform of a real plane, times 1/n^2; the result is the plane's total. Plane and spectrum do not
  // overlap.
  double (*realTransform)(const double* plane, const Tables& tables, const Scratch& scratch, void* spectrum);

  // Its first half: the rows, for an image to complete.
  double (*realRows)(const double* plane, const Tables& tables, const Scratch& scratch, void* spectrum);

  // The same transform of that PSF, without writing the PSF.
  void (*transferFunction)(const Recentring& from, const Tables& tables, const Scratch& scratch, void* spectrum);

  // The moduli of such a spectrum over that of zero frequency, and the angles of its conjugate, -pi to pi; zero
  // frequency in the middle, origin of the PSF there too.
  void (*modulation)(const void* spectrum, double* mtf);
  void (*phase)(const void* spectrum, double* phase);

  // A spectrum as whole planes, of which either may be null.
  void (*unfold)(const void* spectrum, double* re, double* im);

  // The image |F(spectrum * mirrored transfer function)|^2 of an object, F the forward transform, quadrants swapped:
  // scaled to objectTotal and clipped to 0 .. 1, or stretched to 0 .. 1.
  void (*imageKeepingTotal)(const ObjectSpectrum& object, const TransferPlanes& otf, double objectTotal,
                            const Tables& tables, const Scratch& scratch, double* image);
  void (*imageStretched)(const ObjectSpectrum& object, const TransferPlanes& otf, const Tables& tables,
                         const Scratch& scratch, double* image);

  // Black where inner^2 <= (x - centre)^2 + (y - centre)^2 <= outer^2, white elsewhere.
  void (*drawRing)(double* plane, double centre, double innerSquared, double outerSquared);
};

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_KERNELS_KERNELS_H
