// The optical transfer function on a lattice of frequencies, by fast Fourier transforms.
#ifndef ORVANEL_MODELS_PHYSICAL_OTF_LATTICE_H
#define ORVANEL_MODELS_PHYSICAL_OTF_LATTICE_H

#include <memory>

#include "models/physical/pupil.h"
#include "optics/kernels/kernels.h"

namespace orvanel::physical {

// The fast method. The pupil stands on a lattice of 256 samples or more across, whose cells at the rim count by the
// share of their area that is inside. Its autocorrelation at every second sample, or every fourth and so on, is the sum
// of those of the sub-lattices of 128 samples across. What the rim's cells make of the overlap of a flat pupil is
// compared with its closed form, and taken out.
class OtfLattice {
 public:
  static constexpr int kSide = 256;

  explicit OtfLattice(const Kernels& kernels);
  ~OtfLattice();

  // The OTF in the sense of OtfOverlap. Column c is the frequency (c - 128)/128 of the cut-off along x, row r that of
  // (128 - r)/128 along y; cut-offs are those of the reference radius.
  //   re, im  256 x 256 doubles
  // Error: 1e-4. The lattice has up to 2048 samples across, so that the phase changes by at most a quarter of a turn
  // from sample to sample. Returns false, and writes nothing, where it would change by more.
  bool Compute(const Pupil& pupil, double* re, double* im);

 private:
  struct Memory;

  void SetFlat(const Pupil& flat, int density);
  void AddFields(const Pupil& pupil, int firstRow, int firstColumn);
  void Autocorrelate(const Pupil& pupil);

  std::unique_ptr<Memory> memory_;
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_OTF_LATTICE_H
