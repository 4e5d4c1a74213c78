// Transforms planes of any side: the power spectrum of a field and its adjoint, half the spectrum of a real plane, and
// back. Adds up splines.
//
// Compute-bound in the lines; memory-bound in between, where planes are in panels of columns as wide as a register.
// Panels are transformed in place. Rows and columns that are zero or not wanted are left out. Two real rows are packed
// into one complex line, always the same two, so that the bits do not depend on the width.
#ifndef ORVANEL_MODELS_PHYSICAL_KERNELS_PLANES_H
#define ORVANEL_MODELS_PHYSICAL_KERNELS_PLANES_H

#include "models/physical/kernels/lines.h"

namespace orvanel::ORVANEL_VARIANT {
namespace {

using physical::FieldPlane;
using physical::kSpareRows;
using physical::PlaneMemory;
using physical::RealPlane;
using physical::SplineWeights;
using physical::WantedPlane;

// Columns from `column` on of a plane, in panels.
ORVANEL_INLINE Complex* PanelOf(double* panels, int column, int side) {
  return reinterpret_cast<Complex*>(panels) + column / kWidth * (side + kSpareRows);
}
ORVANEL_INLINE const Complex* PanelOf(const double* panels, int column, int side) {
  return reinterpret_cast<const Complex*>(panels) + column / kWidth * (side + kSpareRows);
}

// kWidth lines.
ORVANEL_INLINE Complex* LinesOf(double* memory) { return reinterpret_cast<Complex*>(memory); }

// One part of kWidth rows, from their places in memory.
template <class Row>
ORVANEL_INLINE void LoadPart(Row row, int columns, V Complex::*part, Complex* lines) {
  for (int c = 0; c < columns; c += kWidth) {
    V v[kWidth];
    LoadTransposed([&](int l) ORVANEL_INLINED { return row(l) + c; }, v);
    ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) lines[c + i].*part = v[i];
  }
}

// kWidth results from number k on, of lines that are transformed.
ORVANEL_INLINE void ResultsOf(const LineTransform& transform, const Complex* lines, int k, Complex* results) {
  ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) results[i] = lines[transform.places[k + i]];
}

// Transforms the rows of a field, into panels.
ORVANEL_INLINE void RowsOfField(const FieldPlane& field, const LineTransform& transform, const PlaneMemory& memory) {
  const int side = transform.length;
  Complex* const lines = LinesOf(memory.lines);
  for (int first = 0; first < field.rows; first += kWidth) {
    // Rows beyond the last are its copies, which go nowhere.
    const auto at = [&](int l) ORVANEL_INLINED {
      const int row = first + l < field.rows ? first + l : field.rows - 1;
      return static_cast<long long>(row) * field.pitch;
    };
    LoadPart([&](int l) ORVANEL_INLINED { return field.re + at(l); }, field.columns, &Complex::re, lines);
    LoadPart([&](int l) ORVANEL_INLINED { return field.im + at(l); }, field.columns, &Complex::im, lines);
    TransformLines(transform, lines, field.columns, lines);
    for (int k = 0; k < side; k += kWidth) {
      Complex results[kWidth];
      ResultsOf(transform, lines, k, results);
      Transpose(results, PanelOf(memory.panels, k, side), [&](int l) ORVANEL_INLINED { return first + l; });
    }
  }
}

void PowerSpectrum(const FieldPlane& field, const LineTransform& transform, const PlaneMemory& memory, double factor,
                   bool add, double* power) {
  const int side = transform.length;
  Complex* const lines = LinesOf(memory.lines);
  RowsOfField(field, transform, memory);
  const V scale = Splat(factor);
  for (int c = 0; c < side; c += kWidth) {
    TransformLines(transform, PanelOf(memory.panels, c, side), field.rows, lines);
    for (int k = 0; k < side; ++k) {
      double* const to = power + static_cast<long long>(k) * side + c;
      const Complex x = lines[transform.places[k]];
      const V value = (x.im * x.im + x.re * x.re) * scale;
      Store(to, add ? ::orvanel::ORVANEL_VARIANT::Load(to) + value : value);
    }
  }
}

void FieldSpectrum(const FieldPlane& field, const LineTransform& transform, const PlaneMemory& memory) {
  const int side = transform.length;
  RowsOfField(field, transform, memory);
  for (int c = 0; c < side; c += kWidth) {
    Complex* const panel = PanelOf(memory.panels, c, side);
    TransformLines(transform, panel, field.rows, panel);
  }
}

