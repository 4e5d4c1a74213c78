// General transforms of whole planes, and the image of an object through the eye.
//
// Compute-bound in the transforms, memory-bound between them: planes are read where a transform needs them, and written
// row by row.
#ifndef ORVANEL_OPTICS_KERNELS_IMAGE_H
#define ORVANEL_OPTICS_KERNELS_IMAGE_H

#include "optics/kernels/lines.h"
#include "optics/kernels/pupil.h"
#include "optics/kernels/spectrum.h"

namespace orvanel::ORVANEL_KERNELS {
namespace {

// Column transforms into scratch; load(row, column) gives the samples of kWidth columns.
template <class Load>
ORVANEL_INLINE void TransformColumns(const Scratch& scratch, const Tables& tables, Load load) {
  for (int group = 0; group < kLength; group += kWidth) {
    Complex* const panel = Panel(scratch, group);
    TransformBundle<false>(
        Lines(scratch), tables, [&](int n) __attribute__((always_inline)) { return load(n, group); },
        [&](int, int k, Complex v) __attribute__((always_inline)) { panel[k] = v; });
  }
}

void Transform(double* re, double* im, double scale, const Tables& tables, const Scratch& scratch) {
  TransformColumns(
      scratch, tables, [&](int row, int column) __attribute__((always_inline)) {
        return Complex{Load(re + row * kLength + column), Load(im + row * kLength + column)};
      });
  const V factor = Splat(scale);
  for (int first = 0; first < kLength; first += kWidth) {
    TransformRows(scratch, first, tables);
    StoreRows(
        Lines(scratch), &Complex::re, [&](int row, int column, V v) __attribute__((always_inline)) {
          Store(re + (first + row) * kLength + column, v * factor);
        });
    StoreRows(
        Lines(scratch), &Complex::im, [&](int row, int column, V v) __attribute__((always_inline)) {
          Store(im + (first + row) * kLength + column, v * factor);
        });
  }
}

// Columns of the filtered field into scratch, with real and imaginary parts exchanged, which turns the backward
// transform into the forward one. The sum of the products' squares is that of the image, by Parseval's theorem.
template <class Otf>
ORVANEL_INLINE double FilteredColumns(const void* object, Otf otf, const Tables& tables, const Scratch& scratch) {
  // Eight sums in every variant: lane l has the columns c with c % 8 = l.
  V sums[8 / kWidth] = {};
  TransformColumns(
      scratch, tables, [&](int p, int column) __attribute__((always_inline)) {
        const Complex o = SpectrumAt(object, p, column);
        const Complex h = otf(kLength - 1 - p, column);
        const Complex product = {o.re * h.im + h.re * o.im, h.re * o.re - o.im * h.im};
        V& sum = sums[column / kWidth % (8 / kWidth)];
        sum = sum + Norm(product);
        return product;
      });
  double s[8];
  for (int l = 0; l < 8; ++l) s[l] = sums[l / kWidth][l % kWidth];
  return (((s[0] + s[1]) + (s[2] + s[3])) + ((s[4] + s[5]) + (s[6] + s[7]))) * 65536.0;
}

double FilteredColumns(const void* object, const TransferPlanes& otf, const Tables& tables, const Scratch& scratch) {
  if (otf.spectrum != nullptr) {
    return FilteredColumns(
        object, [&](int p, int column) __attribute__((always_inline)) { return SpectrumAt(otf.spectrum, p, column); },
        tables, scratch);
  }
  return FilteredColumns(
      object,
      [&](int p, int column) __attribute__((always_inline)) {
        return Complex{Load(otf.re + p * kLength + column), Load(otf.im + p * kLength + column)};
      },
      tables, scratch);
}

// Rows of |field|^2 from scratch, moved by half the plane; finish(v) makes the samples of it.
template <class Finish>
ORVANEL_INLINE void ImageRows(const Tables& tables, const Scratch& scratch, double* image, Finish finish) {
  Complex* const lines = Lines(scratch);
  for (int first = 0; first < kLength; first += kWidth) {
    LoadRows(scratch, first, kLength, lines);
    double* const rows = image + (first + 128) % kLength * kLength;
    for (int k = 0; k < kWidth * kLength; k += 8) __builtin_prefetch(rows + k, 1);
    TransformBundle<false>(
        lines, tables, [&](int n) __attribute__((always_inline)) { return lines[n]; },
        [&](int place, int, Complex v)
            __attribute__((always_inline)) { lines[place].re = finish(v.re * v.re + v.im * v.im); });
    StoreRows(
        lines, &Complex::re, [&](int row, int column, V v) __attribute__((always_inline)) {
          Store(rows + row * kLength + (column + 128) % kLength, v);
        });
  }
}

void ImageKeepingTotal(const void* object, const TransferPlanes& otf, double objectTotal, const Tables& tables,
                       const Scratch& scratch, double* image) {
  const V factor = Splat(objectTotal / FilteredColumns(object, otf, tables, scratch));
  const V one = Splat(1.0);
  ImageRows(
      tables, scratch, image, [&](V v) __attribute__((always_inline)) {
        const V scaled = v * factor;
        const V clipped = Select(scaled > one, one, scaled);
        return Select(clipped >= V{}, clipped, V{});
      });
}

void ImageStretched(const void* object, const TransferPlanes& otf, const Tables& tables, const Scratch& scratch,
                    double* image) {
  FilteredColumns(object, otf, tables, scratch);
  V largest = Splat(-__builtin_inf());
  V smallest = Splat(__builtin_inf());
  ImageRows(
      tables, scratch, image, [&](V v) __attribute__((always_inline)) {
        largest = Larger(largest, v);
        smallest = Select(v < smallest, v, smallest);
        return v;
      });
  double most = largest[0], least = smallest[0];
  for (int l = 1; l < kWidth; ++l) {
    most = largest[l] > most ? largest[l] : most;
    least = smallest[l] < least ? smallest[l] : least;
  }
  const V lowest = Splat(least);
  const V range = Splat(most - least);
  for (int k = 0; k < kLength * kLength; k += kWidth) Store(image + k, (Load(image + k) - lowest) / range);
}

void DrawRing(double* plane, double centre, double innerSquared, double outerSquared) {
  const V inner = Splat(innerSquared);
  const V outer = Splat(outerSquared);
  for (int y = 0; y < kLength; ++y) {
    const V dy2 = Splat((y - centre) * (y - centre));
    for (int x = 0; x < kLength; x += kWidth) {
      const V dx = Ramp(x) - centre;
      const V d2 = dx * dx + dy2;
      Store(plane + y * kLength + x, Select((d2 <= outer) & (d2 >= inner), V{}, Splat(1.0)));
    }
  }
}

}  // namespace
}  // namespace orvanel::ORVANEL_KERNELS

#endif  // ORVANEL_OPTICS_KERNELS_IMAGE_H
