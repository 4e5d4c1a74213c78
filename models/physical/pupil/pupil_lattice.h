// The pupil on a square lattice of samples, whose cells at the rim count by the share of their area that is inside.
#ifndef ORVANEL_MODELS_PHYSICAL_PUPIL_PUPIL_LATTICE_H
#define ORVANEL_MODELS_PHYSICAL_PUPIL_PUPIL_LATTICE_H

#include <deque>
#include <vector>

#include "models/physical/kernels/kernels.h"
#include "models/physical/pupil/pupil.h"

namespace orvanel::physical {

// side x side samples about the middle of the reference pupil, `step` radii apart; rows go down.
struct PupilLattice {
  int side = 0;
  double step = 0.0;
  double Place(int i) const { return (i - (side - 1) / 2.0) * step; }
  bool operator==(const PupilLattice&) const = default;
};

// The share of each cell: exact along x, by the midpoint rule over 64 rows of a cell along y.
std::vector<double> MaskOf(const Ellipse& outline, const PupilLattice& lattice);

// Keeps the masks that were used last.
class Masks {
 public:
  const std::vector<double>& Of(const Ellipse& outline, const PupilLattice& lattice);

 private:
  struct Kept {
    Ellipse outline;
    PupilLattice lattice;
    std::vector<double> mask;
  };
  std::deque<Kept> kept_;
};

// Every density-th sample of a lattice in both directions.
struct SubLattice {
  int density = 1;
  int firstRow = 0;
  int firstColumn = 0;
};

// Sets a plane to the field of the sub-lattice: sample (row, column) of it is at planeSide * row + column, and the rest
// is 0. The field is A exp(i k W - i pi (x, y) . place) by the mask's share.
//   x, y    a direction in wavelength / diameter, which comes to zero frequency
//   re, im  planeSide x planeSide doubles
void FieldOnLattice(const Pupil& pupil, const PupilLattice& lattice, const std::vector<double>& mask,
                    const SubLattice& part, double x, double y, const ChordKernels& kernels, int planeSide, double* re,
                    double* im);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_PUPIL_PUPIL_LATTICE_H
