// Memory for planes, aligned for the widest registers.
#ifndef ORVANEL_MODELS_PHYSICAL_TRANSFORM_ALIGNED_MEMORY_H
#define ORVANEL_MODELS_PHYSICAL_TRANSFORM_ALIGNED_MEMORY_H

#include <cstddef>
#include <memory>

namespace orvanel::physical {

// Doubles without a value.
class AlignedMemory {
 public:
  AlignedMemory() = default;
  explicit AlignedMemory(std::size_t count) : lines_(new Line[count / kDoubles + 1]), count_(count) {}

  double* data() { return lines_ ? lines_[0].doubles : nullptr; }
  const double* data() const { return lines_ ? lines_[0].doubles : nullptr; }
  std::size_t size() const { return lines_ ? count_ : 0; }

  // Grows to so many, without keeping what was there.
  void Reserve(std::size_t count) {
    if (count > size()) *this = AlignedMemory(count);
  }

 private:
  static constexpr std::size_t kDoubles = 8;
  struct alignas(64) Line {
    double doubles[kDoubles];
  };
  std::unique_ptr<Line[]> lines_;
  std::size_t count_ = 0;
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_TRANSFORM_ALIGNED_MEMORY_H
