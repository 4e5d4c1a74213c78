// Defines the optics engine for C++ hosts: one eye, its planes, and every operation on them.
//
//     orvanel::OpticsEngine engine;
//     engine.synthesizeWavefront(coefficients, 6.0, 1, 1, 1);
//     engine.ComputeMtf(orvanel::kWavelength, mtf.data(), &step, row, column, limit, 256);
//
// PLANES are n x n doubles, n = gridSize, row-major, row 0 at the top. Images, point spread function, transfer
// function and pupil have their centre at sample (n/2, n/2). Only otfRealPlane and otfImagPlane have zero frequency at
// (0, 0), as the transform gives it.
//
// BUFFERS passed to the engine belong to the caller. Nothing is checked for null.
//
// UNITS: millimetres (wavelength, pupil, wavefront, coefficients, half extent of the PSF window), cycles per degree.
//
// THREADS: an engine serves one thread at a time; different engines share no mutable data.
#ifndef ORVANEL_OPTICS_ENGINE_H
#define ORVANEL_OPTICS_ENGINE_H

#include <array>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>

#include "orvanel/constants.h"
#include "orvanel/grid_plane.h"
#include "orvanel/lazy_plane.h"
#include "orvanel/prepared_object.h"
#include "orvanel/psf_peak.h"

namespace orvanel {

// The search of OptimiseFocus: every coefficient varies by up to halfRange to either side of its start. A trial is
// skipped if its wavefront is undersampled in more than maximumUndersampled of the pupil (see sampling.h), since its
// Strehl ratio is not reliable. 1 skips none; kLargestUndersampledShare is the limit of reliable results. Up to 0.4,
// the ranges end where no trial would be left.
struct FocusSearch {
  bool astigmatism = false;          // vary c3 and c5 too, not c4 alone
  double halfRange = 0.0;            // mm; 0, or a value that is not a length: the coefficient's own size and two waves
  double tolerance = 1e-8;           // mm, on each coefficient; a hundredth of a nanometre
  int maximumTrials = 2000;          // wavefronts tried at most
  double wavelength = kWavelength;   // mm
  double maximumUndersampled = 1.0;  // share of the pupil
};

// The result of OptimiseFocus.
struct FocusResult {
  std::array<double, kCoefficients> coefficients;  // the best found; only c3, c4 and c5 may differ from the given ones
  double strehl;                                   // of these coefficients
  int trials;                                      // wavefronts tried
  bool converged;                                  // within maximumTrials, away from the bounds and from skipped trials
};

// The parameters of the walks WalkByPsf and WalkByFit: hill climbs with a fixed step.
struct FocusWalk {
  double step;                         // mm, of c4
  bool astigmatism = true;             // false leaves the terms of astigmatism out
  std::int64_t maximumTrials = 10000;  // wavefronts tried at most
};

// The end of a walk.
struct WalkResult {
  double defocus;       // c4 of the best trial, mm
  double value;         // objective of the walk at the best trial
  std::int64_t trials;  // wavefronts tried
  bool converged;       // both neighbours of the best trial were tried and are no better
};

// The circle r^2 + w^2 + a w + b = 0 fitted to a wavefront by least squares.
struct CircleFit {
  double a = 0.0;          // mm
  double b = 0.0;          // mm^2
  double deviation = 0.0;  // the root mean square of the wavefront minus the circle, mm
  bool solved = false;     // false for a nearly flat wavefront, where a = b = 0
};

// The instruction set of new engines, for the record: "baseline", "avx2" or "avx512". Results have the same bits with
// each. The environment variable ORVANEL_KERNELS chooses one by name; it is read once, and empty counts as unset.
// Throws std::runtime_error if this CPU cannot run the named one; its message lists the available ones.
const char* KernelVariant();

// One eye, from its coefficients to its retinal images.
class OpticsEngine {
 public:
  // Allocates the planes, all zero, and sets every other field to 0. Operations that transform need a side that is a
  // power of two. Throws std::bad_alloc. Only the 256 grid has kernels; there it also throws what KernelVariant throws.
  explicit OpticsEngine(int n = 256);

