// Fuzzes the decoder of the built-in bitmap: it reads only its bytes, and every sample is a byte of a colour.
#include "targets/bitmap.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "orvanel/orvanel.h"
#include "tests/fuzz/guarded_buffer.h"

namespace {

constexpr std::size_t kHeader = 40, kColours = 4 * 256;
constexpr std::size_t kDoubles = (kHeader + kColours + ORVANEL_PLANE_SAMPLES) / sizeof(double);
static_assert(kDoubles * sizeof(double) == kHeader + kColours + ORVANEL_PLANE_SAMPLES);

}  // namespace

// The input is repeated until the bitmap is full.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  static orvanel::fuzz::GuardedBuffer file(kDoubles), pattern(ORVANEL_PLANE_SAMPLES);
  const int shift = data[0] % 2 == 0 ? 0 : 255;
  auto* const bitmap = reinterpret_cast<unsigned char*>(file.Untouched(shift));
  const std::size_t bytes = kDoubles * sizeof(double);
  std::memcpy(bitmap, data, size < bytes ? size : bytes);
  for (std::size_t have = size; have < bytes; have *= 2) {
    std::memcpy(bitmap + have, bitmap, have < bytes - have ? have : bytes - have);
  }
  // Aligned, as the one caller's planes are.
  double* const samples = pattern.Untouched(shift);
  orvanel::targets::DecodeBitmap(bitmap, samples);
  constexpr std::size_t kStride = 251;  // a prime; looking at all takes longer than decoding
  for (std::size_t k = data[size - 1] % kStride; k < ORVANEL_PLANE_SAMPLES; k += kStride) {
    const std::size_t row = k / 256, column = k % 256;
    const unsigned char index = bitmap[kHeader + kColours + (255 - row) * 256 + column];
    ORVANEL_REQUIRE(samples[k] == bitmap[kHeader + 4 * std::size_t{index}] * orvanel::targets::kByteToUnit);
  }
  ORVANEL_REQUIRE(pattern.IsUntouchedBeside());
  return 0;
}
