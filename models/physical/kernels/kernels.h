// What the vector kernels of the physical model offer: one table of functions per instruction set, all with the same
// bits. `dispatch.h` finds the table.
#ifndef ORVANEL_MODELS_PHYSICAL_KERNELS_KERNELS_H
#define ORVANEL_MODELS_PHYSICAL_KERNELS_KERNELS_H

namespace orvanel::physical {

// Quadrature on chords: columns and nodes come in blocks of so many.
constexpr int kChordBlock = 8;

// A chord of the pupil: where its nodes are, and the field there.
struct ChordField {
  const double* nodes;        // positive, as fractions of the half chord; each stands for itself and its negative
  const double* weights;      // of the nodes; 0 for what only fills up a block
  int count;                  // of both, a multiple of kChordBlock
  double halfLength;          // of the chord, in the unit of the polynomials
  double weight;              // of the chord
  const double* phase;        // 11 coefficients of the phase in radians, by the distance from the chord's middle;
                              // phases are at most 2^20
  const double* attenuation;  // 3 coefficients of the logarithm of the amplitude, at most 700, or null for 0
};

// Half of a regular row of places: the coordinates (first + k) * angle, k = 0 to blocks * kChordBlock - 1, in radians
// per node coordinate of 1.
struct WaveGrid {
  double angle;
  double first;  // 0 or 1/2
  int blocks;
};

// Samples of one block of columns, from the sums of its columns over all chords.
struct RowSums {
  const double* sums;    // of each pair of chords: even re, im, odd re, im, of kChordBlock columns
  const double* waves;   // of each pair of chords: cosine and sine for each pair of rows
  long long wavesPitch;  // from one pair of chords to the next
  int pairs;             // of chords
  int rowPairs;
  double* plus;  // rows of positive coordinates, in ascending order; may coincide with `minus` in the first
  long long plusPitch;
  double* minus;  // rows of negative ones, in descending order
  long long minusPitch;
  double factor;
  bool add;  // to what is there
};

// A row of places in the pupil with one height: the field there.
struct RowField {
  const double* places;       // in the unit of the polynomials
  const double* weights;      // factors of the field
  int count;                  // of both, a multiple of kChordBlock
  const double* phase;        // as in ChordField, by the place
  const double* attenuation;  // as in ChordField, or null
};

// ---- Transforms of planes, X[p][q] = sum over j, k of x[j][k] exp(+2 pi i (j p + k q) / side)

// The passes of a line's transform. Sides of planes are multiples of kSideUnit.
constexpr int kMaxPasses = 14;
constexpr int kSideUnit = 16;
constexpr int kSpareRows =
    8;  // between panels, which keep one row of all panels out of the same sets of the first cache
struct LineTransform {
  int length;  // 2^a 3^b 5^c
  int passes;
  int radices[kMaxPasses];          // 3, 4, 5, 8, 9 or 16, the first 8 or 16; their product is the length
  const double* turns[kMaxPasses];  // cosine and sine, for each but the first place of a group and result of its radix
  const int* places;                // where the results are: that of k after all passes
};

// For the length of one call, aligned to 64 bytes; for the widest register, in doubles.
struct PlaneMemory {
  double* panels;  // 2 side (side + kSpareRows)
  double* lines;   // 16 side
};

// The corner of a plane that is not zero. Columns are a multiple of kChordBlock, at most the side.
struct FieldPlane {
  const double* re;
  const double* im;
  long long pitch;
  int rows;
  int columns;
};
struct RealPlane {
  const double* samples;
  long long pitch;
  int firstRow;  // where the samples are in the plane: from here on; a multiple of kSideUnit
  int rows;
  int columns;
  const double* zeros;  // a row of so many columns
};

// The part of a periodic plane that is computed. Columns are a multiple of kChordBlock.
struct WantedPlane {
  double* samples;
  long long pitch;
  int firstRow;  // from 0 to side - 1
  int firstColumn;
  int rows;
  int columns;
};

// Half a spectrum has the columns 0 to side/2, the rest of a real plane's are their mirrored conjugates. Columns are in
// panels of `width`: the real part at (row, q) is at (q / width * (side + kSpareRows) + places[row]) * 2 width + q %
// width, the imaginary part `width` behind it. The last panel has some more columns. Before the transform along
// columns, and after that back, rows are in their natural order.

// The weights of four nodes, for each sample of a cell; 0 from the last to a whole block.
struct SplineWeights {
  const double* ofNode[4];
};

// Powers of places: one more than those of a wavefront.
constexpr int kPowers = 12;

struct ChordKernels {
  const char* name;
  int width;  // of a register, in doubles

  // Weighted field at the nodes u of a chord: f(u) + f(-u) and f(u) - f(-u), real parts before imaginary ones.
  //   field  4 * count doubles
  void (*fieldOnChord)(const ChordField& chord, double* field);

