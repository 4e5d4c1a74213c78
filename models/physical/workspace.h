// What results are computed with: tables that are kept for the next eye, and memory.
#ifndef ORVANEL_MODELS_PHYSICAL_WORKSPACE_H
#define ORVANEL_MODELS_PHYSICAL_WORKSPACE_H

#include <vector>

#include "models/physical/kernels/dispatch.h"
#include "models/physical/otf/otf_lattice.h"
#include "models/physical/plane_transform.h"
#include "models/physical/pupil/pupil_lattice.h"
#include "models/physical/quadrature/chord_quadrature.h"

namespace orvanel::physical {

// One for each thread. Results do not depend on what it was used for before.
struct Workspace {
  explicit Workspace(const Kernels& kernels)
      : chords(ChordKernelsOf(kernels)), quadrature(chords), otf(kernels), transform(kernels) {}

  const ChordKernels& chords;
  ChordQuadrature quadrature;
  OtfLattice otf;
  PlaneTransform transform;
  Masks masks;
  std::vector<double> re, im, sum;  // planes
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_WORKSPACE_H