  // The same without exceptions: no engine if the constructor throws.
  static std::optional<OpticsEngine> Make(std::nothrow_t, int n = 256) noexcept;

  // The same, and then synthesizeWavefront with the other arguments.
  OpticsEngine(const double* coefficients, double diameter, int n, int includeAstigmatism, int includeAllSecondOrder,
               int includeDefocus);

  // A moved-from engine can only be assigned to or destroyed.
  OpticsEngine(OpticsEngine&&) noexcept;
  OpticsEngine& operator=(OpticsEngine&&) noexcept;
  ~OpticsEngine();

  int gridSize;                      // n, the side of every plane
  double psfHalfWidth = 0.0;         // half the side of the PSF plane on the retina, mm
  LazyPlane psfPlane;                // point spread function, peak 1 at the centre
  LazyPlane auxPlaneA;               // spare; no operation reads or writes it
  LazyPlane phasePlane;              // phase transfer function, radians; meaningless where the MTF is about 0
  double strehlRatio = 0.0;          // see ComputePsf
  std::uint8_t normaliseOutput = 0;  // scale of images: 0 keeps the object's light, any other value stretches
  double focalLength = 0.0;          // 17 mm once a PSF has been computed
  int pupilSamples = 0;              // M = n/2 + 1, the pupil's diameter in samples
  GridPlane wavefrontPlane;          // wavefront in mm inside the pupil, kWavefrontOutside outside
  LazyPlane pupilXPlane;             // X * pupilDiameter inside the pupil, X the normalised column coordinate
  LazyPlane pupilYPlane;             // Y * pupilDiameter inside the pupil, Y the normalised row coordinate
  double psfWavelength = 0.0;        // wavelength of the PSF held; 0 means that none is current
  double pupilDiameter = 0.0;        // as passed to the last synthesis, mm
  LazyPlane otfRealPlane;            // optical transfer function: the backward transform of psfPlane,
  LazyPlane otfImagPlane;            //   zero frequency at (0, 0)
  std::uint8_t otfValid = 0;         // 1 while the two planes above belong to psfPlane

  // Wavefront over the pupil from 28 Zernike coefficients (mm, unnormalised, indices as in orvanel.h). Radial orders 0
  // and 1 are never used. The flags select second-order terms:
  //   includeAllSecondOrder 1                          all three
  //   otherwise includeDefocus 1, includeAstigmatism 1 all three
  //             includeDefocus 1, includeAstigmatism 0 defocus only
  //             includeDefocus 0, includeAstigmatism 1 astigmatism only
  //   anything else                                    none
  // Marks the PSF stale and sets normaliseOutput.
  // Source of the polynomials: Born and Wolf, Principles of Optics, 9.2.
  void synthesizeWavefront(const double* coefficients, double diameter, int includeAstigmatism,
                           int includeAllSecondOrder, int includeDefocus);

  // Point spread function of the engine's wavefront, centred on its brightest sample (the first in row-major order
  // among equals), peak 1 to one unit in the last place. It updates psfPlane, psfHalfWidth, strehlRatio, focalLength
  // and psfWavelength, and sets otfValid to 0.
  //   wavelength  mm
  //   psfCopy     n x n, receives psfPlane
  //   pitch       receives 2 psfHalfWidth / (n - 1), mm
  //   strehl      receives strehlRatio: on the 256 grid, the peak divided by that of a perfect pupil. On the 128 grid,
  //               the peak divided by 3209^2, good only for comparison, since the transform has another scale. -1 on
  //               other grids.
  //   size        must not exceed n; otherwise, and if n is below 1, nothing happens and the result is false
  //   reuse       1 keeps the current PSF if psfWavelength equals wavelength, and then writes nothing
  // A sample of the wavefront that is NaN or +infinity counts as outside the pupil. A pupil without samples, or with a
  // sample of -infinity, gives a PSF and a Strehl ratio of 0. Source: Goodman, Introduction to Fourier Optics, 6.
  bool ComputePsf(double wavelength, double* psfCopy, double* pitch, double* strehl, int size, int reuse);

  // The same; always computed again.
  bool ComputePsf(double wavelength, double* psfCopy, double* pitch, double* strehl, int size);

