// Fourier transforms of square planes of any side 2^a 3^b 5^c.
#ifndef ORVANEL_MODELS_PHYSICAL_TRANSFORM_PLANE_TRANSFORM_H
#define ORVANEL_MODELS_PHYSICAL_TRANSFORM_PLANE_TRANSFORM_H

#include <cstddef>
#include <deque>
#include <vector>

#include "models/physical/kernels/kernels.h"
#include "models/physical/transform/aligned_memory.h"

namespace orvanel::physical {

// What the kernels need for planes of one side. Several threads may use one.
class PlaneTransform {
 public:
  static constexpr int kLargestSide = 16384;

  // The smallest side from `least` on that has a transform.
  static int SideFor(int least);

  // Error of a transform: 2^-50 log2(side) of the root of the sum of squares, in the same norm.
  //   side  one of SideFor, at most kLargestSide
  PlaneTransform(const ChordKernels& kernels, int side);
  PlaneTransform(PlaneTransform&&) = default;
  PlaneTransform(const PlaneTransform&) = delete;

  int side() const { return transform_.length; }

  // Doubles of half a spectrum.
  std::size_t SpectrumSize() const;
  // Where its real part at (row, q) is; the imaginary part is kernels.width behind it.
  std::size_t At(int row, int q) const;

  // Memory of one call and thread.
  struct Memory {
    AlignedMemory panels, lines;
  };
  // factor |X|^2, as ChordKernels::powerSpectrum.
  void PowerSpectrum(const FieldPlane& field, double factor, bool add, double* power, Memory& memory) const;
  // The spectrum of a field, of FieldSpectrumSize doubles, for WeighSpectrum.
  std::size_t FieldSpectrumSize() const;
  void FieldSpectrum(const FieldPlane& field, double* spectrum, Memory& memory) const;
  // As ChordKernels::weighSpectrum.
  void WeighSpectrum(const double* spectrum, const double* weights, const FieldPlane& field, double* product,
                     Memory& memory) const;
  // Half the spectrum of rows x columns real samples.
  //   samples  aligned by columns that are a multiple of kChordBlock
  void HalfSpectrum(const double* samples, long long pitch, int rows, int columns, double* spectrum,
                    Memory& memory) const;
  // The transform with the opposite sign of half a plane's spectrum times that of a filter: the wanted part, which may
  // be where the samples are. Returns the sum over all of the result.
  double Filter(const double* samples, long long pitch, int rows, int columns, const double* filter,
                const WantedPlane& wanted, Memory& memory) const;

  // The same in steps: rows from firstRow on, a multiple of kSideUnit; then columns, of so many rows that are not zero;
  // then the wanted rows.
  void FilterRows(const double* samples, long long pitch, int firstRow, int rows, int columns, double* spectrum,
                  Memory& memory) const;
  double FilterColumns(double* spectrum, int rows, const double* filter) const;
  void FilteredRows(const double* spectrum, const WantedPlane& wanted, Memory& memory) const;

 private:
  double* LinesOf(Memory& memory) const;

  const ChordKernels* kernels_;
  LineTransform transform_{};
  std::vector<double> turns_;
  std::vector<int> places_;  // of the transform
  std::vector<double> zeros_;
};

// The transforms of the sides that were used last.
class PlaneTransforms {
 public:
  explicit PlaneTransforms(const ChordKernels& kernels) : kernels_(&kernels) {}
  const PlaneTransform& Of(int side);
  PlaneTransform::Memory memory;

 private:
  const ChordKernels* kernels_;
  std::deque<PlaneTransform> kept_;
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_TRANSFORM_PLANE_TRANSFORM_H
