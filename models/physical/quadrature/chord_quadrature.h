// The field in the image of a point, by quadrature on the chords of the pupil.
#ifndef ORVANEL_MODELS_PHYSICAL_QUADRATURE_CHORD_QUADRATURE_H
#define ORVANEL_MODELS_PHYSICAL_QUADRATURE_CHORD_QUADRATURE_H

#include <array>
#include <complex>
#include <cstddef>
#include <deque>
#include <vector>

#include "models/physical/kernels/kernels.h"
#include "models/physical/pupil/pupil.h"
#include "models/physical/quadrature/bandwidth.h"

namespace orvanel::physical {

// A regular grid of directions, in units of wavelength / diameter. Column c is at x = centreX + (c - (columns - 1)/2)
// spacing, row r at y = centreY + ((rows - 1)/2 - r) spacing. x and y are those of the wavefront's slopes: a wavefront
// of slope (Wx, Wy) sends its light to +(Wx, Wy).
struct DirectionGrid {
  double centreX = 0.0;
  double centreY = 0.0;
  double spacing = 0.0;  // positive
  int columns = 0;
  int rows = 0;
};

// Where the samples of a grid go: sample (row, column) to data[row * pitch + column], or mirrored.
struct GridOutput {
  double* data = nullptr;
  std::ptrdiff_t pitch = 0;
  bool mirrorX = false;  // column c of the grid is written to column columns - 1 - c
  bool mirrorY = false;
  double factor = 1.0;
  bool add = false;  // factor |U|^2 to what is there
};

// Numbers of chords, and of nodes on each.
struct NodeCounts {
  int chords = 0;
  int nodes = 0;
  bool operator==(const NodeCounts&) const = default;
};

// The field and its derivatives in one direction (x, y).
struct FieldJet {
  std::complex<double> u, x, y, xx, xy, yy;
};

// Integrals of x^a y^b times the integrand of U, by the place (x, y) of the pupil, a + b < kPowers.
struct FieldMoments {
  std::array<std::complex<double>, kPowers * kPowers> values;
  std::complex<double>& At(int a, int b) { return values[static_cast<std::size_t>(a * kPowers + b)]; }
  const std::complex<double>& At(int a, int b) const { return values[static_cast<std::size_t>(a * kPowers + b)]; }
};

// Computes U(q) = 1/area int A exp(i k W) exp(-i pi q . rho) dA. |U(0)|^2 is 1 for a pupil without aberration and
// attenuation. Keeps its tables for the next eye of the same geometry. One thread.
class ChordQuadrature {
 public:
  explicit ChordQuadrature(const ChordKernels& kernels) : kernels_(&kernels) {}

  // Counts that bring |U|^2 within 1e-10 of the integral over the whole grid; above kMaxNodes where these are too few.
  // Source: the decay of Fourier coefficients of analytic functions, e.g. Trefethen and Weideman (2014), 3.
  static NodeCounts CountsFor(const Pupil& pupil, const DirectionGrid& grid);

  // |U|^2 at all samples of the grid.
  //   counts  at most kMaxNodes; even
  void Intensity(const Pupil& pupil, const DirectionGrid& grid, NodeCounts counts, const GridOutput& output);

  // The field in one direction.
  FieldJet Field(const Pupil& pupil, double x, double y, NodeCounts counts);
  // Its moments, to the same error.
  FieldMoments Moments(const Pupil& pupil, double x, double y, NodeCounts counts);

 private:
  // Gauss rules of one pair of counts.
  struct Rule {
    NodeCounts counts;
    std::vector<double> nodes, weights;                     // on a chord: the positive half, in whole blocks
    std::vector<double> heights, halfChords, chordWeights;  // of the chords of the upper half
    int padded() const { return static_cast<int>(nodes.size()); }
    std::size_t pairs() const { return heights.size(); }
  };

  // The exponentials between one rule and the rows of one grid, for at least as many rows as the grid has.
  struct RowWaves {
    NodeCounts counts;
    double halfHeight = 0.0, spacing = 0.0;
    bool evenRows = false;
    int rowPairs = 0;
    std::vector<double> waves;
  };

  const Rule& RuleOf(NodeCounts counts);
  void MakeRowWaves(const Rule& rule, const Pupil& pupil, const DirectionGrid& grid);
  ChordField FieldOnChord(const Rule& rule, const Pupil& pupil, const DirectionGrid& grid, std::size_t pair,
                          double side, double* field);
  void SumColumns(const Rule& rule, const Pupil& pupil, const DirectionGrid& grid, bool mirrorX, std::size_t pair);
  void StoreBlock(const Rule& rule, const DirectionGrid& grid, const GridOutput& output, int block, bool negative);

  const ChordKernels* kernels_;
  std::deque<Rule> rules_;  // those used last
  RowWaves rowWaves_;
  std::vector<double> columnWaves_;    // of one pair of chords
  std::vector<double> upper_, lower_;  // fields on two chords
  std::vector<double> sums_;           // over all nodes, by blocks of columns and pairs of chords
  std::vector<double> block_;          // samples of a block of columns that does not fit the grid
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_QUADRATURE_CHORD_QUADRATURE_H
