// The user's picture brought to the field that an eye is shown.
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
  kPad,     // all of it, scaled, with white beside it
  kPixels,  // the central 256 x 256 pixels as they are, with white around a smaller picture
};

// As the command line has it, and in words for results.
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
  bool transparent = false;             // some of it was, and has white under it
  std::vector<Plane> channels;          // one, or red, green and blue; light, 0 to 1
};

// Scaling averages the light that falls on a sample, so that thin lines keep theirs; where one pixel covers several
// samples it stays a square.
ObjectPicture FitToField(const DecodedPicture& picture, const PictureRequest& request);

// "red" and so on; empty for the one channel of a grey picture.
std::string_view ChannelWord(std::size_t channel, std::size_t channels);

}  // namespace orvanel::targets

#endif  // ORVANEL_TARGETS_OBJECT_PICTURE_H
