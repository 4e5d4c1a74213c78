// Spectra of real planes: objects and point spread functions.
//
// Compute-bound in the transforms, memory-bound between them. A real plane travels as one complex plane of half its
// width, and its spectrum as the half that the other half follows from.
#ifndef ORVANEL_OPTICS_KERNELS_SPECTRUM_H
#define ORVANEL_OPTICS_KERNELS_SPECTRUM_H

#include "optics/kernels/lines.h"
#include "optics/kernels/pupil.h"

namespace orvanel::ORVANEL_KERNELS {
namespace {

// Row transforms of kWidth rows of scratch, left at their places in its lines.
ORVANEL_INLINE void TransformRows(const Scratch& scratch, int first, const Tables& tables) {
  Complex* const lines = Lines(scratch);
  LoadRows(scratch, first, kLength, lines);
  TransformBundle<false>(
      lines, tables, [&](int n) __attribute__((always_inline)) { return lines[n]; },
      [&](int place, int, Complex v) __attribute__((always_inline)) { lines[place] = v; });
}

// Half a spectrum, in panels of kWidth columns of 129 rows and some to spare.
constexpr int kHalfRows = 129 + 7;
ORVANEL_INLINE Complex* HalfPanel(void* spectrum, int column) {
  return static_cast<Complex*>(spectrum) + column / kWidth * kHalfRows;
}
ORVANEL_INLINE const Complex* HalfPanel(const void* spectrum, int column) {
  return static_cast<const Complex*>(spectrum) + column / kWidth * kHalfRows;
}

// Whether kWidth columns are constant and finite, so that zero frequency alone remains of them; at(row, column) gives
// samples of them.
template <class At>
ORVANEL_INLINE bool AreConstant(At at, int column) {
  const V first = at(0, column);
  if (Any(first - first != 0.0)) return false;
  for (int r = 1; r < kLength; r += 15) {
    Mask differs{};
    ORVANEL_UNROLL for (int i = 0; i < 15; ++i) differs |= at(r + i, column) != first;
    if (Any(differs)) return false;
  }
  return true;
}

// Columns c and c + 128 of the plane are the parts of one complex column. Their spectra L and R follow from its
// spectrum Z by L[p] = (Z[p] + conj Z[-p]) / 2 and R[p] = (Z[p] - conj Z[-p]) / 2i. Rows 0 and 128 of both are real, so
// that they too travel as one row.
template <class At>
ORVANEL_INLINE double HalfSpectrum(At at, const Tables& tables, const Scratch& scratch, void* out) {
  constexpr double half = 0.5 / 65536.0;
  Complex* const lines = Lines(scratch);
  for (int group = 0; group < 128; group += kWidth) {
    Complex* const left = Panel(scratch, group);
    Complex* const right = Panel(scratch, group + 128);
    if (AreConstant(at, group) && AreConstant(at, group + 128)) {
      left[0] = {at(0, group) * (512.0 * half), V{}};
      right[0] = {at(0, group + 128) * (512.0 * half), V{}};
      for (int p = 1; p < 128; ++p) left[p] = right[p] = {V{}, V{}};
      continue;
    }
    TransformBundle<false>(
        lines, tables,
        [&](int n) __attribute__((always_inline)) {
          return Complex{at(n, group), at(n, group + 128)};
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

double RealTransform(const double* plane, const Tables& tables, const Scratch& scratch, void* spectrum) {
  return HalfSpectrum(
      [&](int row, int column) __attribute__((always_inline)) { return Load(plane + row * kLength + column); }, tables,
      scratch, spectrum);
}

void TransferFunction(const Recentring& from, const Tables& tables, const Scratch& scratch, void* spectrum) {
  const V factor = Splat(from.factor);
  HalfSpectrum(
      [&](int row, int column)
          __attribute__((always_inline)) { return factor * Load(SamplesAt(RowOf(from, row), column)); },
      tables, scratch, spectrum);
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

}  // namespace
}  // namespace orvanel::ORVANEL_KERNELS

#endif  // ORVANEL_OPTICS_KERNELS_SPECTRUM_H
