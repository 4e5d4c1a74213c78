// The engine's operation on patterns, for one channel at a time.
#include "evaluation/retinal_picture.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "orvanel/optics_engine.h"

namespace orvanel::evaluation {
namespace {

double Sum(const Plane& plane) { return std::accumulate(plane.begin(), plane.end(), 0.0); }

// The engine as the library's exports have it, with total light kept.
OpticsEngine EngineOf(Millimetres pupil, const LibraryCoefficients& coefficients) {
  OpticsEngine engine(ORVANEL_GRID_SIZE);
  Plane psf(ORVANEL_PLANE_SAMPLES);
  double pitch, strehl;
  engine.synthesizeWavefront(Bare(coefficients).data(), pupil.value(), 1, 1, 1);
  engine.ComputePsf(kWavelength, psf.data(), &pitch, &strehl, ORVANEL_GRID_SIZE);
  engine.normaliseOutput = 0;
  return engine;
}

Plane See(OpticsEngine& engine, const Plane& object) {
  Plane image(ORVANEL_PLANE_SAMPLES);
  engine.PatternRetinalImage(image.data(), object.data(), ORVANEL_GRID_SIZE);
  return image;
}

// The library's image is the square of what filtering gives; the root is the linear convolution with the PSF but for
// the phase that the chain turns the PSF's samples by, the more of it the wider the PSF. An object whose samples add up
// to 1 comes back so without being clipped; the roots are then brought to the object's light.
Plane SeeLinearly(OpticsEngine& engine, Plane object) {
  const double total = Sum(object);
  if (total <= 0.0) return object;
  for (double& v : object) v /= total;
  Plane image = See(engine, object);
  for (double& v : image) v = std::sqrt(v);
  const double scale = total / Sum(image);
  for (double& v : image) v = std::min(v * scale, 1.0);
  return image;
}

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

SeenPicture SeePicture(Millimetres pupil, const LibraryCoefficients& coefficients, ObjectPicture object) {
  OpticsEngine engine = EngineOf(pupil, coefficients);
  SeenPicture picture;
  for (const Plane& channel : object.channels) picture.contrastKept.push_back(SeeLinearly(engine, channel));
  if (object.channels.size() == 1) {
    picture.seen.push_back(See(engine, object.channels[0]));
  } else {
    picture.seen = SquaredTogether(picture.contrastKept, object.channels);
  }
  picture.object = std::move(object);
  return picture;
}

}  // namespace orvanel::evaluation
