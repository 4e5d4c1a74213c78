// Defines views of planes: the address of the samples and how many a side has.
#ifndef ORVANEL_OPTICS_VIEW_H
#define ORVANEL_OPTICS_VIEW_H

#include <cstddef>

#include "optics/samples.h"

namespace orvanel {

// A square plane in the memory of an owner, row-major, row 0 at the top. Passed by value. A side below 1 has no
// samples. A host's plane may have any alignment: read and write its samples with Load and Store.
template <class Sample>
struct BasicPlaneView {
  Sample* samples;
  int side;

  std::size_t size() const { return SampleCount(side); }
  Sample* begin() const { return samples; }
  Sample* end() const { return samples + size(); }
  Sample* row(int r) const { return samples + SampleIndex(r, 0, side); }
  Sample& operator[](std::size_t i) const { return samples[i]; }
  Sample& operator()(int r, int c) const { return samples[SampleIndex(r, c, side)]; }
  operator BasicPlaneView<const Sample>() const { return {samples, side}; }
};
using PlaneView = BasicPlaneView<double>;
using ConstPlaneView = BasicPlaneView<const double>;

// The real and the imaginary part of a complex plane, of the same side.
template <class Sample>
struct BasicComplexView {
  BasicPlaneView<Sample> re;
  BasicPlaneView<Sample> im;

  operator BasicComplexView<const Sample>() const { return {re, im}; }
};
using ComplexView = BasicComplexView<double>;
using ConstComplexView = BasicComplexView<const double>;

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_VIEW_H
