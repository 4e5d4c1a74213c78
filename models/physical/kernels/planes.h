// Transforms planes of any side: the power spectrum of a field, half the spectrum of a real plane, and back.
//
// Compute-bound in the lines; memory-bound in between, where planes are in panels of columns as wide as a register.
// Rows and columns that are zero or not wanted are left out. Two real rows are packed into one complex line, always the
// same two, so that the bits do not depend on the width.
#ifndef ORVANEL_MODELS_PHYSICAL_KERNELS_PLANES_H
#define ORVANEL_MODELS_PHYSICAL_KERNELS_PLANES_H

#include "models/physical/kernels/lines.h"

namespace orvanel::ORVANEL_KERNELS {
namespace {

using physical::FieldPlane;
using physical::PlaneMemory;
using physical::RealPlane;
using physical::WantedPlane;

// Columns from `column` on of a plane of `rows` rows, in panels.
ORVANEL_INLINE Complex* PanelOf(double* panels, int column, int rows) {
  return reinterpret_cast<Complex*>(panels) + column / kWidth * rows;
}
ORVANEL_INLINE const Complex* PanelOf(const double* panels, int column, int rows) {
  return reinterpret_cast<const Complex*>(panels) + column / kWidth * rows;
}

// Buffers for kWidth lines.
struct LineBuffers {
  Complex* first;
  Complex* second;
};
ORVANEL_INLINE LineBuffers BuffersOf(const PlaneMemory& memory, int side) {
  Complex* const first = reinterpret_cast<Complex*>(memory.lines);
  return {first, first + side};
}

// One part of kWidth rows, from their places in memory.
template <class Row>
ORVANEL_INLINE void LoadPart(Row row, int columns, V Complex::*part, Complex* lines) {
  for (int c = 0; c < columns; c += kWidth) {
    V v[kWidth];
    LoadTransposed(
        [&](int l) __attribute__((always_inline)) { return row(l) + c; }, v);
    ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) lines[c + i].*part = v[i];
  }
}

void PowerSpectrum(const FieldPlane& field, const LineTransform& transform, const PlaneMemory& memory, double factor,
                   bool add, double* power) {
  const int side = transform.length;
  const LineBuffers buffers = BuffersOf(memory, side);
  for (int first = 0; first < field.rows; first += kWidth) {
    // Rows beyond the last are its copies, which go nowhere.
    const auto at = [&](int l) __attribute__((always_inline)) {
      const int row = first + l < field.rows ? first + l : field.rows - 1;
      return static_cast<long long>(row) * field.pitch;
    };
    LoadPart(
        [&](int l) __attribute__((always_inline)) { return field.re + at(l); }, field.columns, &Complex::re,
        buffers.second);
    LoadPart(
        [&](int l) __attribute__((always_inline)) { return field.im + at(l); }, field.columns, &Complex::im,
        buffers.second);
    const Complex* const lines =
        TransformLines(transform, buffers.second, field.columns, buffers.first, buffers.second);
    for (int k = 0; k < side; k += kWidth) {
      Transpose(
          lines + k, PanelOf(memory.panels, k, side), [&](int l) __attribute__((always_inline)) { return first + l; });
    }
  }
  const V scale = Splat(factor);
  for (int c = 0; c < side; c += kWidth) {
    Complex* const panel = PanelOf(memory.panels, c, side);
    const Complex* const lines = TransformLines(transform, panel, field.rows, buffers.first, buffers.second);
    for (int k = 0; k < side; ++k) {
      double* const to = power + static_cast<long long>(k) * side + c;
      const V value = (lines[k].im * lines[k].im + lines[k].re * lines[k].re) * scale;
      Store(to, add ? ::orvanel::ORVANEL_KERNELS::Load(to) + value : value);
    }
  }
}

// The spectra A and B of two real rows, from the spectrum Z of the complex row whose parts they are:
// A[q] = (Z[q] + conj Z[-q]) / 2 and B[q] = (Z[q] - conj Z[-q]) / 2i.
void HalfSpectrumOf(const RealPlane& plane, const LineTransform& transform, const PlaneMemory& memory,
                    double* spectrum) {
  const int side = transform.length;
  const int half = side / 2;
  const LineBuffers buffers = BuffersOf(memory, side);
  for (int first = 0; first < plane.rows; first += 2 * kWidth) {
    const auto row = [&](int r) __attribute__((always_inline)) {
      return r < plane.rows ? plane.samples + static_cast<long long>(r) * plane.pitch : plane.zeros;
    };
    LoadPart(
        [&](int l) __attribute__((always_inline)) { return row(first + 2 * l); }, plane.columns, &Complex::re,
        buffers.second);
    LoadPart(
        [&](int l) __attribute__((always_inline)) { return row(first + 2 * l + 1); }, plane.columns, &Complex::im,
        buffers.second);
    const Complex* const lines =
        TransformLines(transform, buffers.second, plane.columns, buffers.first, buffers.second);
    for (int q = 0; q <= half; q += kWidth) {
      Complex a[kWidth];
      Complex b[kWidth];
      ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) {
        const int k = q + i;
        const Complex z = lines[k];
        const Complex mirrored = lines[k == 0 ? 0 : side - k];
        a[i] = {(z.re + mirrored.re) * 0.5, (z.im - mirrored.im) * 0.5};
        b[i] = {(z.im + mirrored.im) * 0.5, (mirrored.re - z.re) * 0.5};
      }
      Complex* const panel = PanelOf(spectrum, q, side);
      Transpose(
          a, panel, [&](int l) __attribute__((always_inline)) { return first + 2 * l; });
      Transpose(
          b, panel, [&](int l) __attribute__((always_inline)) { return first + 2 * l + 1; });
    }
  }
  for (int q = 0; q <= half; q += kWidth) {
    Complex* const panel = PanelOf(spectrum, q, side);
    const Complex* const lines = TransformLines(transform, panel, plane.rows, buffers.first, buffers.second);
    for (int k = 0; k < side; ++k) panel[k] = lines[k];
  }
}

