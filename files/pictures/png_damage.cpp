// Checks the chunks of PNG files. Source: Portable Network Graphics, 2nd edition.
#include "files/pictures/png_damage.h"

#include <zlib.h>

#include <cstdint>
#include <vector>

namespace orvanel::files {
namespace {

constexpr std::string_view kCutShort = "is cut short";
constexpr std::string_view kDamaged = "is damaged";

// The number in four bytes from `position`, which must exist.
std::uint32_t Number(std::string_view bytes, std::size_t position) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) number = number << 8 | static_cast<std::uint8_t>(bytes[position + i]);
  return number;
}

constexpr std::size_t kSignature = 8, kFrame = 12;  // length, letters and checksum around a chunk's data

// The number of pixels on a side, from the first on in steps of `step`.
std::uint64_t Steps(std::uint64_t side, std::uint64_t first, std::uint64_t step) {
  return side > first ? (side - first + step - 1) / step : 0;
}

// Bytes of `height` rows, each with its filter byte.
std::uint64_t RowBytes(std::uint64_t width, std::uint64_t height, std::uint64_t bitsOfPixel) {
  return width == 0 ? 0 : height * (1 + (width * bitsOfPixel + 7) / 8);
}

// The number of bytes of a picture's data before compression.
//   header  the data of the first chunk
std::uint64_t BytesOfPicture(std::string_view header) {
  const std::uint64_t width = Number(header, 0), height = Number(header, 4);
  const auto colour = static_cast<std::uint8_t>(header[9]);
  const std::uint64_t samples = colour == 2 ? 3 : colour == 4 ? 2 : colour == 6 ? 4 : 1;
  const std::uint64_t bits = static_cast<std::uint8_t>(header[8]) * samples;
  if (header[12] == 0) return RowBytes(width, height, bits);
  struct Pass {  // of Adam7
    std::uint64_t x, y, xStep, yStep;
  };
  constexpr Pass kPasses[] = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                              {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};
  std::uint64_t bytes = 0;
  for (const Pass& pass : kPasses) {
    bytes += RowBytes(Steps(width, pass.x, pass.xStep), Steps(height, pass.y, pass.yStep), bits);
  }
  return bytes;
}

// Counts the bytes of compressed data after decompression, without keeping them.
class Inflation {
 public:
  Inflation() { good_ = inflateInit(&stream_) == Z_OK; }
  Inflation(const Inflation&) = delete;
  Inflation& operator=(const Inflation&) = delete;
  ~Inflation() { inflateEnd(&stream_); }

  // False above `most` bytes. Malformed data end at the error.
  bool Add(std::string_view data, std::uint64_t most) {
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
    stream_.avail_in = static_cast<uInt>(data.size());
    do {
      stream_.next_out = piece_.data();
      stream_.avail_out = static_cast<uInt>(piece_.size());
      const int status = good_ ? inflate(&stream_, Z_NO_FLUSH) : Z_DATA_ERROR;
      good_ = status == Z_OK || status == Z_BUF_ERROR;  // Z_BUF_ERROR at the end of the input
      bytes_ += piece_.size() - stream_.avail_out;
      if (bytes_ > most) return false;
    } while (good_ && stream_.avail_out == 0);
    return true;
  }

 private:
  z_stream stream_{};
  bool good_ = false;
  std::uint64_t bytes_ = 0;
  std::vector<Bytef> piece_ = std::vector<Bytef>(std::size_t{1} << 16);
};

}  // namespace

std::string_view DamageOfPng(std::string_view bytes) {
  std::size_t position = kSignature;
  while (position + kFrame <= bytes.size()) {
    const std::size_t length = Number(bytes, position);
    if (length > bytes.size() - position - kFrame) return kCutShort;
    const std::string_view summed = bytes.substr(position + 4, 4 + length);
    const uLong sum = crc32_z(0, reinterpret_cast<const Bytef*>(summed.data()), summed.size());
    if (sum != Number(bytes, position + 8 + length)) return kDamaged;
    if (summed == "IEND") return {};
    position += kFrame + length;
  }
  return kCutShort;
}

bool PngHoldsTooMuch(std::string_view bytes) {
  constexpr std::size_t kHeader = 13;
  const std::string_view header = bytes.substr(kSignature + 8, kHeader);
  if (header.size() < kHeader) return false;
  const std::uint64_t most = BytesOfPicture(header);
  Inflation inflation;
  for (std::size_t position = kSignature; position + kFrame <= bytes.size();) {
    const std::size_t length = Number(bytes, position);
    const bool isData = bytes.substr(position + 4, 4) == "IDAT";
    if (isData && !inflation.Add(bytes.substr(position + 8, length), most)) return true;
    position += kFrame + length;
  }
  return false;
}

}  // namespace orvanel::files
