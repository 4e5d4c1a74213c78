// Computes the intensity on the retina from the wavefront.
//
// Compute-bound, except for the division. Columns come first, straight from the wavefront, then rows, so that the
// intensity is written row by row. A pupil within the middle 129 x 129 samples is read from the corner of the middle.
// This only changes the phases of the field, and leaves half of each line and half of all columns empty.
#ifndef ORVANEL_OPTICS_KERNELS_PUPIL_H
#define ORVANEL_OPTICS_KERNELS_PUPIL_H

#include "optics/kernels/lines.h"
#include "optics/kernels/sine_cosine.h"
#include "orvanel/constants.h"

namespace orvanel::ORVANEL_VARIANT {
namespace {

// exp(i 2 pi W / wavelength) inside the pupil, zero outside.
ORVANEL_INLINE Complex PupilFunction(V w, V wavelength, const Tables& tables) {
  const Mask inside = w <= kLargestInside;
  if (!Any(inside)) return Complex(V{}, V{});
  const V phase = (w / wavelength) * kShortTwoPi;
  SinCos field = SineAndCosine(phase);
  const V size = Bits(Bits(phase) & 0x7fffffffffffffff);
  const Mask large = (size > kLargestAngle) & inside;
  if (Any(large)) [[unlikely]] {
    for (int l = 0; l < kWidth; ++l) {
      if (large[l] == 0) continue;
      double sine, cosine;
      tables.sineAndCosine(phase[l], &sine, &cosine);
      field.sine[l] = sine;
      field.cosine[l] = cosine;
    }
  }
  return {Bits(Bits(field.cosine) & inside), Bits(Bits(field.sine) & inside)};
}

constexpr int kFirst = kLength / 4;    // row and column of the middle's corner
constexpr int kLast = kFirst + kHalf;  // its last row and column

// Whether no sample outside the middle belongs to the pupil.
ORVANEL_INLINE bool IsInTheMiddle(const double* wavefront) {
  const auto outsideIn = [](const double* from, int count) ORVANEL_INLINED {
    Mask inside{};
    for (int c = 0; c < count; c += kWidth) inside |= ::orvanel::ORVANEL_VARIANT::Load(from + c) <= kLargestInside;
    return !Any(inside);
  };
  for (int r = 0; r < kLength; ++r) {
    const double* const row = wavefront + r * kLength;
    // Vectors of the columns behind the middle: the last two overlap by one sample.
    if (r < kFirst || r > kLast) {
      if (!outsideIn(row, kLength)) return false;
    } else if (!outsideIn(row, kFirst) || !outsideIn(row + kLast + 1, kFirst - kWidestRegister) ||
               !outsideIn(row + kLength - kWidestRegister, kWidestRegister)) {
      return false;
    }
  }
  return true;
}

// Column transforms of the middle, origin at its corner: columns 0 to 128. The columns after it lie outside.
ORVANEL_INLINE void MiddleColumns(const double* wavefront, V wavelength, const Tables& tables, const Scratch& scratch) {
  Complex* const lines = Lines(scratch);
  for (int group = 0; group <= 128; group += kWidth) {
    for (int n = 0; n <= 128; ++n) {
      lines[n] = PupilFunction(Load(wavefront + (kFirst + n) * kLength + kFirst + group), wavelength, tables);
    }
    Complex* const panel = Panel(scratch, group);
    TransformBundle<true>(
        lines, tables, [&](int n) ORVANEL_INLINED { return lines[n]; },
        [&](int, int k, Complex v) ORVANEL_INLINED { panel[k] = v; });
  }
}

// The same for a pupil anywhere, origin at the plane's corner.
ORVANEL_INLINE void AllColumns(const double* wavefront, V wavelength, const Tables& tables, const Scratch& scratch) {
  Complex* const lines = Lines(scratch);
  for (int group = 0; group < kLength; group += kWidth) {
    for (int n = 0; n < kLength; ++n) {
      lines[n] = PupilFunction(Load(wavefront + n * kLength + group), wavelength, tables);
    }
    TransformPanel(lines, lines, tables, Panel(scratch, group));
  }
}

// The first `count` samples of rows first .. first + kWidth - 1 of scratch, side by side.
ORVANEL_INLINE void LoadRows(const Scratch& scratch, int first, int count, Complex* x) {
  for (int c = 0; c < count; c += kWidth) {
    Transpose(Panel(scratch, c) + first, x, [&](int l) ORVANEL_INLINED { return c + l; });
  }
}

// One part of the results of kWidth rows, at their places in x; put(row, column, v) takes the samples from that column.
template <class Put>
ORVANEL_INLINE void StoreRows(const Complex* x, V Complex::*part, Put put) {
  for (int k2 = 0; k2 < 16; ++k2) {
    for (int k1 = 0; k1 < 16; k1 += kWidth) {
      V a[kWidth];
      LoadTransposed([&](int l) ORVANEL_INLINED { return Samples(x[16 * (k1 + l) + k2].*part); }, a);
      ORVANEL_UNROLL for (int l = 0; l < kWidth; ++l) put(l, 16 * k2 + k1, a[l]);
    }
  }
}

ORVANEL_INLINE V Norm(Complex a) { return a.im * a.im + a.re * a.re; }
ORVANEL_INLINE V Larger(V a, V b) { return Select(b > a, b, a); }

// kWidth rows of the intensity.
template <bool halfEmpty, bool keep>
ORVANEL_INLINE void IntensityRows(const Scratch& scratch, int first, const Tables& tables, double* intensity,
                                  double* rowMaxima) {
  Complex* const lines = Lines(scratch);
  LoadRows(scratch, first, halfEmpty ? 128 : 256, lines);
  if constexpr (halfEmpty) {
    const Complex* const last = Panel(scratch, 128) + first;
    for (int l = 0; l < kWidth; ++l) {
      lines[128].re[l] = last[l].re[0];
      lines[128].im[l] = last[l].im[0];
    }
  }
  V maximum{};
  TransformBundle<halfEmpty>(
      lines, tables, [&](int n) ORVANEL_INLINED { return lines[n]; },
      [&](int place, int, Complex v) ORVANEL_INLINED {
        const V power = Norm(v);
        if constexpr (keep) lines[place].re = power;
        maximum = Larger(maximum, power);
      });
  Store(rowMaxima + first, maximum);
  if constexpr (keep) {
    StoreRows(lines, &Complex::re, [&](int row, int column, V v) ORVANEL_INLINED {
      double* const to = intensity + (first + row) * kIntensityPitch;
      Store(to + column, v);
      if (column < kIntensityPitch - kLength) Store(to + kLength + column, v);
    });
  }
}

template <bool halfEmpty>
ORVANEL_INLINE void AllIntensityRows(const Scratch& scratch, const Tables& tables, double* intensity,
                                     double* rowMaxima) {
  for (int first = 0; first < kLength; first += kWidth) {
    if (intensity != nullptr) {
      IntensityRows<halfEmpty, true>(scratch, first, tables, intensity, rowMaxima);
    } else {
      IntensityRows<halfEmpty, false>(scratch, first, tables, intensity, rowMaxima);
    }
  }
}

void Intensity(const double* wavefront, double wavelength, const Tables& tables, const Scratch& scratch,
               double* intensity, double* rowMaxima) {
  if (IsInTheMiddle(wavefront)) {
    MiddleColumns(wavefront, Splat(wavelength), tables, scratch);
    AllIntensityRows<true>(scratch, tables, intensity, rowMaxima);
  } else {
    AllColumns(wavefront, Splat(wavelength), tables, scratch);
    AllIntensityRows<false>(scratch, tables, intensity, rowMaxima);
  }
}

// Row `row` of the PSF: column c is factor times sample (c + shift) % 256 of this row.
struct RecentredRow {
  const double* samples;
  int shift;
};
ORVANEL_INLINE RecentredRow RowOf(const Recentring& from, int row) {
  return {from.intensity + (row + from.row + 128) % kLength * kIntensityPitch, (from.column + 128) % kLength};
}
ORVANEL_INLINE const double* SamplesAt(RecentredRow row, int column) {
  return row.samples + (column + row.shift) % kLength;
}

void Recentre(const Recentring& from, double* psf) {
  const V factor = Splat(from.factor);
  for (int r = 0; r < kLength; ++r) {
    const RecentredRow row = RowOf(from, r);
    for (int c = 0; c < kLength; c += kWidth) Store(psf + r * kLength + c, factor * Load(SamplesAt(row, c)));
  }
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_OPTICS_KERNELS_PUPIL_H
