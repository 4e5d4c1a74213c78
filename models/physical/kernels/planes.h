// Transforms planes of any side: the power spectrum of a field, half the spectrum of a real plane, and back.
//
// Compute-bound in the lines; memory-bound in between, where planes are in panels of columns as wide as a register.
// Rows and columns that are zero or not wanted are left out. Two real rows are packed into one complex line, always the
// same two, so that the bits do not depend on the width.
#ifndef ORVANEL_MODELS_PHYSICAL_KERNELS_PLANES_H
#define ORVANEL_MODELS_PHYSICAL_KERNELS_PLANES_H

#include "models/physical/kernels/lines.h"

namespace orvanel::ORVANEL_VARIANT {
namespace {

using physical::FieldPlane;
using physical::kSpareRows;
using physical::PlaneMemory;
using physical::RealPlane;
using physical::WantedPlane;

// Columns from `column` on of a plane, in panels.
ORVANEL_INLINE Complex* PanelOf(double* panels, int column, int side) {
  return reinterpret_cast<Complex*>(panels) + column / kWidth * (side + kSpareRows);
}
ORVANEL_INLINE const Complex* PanelOf(const double* panels, int column, int side) {
  return reinterpret_cast<const Complex*>(panels) + column / kWidth * (side + kSpareRows);
}

// Buffers for kWidth lines.
struct LineBuffers {
  Complex* first;
  Complex* second;
};
ORVANEL_INLINE LineBuffers BuffersOf(const PlaneMemory& memory, int side) {
  auto* const first = reinterpret_cast<Complex*>(memory.lines);
  return {first, first + side};
}

// One part of kWidth rows, from their places in memory.
template <class Row>
ORVANEL_INLINE void LoadPart(Row row, int columns, V Complex::*part, Complex* lines) {
  for (int c = 0; c < columns; c += kWidth) {
    V v[kWidth];
    LoadTransposed([&](int l) ORVANEL_INLINED { return row(l) + c; }, v);
    ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) lines[c + i].*part = v[i];
  }
}

void PowerSpectrum(const FieldPlane& field, const LineTransform& transform, const PlaneMemory& memory, double factor,
                   bool add, double* power) {
  const int side = transform.length;
  const LineBuffers buffers = BuffersOf(memory, side);
  for (int first = 0; first < field.rows; first += kWidth) {
    // Rows beyond the last are its copies, which go nowhere.
    const auto at = [&](int l) ORVANEL_INLINED {
      const int row = first + l < field.rows ? first + l : field.rows - 1;
      return static_cast<long long>(row) * field.pitch;
    };
    LoadPart([&](int l) ORVANEL_INLINED { return field.re + at(l); }, field.columns, &Complex::re, buffers.second);
    LoadPart([&](int l) ORVANEL_INLINED { return field.im + at(l); }, field.columns, &Complex::im, buffers.second);
    const Complex* const lines =
        TransformLines(transform, buffers.second, field.columns, buffers.first, buffers.second);
    for (int k = 0; k < side; k += kWidth) {
      Transpose(lines + k, PanelOf(memory.panels, k, side), [&](int l) ORVANEL_INLINED { return first + l; });
    }
  }
  const V scale = Splat(factor);
  for (int c = 0; c < side; c += kWidth) {
    Complex* const panel = PanelOf(memory.panels, c, side);
    const Complex* const lines = TransformLines(transform, panel, field.rows, buffers.first, buffers.second);
    for (int k = 0; k < side; ++k) {
      double* const to = power + static_cast<long long>(k) * side + c;
      const V value = (lines[k].im * lines[k].im + lines[k].re * lines[k].re) * scale;
      Store(to, add ? ::orvanel::ORVANEL_VARIANT::Load(to) + value : value);
    }
  }
}

// Rows of half a spectrum: the spectra A and B of two real rows, from the spectrum Z of the complex row whose parts
// they are. A[q] = (Z[q] + conj Z[-q]) / 2 and B[q] = (Z[q] - conj Z[-q]) / 2i.
ORVANEL_INLINE void HalfRows(const RealPlane& plane, const LineTransform& transform, const LineBuffers& buffers,
                             double* spectrum) {
  const int side = transform.length;
  const int half = side / 2;
  for (int first = 0; first < plane.rows; first += 2 * kWidth) {
    const auto row = [&](int r) ORVANEL_INLINED {
      return r < plane.rows ? plane.samples + static_cast<long long>(r) * plane.pitch : plane.zeros;
    };
    LoadPart([&](int l) ORVANEL_INLINED { return row(first + 2 * l); }, plane.columns, &Complex::re, buffers.second);
    LoadPart([&](int l) ORVANEL_INLINED { return row(first + 2 * l + 1); }, plane.columns, &Complex::im,
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
      Complex* const panel = PanelOf(spectrum, q, side) + first;
      Transpose(a, panel, [&](int l) ORVANEL_INLINED { return 2 * l; });
      Transpose(b, panel, [&](int l) ORVANEL_INLINED { return 2 * l + 1; });
    }
  }
}

void HalfSpectrumOf(const RealPlane& plane, const LineTransform& transform, const PlaneMemory& memory,
                    double* spectrum) {
  const int side = transform.length;
  const LineBuffers buffers = BuffersOf(memory, side);
  HalfRows(plane, transform, buffers, spectrum);
  for (int q = 0; q <= side / 2; q += kWidth) {
    Complex* const panel = PanelOf(spectrum, q, side);
    const Complex* const lines = TransformLines(transform, panel, plane.rows, buffers.first, buffers.second);
    for (int k = 0; k < side; ++k) panel[k] = lines[k];
  }
}

// Back from half a spectrum whose columns are transformed already: two real rows at a time, by
// Z[q] = A[q] + i B[q] and Z[-q] = conj A[q] + i conj B[q], with exchanged parts for the opposite sign.
ORVANEL_INLINE void RowsOfHalf(const double* spectrum, const LineTransform& transform, const LineBuffers& buffers,
                               const WantedPlane& wanted) {
  const int side = transform.length;
  const int half = side / 2;
  for (int first = 0; first < wanted.rows; first += 2 * kWidth) {
    // Rows beyond the last come from anywhere and go nowhere.
    const auto row = [&](int r) ORVANEL_INLINED { return (wanted.firstRow + r) % side; };
    int evenRow[kWidth];
    int oddRow[kWidth];
    for (int l = 0; l < kWidth; ++l) {
      evenRow[l] = row(first + 2 * l);
      oddRow[l] = row(first + 2 * l + 1);
    }
    Complex* const z = buffers.second;
    for (int q = 0; q <= half; q += kWidth) {
      const Complex* const panel = PanelOf(spectrum, q, side);
      Complex a[kWidth];
      Complex b[kWidth];
      Complex even[kWidth];
      Complex odd[kWidth];
      ORVANEL_UNROLL for (int l = 0; l < kWidth; ++l) even[l] = panel[evenRow[l]];
      ORVANEL_UNROLL for (int l = 0; l < kWidth; ++l) odd[l] = panel[oddRow[l]];
      Transpose(even, a, [](int l) ORVANEL_INLINED { return l; });
      Transpose(odd, b, [](int l) ORVANEL_INLINED { return l; });
      if (q == half) {
        z[half] = {a[0].im + b[0].re, a[0].re - b[0].im};
        continue;
      }
      ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) z[q + i] = {a[i].im + b[i].re, a[i].re - b[i].im};
      // Their mirror images; that of zero frequency is itself.
      if (q > 0) z[side - q] = {b[0].re - a[0].im, a[0].re + b[0].im};
      ORVANEL_UNROLL for (int i = 1; i < kWidth; ++i) z[side - q - i] = {b[i].re - a[i].im, a[i].re + b[i].im};
    }
    const Complex* const lines = TransformLines(transform, z, side, buffers.first, buffers.second);
    for (int c = 0; c < wanted.columns; c += kWidth) {
      Complex block[kWidth];
      Complex rows[kWidth];
      const int column = (wanted.firstColumn + c) % side;
      ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) {
        block[i] = lines[column + i < side ? column + i : column + i - side];
      }
      Transpose(block, rows, [](int l) ORVANEL_INLINED { return l; });
      ORVANEL_UNROLL for (int l = 0; l < kWidth; ++l) {
        double* const to = wanted.samples + static_cast<long long>(first + 2 * l) * wanted.pitch + c;
        if (first + 2 * l < wanted.rows) Store(to, rows[l].im);
        if (first + 2 * l + 1 < wanted.rows) Store(to + wanted.pitch, rows[l].re);
      }
    }
  }
}

