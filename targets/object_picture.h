// Converts the user's picture to an object: planes of light on 256 x 256 samples.
#ifndef ORVANEL_TARGETS_OBJECT_PICTURE_H
#define ORVANEL_TARGETS_OBJECT_PICTURE_H

#include <string>
#include <string_view>
#include <vector>

#include "base/layers.h"
#include "targets/decoded_picture.h"
#include "targets/plane.h"

namespace orvanel::targets {

enum class Fit {
  kCrop,    // the central square, scaled
  kPad,     // the whole picture, scaled, with white beside it
  kPixels,  // the central 256 x 256 pixels, not scaled, with white around a smaller picture
};

// The word of the command line, and the description in results.
std::string_view Word(Fit fit);
std::string_view Description(Fit fit);

struct PictureRequest {
  std::string file;
  Fit fit = Fit::kCrop;
  bool linear = false;  // the file's values are light, not sRGB
};

struct ObjectPicture {
  PictureRequest request;
  int width = 0, height = 0, bits = 0;  // of the file
  bool transparent = false;             // has transparent parts, drawn on white
  std::vector<Plane> channels;          // one, or red, green and blue; light, 0 to 1
};

// Scaling averages the light over the area of a sample, so that thin lines keep their light. A pixel that covers
// several samples stays a square.
ObjectPicture FitToField(const DecodedPicture& picture, const PictureRequest& request);

// All pixels of the picture as they are; transparent parts are white.
ObjectPicture PixelsAsTheyAre(const DecodedPicture& picture, const PictureRequest& request);

// "red", "green", "blue"; empty for the channel of a grey picture.
std::string_view ChannelWord(std::size_t channel, std::size_t channels);

}  // namespace orvanel::targets

#endif  // ORVANEL_TARGETS_OBJECT_PICTURE_H
