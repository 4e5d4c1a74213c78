// Holds the samples of a picture file after decoding.
#ifndef ORVANEL_TARGETS_DECODED_PICTURE_H
#define ORVANEL_TARGETS_DECODED_PICTURE_H

#include <cstdint>
#include <vector>

#include "base/layers.h"

namespace orvanel::targets {

struct DecodedPicture {
  int width = 0, height = 0;
  int channels = 0;                    // 1 grey, 2 grey and opacity, 3 red, green and blue, 4 these and opacity
  int bits = 0;                        // a sample in the file, 8 or 16
  std::vector<std::uint16_t> samples;  // 0 to 65535 for any number of bits; row-major, the channels of a pixel together
};

}  // namespace orvanel::targets

#endif  // ORVANEL_TARGETS_DECODED_PICTURE_H
