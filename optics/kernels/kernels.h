// Declares the vector kernels: one table of functions for each instruction set. All work on planes of 256 x 256
// samples, and all tables give the same bits. `dispatch.h` chooses a table.
#ifndef ORVANEL_OPTICS_KERNELS_KERNELS_H
#define ORVANEL_OPTICS_KERNELS_KERNELS_H

namespace orvanel {

constexpr int kKernelGrid = 256;    // samples a side of every plane
constexpr int kWidestRegister = 8;  // doubles
constexpr int kComplexBytes = 16;   // of a sample with real and imaginary part

// Constants, computed once per process by the library's own arithmetic.
struct Tables {
  double cosine[kKernelGrid];  // element 16 n + k: cosine and sine of n k / 256 of a turn
  double sine[kKernelGrid];
  double centredCosine[2][kKernelGrid];  // those of CentredFft2, for a direction of at least 0 and for a negative one
  double centredSine[2][kKernelGrid];
  void (*sineAndCosine)(double x, double* sine, double* cosine);  // any x, for the rare large ones
};

// Memory for the length of one call, aligned to 64 bytes.
struct Scratch {
  void* plane;  // kPlaneBytes
  void* lines;  // kLinesBytes
};
constexpr int kPlaneBytes = kComplexBytes * kKernelGrid * kKernelGrid;
constexpr int kLinesBytes = kComplexBytes * kWidestRegister * (kKernelGrid + kKernelGrid / 2);

// Rows of an intensity plane are longer than 256: they end with a copy of their first samples.
constexpr int kIntensityPitch = kKernelGrid + kWidestRegister;

// Half the spectrum of a real plane: columns 0 to 128, from which the others follow. The kernels choose the order of
// its elements. Columns are in panels as wide as a register, the last of them for column 128; a panel has more rows
// than the grid (see spectrum.h).
constexpr int kPanelRows = kKernelGrid + 8;
struct alignas(64) HalfSpectrum {
  unsigned char bytes[kComplexBytes * (kKernelGrid / 2 + kWidestRegister) * kPanelRows];
};

// A PSF not yet written: factor * intensity, with the sample (row, column) at its centre.
struct Recentring {
  const double* intensity;
  double factor;
  int row;
  int column;
};

// An object: its half spectrum. If the columns of that are still to be transformed, as realRows leaves them, `pending`
// is the same half spectrum, and the image kernel transforms them in place.
struct ObjectSpectrum {
  const HalfSpectrum& spectrum;
  HalfSpectrum* pending;
};

// A transfer function as two planes, zero frequency at (0, 0), which need not belong to a real PSF.
struct TransferPlanes {
  const double* re;
  const double* im;
};

// How an image is scaled: to a total, and clipped to 0 .. 1; or stretched to span 0 .. 1.
struct ImageScale {
  bool keepsTotal;
  double total;  // ignored where the image is stretched
};

struct Kernels {
  const char* name;

  // W inside the pupil, 1000 outside.
  void (*synthesize)(const double* coefficients, int firstOrder, double* wavefront);

  // Intensity of the field of a wavefront, without the scale 1/n^2 of the field, zero frequency at (0, 0), in rows of
  // kIntensityPitch; and its maximum in each row. If `intensity` is null, only the maxima are computed.
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
  double (*realTransform)(const double* plane, const Tables& tables, const Scratch& scratch, HalfSpectrum& spectrum);

  // Its first half: the transform of the rows. The columns are then pending (see ObjectSpectrum).
  double (*realRows)(const double* plane, const Tables& tables, const Scratch& scratch, HalfSpectrum& spectrum);

  // The same transform of that PSF, without writing the PSF.
  void (*transferFunction)(const Recentring& from, const Tables& tables, const Scratch& scratch,
                           HalfSpectrum& spectrum);

  // The moduli of such a spectrum over that of zero frequency, and the angles of its conjugate, -pi to pi; zero
  // frequency in the middle, origin of the PSF there too.
  void (*modulation)(const HalfSpectrum& spectrum, double* mtf);
  void (*phase)(const HalfSpectrum& spectrum, double* phase);

  // Unfolds a half spectrum to whole planes. Either plane may be null.
  void (*unfold)(const HalfSpectrum& spectrum, double* re, double* im);

  // The image |F(spectrum * mirrored transfer function)|^2 of an object, F the forward transform, quadrants swapped;
  // through a half spectrum, or through whole planes.
  void (*image)(const ObjectSpectrum& object, const HalfSpectrum& otf, const ImageScale& scale, const Tables& tables,
                const Scratch& scratch, double* image);
  void (*imageThroughPlanes)(const ObjectSpectrum& object, const TransferPlanes& otf, const ImageScale& scale,
                             const Tables& tables, const Scratch& scratch, double* image);

  // Black where inner^2 <= (x - centre)^2 + (y - centre)^2 <= outer^2, white elsewhere.
  void (*drawRing)(double* plane, double centre, double innerSquared, double outerSquared);
};

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_KERNELS_KERNELS_H
