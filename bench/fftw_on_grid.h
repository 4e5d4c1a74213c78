// Declares a peer of the physical model: PSF and OTF as a careful user of FFTW would compute them.
//
// The pupil is sampled on a lattice. A cell at the rim counts by the share of its area that is inside. The spacing of
// the lattice makes the samples of the transform those of the grid, so that nothing is interpolated. The transform
// leaves out rows that are empty and columns that are not asked for. The values of the modes are computed once. Plans
// are measured once. Round pupils in light of one wavelength, with the axis in the middle of the grid.
#ifndef ORVANEL_BENCH_FFTW_ON_GRID_H
#define ORVANEL_BENCH_FFTW_ON_GRID_H

#include <fftw3.h>

#include <complex>
#include <memory>
#include <vector>

#include "tests/support/physical_truth.h"

namespace orvanel::bench {

// The samples of a pupil: the share of each cell, and the modes of the eye.
class PupilSamples {
 public:
  PupilSamples(const physical::TrueEye& truth, double spacing_mm);
  int side() const { return side_; }
  // The pupil's area in cells.
  double area() const { return area_; }

  // share * exp(i k W - i tilt (column + row)), row 0 at the bottom; shares add up to 1. Leaves the rest as it is.
  void Field(const physical::Eye& eye, double tilt, std::complex<double>* out, int pitch);

 private:
  double kPerUm_;
  int side_;
  double area_ = 0.0;
  std::vector<std::size_t> modes_;  // indices of those that the eye has
  std::vector<int> rows_, columns_;
  std::vector<double> share_;
  std::vector<double> values_;  // of one mode after the other
  std::vector<double> phase_;
};

struct FftwRelease {
  void operator()(void* memory) const { fftw_free(memory); }
};
using FftwPlane = std::unique_ptr<std::complex<double>[], FftwRelease>;

class PsfByFftw {
 public:
  // side  of the transform
  PsfByFftw(const physical::TrueEye& truth, int side);
  ~PsfByFftw();
  PsfByFftw(const PsfByFftw&) = delete;
  PsfByFftw& operator=(const PsfByFftw&) = delete;

  // In Strehl units, on the grid of the truth.
  void Compute(const physical::Eye& eye, double* psf);

 private:
  int side_, grid_;
  PupilSamples pupil_;
  FftwPlane rows_, columns_;  // columns_ has one column after the other
  fftw_plan alongRows_, alongColumns_;
};

class OtfByFftw {
 public:
  // finer  samples of the pupil's lattice in a step of the frequencies
  OtfByFftw(const physical::TrueEye& truth, int finer);
  ~OtfByFftw();
  OtfByFftw(const OtfByFftw&) = delete;
  OtfByFftw& operator=(const OtfByFftw&) = delete;

  // On the frequencies of the truth.
  void Compute(const physical::Eye& eye, physical::TransferFunction& otf);

 private:
  int finer_, side_, grid_;
  PupilSamples pupil_;
  FftwPlane plane_, half_;
  std::unique_ptr<double[], FftwRelease> power_;
  fftw_plan forward_, backward_;
};

}  // namespace orvanel::bench

#endif  // ORVANEL_BENCH_FFTW_ON_GRID_H
