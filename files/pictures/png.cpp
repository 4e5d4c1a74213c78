// Writes PNG: makes the chunks, filters rows, compresses with zlib. Source: Portable Network Graphics, 2nd edition.
#include "files/pictures/png.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "base/error.h"

namespace orvanel::files {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Format {
  int width, height;
  std::uint8_t bits;        // per channel
  std::uint8_t colourType;  // as in the header
  std::size_t pixelBytes;

  std::size_t RowBytes() const { return static_cast<std::size_t>(width) * pixelBytes; }
};

constexpr std::uint8_t kGrey = 0, kTrueColour = 2;

// ---- Pixels as in the file: the higher byte first

std::uint8_t* Put(std::uint8_t* to, std::uint8_t channel) {
  *to = channel;
  return to + 1;
}

std::uint8_t* Put(std::uint8_t* to, std::uint16_t channel) {
  to[0] = static_cast<std::uint8_t>(channel >> 8);
  to[1] = static_cast<std::uint8_t>(channel & 0xff);
  return to + 2;
}

template <class Channel>
std::uint8_t* Put(std::uint8_t* to, const Rgb<Channel>& colour) {
  return Put(Put(Put(to, colour.red), colour.green), colour.blue);
}

// ---- Filters: each byte minus its prediction from its neighbours, because differences compress better

enum Filter : std::uint8_t { kNone, kLeft, kAbove, kAverage, kPaeth };

// The Paeth predictor: of left, above and corner the one nearest to left + above - corner.
int Paeth(int left, int above, int corner) {
  const int toLeft = std::abs(above - corner);
  const int toAbove = std::abs(left - corner);
  const int toCorner = std::abs(left + above - 2 * corner);
  if (toLeft <= toAbove && toLeft <= toCorner) return left;
  return toAbove <= toCorner ? above : corner;
}

template <Filter kFilter>
int Foretold(int left, int above, int corner) {
  if constexpr (kFilter == kLeft) return left;
  if constexpr (kFilter == kAbove) return above;
  if constexpr (kFilter == kAverage) return (left + above) / 2;
  if constexpr (kFilter == kPaeth) return Paeth(left, above, corner);
  return 0;
}

// Writes the filter's number and the filtered row; `above` is the row before, zeros for the first. Returns the sum of
// the absolute values of the bytes as signed numbers.
template <Filter kFilter>
unsigned FilterRow(const std::uint8_t* row, const std::uint8_t* above, const Format& format, std::uint8_t* filtered) {
  *filtered++ = kFilter;
  const std::size_t pixel = format.pixelBytes, all = format.RowBytes();
  for (std::size_t i = 0; i < std::min(pixel, all); ++i) {
    filtered[i] = static_cast<std::uint8_t>(row[i] - Foretold<kFilter>(0, above[i], 0));
  }
  for (std::size_t i = pixel; i < all; ++i) {
    filtered[i] = static_cast<std::uint8_t>(row[i] - Foretold<kFilter>(row[i - pixel], above[i], above[i - pixel]));
  }
  unsigned weight = 0;
  for (std::size_t i = 0; i < all; ++i) weight += std::min<unsigned>(filtered[i], 256U - filtered[i]);
  return weight;
}
constexpr auto kFilterRows =
    std::array{FilterRow<kNone>, FilterRow<kLeft>, FilterRow<kAbove>, FilterRow<kAverage>, FilterRow<kPaeth>};

// Filters every row by the filter with the smallest sum.
Bytes Filtered(const Bytes& samples, const Format& format) {
  const std::size_t rowBytes = format.RowBytes();
  const Bytes zeros(rowBytes);
  const std::uint8_t* above = zeros.data();
  Bytes result, trial(1 + rowBytes), best(1 + rowBytes);
  result.reserve((1 + rowBytes) * static_cast<std::size_t>(format.height));
  for (const std::uint8_t* row = samples.data(); row != samples.data() + samples.size(); row += rowBytes) {
    if (std::equal(row, row + rowBytes, above)) {
      // Most rows of a sheet. No sum is smaller than 0.
      result.push_back(kAbove);
      result.resize(result.size() + rowBytes);
    } else {
      unsigned least = 0;
      for (const auto filterRow : kFilterRows) {
        const unsigned weight = filterRow(row, above, format, trial.data());
        if (filterRow != kFilterRows[kNone] && weight >= least) continue;
        least = weight;
        best.swap(trial);
      }
      result.insert(result.end(), best.begin(), best.end());
    }
    above = row;
  }
  return result;
}

// ---- Chunks

std::string BigEndian(std::uint32_t number) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xff);
  return bytes;
}

