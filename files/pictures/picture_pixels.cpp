// Rounds light to pixels.
#include "files/pictures/picture_pixels.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "targets/srgb.h"

namespace orvanel::files {
namespace {

template <class Level>
Level LevelOf(double light, bool linear) {
  const double clipped = light > 0.0 ? std::min(light, 1.0) : 0.0;
  const double value = linear ? clipped : SrgbOfLight(clipped);
  return static_cast<Level>(std::lround(value * std::numeric_limits<Level>::max()));
}

template <class Level>
Picture<Level> GreyPixels(const Plane& plane, bool linear) {
  Picture<Level> picture{plane.columns(), plane.rows(), {}};
  for (const double light : plane) picture.pixels.push_back(LevelOf<Level>(light, linear));
  return picture;
}

template <class Level>
Picture<Rgb<Level>> ColourPixels(const std::vector<Plane>& channels, bool linear) {
  const Plane &red = channels.front(), &green = channels[channels.size() / 2], &blue = channels.back();
  Picture<Rgb<Level>> picture{red.columns(), red.rows(), {}};
  for (std::size_t i = 0; i < red.size(); ++i) {
    picture.pixels.push_back(
        {LevelOf<Level>(red[i], linear), LevelOf<Level>(green[i], linear), LevelOf<Level>(blue[i], linear)});
  }
  return picture;
}

template <class Level>
std::string Encode(const std::vector<Plane>& channels, bool linear) {
  const Pixels kind = linear ? Pixels::kNumbers : Pixels::kSrgb;
  return channels.size() == 1 ? EncodePng(GreyPixels<Level>(channels[0], linear), kind)
                              : EncodePng(ColourPixels<Level>(channels, linear), kind);
}

}  // namespace

ColourPicture PicturePixels(const std::vector<Plane>& channels, bool linear) {
  return ColourPixels<std::uint8_t>(channels, linear);
}

std::string EncodePicture(const std::vector<Plane>& channels, bool linear, int bits) {
  return bits == 16 ? Encode<std::uint16_t>(channels, linear) : Encode<std::uint8_t>(channels, linear);
}

}  // namespace orvanel::files
