// Makes the images of a picture's channels, and scales those of several channels together.
#include "evaluation/retinal_picture.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace orvanel::evaluation {
namespace {

double Sum(const Plane& plane) { return std::accumulate(plane.begin(), plane.end(), 0.0); }

// The library's image of several channels: each squared, then all by one factor to the light that they have together,
// because a factor of its own for each would tint what is grey.
std::vector<Plane> SquaredTogether(std::vector<Plane> channels, const std::vector<Plane>& objects) {
  double light = 0.0, squares = 0.0;
  for (const Plane& object : objects) light += Sum(object);
  for (Plane& channel : channels) {
    for (double& v : channel) v *= v;
    squares += Sum(channel);
  }
  if (squares <= 0.0) return channels;
  for (Plane& channel : channels) {
    for (double& v : channel) v = std::min(v * (light / squares), 1.0);
  }
  return channels;
}

}  // namespace

SeenPicture SeePicture(Evaluator& evaluator, ObjectPicture object) {
  SeenPicture picture;
  for (const Plane& channel : object.channels) {
    picture.contrastKept.push_back(evaluator.ImageOf(channel, ImageKind::kLinear));
  }
  if (object.channels.size() == 1) {
    picture.seen.push_back(evaluator.ImageOf(object.channels[0], ImageKind::kTotalLight));
  } else {
    picture.seen = SquaredTogether(picture.contrastKept, object.channels);
  }
  picture.object = std::move(object);
  return picture;
}

}  // namespace orvanel::evaluation