// The transform back has exchanged parts along columns, and exchanges them again along rows.
void WeighSpectrum(const double* spectrum, const double* weights, const FieldPlane& field,
                   const LineTransform& transform, const PlaneMemory& memory, double* product) {
  const int side = transform.length;
  Complex* const lines = LinesOf(memory.lines);
  for (int c = 0; c < side; c += kWidth) {
    const Complex* const panel = PanelOf(spectrum, c, side);
    for (int k = 0; k < side; ++k) {
      const int place = transform.places[k];
      const V weight = Load(weights + static_cast<long long>(k) * side + c);
      lines[place] = {panel[place].im * weight, panel[place].re * weight};
    }
    TransformLinesBack(transform, lines, 0);
    Complex* const back = PanelOf(memory.panels, c, side);
    for (int n = 0; n < field.rows; ++n) back[n] = lines[n];
  }
  for (int first = 0; first < field.rows; first += kWidth) {
    const auto row = [&](int l) ORVANEL_INLINED { return first + l < field.rows ? first + l : field.rows - 1; };
    for (int k = 0; k < side; k += kWidth) {
      const Complex* const panel = PanelOf(memory.panels, k, side);
      V re[kWidth];
      V im[kWidth];
      LoadTransposed([&](int l) ORVANEL_INLINED { return Samples(panel[row(l)].re); }, re);
      LoadTransposed([&](int l) ORVANEL_INLINED { return Samples(panel[row(l)].im); }, im);
      ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) lines[transform.places[k + i]] = {re[i], im[i]};
    }
    TransformLinesBack(transform, lines, 0);
    for (int c = 0; c < field.columns; c += kWidth) {
      V re[kWidth];
      V im[kWidth];
      LoadTransposed([&](int i) ORVANEL_INLINED { return Samples(lines[c + i].im); }, re);
      LoadTransposed([&](int i) ORVANEL_INLINED { return Samples(lines[c + i].re); }, im);
      for (int l = 0; l < kWidth && first + l < field.rows; ++l) {
        const long long at = (first + l) * field.pitch + c;
        Store(product + at, Load(field.re + at) * im[l] - Load(field.im + at) * re[l]);
      }
    }
  }
}

// Rows of a panel that are next: two for each lane. At the end of a panel they belong to the next one.
ORVANEL_INLINE void PrefetchRows(const Complex* rows) {
  ORVANEL_UNROLL for (int l = 0; l < 2 * kWidth; ++l) Prefetch(rows + l);
}

// The spectra A and B of two real rows, from the spectrum Z of the complex row whose parts they are.
// A[q] = (Z[q] + conj Z[-q]) / 2 and B[q] = (Z[q] - conj Z[-q]) / 2i.
void HalfSpectraOfRows(const RealPlane& plane, const LineTransform& transform, double* memory, double* spectrum) {
  const int side = transform.length;
  const int half = side / 2;
  Complex* const lines = LinesOf(memory);
  for (int first = 0; first < plane.rows; first += 2 * kWidth) {
    const auto row = [&](int r) ORVANEL_INLINED {
      return r < plane.rows ? plane.samples + static_cast<long long>(r) * plane.pitch : plane.zeros;
    };
    LoadPart([&](int l) ORVANEL_INLINED { return row(first + 2 * l); }, plane.columns, &Complex::re, lines);
    LoadPart([&](int l) ORVANEL_INLINED { return row(first + 2 * l + 1); }, plane.columns, &Complex::im, lines);
    TransformLines(transform, lines, plane.columns, lines);
    for (int q = 0; q <= half; q += kWidth) {
      Complex a[kWidth];
      Complex b[kWidth];
      ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) {
        const int k = q + i;
        const Complex z = lines[transform.places[k]];
        const Complex mirrored = lines[transform.places[k == 0 ? 0 : side - k]];
        a[i] = {(z.re + mirrored.re) * 0.5, (z.im - mirrored.im) * 0.5};
        b[i] = {(z.im + mirrored.im) * 0.5, (mirrored.re - z.re) * 0.5};
      }
      Complex* const panel = PanelOf(spectrum, q, side) + plane.firstRow + first;
      PrefetchRows(panel + 2 * kWidth);
      Transpose(a, panel, [&](int l) ORVANEL_INLINED { return 2 * l; });
      Transpose(b, panel, [&](int l) ORVANEL_INLINED { return 2 * l + 1; });
    }
  }
}

void ColumnsOfHalf(double* spectrum, int rows, const LineTransform& transform) {
  const int side = transform.length;
  for (int q = 0; q <= side / 2; q += kWidth) {
    Complex* const panel = PanelOf(spectrum, q, side);
    TransformLines(transform, panel, rows, panel);
  }
}

double FilterColumns(double* spectrum, int rows, const double* filter, const LineTransform& transform) {
  const int side = transform.length;
  for (int q = 0; q <= side / 2; q += kWidth) {
    const Complex* const next = PanelOf(spectrum, q + kWidth <= side / 2 ? q + kWidth : q, side);
    FilterLines(transform, PanelOf(spectrum, q, side), rows, PanelOf(filter, q, side), next);
  }
  // Zero frequency of each row is its mean.
  double total = 0.0;
  for (int k = 0; k < side; ++k) total += PanelOf(spectrum, 0, side)[k].im[0];
  return total * side;
}

