// The pupil on a square lattice of samples. Weights at the rim make sums over the samples integrals.
#ifndef ORVANEL_MODELS_PHYSICAL_PUPIL_PUPIL_LATTICE_H
#define ORVANEL_MODELS_PHYSICAL_PUPIL_PUPIL_LATTICE_H

#include <cstddef>
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

// Samples beyond the rim that weights reach.
constexpr int kMaskReach = 3;

// The weight of each sample: sum of weight * f over the samples is the integral of f over the outline, in cells, for
// polynomials up to degree 5 along x and y. Weights are 1 inside, 0 outside, and within kMaskReach samples of the rim
// from about -0.1 to 1.1: the integral over the outline of the kernel of interpolation through six samples. It is exact
// along x, and by the midpoint rule over 64 lines a sample along y. Where the lattice ends before the weights do, the
// rest of them is lost.
std::vector<double> MaskOf(const Ellipse& outline, const PupilLattice& lattice);

// Every density-th sample of a lattice in both directions.
struct SubLattice {
  int firstRow = 0;
  int firstColumn = 0;
};

// A lattice over an outline as density^2 sub-lattices.
class SampledOutline {
 public:
  SampledOutline(const Ellipse& outline, const PupilLattice& lattice, int density);

  const Ellipse& outline() const { return outline_; }
  const PupilLattice& lattice() const { return lattice_; }
  int density() const { return density_; }
  int pitch() const { return pitch_; }  // of a row of a sub-lattice
  int Rows(int firstRow) const { return (lattice_.side - firstRow + density_ - 1) / density_; }
  double SumOfSquaredWeights() const;
  std::size_t samples() const { return weights_.size(); }  // with those that fill up blocks

  // The field of a sub-lattice: sample (row, column) of it is at pitch * row + column; the columns beyond its last are
  // 0. The field is A exp(i k W - i pi (x, y) . place) by the weight of the sample.
  //   x, y    a direction in wavelength / diameter, which comes to zero frequency
  //   re, im  Rows(part.firstRow) x pitch doubles
  void FieldOf(const Pupil& pupil, const SubLattice& part, double x, double y, const ChordKernels& kernels, double* re,
               double* im) const;

  // Adds the sums of value * x^a y^b over the samples to the coefficients, for a lattice of density 1.
  //   values  rows of pitch() doubles, as FieldOf makes them
  void AddMoments(const double* values, const ChordKernels& kernels, double factor, Polynomial& moments) const;

 private:
  struct Range {
    int first, end;  // columns, whole blocks
  };

  Ellipse outline_;
  PupilLattice lattice_;
  int density_;
  int pitch_;
  std::vector<double> places_;   // of the columns of each sub-lattice
  std::vector<double> weights_;  // for each row of the lattice: of each sub-lattice
  std::vector<Range> inside_;    // where these are not all 0
};

// Keeps the last ones made: up to 32, one for each line of white light, and up to 64 MiB of samples. The last one is
// kept whatever its size.
class SampledOutlines {
 public:
  static constexpr std::size_t kMaxOutlines = 32;
  static constexpr std::size_t kMaxSamples = std::size_t{64} * 1024 * 1024 / sizeof(double);

  // Valid until the next call.
  const SampledOutline& Of(const Ellipse& outline, const PupilLattice& lattice, int density);

  std::size_t samples() const;  // of all that are kept

 private:
  std::deque<SampledOutline> kept_;
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_PUPIL_PUPIL_LATTICE_H