// Length, four letters, data, checksum of letters and data.
std::string Chunk(const char* letters, const std::string& data) {
  const std::string summed = letters + data;
  const uLong sum = crc32_z(0, reinterpret_cast<const Bytef*>(summed.data()), summed.size());
  return BigEndian(static_cast<std::uint32_t>(data.size())) + summed + BigEndian(static_cast<std::uint32_t>(sum));
}

std::string Header(const Format& format) {
  std::string data = BigEndian(static_cast<std::uint32_t>(format.width));
  data += BigEndian(static_cast<std::uint32_t>(format.height));
  data += static_cast<char>(format.bits);
  data += static_cast<char>(format.colourType);
  return data + std::string(3, '\0');  // the only compression and filter method; no interlacing
}

std::string Compressed(const Bytes& bytes) {
  uLongf size = compressBound(static_cast<uLong>(bytes.size()));
  std::string data(size, '\0');
  const int status =
      compress(reinterpret_cast<Bytef*>(data.data()), &size, bytes.data(), static_cast<uLong>(bytes.size()));
  if (status != Z_OK) throw Error(std::string("cannot make a PNG file: ") + zError(status));
  data.resize(size);
  return data;
}

template <class Pixel>
std::string Encode(const Picture<Pixel>& picture, Pixels kind, std::uint8_t colourType, std::size_t channels) {
  if (picture.width < 1 || picture.height < 1) throw Error("cannot make a PNG file: the picture has no pixels");
  const auto bits = static_cast<std::uint8_t>(8 * sizeof(Pixel) / channels);
  const Format format{picture.width, picture.height, bits, colourType, sizeof(Pixel)};
  Bytes samples(picture.pixels.size() * sizeof(Pixel));
  std::uint8_t* to = samples.data();
  for (const Pixel& pixel : picture.pixels) to = Put(to, pixel);
  const std::string perceptual(1, '\0');
  const std::string mark = kind == Pixels::kSrgb ? Chunk("sRGB", perceptual) : "";
  return "\x89PNG\r\n\x1a\n" + Chunk("IHDR", Header(format)) + mark +
         Chunk("IDAT", Compressed(Filtered(samples, format))) + Chunk("IEND", "");
}

}  // namespace

GreyPicture GreyPictureOf(const Plane& plane) {
  GreyPicture picture{plane.columns(), plane.rows(), {}};
  picture.pixels.reserve(plane.size());
  for (const double v : plane) {
    const double clipped = v > 0.0 ? std::min(v, 1.0) : 0.0;
    picture.pixels.push_back(static_cast<std::uint8_t>(std::lround(255.0 * clipped)));
  }
  return picture;
}

std::string EncodePng(const GreyPicture& picture, Pixels kind) { return Encode(picture, kind, kGrey, 1); }
std::string EncodePng(const ColourPicture& picture, Pixels kind) { return Encode(picture, kind, kTrueColour, 3); }
std::string EncodePng(const DeepGreyPicture& picture, Pixels kind) { return Encode(picture, kind, kGrey, 1); }
std::string EncodePng(const DeepColourPicture& picture, Pixels kind) { return Encode(picture, kind, kTrueColour, 3); }

}  // namespace orvanel::files