// Two real rows at a time, by Z[q] = A[q] + i B[q] and Z[-q] = conj A[q] + i conj B[q], all with exchanged parts.
void RowsOfHalf(const double* spectrum, const LineTransform& transform, double* memory, const WantedPlane& wanted) {
  const int side = transform.length;
  const int half = side / 2;
  Complex* const lines = LinesOf(memory);
  const auto z = [&](int q) ORVANEL_INLINED -> Complex& { return lines[transform.places[q]]; };
  for (int first = 0; first < wanted.rows; first += 2 * kWidth) {
    // Rows beyond the last come from anywhere. They go to its place, before it.
    long long from[2 * kWidth];
    double* to[2 * kWidth];
    for (int l = 0; l < 2 * kWidth; ++l) {
      const int row = first + l < wanted.rows ? first + l : wanted.rows - 1;
      from[l] = (wanted.firstRow + row) % side;
      to[l] = wanted.samples + row * wanted.pitch;
    }
    for (int q = 0; q <= half; q += kWidth) {
      const Complex* const panel = PanelOf(spectrum, q, side);
      PrefetchRows(panel + from[0] + 2 * kWidth);
      V a[kWidth];
      V b[kWidth];
      V re[kWidth];
      V im[kWidth];
      LoadTransposed([&](int l) ORVANEL_INLINED { return Samples(panel[from[2 * l]].re); }, a);
      LoadTransposed([&](int l) ORVANEL_INLINED { return Samples(panel[from[2 * l + 1]].im); }, b);
      ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) {
        re[i] = a[i] + b[i];
        im[i] = b[i] - a[i];
      }
      V c[kWidth];
      V d[kWidth];
      LoadTransposed([&](int l) ORVANEL_INLINED { return Samples(panel[from[2 * l]].im); }, c);
      LoadTransposed([&](int l) ORVANEL_INLINED { return Samples(panel[from[2 * l + 1]].re); }, d);
      // Their mirror images as well, except that of zero frequency and that of the highest one.
      z(q) = {re[0], c[0] - d[0]};
      if (q == half) break;
      if (q > 0) z(side - q) = {im[0], c[0] + d[0]};
      ORVANEL_UNROLL for (int i = 1; i < kWidth; ++i) {
        z(q + i) = {re[i], c[i] - d[i]};
        z(side - q - i) = {im[i], c[i] + d[i]};
      }
    }
    TransformLinesBack(transform, lines, 0);
    int column = wanted.firstColumn % side;
    for (int c = 0; c < wanted.columns; c += kWidth) {
      const auto at = [&](int i) ORVANEL_INLINED { return column + i < side ? column + i : column + i - side; };
      V even[kWidth];
      V odd[kWidth];
      LoadTransposed([&](int i) ORVANEL_INLINED { return Samples(lines[at(i)].im); }, even);
      LoadTransposed([&](int i) ORVANEL_INLINED { return Samples(lines[at(i)].re); }, odd);
      ORVANEL_UNROLL for (int l = kWidth; l-- > 0;) {
        Store(to[2 * l + 1] + c, odd[l]);
        Store(to[2 * l] + c, even[l]);
      }
      column = at(kWidth);
    }
  }
}

// ---- Rows of an image

// Sums in kChordBlock lanes.
struct Lanes {
  V v[kChordBlock / kWidth];
};
ORVANEL_INLINE double SumOf(const Lanes& lanes) {
  double sum[kChordBlock];
  ORVANEL_UNROLL for (int i = 0; i < kChordBlock / kWidth; ++i) Store(sum + i * kWidth, lanes.v[i]);
  return ((sum[0] + sum[1]) + (sum[2] + sum[3])) + ((sum[4] + sum[5]) + (sum[6] + sum[7]));
}

// Writes a block of `from` less the surround.
ORVANEL_INLINE void Subtract(const double* from, double surround, double largest, double* to, Lanes& sum,
                             Mask& tooLarge) {
  ORVANEL_UNROLL for (int i = 0; i < kChordBlock / kWidth; ++i) {
    const V sample = Load(from + i * kWidth);
    const V size = Bits(Bits(sample) & 0x7fffffffffffffff);
    tooLarge |= ~(size <= largest);
    const V v = sample - surround;
    Store(to + i * kWidth, v);
    sum.v[i] += v;
  }
}

