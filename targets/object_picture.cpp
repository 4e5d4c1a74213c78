// Resamples pictures to 256 x 256 samples of light.
#include "targets/object_picture.h"

#include <algorithm>

#include "orvanel/orvanel.h"
#include "targets/resampling.h"
#include "targets/srgb.h"

namespace orvanel::targets {
namespace {

constexpr int kSide = ORVANEL_GRID_SIZE;
constexpr double kWhite = 1.0;
constexpr std::size_t kLevels = 65536;

// Where the field's samples lie in the picture, in pixels from its left and upper edge.
struct Field {
  double left, top, step;
};

Field FieldOf(Fit fit, int width, int height) {
  if (fit == Fit::kPixels) {  // an odd row or column is added at the right and bottom
    return {static_cast<double>((width + kSide) / 2 - kSide), static_cast<double>((height + kSide) / 2 - kSide), 1.0};
  }
  const int side = fit == Fit::kCrop ? std::min(width, height) : std::max(width, height);
  return {(width - side) / 2.0, (height - side) / 2.0, static_cast<double>(side) / kSide};
}

std::vector<std::vector<Share>> FieldShares(double first, double step, int count) {
  std::vector<std::vector<Share>> shares;
  for (int i = 0; i < kSide; ++i) shares.push_back(Shares(first + i * step, first + (i + 1) * step, count));
  return shares;
}

std::vector<double> LightOfLevels(bool linear) {
  std::vector<double> light(kLevels);
  for (std::size_t level = 0; level < kLevels; ++level) {
    const double value = static_cast<double>(level) / (kLevels - 1);
    light[level] = linear ? value : LightOfSrgb(value);
  }
  return light;
}

}  // namespace

std::string_view Word(Fit fit) {
  switch (fit) {
    case Fit::kCrop:
      return "crop";
    case Fit::kPad:
      return "pad";
    case Fit::kPixels:
      return "pixels";
  }
  return "";
}

std::string_view Description(Fit fit) {
  switch (fit) {
    case Fit::kCrop:
      return "its central square";
    case Fit::kPad:
      return "all of it, white beside it";
    case Fit::kPixels:
      return "its central 256 x 256 pixels";
  }
  return "";
}

ObjectPicture FitToField(const DecodedPicture& picture, const PictureRequest& request) {
  ObjectPicture object{request, picture.width, picture.height, picture.bits, false, {}};
  const auto stored = static_cast<std::size_t>(picture.channels);
  const bool opacity = stored % 2 == 0;
  const std::size_t channels = opacity ? stored - 1 : stored;
  object.channels.assign(channels, Plane(kSide, kSide));

  const std::vector<double> light = LightOfLevels(request.linear);
  const Field field = FieldOf(request.fit, picture.width, picture.height);
  const auto columns = FieldShares(field.left, field.step, picture.width);
  const auto rows = FieldShares(field.top, field.step, picture.height);
  for (std::size_t sample = 0; sample < ORVANEL_PLANE_SAMPLES; ++sample) {
    // Computes white minus the light that the picture removes, so that its surroundings and transparent parts are
    // white.
    std::vector<double> missing(channels, 0.0);
    for (const Share& row : rows[sample / kSide]) {
      for (const Share& column : columns[sample % kSide]) {
        const std::uint16_t* const pixel =
            &picture.samples[(row.source * static_cast<std::size_t>(picture.width) + column.source) * stored];
        double weight = row.weight * column.weight;
        if (opacity && pixel[channels] != kLevels - 1) {
          weight *= static_cast<double>(pixel[channels]) / (kLevels - 1);
          object.transparent = true;
        }
        for (std::size_t c = 0; c < channels; ++c) missing[c] += weight * (kWhite - light[pixel[c]]);
      }
    }
    for (std::size_t c = 0; c < channels; ++c) object.channels[c][sample] = std::max(kWhite - missing[c], 0.0);
  }
  return object;
}

ObjectPicture PixelsAsTheyAre(const DecodedPicture& picture, const PictureRequest& request) {
  ObjectPicture object{request, picture.width, picture.height, picture.bits, false, {}};
  const auto stored = static_cast<std::size_t>(picture.channels);
  const bool opacity = stored % 2 == 0;
  object.channels.assign(opacity ? stored - 1 : stored, Plane(picture.width, picture.height));
  const std::vector<double> light = LightOfLevels(request.linear);
  const std::size_t pixels = object.channels[0].size();
  for (std::size_t i = 0; i < pixels; ++i) {
    const std::uint16_t* const pixel = &picture.samples[i * stored];
    double weight = 1.0;
    if (opacity && pixel[stored - 1] != kLevels - 1) {
      weight = static_cast<double>(pixel[stored - 1]) / (kLevels - 1);
      object.transparent = true;
    }
    for (std::size_t c = 0; c < object.channels.size(); ++c) {
      object.channels[c][i] = kWhite - weight * (kWhite - light[pixel[c]]);
    }
  }
  return object;
}

std::string_view ChannelWord(std::size_t channel, std::size_t channels) {
  constexpr std::string_view kWords[] = {"red", "green", "blue"};
  return channels == 1 ? std::string_view() : kWords[channel];
}

}  // namespace orvanel::targets
