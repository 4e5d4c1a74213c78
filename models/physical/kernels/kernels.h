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

struct ChordKernels {
  const char* name;

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
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_KERNELS_KERNELS_H
