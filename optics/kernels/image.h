// Transforms whole planes, forms the image of an object through the eye, and draws rings.
//
// Compute-bound in the transforms, memory-bound between them: planes are read where a transform needs them, and written
// row by row.
#ifndef ORVANEL_OPTICS_KERNELS_IMAGE_H
#define ORVANEL_OPTICS_KERNELS_IMAGE_H

#include "optics/kernels/lines.h"
#include "optics/kernels/pupil.h"
#include "optics/kernels/spectrum.h"

namespace orvanel::ORVANEL_VARIANT {
namespace {

void Transform(double* re, double* im, double scale, const Tables& tables, const Scratch& scratch) {
  Complex* const lines = Lines(scratch);
  for (int column = 0; column < kLength; column += kWidth) {
    for (int row = 0; row < kLength; ++row) {
      lines[row] = {Load(re + row * kLength + column), Load(im + row * kLength + column)};
    }
    TransformPanel(lines, lines, tables, Panel(scratch, column));
  }
  const V factor = Splat(scale);
  for (int first = 0; first < kLength; first += kWidth) {
    LoadRows(scratch, first, kLength, lines);
    TransformInPlace(lines, tables);
    StoreRows(lines, &Complex::re, [&](int row, int column, V v) ORVANEL_INLINED {
      Store(re + (first + row) * kLength + column, v * factor);
    });
    StoreRows(lines, &Complex::im, [&](int row, int column, V v) ORVANEL_INLINED {
      Store(im + (first + row) * kLength + column, v * factor);
    });
  }
}

// Columns of an object's spectrum or of a transfer function: kWidth of them, and their mirror images. Lane l of a
// mirror image is column -(column + l), with column 128 in the place of column 0.
struct FoldedColumns {
  const HalfSpectrum& spectrum;

  ORVANEL_INLINE_MEMBER Complex At(int p, int column) const { return HalfPanel(spectrum, column)[p]; }
  ORVANEL_INLINE_MEMBER Complex MirroredAt(int p, int column) const {
    const Complex v = HalfPanel(spectrum, column == 0 ? 128 : column)[kLength - p];
    return {v.re, -v.im};
  }
};

// The same for a transfer function as two whole planes, which need not have the symmetry of a real PSF.
struct WholeColumns {
  const double* re;
  const double* im;

  ORVANEL_INLINE_MEMBER Complex At(int p, int column) const {
    return {Load(re + p * kLength + column), Load(im + p * kLength + column)};
  }
  ORVANEL_INLINE_MEMBER Complex MirroredAt(int p, int column) const {
    return {Mirrored(re + p * kLength, column), Mirrored(im + p * kLength, column)};
  }

