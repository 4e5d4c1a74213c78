// Computes the retinal images of a picture's channels, and scales those of several channels together.
#include <algorithm>
#include <utility>

#include "models/adapters/classic_model.h"

namespace orvanel::models {
namespace {

// The engine's image of several channels: each is squared, then all are scaled by one factor to the light that they
// have together. A factor for each channel would tint grey.
std::vector<Plane> SquaredTogether(std::vector<Plane> channels, const std::vector<Plane>& objects) {
  double light = 0.0, squares = 0.0;
  for (const Plane& object : objects) light += SumOf(object);
  for (Plane& channel : channels) {
    for (double& v : channel) v *= v;
    squares += SumOf(channel);
  }
  if (squares <= 0.0) return channels;
  for (Plane& channel : channels) {
    for (double& v : channel) v = std::min(v * (light / squares), 1.0);
  }
  return channels;
}

}  // namespace

RetinalPicture ClassicModel::RetinalPictureOf(ObjectPicture object) {
  RetinalPicture picture;
  for (const Plane& channel : object.channels)
    ImageOf(channel, ImageKind::kLinear, picture.contrastKept.emplace_back());
  if (object.channels.size() == 1) {
    ImageOf(object.channels[0], ImageKind::kTotalLight, picture.seen.emplace_back());
  } else {
    picture.seen = SquaredTogether(picture.contrastKept, object.channels);
  }
  picture.pixel = ScalesOf(pupil_).library.pitch;
  picture.object = std::move(object);
  return picture;
}

}  // namespace orvanel::models
