// Indexes, reads and writes the samples of planes.
#ifndef ORVANEL_OPTICS_SAMPLES_H
#define ORVANEL_OPTICS_SAMPLES_H

#include <cstddef>
#include <cstring>

namespace orvanel {

// Element (row, column) of a row-major plane with rows of n samples.
constexpr std::size_t SampleIndex(int row, int column, int n) {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(n) + static_cast<std::size_t>(column);
}

// Number of samples in a plane of side n; 0 for a side below 1.
constexpr std::size_t SampleCount(int n) { return n < 1 ? 0 : SampleIndex(n, 0, n); }

// Element index of a buffer that the caller owns and that may have any alignment. Compiles to one move.
inline void Store(double* buffer, std::size_t index, double value) {
  std::memcpy(reinterpret_cast<char*>(buffer) + index * sizeof value, &value, sizeof value);
}

inline double Load(const double* buffer, std::size_t index) {
  double value;
  std::memcpy(&value, reinterpret_cast<const char*>(buffer) + index * sizeof value, sizeof value);
  return value;
}

// Copies count samples into a buffer that the caller owns and that may have any alignment. Null is allowed for none.
inline void StoreAll(double* buffer, const double* samples, std::size_t count) {
  if (count != 0) std::memcpy(static_cast<void*>(buffer), samples, count * sizeof *samples);
}

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_SAMPLES_H
