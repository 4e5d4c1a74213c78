// Computes spectra of real planes: objects and point spread functions.
//
// Compute-bound in the transforms, memory-bound between them. A real plane is packed into one complex plane of half
// its height. Its spectrum is stored as one half; the other half follows from it.
#ifndef ORVANEL_OPTICS_KERNELS_SPECTRUM_H
#define ORVANEL_OPTICS_KERNELS_SPECTRUM_H

#include "optics/kernels/lines.h"
#include "optics/kernels/pupil.h"

namespace orvanel::ORVANEL_VARIANT {
namespace {

// The panel of a column. Half a spectrum has columns 0 to 128, in panels of kWidth columns. A copy of a panel's first
// row follows its last. Further rows separate the panels, so that one row of all panels is not in the same sets of the
// first cache. The panel of column 128 has the other columns of panel 0: it has the mirror images of columns 128, -1,
// -2, ...
ORVANEL_INLINE Complex* HalfPanel(HalfSpectrum& spectrum, int column) {
  return reinterpret_cast<Complex*>(spectrum.bytes) + column / kWidth * kPanelRows;
}
ORVANEL_INLINE const Complex* HalfPanel(const HalfSpectrum& spectrum, int column) {
  return reinterpret_cast<const Complex*>(spectrum.bytes) + column / kWidth * kPanelRows;
}

// Whether a row is constant and finite, so that only zero frequency is not zero; at(row, column) points to its
// samples from that column on.
template <class At>
ORVANEL_INLINE bool IsConstant(At at, int row) {
  const V first = Splat(Load(at(row, 0))[0]);
  if (Any(first - first != 0.0)) return false;
  for (int c = 0; c < kLength; c += 4 * kWidth) {
    Mask differs{};
    ORVANEL_UNROLL for (int i = 0; i < 4; ++i) differs |= Load(at(row, c + i * kWidth)) != first;
    if (Any(differs)) return false;
  }
  return true;
}

// Rows r and 255 - r are packed into one complex FFT, for kWidth r from `first` on. So the constant rows above and
// below a figure are packed together.
template <class At>
ORVANEL_INLINE bool AreConstant(At at, int first) {
  for (int l = 0; l < kWidth; ++l) {
    if (!IsConstant(at, first + l) || !IsConstant(at, kLength - 1 - first - l)) return false;
  }
  return true;
}

// Their spectra, as PutRows would put them.
template <class At, class Scale>
ORVANEL_INLINE void PutConstantRows(At at, Scale scale, int first, HalfSpectrum& spectrum) {
  const int last = kLength - 1 - first;
  for (int q = 0; q < 128; q += kWidth) {
    Complex* const panel = HalfPanel(spectrum, q);
    for (int l = 0; l < kWidth; ++l) panel[first + l] = panel[last - l] = {V{}, V{}};
  }
  Complex* const panel = HalfPanel(spectrum, 0);
  for (int l = 0; l < kWidth; ++l) {
    panel[first + l].re[0] = scale(Load(at(first + l, 0)))[0] * (1.0 / 256.0);
    panel[last - l].re[0] = scale(Load(at(last - l, 0)))[0] * (1.0 / 256.0);
  }
}

// The spectra A and B of two real rows, from the spectrum Z of the complex row whose parts they are:
// A[q] = (Z[q] + conj Z[-q]) / 2 and B[q] = (Z[q] - conj Z[-q]) / 2i. Columns 0 and 128 are real, so they are
// packed into one column, too.
[[gnu::noinline]] void PutRows(const Complex* lines, int first, HalfSpectrum& spectrum) {
  constexpr double half = 0.5 / 65536.0;
  for (int q = 0; q < 128; q += kWidth) {
    Complex a[kWidth];
    Complex b[kWidth];
    ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) {
      const Complex z = lines[PlaceOf(q + i)];
      const Complex mirrored = lines[PlaceOf((kLength - q - i) % kLength)];
      a[i] = {(z.re + mirrored.re) * half, (z.im - mirrored.im) * half};
      b[i] = {(z.im + mirrored.im) * half, (mirrored.re - z.re) * half};
    }
    if (q == 0) {
      const Complex middle = lines[PlaceOf(128)];
      a[0].im = middle.re * (2.0 * half);
      b[0].im = middle.im * (2.0 * half);
    }
    Complex* const panel = HalfPanel(spectrum, q);
    Transpose(a, panel, [&](int l) ORVANEL_INLINED { return first + l; });
    Transpose(b, panel, [&](int l) ORVANEL_INLINED { return kLength - 1 - first - l; });
  }
}

// Row transforms of a real plane, times 1/n^2, in the panels of a spectrum to be, column 128 as the imaginary part of
// column 0; the result is the plane's total.
template <class At, class Scale>
ORVANEL_INLINE double HalfRows(At at, Scale scale, const Tables& tables, const Scratch& scratch,
                               HalfSpectrum& spectrum) {
  Complex* const lines = Lines(scratch);
  for (int first = 0; first < 128; first += kWidth) {
    if (AreConstant(at, first)) {
      PutConstantRows(at, scale, first, spectrum);
      continue;
    }
    for (int c = 0; c < kLength; c += kWidth) {
      V v[kWidth];
      LoadTransposed([&](int l) ORVANEL_INLINED { return at(first + l, c); }, v);
      ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) lines[c + i].re = scale(v[i]);
      LoadTransposed([&](int l) ORVANEL_INLINED { return at(kLength - 1 - first - l, c); }, v);
      ORVANEL_UNROLL for (int i = 0; i < kWidth; ++i) lines[c + i].im = scale(v[i]);
    }
    TransformInPlace(lines, tables);
    PutRows(lines, first, spectrum);
  }
  double total = 0.0;
  for (int r = 0; r < kLength; ++r) total += HalfPanel(spectrum, 0)[r].re[0];
  return total * 65536.0;
}

