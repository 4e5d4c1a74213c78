// Computes the spacing of samples. The order of evaluation is part of the results.
#include "orvanel/sampling.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "base/elementary.h"
#include "optics/samples.h"

namespace orvanel {
namespace {

constexpr double kDegreesPerRadian = 57.29577951308239;

// Two samples at a time: the compiler makes no vectors of comparisons by itself.
using Pair = double __attribute__((vector_size(16)));
using Mask = std::int64_t __attribute__((vector_size(16)));

Pair LoadPair(const double* samples) {
  Pair pair;
  std::memcpy(&pair, samples, sizeof pair);
  return pair;
}

Pair Magnitude(Pair step) {
  constexpr std::int64_t kAllButSign = std::numeric_limits<std::int64_t>::max();
  return reinterpret_cast<Pair>(reinterpret_cast<Mask>(step) & kAllButSign);
}

// A row of the pupil, and the one below it.
struct Row {
  const double* samples;
  const double* below;
  int first, last;            // columns in the pupil; none if first > last
  int firstBelow, lastBelow;  // of the row below

  double Right(int c) const { return c < last ? std::fabs(samples[c + 1] - samples[c]) : 0.0; }
  double Down(int c) const { return c >= firstBelow && c <= lastBelow ? std::fabs(below[c] - samples[c]) : 0.0; }

  // How many samples differ by more than the limit from one of their neighbours.
  std::int64_t CountSteep(double limit) const {
    std::int64_t count = 0;
    int c = first;
    const auto alone = [&](int end) {
      for (; c <= end; ++c) count += Right(c) > limit || Down(c) > limit ? 1 : 0;
    };
    alone(std::min(firstBelow - 1, last));
    Mask both{};  // counts downwards
    for (; c + 1 <= std::min(last - 1, lastBelow); c += 2) {
      const Pair here = LoadPair(samples + c);
      const Pair right = Magnitude(LoadPair(samples + c + 1) - here);
      const Pair down = Magnitude(LoadPair(below + c) - here);
      both += (right > limit ? right : down) > limit;  // GCC splits an "or" of two comparisons into scalars
    }
    alone(last);
    return count - both[0] - both[1];
  }
};

// Calls action(row) for each row of the pupil.
template <class Action>
void ForEachRow(const double* wavefront, int n, int pupilSamples, Action action) {
  const int begin = std::max(n / 2 - pupilSamples / 2, 0);
  const int end = std::min(n / 2 + pupilSamples / 2, n - 1);
  const auto findPupil = [&](const double* samples, int& first, int& last) {
    first = begin;
    last = end;
    while (first <= last && !(samples[first] <= kLargestInside)) ++first;
    while (first <= last && !(samples[last] <= kLargestInside)) --last;
  };
  Row row{};
  row.below = wavefront;  // of the last row, nothing of it is in the pupil
  if (begin <= end) findPupil(wavefront + SampleIndex(begin, 0, n), row.firstBelow, row.lastBelow);
  for (int r = begin; r <= end; ++r) {
    row.samples = wavefront + SampleIndex(r, 0, n);
    row.first = row.firstBelow;
    row.last = row.lastBelow;
    row.firstBelow = n;
    row.lastBelow = -1;
    if (r < end) {
      row.below = row.samples + n;
      findPupil(row.below, row.firstBelow, row.lastBelow);
    }
    action(row);
  }
}

}  // namespace

// contract: whole quarters of the pupil, 32 on the 256 grid.
double PsfHalfWidth(int pupilSamples, double wavelength, double pupilDiameter, double focalLength) {
  return (pupilSamples - 1) / 4 * focalLength * wavelength / pupilDiameter;
}

double FrequencyStep(int n, double psfHalfWidth, double focalLength) {
  const double degreesPerMillimetre = ArcTangent(1.0 / focalLength) * kDegreesPerRadian;
  return 2 * ((n * 0.25) / psfHalfWidth) / degreesPerMillimetre / (n - 1);
}

double FrequencyRange(int n, double frequencyStep) { return frequencyStep * ((n - 1) / 2.0); }

double UndersampledShare(const double* wavefront, int n, int pupilSamples, double wavelength) {
  std::int64_t steep = 0, samples = 0;
  ForEachRow(wavefront, n, pupilSamples, [&](const Row& row) {
    steep += row.CountSteep(wavelength / 2.0);
    samples += std::max(row.last - row.first + 1, 0);
  });
  return samples > 0 ? static_cast<double>(steep) / static_cast<double>(samples) : 0.0;
}

double LargestStep(const double* wavefront, int n, int pupilSamples) {
  double largest = 0.0;
  ForEachRow(wavefront, n, pupilSamples, [&largest](const Row& row) {
    for (int c = row.first; c <= row.last; ++c) largest = std::max({largest, row.Right(c), row.Down(c)});
  });
  return largest;
}

}  // namespace orvanel
