// Compiles and calls stb_image, the only copy in the program.
#include "files/pictures/stb_decoder.h"

#include <memory>

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_NO_STDIO
#define STBI_ONLY_PNG
#include <stb_image.h>

namespace orvanel::files {
namespace {

const stbi_uc* Bytes(const std::string& bytes) { return reinterpret_cast<const stbi_uc*>(bytes.data()); }

}  // namespace

DecodedPicture StbHeader(const std::string& bytes) {
  DecodedPicture header;
  const int size = static_cast<int>(bytes.size());
  if (stbi_info_from_memory(Bytes(bytes), size, &header.width, &header.height, &header.channels) != 1) return {};
  header.bits = stbi_is_16_bit_from_memory(Bytes(bytes), size) != 0 ? 16 : 8;
  return header;
}

DecodedPicture StbDecode(const std::string& bytes) {
  DecodedPicture picture = StbHeader(bytes);
  const std::unique_ptr<stbi_us, void (*)(void*)> samples(
      stbi_load_16_from_memory(Bytes(bytes), static_cast<int>(bytes.size()), &picture.width, &picture.height,
                               &picture.channels, 0),
      stbi_image_free);
  if (samples == nullptr) return {};
  picture.samples.assign(samples.get(), samples.get() + static_cast<std::size_t>(picture.width) *
                                                            static_cast<std::size_t>(picture.height) *
                                                            static_cast<std::size_t>(picture.channels));
  return picture;
}

}  // namespace orvanel::files