double RowWithoutSurround(const double* from, int columns, double surround, double largest, double* to) {
  Lanes sum{};
  Mask tooLarge{};
  int c = 0;
  for (; c + kChordBlock <= columns; c += kChordBlock) Subtract(from + c, surround, largest, to + c, sum, tooLarge);
  if (c < columns) {
    double rest[kChordBlock];
    for (int i = 0; i < kChordBlock; ++i) rest[i] = c + i < columns ? from[c + i] : surround;
    Subtract(rest, surround, largest, to + c, sum, tooLarge);
  }
  return Any(tooLarge) ? __builtin_nan("") : SumOf(sum);
}

// ---- Splines

// Vectors that share the weights of a row.
constexpr int kTogether = kWidth == kChordBlock ? 1 : 2;

void GatherRows(const double* rows, long long pitch, int count, const SplineWeights& weights, int columns,
                double* nodes, long long nodePitch) {
  for (int c = 0; c < columns; c += kTogether * kWidth) {
    V sum[4][kTogether];
    ORVANEL_UNROLL for (int k = 0; k < 4; ++k) {
      ORVANEL_UNROLL for (int i = 0; i < kTogether; ++i) sum[k][i] = Load(nodes + k * nodePitch + c + i * kWidth);
    }
    for (int r = 0; r < count; ++r) {
      V v[kTogether];
      ORVANEL_UNROLL for (int i = 0; i < kTogether; ++i) v[i] = Load(rows + r * pitch + c + i * kWidth);
      ORVANEL_UNROLL for (int k = 0; k < 4; ++k) {
        const V w = Splat(weights.ofNode[k][r]);
        ORVANEL_UNROLL for (int i = 0; i < kTogether; ++i) sum[k][i] += v[i] * w;
      }
    }
    ORVANEL_UNROLL for (int k = 0; k < 4; ++k) {
      ORVANEL_UNROLL for (int i = 0; i < kTogether; ++i) Store(nodes + k * nodePitch + c + i * kWidth, sum[k][i]);
    }
  }
}

// kWidth rows side by side.
void GatherColumns(const double* lines, long long pitch, int rows, int columns, const SplineWeights& weights, int step,
                   int first, double* nodes, long long nodePitch) {
  for (int row = 0; row < rows; row += kWidth) {
    double* to = nodes + row * nodePitch;
    V sum[4] = {};
    const auto finishNode = [&]() ORVANEL_INLINED {
      for (int l = 0; l < kWidth && row + l < rows; ++l) to[l * nodePitch] = sum[0][l];
      ++to;
      ORVANEL_UNROLL for (int k = 0; k < 3; ++k) sum[k] = sum[k + 1];
      sum[3] = V{};
    };
    int inCell = first;
    for (int c = 0; c < columns; c += kWidth) {
      V v[kWidth];
      LoadTransposed([&](int l) ORVANEL_INLINED { return lines + (row + l < rows ? row + l : row) * pitch + c; }, v);
      for (int i = 0; i < kWidth && c + i < columns; ++i) {
        ORVANEL_UNROLL for (int k = 0; k < 4; ++k) sum[k] += v[i] * weights.ofNode[k][inCell];
        if (++inCell < step) continue;
        finishNode();
        inCell = 0;
      }
    }
    for (int k = inCell > 0 ? 4 : 3; k > 0; --k) finishNode();
  }
}

void SplinesAlongRow(const double* nodes, int cells, const SplineWeights& weights, int step, double* row) {
  for (int cell = 0; cell < cells; ++cell, ++nodes, row += step) {
    for (int i = 0; i < step; i += kWidth) {
      V part[4];
      ORVANEL_UNROLL for (int k = 0; k < 4; ++k) part[k] = Load(weights.ofNode[k] + i) * nodes[k];
      Store(row + i, (part[0] + part[1]) + (part[2] + part[3]));
    }
  }
}

double AddSplines(const double* nodes, long long nodePitch, const SplineWeights& weights, int columns, double surround,
                  double* row) {
  V w[4];
  ORVANEL_UNROLL for (int k = 0; k < 4; ++k) w[k] = Splat(*weights.ofNode[k]);
  Lanes sum{};
  const auto addTo = [&](int c, bool partly) ORVANEL_INLINED {
    ORVANEL_UNROLL for (int i = 0; i < kChordBlock / kWidth; ++i, c += kWidth) {
      V part[4];
      ORVANEL_UNROLL for (int k = 0; k < 4; ++k) part[k] = w[k] * Load(nodes + k * nodePitch + c);
      const V v = Load(row + c) + ((part[0] + part[1]) + (part[2] + part[3]));
      sum.v[i] += partly ? Select(Ramp(c) < static_cast<double>(columns) - V{}, v, V{}) : v;
      Store(row + c, v + surround);
    }
  };
  int c = 0;
  for (; c + kChordBlock <= columns; c += kChordBlock) addTo(c, false);
  if (c < columns) addTo(c, true);
  return SumOf(sum);
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_MODELS_PHYSICAL_KERNELS_PLANES_H