  // The Strehl ratio of the engine's wavefront, as ComputePsf computes it, at about half the cost. Changes nothing in
  // the engine.
  double ComputeStrehl(double wavelength);

  // PeakBetweenSamples of the last PSF of ComputePsf or ComputeMtf, without writing psfPlane. For a PSF of 0, and on
  // grids other than 256, the result is 1 at the brightest sample. Changes nothing in the engine.
  PsfPeak FindPsfPeak() const;

  // Point spread function (always computed again), then modulation and phase transfer function. Always true.
  //   mtfOut            n x n doubles; the first s x s receive the central part of the MTF
  //   frequencyStep     cycles per degree from one MTF sample to the next, such that (n - 1)/2 steps are the cut-off:
  //                     2 (n/4 / psfHalfWidth) / (degrees per mm of retina) / (n - 1)
  //   rowSection        s/2 doubles from zero frequency outwards: the centre row to the right
  //   columnSection     s/2 doubles from zero frequency outwards: the centre column downwards
  //   diffractionLimit  s/2 doubles from zero frequency outwards: the MTF of a perfect circular pupil
  //   s                 at most n
  // The two sections, and the limit, may be null.
  // Intended for the 256 grid: the transform assumes lines of 2^8 samples for any n. On other grids MTF and phase have
  // no meaning, but the PSF, the step and the diffraction limit are correct. The MTF of an empty PSF is not a number.
  // Without samples (n below 1) nothing is written.
  bool ComputeMtf(double wavelength, double* mtfOut, double* frequencyStep, double* rowSection, double* columnSection,
                  double* diffractionLimit, int s);

  // The Landolt ring (broken ring) of decimal acuity `acuity` on the retinal sampling of the current PSF. Changes
  // nothing in the engine. Writes one line to standard output and flushes it: acuity as "%g", a tab, the diameter in
  // samples.
  //   plane            n x n, receives 0.0 (ring) and 1.0 (background)
  //   effectiveAcuity  receives the acuity of the diameter drawn; infinite for an empty plane
  //   gapDirection     1 down, 2 up, 3 right, 4 left; any other value draws a closed ring
  void DrawRingOptotype(double* plane, int n, double acuity, double* effectiveAcuity, int gapDirection) const;

  // The ring as drawn (optotype, n x n) and its retinal image (image, n x n). Needs a PSF.
  void RingRetinalImage(double* image, double* optotype, double acuity, double* effectiveAcuity, int gapDirection);

  // The retinal image of any object plane. Needs a PSF. Returns 1, or does nothing and returns 0 if n is not gridSize.
  int PatternRetinalImage(double* image, const double* pattern, int n);

  // The same in two steps, for an object (n x n) that many eyes see: its spectrum is precomputed. Throws
  // std::bad_alloc; with std::nothrow the result is then empty.
  PreparedObject Prepare(const double* object);
  PreparedObject Prepare(std::nothrow_t, const double* object) noexcept;
  void PreparedRetinalImage(double* image, const PreparedObject& object);

  // Computes the transfer function from psfPlane unless otfValid is 1.
  void EnsureOtf();

  // The image-formation chain. The object planes are overwritten.
  //   objectReal, objectImag  n x n
  //   image                   n x n, receives the squared magnitude of the filtered object: scaled to objectTotal and
  //                           clipped to 0.0 .. 1.0 if normaliseOutput is 0, otherwise stretched to span 0.0 .. 1.0
  //   objectTotal             the sum of the object's samples
  void FilterThroughEye(double* objectReal, double* objectImag, double* image, double objectTotal);

  // The defocus coefficient c4 of the best Strehl ratio, by a walk in steps of `step` mm. It continues while the ratio
  // grows, returns once to the start to walk the other way, and ends at the first loss. It writes only c4 of the 28
  // coefficients. It uses all other terms of radial orders 2 to 6, those of astigmatism only if includeAstigmatism
  // is 1. Leaves the wavefront and PSF of the last trial, not of the best, at wavelength kSearchWavelength. A start
  // value that is already the best is returned to rounding, as c + s - s - s + s.
  void searchBestFocusByPsf(double* coefficients, double diameter, double step, int includeAstigmatism);

