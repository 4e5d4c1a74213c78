// The optical transfer function on a lattice of frequencies, by fast Fourier transforms.
#ifndef ORVANEL_MODELS_PHYSICAL_OTF_OTF_LATTICE_H
#define ORVANEL_MODELS_PHYSICAL_OTF_OTF_LATTICE_H

#include <memory>

#include "models/physical/pupil/pupil.h"
#include "optics/kernels/kernels.h"

namespace orvanel::physical {

// Column c is the frequency (c - side/2) step along x, row r that of (side/2 - r) step along y.
struct FrequencyLattice {
  int side = 256;             // even, at least 2 ceil(1/step)
  double step = 1.0 / 128.0;  // of the cut-off of the reference radius
  bool operator==(const FrequencyLattice&) const = default;
};

// The fast method. It samples the pupil on a lattice of 256 samples or more across, with the weights of MaskOf at the
// rim. One step of the frequencies is a whole number of samples: the density. The autocorrelation at every such sample
// is the sum of those of density^2 sub-lattices. The overlap of a flat pupil has a closed form; the difference from it
// corrects the samples where two rims cross.
class OtfLattice {
 public:
  explicit OtfLattice(const Kernels& kernels);
  ~OtfLattice();

  // The OTF in the sense of OtfOverlap.
  //   re, im  side x side doubles
  // Error: 1e-4. The phase changes by at most a quarter of a turn from sample to sample. For that the lattice has up to
  // 2048 samples across, or as many as the frequencies. Returns false, and writes nothing, where it would change by
  // more, and where the frequencies are no lattice as above. Memory: 5 planes of the frequencies, and one of the
  // samples across.
  bool Compute(const Pupil& pupil, const FrequencyLattice& frequencies, double* re, double* im);

 private:
  struct Memory;

  void SetFlat(const Pupil& flat);
  void Autocorrelate(const Pupil& pupil);

  std::unique_ptr<Memory> memory_;
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_OTF_OTF_LATTICE_H
