// Reads numbers from the bytes of a fuzzer, from the front until none are left.
#ifndef ORVANEL_TESTS_FUZZ_INPUT_H
#define ORVANEL_TESTS_FUZZ_INPUT_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace orvanel::fuzz {

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  bool empty() const { return size_ == 0; }

  // The next byte; 0 behind the last.
  std::uint8_t Byte() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }

  // From 0 to count - 1.
  int Below(int count) { return Byte() % count; }

  // A length in millimetres or a ratio as a host may have it, the worst that there are, or any bits at all.
  double Double() {
    using Limits = std::numeric_limits<double>;
    constexpr double kWorst[] = {0.0,
                                 -0.0,
                                 Limits::quiet_NaN(),
                                 Limits::signaling_NaN(),
                                 Limits::infinity(),
                                 -Limits::infinity(),
                                 Limits::max(),
                                 Limits::lowest(),
                                 Limits::min(),
                                 Limits::denorm_min(),
                                 -Limits::denorm_min(),
                                 Limits::epsilon(),
                                 1.0,
                                 -1.0,
                                 1e-300,
                                 1e300,
                                 999.0,
                                 1000.0,
                                 -1000.0,
                                 2147483647.0,
                                 -2147483648.0,
                                 9007199254740993.0};
    constexpr int kCount = sizeof kWorst / sizeof kWorst[0];
    const int kind = Byte();
    if (kind < kCount) return kWorst[kind];
    if (kind < 160) return (Byte() - 128) * 1e-5;
    if (kind < 200) return (Byte() * 256 + Byte()) * 1e-3;
    std::uint64_t bits = 0;
    for (int shift = 0; shift < 64; shift += 8) bits |= std::uint64_t{Byte()} << shift;
    return std::bit_cast<double>(bits);
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

}  // namespace orvanel::fuzz

#endif  // ORVANEL_TESTS_FUZZ_INPUT_H