// The transform with the opposite sign, by exchanged parts.
double PlaneOfSpectrum(double* spectrum, const double* filter, const LineTransform& transform,
                       const PlaneMemory& memory, const WantedPlane& wanted) {
  const int side = transform.length;
  const int half = side / 2;
  const LineBuffers buffers = BuffersOf(memory, side);
  for (int q = 0; q <= half; q += kWidth) {
    Complex* const panel = PanelOf(spectrum, q, side);
    const Complex* const factors = PanelOf(filter, q, side);
    for (int k = 0; k < side; ++k) {
      const Complex v = Times(panel[k], factors[k].re, factors[k].im);
      buffers.second[k] = {v.im, v.re};
    }
    const Complex* const lines = TransformLines(transform, buffers.second, side, buffers.first, buffers.second);
    for (int k = 0; k < side; ++k) panel[k] = {lines[k].im, lines[k].re};
  }
  // Zero frequency of each row is its mean.
  double total = 0.0;
  for (int k = 0; k < side; ++k) total += PanelOf(spectrum, 0, side)[k].re[0];
  total *= side;

  const auto wrapped = [side](int i) __attribute__((always_inline)) { return i < side ? i : i - side; };
  for (int first = 0; first < wanted.rows; first += 2 * kWidth) {
    // Rows beyond the last come from anywhere and go nowhere.
    const auto row = [&](int r) __attribute__((always_inline)) { return wrapped((wanted.firstRow + r) % side); };
    for (int q = 0; q <= half; q += kWidth) {
      const Complex* const panel = PanelOf(spectrum, q, side);
      Complex a[kWidth];
      Complex b[kWidth];
      Complex even[kWidth];
      Complex odd[kWidth];
      ORVANEL_UNROLL for (int l = 0; l < kWidth; ++l) even[l] = panel[row(first + 2 * l)];
      ORVANEL_UNROLL for (int l = 0; l < kWidth; ++l) odd[l] = panel[row(first + 2 * l + 1)];
      Transpose(
          even, a, [](int l) __attribute__((always_inline)) { return l; });
      Transpose(
          odd, b, [](int l) __attribute__((always_inline)) { return l; });
      // Z[q] = A[q] + i B[q], Z[-q] = conj A[q] + i conj B[q]; parts exchanged.
      for (int i = 0; i < kWidth && q + i <= half; ++i) {
        const int k = q + i;
        buffers.second[k] = {a[i].im + b[i].re, a[i].re - b[i].im};
        if (k > 0 && k < half) buffers.second[side - k] = {b[i].re - a[i].im, a[i].re + b[i].im};
      }
    }
    const Complex* const lines = TransformLines(transform, buffers.second, side, buffers.first, buffers.second);
    for (int c = 0; c < wanted.columns; c += kWidth) {
      Complex block[kWidth];
      Complex rows[kWidth];
      ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) block[i] = lines[(wanted.firstColumn + c + i) % side];
      Transpose(
          block, rows, [](int l) __attribute__((always_inline)) { return l; });
      for (int l = 0; l < kWidth; ++l) {
        double* const to = wanted.samples + static_cast<long long>(first + 2 * l) * wanted.pitch + c;
        if (first + 2 * l < wanted.rows) Store(to, rows[l].im);
        if (first + 2 * l + 1 < wanted.rows) Store(to + wanted.pitch, rows[l].re);
      }
    }
  }
  return total;
}

}  // namespace
}  // namespace orvanel::ORVANEL_KERNELS

#endif  // ORVANEL_MODELS_PHYSICAL_KERNELS_PLANES_H
