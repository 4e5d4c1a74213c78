// Computes means of the OTF over all directions of one frequency, by the fast method.
#ifndef ORVANEL_MODELS_PHYSICAL_ANGULAR_MEANS_H
#define ORVANEL_MODELS_PHYSICAL_ANGULAR_MEANS_H

#include <span>
#include <vector>

#include "models/physical/transfer_function.h"

namespace orvanel::physical {

// As MeansOverAngle, for many frequencies: from one lattice of the OTF, interpolated between its samples.
//   frequencies  cycles per degree, at least 0
// Error: 3e-4, of it 1e-4 of the lattice. Refuses what TransferFunctionOf refuses, and pupils whose lattice would have
// more than kLargestSide frequencies a side.
Outcome<std::vector<AngularMeans>> MeansOverAngleByLattice(const Eye& eye, const Light& light,
                                                           std::span<const double> frequencies, Workspace& workspace);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_ANGULAR_MEANS_H
