// What results are computed with: tables that are kept for the next eye, and memory.
#ifndef ORVANEL_MODELS_PHYSICAL_WORKSPACE_H
#define ORVANEL_MODELS_PHYSICAL_WORKSPACE_H

#include "models/physical/kernels/dispatch.h"
#include "models/physical/otf/otf_lattice.h"
#include "models/physical/pupil/pupil_lattice.h"
#include "models/physical/quadrature/chord_quadrature.h"
#include "models/physical/transform/plane_transform.h"

namespace orvanel::physical {

// One for each thread. Results do not depend on what it was used for before.
struct Workspace {
  explicit Workspace(const Kernels& kernels)
      : chords(ChordKernelsOf(kernels)), quadrature(chords), otf(kernels), transforms(chords) {}

  const ChordKernels& chords;
  ChordQuadrature quadrature;
  OtfLattice otf;
  PlaneTransforms transforms;
  SampledOutlines outlines;
  AlignedMemory re, im;                                             // of a field
  AlignedMemory sum;                                                // of intensities
  AlignedMemory spectrum;                                           // half of that of an image
  AlignedMemory weights, fieldRe, fieldIm, fieldSpectrum, product;  // of gradients
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_WORKSPACE_H
