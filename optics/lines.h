// Transforms eight lines of a plane side by side, so that the inner loop runs over lines instead of along one.
#ifndef ORVANEL_OPTICS_LINES_H
#define ORVANEL_OPTICS_LINES_H

#include <cstddef>
#include <vector>

namespace orvanel {

constexpr std::size_t kLanes = 8;

// Complex samples of up to kLanes lines: element j of lane l is re[j * kLanes + l].
struct LineBundle {
  explicit LineBundle(int length)
      : re(static_cast<std::size_t>(length) * kLanes), im(static_cast<std::size_t>(length) * kLanes) {}

  std::vector<double> re;
  std::vector<double> im;
};

// Where lines lie in a plane: element j of line l is plane[l * lineStride + j * elementStride].
struct LineLayout {
  std::size_t lineStride;
  std::size_t elementStride;
};

constexpr LineLayout RowsOf(int n) { return {static_cast<std::size_t>(n), 1}; }
constexpr LineLayout ColumnsOf(int n) { return {1, static_cast<std::size_t>(n)}; }

// Runs transform(bundle) on `count` lines of a complex plane, eight at a time: element j of the bundle is element
// source(j) of the lines before, and becomes element target(j) of them afterwards, times scale.
template <class Source, class Transform, class Target>
void TransformLines(double* re, double* im, int count, int length, LineLayout at, Source source, Transform transform,
                    double scale, Target target) {
  const auto lines = static_cast<std::size_t>(count);
  const auto elements = static_cast<std::size_t>(length);
  LineBundle x(length);
  for (std::size_t first = 0; first < lines; first += kLanes) {
    const std::size_t base = first * at.lineStride;
    const std::size_t lanes = lines - first < kLanes ? lines - first : kLanes;
    for (std::size_t j = 0; j < elements; ++j) {
      const std::size_t from = base + source(j) * at.elementStride;
      for (std::size_t l = 0; l < lanes; ++l) {
        x.re[j * kLanes + l] = re[from + l * at.lineStride];
        x.im[j * kLanes + l] = im[from + l * at.lineStride];
      }
    }
    transform(x);
    for (std::size_t j = 0; j < elements; ++j) {
      const std::size_t to = base + target(j) * at.elementStride;
      for (std::size_t l = 0; l < lanes; ++l) {
        re[to + l * at.lineStride] = x.re[j * kLanes + l] * scale;
        im[to + l * at.lineStride] = x.im[j * kLanes + l] * scale;
      }
    }
  }
}

// The index whose binary form of `bits` digits is that of j reversed.
constexpr std::size_t BitReversed(std::size_t j, int bits) {
  std::size_t reversed = 0;
  for (int b = 0; b < bits; ++b) reversed |= ((j >> b) & 1) << (bits - 1 - b);
  return reversed;
}

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_LINES_H
