// Splits the length of a line into small transforms, and computes their factors.
#include "models/physical/transform/plane_transform.h"

#include <algorithm>
#include <numbers>

#include "base/elementary.h"

namespace orvanel::physical {
namespace {

std::size_t Size(long long n) { return static_cast<std::size_t>(n); }

bool HasSmallFactors(int n) {
  for (const int factor : {2, 3, 5}) {
    while (n % factor == 0) n /= factor;
  }
  return n == 1;
}

// exp(2 pi i k / n), k at most n, from the first eighth of a turn.
SineCosine Turn(long long k, long long n) {
  if (8 * k > 4 * n) {
    const SineCosine t = Turn(n - k, n);
    return {-t.sine, t.cosine};
  }
  if (8 * k > 2 * n) {
    const SineCosine t = Turn(n - 2 * k, 2 * n);
    return {t.sine, -t.cosine};
  }
  if (8 * k > n) {
    const SineCosine t = Turn(n - 4 * k, 4 * n);
    return {t.cosine, t.sine};
  }
  return SineAndCosine(2.0 * std::numbers::pi * static_cast<double>(k) / static_cast<double>(n));
}

}  // namespace

int PlaneTransform::SideFor(int least) {
  int side = std::max(kSideUnit, (least + kSideUnit - 1) / kSideUnit * kSideUnit);
  while (!HasSmallFactors(side)) side += kSideUnit;
  return side;
}

PlaneTransform::PlaneTransform(const ChordKernels& kernels, int side) : kernels_(&kernels) {
  transform_.length = side;
  int rest = side;
  const auto split = [&](int radix) {
    transform_.radices[transform_.passes++] = radix;
    rest /= radix;
  };
  int twos = 0;
  for (int n = side; n % 2 == 0; n /= 2) ++twos;
  // A half of the line that is empty saves most in the first pass. Radix 8 fits into the registers of most CPUs.
  split(twos % 3 == 1 ? 16 : 8);
  for (const int radix : {9, 5, 3}) {
    while (rest % radix == 0) split(radix);
  }
  for (const int radix : {8, 4}) {
    while (rest % radix == 0) split(radix);
  }
  std::vector<std::size_t> starts;
  int remaining = side;
  for (int pass = 0; pass < transform_.passes; ++pass) {
    const int radix = transform_.radices[pass];
    starts.push_back(turns_.size());
    for (int p = 1; p < remaining / radix; ++p) {
      for (int j = 1; j < radix; ++j) {
        const SineCosine turn = Turn(static_cast<long long>(p) * j, remaining);
        turns_.push_back(turn.cosine);
        turns_.push_back(turn.sine);
      }
    }
    remaining /= radix;
  }
  turns_.push_back(0.0);  // so that the last passes, which have none, have an address
  for (std::size_t pass = 0; pass < starts.size(); ++pass) transform_.turns[pass] = turns_.data() + starts[pass];
  // The digits of a frequency, by the radices: the first pass decides about the last digit, and the largest groups.
  for (int k = 0; k < side; ++k) {
    int place = 0, group = side, digits = k;
    for (int pass = 0; pass < transform_.passes; ++pass) {
      const int radix = transform_.radices[pass];
      group /= radix;
      place += digits % radix * group;
      digits /= radix;
    }
    places_.push_back(place);
  }
  transform_.places = places_.data();
  zeros_.resize(Size(side));
}

std::size_t PlaneTransform::SpectrumSize() const {
  const int width = kernels_->width;
  return Size(2LL * (side() / 2 / width + 1) * width * (side() + kSpareRows));
}

std::size_t PlaneTransform::At(int row, int q) const {
  const int width = kernels_->width;
  return Size((1LL * (q / width) * (side() + kSpareRows) + places_[Size(row)]) * 2 * width + q % width);
}

double* PlaneTransform::LinesOf(Memory& memory) const {
  memory.lines.Reserve(Size(16LL * side()));
  return memory.lines.data();
}

void PlaneTransform::PowerSpectrum(const FieldPlane& field, double factor, bool add, double* power,
                                   Memory& memory) const {
  memory.panels.Reserve(FieldSpectrumSize());
  kernels_->powerSpectrum(field, transform_, {memory.panels.data(), LinesOf(memory)}, factor, add, power);
}

std::size_t PlaneTransform::FieldSpectrumSize() const { return Size(2LL * side() * (side() + kSpareRows)); }

void PlaneTransform::FieldSpectrum(const FieldPlane& field, double* spectrum, Memory& memory) const {
  kernels_->fieldSpectrum(field, transform_, {spectrum, LinesOf(memory)});
}

void PlaneTransform::WeighSpectrum(const double* spectrum, const double* weights, const FieldPlane& field,
                                   double* product, Memory& memory) const {
  memory.panels.Reserve(FieldSpectrumSize());
  kernels_->weighSpectrum(spectrum, weights, field, transform_, {memory.panels.data(), LinesOf(memory)}, product);
}

void PlaneTransform::HalfSpectrum(const double* samples, long long pitch, int rows, int columns, double* spectrum,
                                  Memory& memory) const {
  FilterRows(samples, pitch, 0, rows, columns, spectrum, memory);
  kernels_->columnsOfHalf(spectrum, rows, transform_);
}

double PlaneTransform::Filter(const double* samples, long long pitch, int rows, int columns, const double* filter,
                              const WantedPlane& wanted, Memory& memory) const {
  memory.panels.Reserve(SpectrumSize());
  double* const spectrum = memory.panels.data();
  FilterRows(samples, pitch, 0, rows, columns, spectrum, memory);
  const double sum = FilterColumns(spectrum, rows, filter);
  FilteredRows(spectrum, wanted, memory);
  return sum;
}

void PlaneTransform::FilterRows(const double* samples, long long pitch, int firstRow, int rows, int columns,
                                double* spectrum, Memory& memory) const {
  kernels_->halfSpectraOfRows({samples, pitch, firstRow, rows, columns, zeros_.data()}, transform_, LinesOf(memory),
                              spectrum);
}

double PlaneTransform::FilterColumns(double* spectrum, int rows, const double* filter) const {
  return kernels_->filterColumns(spectrum, rows, filter, transform_);
}

void PlaneTransform::FilteredRows(const double* spectrum, const WantedPlane& wanted, Memory& memory) const {
  kernels_->rowsOfHalf(spectrum, transform_, LinesOf(memory), wanted);
}

const PlaneTransform& PlaneTransforms::Of(int side) {
  constexpr std::size_t kMaxKept = 32;
  for (const PlaneTransform& transform : kept_) {
    if (transform.side() == side) return transform;
  }
  if (kept_.size() == kMaxKept) kept_.pop_front();
  kept_.emplace_back(*kernels_, side);
  return kept_.back();
}

}  // namespace orvanel::physical
