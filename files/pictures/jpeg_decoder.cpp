// Calls libjpeg-turbo.
#include "files/pictures/jpeg_decoder.h"

#include <turbojpeg.h>

#include <memory>

namespace orvanel::files {
namespace {

using Decoder = std::unique_ptr<void, int (*)(tjhandle)>;

Decoder NewDecoder() { return {tjInitDecompress(), tjDestroy}; }

const unsigned char* Bytes(const std::string& bytes) { return reinterpret_cast<const unsigned char*>(bytes.data()); }

DecodedPicture Header(tjhandle decoder, const std::string& bytes) {
  DecodedPicture header;
  int subsampling = 0, colours = 0;
  if (tjDecompressHeader3(decoder, Bytes(bytes), static_cast<unsigned long>(bytes.size()), &header.width,
                          &header.height, &subsampling, &colours) != 0) {
    return {};
  }
  header.channels = colours == TJCS_GRAY ? 1 : 3;
  header.bits = 8;
  return header;
}

}  // namespace

DecodedPicture JpegHeader(const std::string& bytes) {
  const Decoder decoder = NewDecoder();
  return decoder == nullptr ? DecodedPicture() : Header(decoder.get(), bytes);
}

DecodedPicture JpegDecode(const std::string& bytes) {
  const Decoder decoder = NewDecoder();
  if (decoder == nullptr) return {};
  DecodedPicture picture = Header(decoder.get(), bytes);
  std::vector<unsigned char> pixels(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) *
                                    static_cast<std::size_t>(picture.channels));
  // Warnings are errors here: they report invented samples.
  if (tjDecompress2(decoder.get(), Bytes(bytes), static_cast<unsigned long>(bytes.size()), pixels.data(), picture.width,
                    0, picture.height, picture.channels == 1 ? TJPF_GRAY : TJPF_RGB, TJFLAG_ACCURATEDCT) != 0) {
    return {};
  }
  picture.samples.reserve(pixels.size());
  for (const unsigned char pixel : pixels) picture.samples.push_back(static_cast<std::uint16_t>(257 * pixel));
  return picture;
}

}  // namespace orvanel::files