  // Sums over the nodes u of a field that fieldOnChord computed: even re, even im, u odd re, u odd im, u^2 even re,
  // u^2 even im. Each has kChordBlock lanes; the caller adds them up.
  //   moments  6 * kChordBlock doubles
  void (*chordMoments)(const ChordField& chord, const double* field, double* moments);

  // cos and sin of node * place, for each block of places and each node.
  //   waves  grid.blocks * count * 2 * kChordBlock doubles
  void (*columnWaves)(const double* nodes, int count, const WaveGrid& grid, double* waves);

  // Sums over the nodes for one block of columns and two chords of one length: even re cos, even im cos, odd re sin,
  // odd im sin. Those of the upper chord come first.
  //   sums  8 * kChordBlock doubles
  void (*columnSums)(const double* waves, int count, const double* upper, const double* lower, double* sums);

  // factor |U|^2 of the rows, from the sums of their columns.
  void (*rowsFromSums)(const RowSums& job);

  // The field at each place times its weight.
  //   re, im  row.count doubles each
  void (*fieldOnRow)(const RowField& row, double* re, double* im);

  // factor |X|^2 of a complex plane, row-major, zero frequency at (0, 0); replaces what is there, or adds to it.
  //   power  side x side doubles
  void (*powerSpectrum)(const FieldPlane& field, const LineTransform& transform, const PlaneMemory& memory,
                        double factor, bool add, double* power);

  // The spectrum X of a field: its column k at row p is at (k / width * (side + kSpareRows) + places[p]) * 2 width + k
  // % width of memory.panels, the imaginary part `width` behind it.
  void (*fieldSpectrum)(const FieldPlane& field, const LineTransform& transform, const PlaneMemory& memory);

  // Re(i x conj(b)) of the field x and the transform b of real weights times the spectrum, with the opposite sign.
  // Twice that is the derivative of the sum of weights |X|^2 by the phase of a sample.
  //   spectrum  of fieldSpectrum, not in `memory`
  //   weights   side x side, row-major
  //   product   as many as the field, with its pitch
  void (*weighSpectrum)(const double* spectrum, const double* weights, const FieldPlane& field,
                        const LineTransform& transform, const PlaneMemory& memory, double* product);

  // Sums of value * place^a for a = 0 to kPowers - 1. Each has kChordBlock lanes.
  //   count  a multiple of kChordBlock
  //   sums   kPowers * kChordBlock doubles
  void (*powerSums)(const double* places, const double* values, int count, double* sums);

  // Transforms real rows.
  //   lines  as in PlaneMemory
  void (*halfSpectraOfRows)(const RealPlane& plane, const LineTransform& transform, double* lines, double* spectrum);

  // Then transforms columns, in which rows from `rows` on are zero.
  void (*columnsOfHalf)(double* spectrum, int rows, const LineTransform& transform);

  // Or transforms columns, multiplies them by a filter's half spectrum, and transforms them back with the opposite
  // sign. Real and imaginary parts of the result are exchanged. Returns the sum over all samples of the plane.
  double (*filterColumns)(double* spectrum, int rows, const double* filter, const LineTransform& transform);

  // Then transforms rows back: the wanted ones.
  void (*rowsOfHalf)(const double* spectrum, const LineTransform& transform, double* lines, const WantedPlane& wanted);

  // A row of an image less its surround, in whole blocks of columns, with 0 beyond the last. Returns its sum; not a
  // number where a sample is not within +-largest.
  double (*rowWithoutSurround)(const double* from, int columns, double surround, double largest, double* to);

  // Adds to four rows of nodes the sum of `count` rows.
  //   columns  a multiple of kChordBlock
  void (*gatherRows)(const double* rows, long long pitch, int count, const SplineWeights& weights, int columns,
                     double* nodes, long long nodePitch);

  // For each row the nodes along it; the first sample is number `first` of the first cell. Replaces the nodes that get
  // any light.
  //   lines  rows of whole blocks of columns
  void (*gatherColumns)(const double* lines, long long pitch, int rows, int columns, const SplineWeights& weights,
                        int step, int first, double* nodes, long long nodePitch);

  // The sum of splines along a row, for so many cells of `step` samples.
  //   nodes  cells + 3
  //   row    cells * step + kChordBlock; what is beyond the cells is overwritten
  void (*splinesAlongRow)(const double* nodes, int cells, const SplineWeights& weights, int step, double* row);

  // Adds to a row the sum of four rows of nodes, and the surround. Returns the sum of the samples before the latter.
  //   nodes, row  whole blocks of columns
  double (*addSplines)(const double* nodes, long long nodePitch, const SplineWeights& weights, int columns,
                       double surround, double* row);
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_KERNELS_KERNELS_H
