// The optical transfer function as the overlap integral of the pupil function with itself.
#ifndef ORVANEL_MODELS_PHYSICAL_OTF_OTF_OVERLAP_H
#define ORVANEL_MODELS_PHYSICAL_OTF_OTF_OVERLAP_H

#include <complex>
#include <map>

#include "models/physical/kernels/kernels.h"
#include "models/physical/pupil/pupil.h"
#include "models/physical/quadrature/bandwidth.h"
#include "models/physical/quadrature/gauss_rules.h"

namespace orvanel::physical {

// The reference method: each frequency by itself, by Gauss-Legendre quadrature over the overlap of the two pupils. For
// one thread.
class OtfOverlap {
 public:
  OtfOverlap(const Pupil& pupil, const ChordKernels& kernels);

  // The transform of the point spread function, int PSF(q) exp(-2 pi i f . q) dq / int PSF(q) dq, q in the sense of
  // DirectionGrid; by the autocorrelation of the pupil function at the shift of -f wavelengths. OTF(0) is 1, OTF(-f)
  // the conjugate of OTF(f). Not a number where the wavefront is too steep for kMaxNodes.
  //   fx, fy  in units of diameter / wavelength, the cut-off of a round pupil of the reference radius
  // Error: 1e-9. Source: Hopkins (1955) for the integral.
  std::complex<double> At(double fx, double fy) const;

 private:
  std::complex<double> Overlap(double sx, double sy) const;
  const GaussRule& RuleOf(int count) const;

  const ChordKernels* kernels_;
  Polynomial phase_;        // in radians over the unit disc that the outline is mapped to
  Polynomial attenuation_;  // logarithm of the amplitude
  bool attenuates_;
  AffineMap toDisc_;  // of shifts
  Amplitudes amplitudes_;
  Damping damping_;
  mutable std::map<int, GaussRule> rules_;  // by the number of nodes: frequencies share few
  double light_;
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_OTF_OTF_OVERLAP_H