  // The same walk towards the smallest deviation of the wavefront from a circle r^2 + w^2 + a w + b = 0. The circle is
  // fitted to all samples of the pupil; r comes from the coordinate planes, so it is the pupil value at the edge.
  // Creates or empties the file "tmp_test.txt" in the current directory. Computes no PSF, and leaves the wavefront of
  // the last trial.
  // For most eyes the deviation has no minimum near the physical focus. It decreases until the wavefront is a sphere of
  // the pupil's size, so the walk can take as many steps as there are up to that point. On a nearly flat wavefront the
  // fit has no solution: the matrix library then prints its message of sizes, and a = b = 0.
  void searchBestFocusByFit(double* coefficients, double diameter, double step, int includeAstigmatism);

  // The same two walks, but bounded, silent, and without a file. They do not change the coefficients. They leave the
  // wavefront of the last trial in the engine.
  WalkResult WalkByPsf(const double* coefficients, double diameter, const FocusWalk& walk);
  WalkResult WalkByFit(const double* coefficients, double diameter, const FocusWalk& walk);

  // The second-order coefficients of the best Strehl ratio within bounds: c4, or c3, c4 and c5. Along a line it tries
  // points an eighth of a wave apart, twice as dense as the Strehl ratio can vary. It refines around each point that is
  // close to the best. So it finds the highest of several local maxima along the line. Three coefficients are varied
  // one after the other and along the direction of their joint change, from the start or from zero, whichever is
  // better. Leaves wavefront and PSF of the result in the engine. On grids without a Strehl ratio, and for a pupil
  // without light, it returns the start, not converged. Source: Brent, Algorithms for Minimization without Derivatives
  // (1973), 5; Powell (1964) for several coefficients.
  FocusResult OptimiseFocus(const double* coefficients, double diameter, const FocusSearch& search = {});

  // White-light PSF: the PSFs of 435.835, 587.56 and 632.8 nm, resampled to the sampling of the first and summed with
  // the weights 0.5, 1 and 0.5.
  //   out            n x n
  //   sampleSpacing  receives the spacing of its samples on the retina, mm
  //   spare          ignored
  // Normalised in row-major order by the current value of the centre sample. So samples before the centre are divided
  // by its sum, the centre becomes 1, and samples after it keep their sums. The field psfPlane receives the same plane,
  // psfHalfWidth the value for 587.56 nm, and the other fields those for 632.8 nm.
  void PolychromaticPsf(double* out, double* sampleSpacing, std::int32_t spare);

  // Magnifies an n x n plane about its centre sample, in place, by cubic convolution. Negative results become 0. So
  // does every sample whose 4 x 4 neighbourhood in the source is not well inside the plane. Source: Keys (1981), Cubic
  // convolution interpolation; kernel with a = -1.
  void RescalePlane(double* plane, double factor);

  // The functions of transforms.h, on planes of any side. Planes of side 256 use the kernels.
  // ShiftedPowerSpectrum takes planes of this grid.
  bool Fft2(double* re, double* im, int n, int direction);
  void CentredFft2(double* re, double* im, int direction, int n, int log2n);
  void ShiftedPowerSpectrum(double* out, const double* re, const double* im) const;

  // Rotates a line of n samples, in place, so that element `index` moves to n/2.
  void RecentreLine(double* line, int index) const;

 private:
  struct Workspace;  // all memory, allocated once

  OpticsEngine(int n, std::unique_ptr<Workspace> workspace) noexcept;
  static std::unique_ptr<Workspace> MakeWorkspace(int n);
  void FormPsf(double wavelength);
  std::unique_ptr<Workspace> workspace_;
};

// The circle that fits the engine's wavefront. Prints nothing and leaves no file.
CircleFit FitCircle(const OpticsEngine& engine);

// The objective of searchBestFocusByFit: the deviation of that circle. Like the search, it creates or empties
// "tmp_test.txt", and prints the matrix library's message if the fit has no solution.
double DeviationFromCircle(const OpticsEngine& engine);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_ENGINE_H