  static ORVANEL_INLINE_MEMBER V Mirrored(const double* row, int column) {
    const int first = column == 0 ? 128 : kLength - column;
    return ReverseFrom(Splat(row[first]), Load(row + kLength - column - kWidth));
  }
};

// Columns of the filtered field into scratch, with real and imaginary parts exchanged, which turns the backward
// transform into the forward one: columns 0 to 127, then their mirror images. The sum of the products' squares is that
// of the image, by Parseval's theorem.
template <class Otf>
ORVANEL_INLINE double FilteredColumns(const ObjectSpectrum& object, const Otf& otf, const Tables& tables,
                                      const Scratch& scratch) {
  const FoldedColumns objectColumns = {object.spectrum};
  Complex* const lines = Lines(scratch);
  // Eight sums in every variant: lane l has the columns c with c % 8 = l, and their mirror images.
  V sums[8 / kWidth] = {};
  for (int column = 0; column < 128; column += kWidth) {
    if (object.pending != nullptr) CompleteColumns(column, tables, scratch, *object.pending);
    V& sum = sums[column / kWidth % (8 / kWidth)];
    const auto product = [&](Complex o, Complex h) ORVANEL_INLINED {
      const Complex v = {o.re * h.im + h.re * o.im, h.re * o.re - o.im * h.im};
      sum = sum + Norm(v);
      return v;
    };
    for (int p = 0; p < kLength; ++p) {
      lines[p] = product(objectColumns.At(p, column), otf.At(kLength - 1 - p, column));
    }
    TransformPanel(lines, lines, tables, Panel(scratch, column));
    for (int p = 0; p < kLength; ++p) {
      lines[p] = product(objectColumns.MirroredAt(p, column), otf.MirroredAt(kLength - 1 - p, column));
    }
    TransformPanel(lines, lines, tables, Panel(scratch, 128 + column));
  }
  double s[8];
  for (int l = 0; l < 8; ++l) s[l] = sums[l / kWidth][l % kWidth];
  return (((s[0] + s[1]) + (s[2] + s[3])) + ((s[4] + s[5]) + (s[6] + s[7]))) * 65536.0;
}

// Rows of the field from scratch, side by side.
ORVANEL_INLINE void LoadFilteredRows(const Scratch& scratch, int first, Complex* x) {
  LoadRows(scratch, first, 128, x);
  for (int c = 0; c < 128; c += kWidth) {
    Transpose(Panel(scratch, 128 + c) + first, x, [&](int l) ORVANEL_INLINED { return kLength - c - l; });
  }
  x[128] = x[kLength];  // the place of column 0 was that of column 128
}

// Rows of |field|^2 from scratch, moved by half the plane; finish(v) makes the samples of it.
template <class Finish>
ORVANEL_INLINE void ImageRows(const Tables& tables, const Scratch& scratch, double* image, Finish finish) {
  Complex* const lines = Lines(scratch);
  for (int first = 0; first < kLength; first += kWidth) {
    LoadFilteredRows(scratch, first, lines);
    double* const rows = image + (first + 128) % kLength * kLength;
    for (int k = 0; k < kWidth * kLength; k += 8) __builtin_prefetch(rows + k, 1);
    TransformBundle<false>(
        lines, tables, [&](int n) ORVANEL_INLINED { return lines[n]; },
        [&](int place, int, Complex v) ORVANEL_INLINED { lines[place].re = finish(v.re * v.re + v.im * v.im); });
    StoreRows(lines, &Complex::re, [&](int row, int column, V v) ORVANEL_INLINED {
      Store(rows + row * kLength + (column + 128) % kLength, v);
    });
  }
}

// The image from the field's columns in scratch: scaled by factor and clipped.
[[gnu::noinline]] void WriteClipped(double scale, const Tables& tables, const Scratch& scratch, double* image) {
  const V factor = Splat(scale);
  const V one = Splat(1.0);
  ImageRows(tables, scratch, image, [&](V v) ORVANEL_INLINED {
    const V scaled = v * factor;
    const V clipped = Select(scaled > one, one, scaled);
    return Select(clipped >= V{}, clipped, V{});
  });
}

// The same, stretched.
[[gnu::noinline]] void WriteStretched(const Tables& tables, const Scratch& scratch, double* image) {
  V largest = Splat(-__builtin_inf());
  V smallest = Splat(__builtin_inf());
  ImageRows(tables, scratch, image, [&](V v) ORVANEL_INLINED {
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

void WriteImage(const ImageScale& scale, double fieldTotal, const Tables& tables, const Scratch& scratch,
                double* image) {
  if (scale.keepsTotal) {
    WriteClipped(scale.total / fieldTotal, tables, scratch, image);
  } else {
    WriteStretched(tables, scratch, image);
  }
}

void Image(const ObjectSpectrum& object, const HalfSpectrum& otf, const ImageScale& scale, const Tables& tables,
           const Scratch& scratch, double* image) {
  WriteImage(scale, FilteredColumns(object, FoldedColumns{otf}, tables, scratch), tables, scratch, image);
}

void ImageThroughPlanes(const ObjectSpectrum& object, const TransferPlanes& otf, const ImageScale& scale,
                        const Tables& tables, const Scratch& scratch, double* image) {
  WriteImage(scale, FilteredColumns(object, WholeColumns{otf.re, otf.im}, tables, scratch), tables, scratch, image);
}

void DrawRing(double* plane, double centre, double innerSquared, double outerSquared) {
  const V inner = Splat(innerSquared);
  const V outer = Splat(outerSquared);
  const V white = Splat(1.0);
  // Beyond `reach` of the centre all is white.
  const int reach = outerSquared < kLength * kLength ? static_cast<int>(__builtin_sqrt(outerSquared)) + 1 : kLength;
  const int middle = static_cast<int>(centre);
  const int first = middle > reach ? (middle - reach) / kWidth * kWidth : 0;
  const int end = middle + reach + 2 < kLength ? middle + reach + 2 : kLength;
  for (int y = 0; y < kLength; ++y) {
    double* const row = plane + y * kLength;
    const V dy2 = Splat((y - centre) * (y - centre));
    const int firstHere = y < middle - reach || y > middle + reach + 1 ? kLength : first;
    int x = 0;
    for (; x < firstHere; x += kWidth) Store(row + x, white);
    for (; x < end; x += kWidth) {
      const V dx = Ramp(x) - centre;
      const V d2 = dx * dx + dy2;
      Store(row + x, Select((d2 <= outer) & (d2 >= inner), V{}, white));
    }
    for (; x < kLength; x += kWidth) Store(row + x, white);
  }
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_OPTICS_KERNELS_IMAGE_H