double FilteredPlane(const RealPlane& plane, const double* filter, const LineTransform& transform,
                     const PlaneMemory& memory, const WantedPlane& wanted) {
  const int side = transform.length;
  const LineBuffers buffers = BuffersOf(memory, side);
  HalfRows(plane, transform, buffers, memory.panels);
  for (int q = 0; q <= side / 2; q += kWidth) {
    Complex* const panel = PanelOf(memory.panels, q, side);
    const Complex* const factors = PanelOf(filter, q, side);
    Complex* const lines = TransformLines(transform, panel, plane.rows, buffers.first, buffers.second);
    for (int k = 0; k < side; ++k) {
      const Complex v = Times(lines[k], factors[k].re, factors[k].im);
      lines[k] = {v.im, v.re};
    }
    Complex* const other = lines == buffers.first ? buffers.second : buffers.first;
    const Complex* const back = TransformLines(transform, lines, side, other, lines);
    for (int k = 0; k < side; ++k) panel[k] = {back[k].im, back[k].re};
  }
  // Zero frequency of each row is its mean.
  double total = 0.0;
  for (int k = 0; k < side; ++k) total += PanelOf(memory.panels, 0, side)[k].re[0];
  RowsOfHalf(memory.panels, transform, buffers, wanted);
  return total * side;
}

// ---- Splines along columns

void GatherRows(const double* rows, long long pitch, int count, const double* weights, int columns, double* nodes,
                long long nodePitch) {
  for (int c = 0; c < columns; c += kWidth) {
    V sum[4];
    ORVANEL_UNROLL for (int k = 0; k < 4; ++k) sum[k] = Load(nodes + k * nodePitch + c);
    for (int r = 0; r < count; ++r) {
      const V v = Load(rows + r * pitch + c);
      ORVANEL_UNROLL for (int k = 0; k < 4; ++k) sum[k] += v * weights[4 * r + k];
    }
    ORVANEL_UNROLL for (int k = 0; k < 4; ++k) Store(nodes + k * nodePitch + c, sum[k]);
  }
}

void AddSplines(const double* nodes, long long nodePitch, int count, const double* weights, int columns, double* rows,
                long long pitch) {
  for (int c = 0; c < columns; c += kWidth) {
    V node[4];
    ORVANEL_UNROLL for (int k = 0; k < 4; ++k) node[k] = Load(nodes + k * nodePitch + c);
    for (int r = 0; r < count; ++r) {
      double* const to = rows + r * pitch + c;
      const double* const w = weights + 4 * r;
      Store(to, Load(to) + ((w[0] * node[0] + w[1] * node[1]) + (w[2] * node[2] + w[3] * node[3])));
    }
  }
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_MODELS_PHYSICAL_KERNELS_PLANES_H