// Columns 0 and 128, from the spectrum Z of the complex column whose parts they were, as PutRows has it of rows.
ORVANEL_INLINE void SeparateColumns(HalfSpectrum& spectrum) {
  Complex* const panel = HalfPanel(spectrum, 0);
  Complex* const middle = HalfPanel(spectrum, 128);
  for (int p = 0; p <= 128; ++p) {
    const int mirrored = (kLength - p) % kLength;
    const double re = panel[p].re[0], im = panel[p].im[0];
    const double mirroredRe = panel[mirrored].re[0], mirroredIm = panel[mirrored].im[0];
    middle[mirrored] = panel[mirrored];
    middle[p] = panel[p];
    panel[mirrored].re[0] = panel[p].re[0] = 0.5 * (re + mirroredRe);
    panel[mirrored].im[0] = 0.5 * (mirroredIm - im);
    panel[p].im[0] = 0.5 * (im - mirroredIm);
    middle[mirrored].re[0] = middle[p].re[0] = 0.5 * (im + mirroredIm);
    middle[mirrored].im[0] = 0.5 * (re - mirroredRe);
    middle[p].im[0] = 0.5 * (mirroredRe - re);
  }
  middle[kLength] = middle[0];
}

// Column transforms of kWidth columns of HalfRows, in place.
ORVANEL_INLINE void CompleteColumns(int column, const Tables& tables, const Scratch& scratch, HalfSpectrum& spectrum) {
  Complex* const panel = HalfPanel(spectrum, column);
  TransformPanel(panel, Lines(scratch), tables, panel);
  if (column == 0) SeparateColumns(spectrum);
  panel[kLength] = panel[0];
}

ORVANEL_INLINE void CompleteColumns(const Tables& tables, const Scratch& scratch, HalfSpectrum& spectrum) {
  for (int column = 0; column < 128; column += kWidth) CompleteColumns(column, tables, scratch, spectrum);
}

double RealRows(const double* plane, const Tables& tables, const Scratch& scratch, HalfSpectrum& spectrum) {
  return HalfRows([&](int row, int column) ORVANEL_INLINED { return plane + row * kLength + column; },
                  [](V v) ORVANEL_INLINED { return v; }, tables, scratch, spectrum);
}

double RealTransform(const double* plane, const Tables& tables, const Scratch& scratch, HalfSpectrum& spectrum) {
  const double total = RealRows(plane, tables, scratch, spectrum);
  CompleteColumns(tables, scratch, spectrum);
  return total;
}

void TransferFunction(const Recentring& from, const Tables& tables, const Scratch& scratch, HalfSpectrum& spectrum) {
  const V factor = Splat(from.factor);
  HalfRows([&](int row, int column) ORVANEL_INLINED { return SamplesAt(RowOf(from, row), column); },
           [&](V v) ORVANEL_INLINED { return factor * v; }, tables, scratch, spectrum);
  CompleteColumns(tables, scratch, spectrum);
}

void Unfold(const HalfSpectrum& spectrum, double* re, double* im) {
  for (int p = 0; p < kLength; ++p) {
    for (int c = 0; c < 128; c += kWidth) {
      const Complex v = HalfPanel(spectrum, c)[p];
      const Complex mirrored = HalfPanel(spectrum, c)[kLength - p];
      const Complex next = HalfPanel(spectrum, c + kWidth)[kLength - p];
      const int place = p * kLength + c;
      const int mirroredPlace = (p + 1) * kLength - c - kWidth;
      if (re != nullptr) {
        Store(re + place, v.re);
        Store(re + mirroredPlace, ReverseFrom(next.re, mirrored.re));
      }
      if (im != nullptr) {
        Store(im + place, v.im);
        Store(im + mirroredPlace, -ReverseFrom(next.im, mirrored.im));
      }
    }
  }
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_OPTICS_KERNELS_SPECTRUM_H
