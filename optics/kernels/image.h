// General transforms of whole planes, spectra of real planes, and the image of an object through the eye.
//
// Compute-bound in the transforms, memory-bound between them: planes are read where a transform needs them, and written
// row by row. A real plane travels as one complex plane of half its width, and its spectrum as the half that the other
// half follows from.
#ifndef ORVANEL_OPTICS_KERNELS_IMAGE_H
#define ORVANEL_OPTICS_KERNELS_IMAGE_H

#include "optics/kernels/lines.h"
#include "optics/kernels/pupil.h"

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

// Row transforms of kWidth rows of scratch, left at their places in its lines.
ORVANEL_INLINE void TransformRows(const Scratch& scratch, int first, const Tables& tables) {
  Complex* const lines = Lines(scratch);
  LoadRows(scratch, first, kLength, lines);
  TransformBundle<false>(
      lines, tables, [&](int n) __attribute__((always_inline)) { return lines[n]; },
      [&](int place, int, Complex v) __attribute__((always_inline)) { lines[place] = v; });
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

// Half a spectrum, in panels of kWidth columns of 129 rows and some to spare.
constexpr int kHalfRows = 129 + 7;
ORVANEL_INLINE Complex* HalfPanel(void* spectrum, int column) {
  return static_cast<Complex*>(spectrum) + column / kWidth * kHalfRows;
}
ORVANEL_INLINE const Complex* HalfPanel(const void* spectrum, int column) {
  return static_cast<const Complex*>(spectrum) + column / kWidth * kHalfRows;
}

// Columns c and c + 128 of the plane are the parts of one complex column. Their spectra L and R follow from its
// spectrum Z by L[p] = (Z[p] + conj Z[-p]) / 2 and R[p] = (Z[p] - conj Z[-p]) / 2i. Rows 0 and 128 of both are real, so
// that they too travel as one row.
// Whether kWidth columns are constant and finite, so that zero frequency alone remains of them.
ORVANEL_INLINE bool AreConstant(const double* columns) {
  const V first = Load(columns);
  if (Any(first - first != 0.0)) return false;
  for (int r = 1; r < kLength; r += 15) {
    Mask differs{};
    ORVANEL_UNROLL for (int i = 0; i < 15; ++i) differs |= Load(columns + (r + i) * kLength) != first;
    if (Any(differs)) return false;
  }
  return true;
}

double RealTransform(const double* plane, const Tables& tables, const Scratch& scratch, void* out) {
  constexpr double half = 0.5 / 65536.0;
  Complex* const lines = Lines(scratch);
  for (int group = 0; group < 128; group += kWidth) {
    Complex* const left = Panel(scratch, group);
    Complex* const right = Panel(scratch, group + 128);
    if (AreConstant(plane + group) && AreConstant(plane + group + 128)) {
      left[0] = {Load(plane + group) * (512.0 * half), V{}};
      right[0] = {Load(plane + group + 128) * (512.0 * half), V{}};
      for (int p = 1; p < 128; ++p) left[p] = right[p] = {V{}, V{}};
      continue;
    }
    TransformBundle<false>(
        lines, tables,
        [&](int n) __attribute__((always_inline)) {
          return Complex{Load(plane + n * kLength + group), Load(plane + n * kLength + group + 128)};
        },
        [&](int place, int, Complex v) __attribute__((always_inline)) { lines[place] = v; });
    const Complex first = lines[PlaceOf(0)];
    const Complex middle = lines[PlaceOf(128)];
    left[0] = {first.re * (2.0 * half), middle.re * (2.0 * half)};
    right[0] = {first.im * (2.0 * half), middle.im * (2.0 * half)};
    for (int p = 1; p < 128; ++p) {
      const Complex a = lines[PlaceOf(p)];
      const Complex b = lines[PlaceOf(kLength - p)];
      left[p] = {(a.re + b.re) * half, (a.im - b.im) * half};
      right[p] = {(a.im + b.im) * half, (b.re - a.re) * half};
    }
  }
  for (int first = 0; first < 128; first += kWidth) {
    TransformRows(scratch, first, tables);
    StoreRows(
        lines, &Complex::re, [&](int row, int column, V v) __attribute__((always_inline)) {
          HalfPanel(out, column)[first + row].re = v;
        });
    StoreRows(
        lines, &Complex::im, [&](int row, int column, V v) __attribute__((always_inline)) {
          HalfPanel(out, column)[first + row].im = v;
        });
  }
  for (int q = 0; q <= 128; ++q) {
    const int mirrored = (kLength - q) % kLength;
    Complex* const a = HalfPanel(out, q);
    Complex* const b = HalfPanel(out, mirrored);
    const int i = q % kWidth, j = mirrored % kWidth;
    const double aRe = a[0].re[i], aIm = a[0].im[i], bRe = b[0].re[j], bIm = b[0].im[j];
    a[0].re[i] = b[0].re[j] = 0.5 * (aRe + bRe);
    a[0].im[i] = 0.5 * (aIm - bIm);
    b[0].im[j] = 0.5 * (bIm - aIm);
    a[128].re[i] = b[128].re[j] = 0.5 * (aIm + bIm);
    a[128].im[i] = 0.5 * (bRe - aRe);
    b[128].im[j] = 0.5 * (aRe - bRe);
  }
  return HalfPanel(out, 0)[0].re[0] * 65536.0;
}

// Columns column .. column + kWidth - 1 of row p of a whole spectrum.
ORVANEL_INLINE Complex SpectrumAt(const void* spectrum, int p, int column) {
  if (p <= 128) return HalfPanel(spectrum, column)[p];
  // Lane l comes from column -(column + l): the first from one panel, the others from the panel before it.
  const Complex first = HalfPanel(spectrum, (kLength - column) % kLength)[kLength - p];
  const Complex others = HalfPanel(spectrum, kLength - column - kWidth)[kLength - p];
  return {ReverseFrom(first.re, others.re), -ReverseFrom(first.im, others.im)};
}

void Unfold(const void* spectrum, double* re, double* im) {
  for (int p = 0; p < kLength; ++p) {
    for (int c = 0; c < kLength; c += kWidth) {
      const Complex v = SpectrumAt(spectrum, p, c);
      if (re != nullptr) Store(re + p * kLength + c, v.re);
      if (im != nullptr) Store(im + p * kLength + c, v.im);
    }
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
